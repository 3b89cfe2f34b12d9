# bash completion for vexa                                  -*- shell-script -*-
# Options as the help text writes them; file names behind -out, -outfile and
# -diags, directories behind -enumdir. Option names are case-blind to vexa, so
# the word in front is compared in lower case.

_vexa() {
    local cur=${COMP_WORDS[COMP_CWORD]}
    local prev=
    ((COMP_CWORD > 0)) && prev=${COMP_WORDS[COMP_CWORD - 1],,}
    COMPREPLY=()

    case $prev in
        -out | -outfile | -diags)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            return
            ;;
        -enumdir)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$cur")
            return
            ;;
        -dateformat)
            mapfile -t COMPREPLY < <(compgen -W "yyyy-mm-dd mm/dd/yyyy dd/mm/yyyy dd-mm-yyyy mm/dd/yy yyyymmdd" -- "$cur")
            return
            ;;
        -timeformat)
            mapfile -t COMPREPLY < <(compgen -W "hh:mm:ss hh:mm:ss.xxx hh:mm:ss.xxxxxx hh:mm:ss.xxxxxxxxx" -- "$cur")
            return
            ;;
        -csv_separator)
            mapfile -t COMPREPLY < <(compgen -W "tab" -- "$cur")
            return
            ;;
        # A value of the user's own: a name, an address, a number, a pattern.
        -url | -ip | -mx | -ns | -cname | -txt | -server | -timeout | -retry | -delay | \
            -filter | -filter_sig | -filter_path | -cmd_start_time | -cmd_stop_time | \
            -num_subdirs | -signal)
            return
            ;;
    esac

    local options="-url -ip -mx -ns -cname -txt
        -url_pipe -ip_pipe -mx_pipe -ns_pipe -cname_pipe -txt_pipe -pipe -server
        -timeout -retry -delay -xml -csv -verbose -v -no_whitespace -csv_separator
        -dateformat -timeformat -filter -help
        -out -outfile -append -pair_datetime -csvgen -csvl2t -bodyfile -multiline
        -filter_sig -filter_path -cmd_start_time -cmd_stop_time -enumdir -num_subdirs
        -quiet -profile -diags -signal -bom -ipv6"
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
}
complete -F _vexa vexa
