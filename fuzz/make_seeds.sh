#!/usr/bin/env bash
# Writes the hand-made seeds of every fuzz target into fuzz/corpus/<target>/.
# The real replies of the reply target come from capture_replies.sh.
# Seeds of the text targets start with their delimiter byte (see fuzz_input.h).
set -euo pipefail
cd "$(dirname "$0")/corpus"

# bytes FILE HEX...: the hex byte groups (comments after "#" allowed per line).
bytes() {
  local file=$1 hex
  shift
  hex=$(printf '%s\n' "$@" | sed 's/#.*//' | tr -d ' \n')
  printf '%b' "$(sed 's/../\\x&/g' <<<"$hex")" > "$file"
}
# text FILE TEXT: the text as it stands (printf %b escapes).
text() { printf '%b' "$2" > "$1"; }
# Eight bytes, low first, of a tick count.
ticks() { perl -e 'print pack("Q<", $ARGV[0])' "$1"; }

# ------------------------------------------------------------------ reply --
r=reply
H='1200 8180'   # ID, QR RD RA
Q='03 777777 04 64656d6f 04 74657374 00  0001 0001'   # www.demo.test A IN
bytes $r/empty
bytes $r/short-header        '1200 81'
bytes $r/header-only         "$H 0000 0000 0000 0000"
bytes $r/qr-clear            '1200 0100 0001 0000 0000 0000' "$Q"
bytes $r/question-cut        "$H 0001 0000 0000 0000" '03 777777 04 64656d6f 04 74657374 00  00'
bytes $r/name-unterminated   "$H 0001 0000 0000 0000" '03 777777 04 64656d6f'
bytes $r/pointer-self        "$H 0001 0000 0000 0000" 'c00c  0001 0001'
bytes $r/pointer-ping-pong   "$H 0001 0000 0000 0000" '01 61 c0 10   c0 0c  0001 0001'
bytes $r/pointer-past-end    "$H 0001 0000 0000 0000" 'c0ff  0001 0001'
bytes $r/pointer-far         "$H 0001 0000 0000 0000" 'ffff  0001 0001'
bytes $r/pointer-to-header   "$H 0001 0000 0000 0000" 'c000  0001 0001'
bytes $r/pointer-cut         "$H 0001 0000 0000 0000" 'c0'
bytes $r/counts-huge         "$H ffff ffff ffff ffff" "$Q" 'c00c 0001 0001 00000e10 0004 c0000201'
bytes $r/answers-missing     "$H 0001 0003 0000 0000" "$Q" 'c00c 0001 0001 00000e10 0004 c0000201'
bytes $r/rdlength-past-end   "$H 0001 0001 0000 0000" "$Q" 'c00c 0001 0001 00000e10 0040 c0000201'
bytes $r/answer-fixed-cut    "$H 0001 0001 0000 0000" "$Q" 'c00c 0001 00'
bytes $r/a-short-aaaa-odd    "$H 0001 0002 0000 0000" "$Q" \
  'c00c 0001 0001 00000e10 0003 c00002         # A of three bytes' \
  'c00c 001c 0001 00000e10 0005 2001 0db8 00   # AAAA of five bytes'
bytes $r/mx-cut              "$H 0001 0002 0000 0000" "$Q" \
  'c00c 000f 0001 00000e10 0001 00             # MX without a whole preference' \
  'c00c 000f 0001 00000e10 0004 000a c0ff      # MX whose name points past the end'
bytes $r/soa-short           "$H 0001 0000 0001 0000" "$Q" \
  'c010 0006 0001 0000012c 0008 c010 c010 78c40409   # SOA cut after the serial'
bytes $r/soa-at-end          "$H 0001 0000 0001 0000" "$Q" \
  'c010 0006 0001 0000012c 0004 c010 c010            # SOA names and nothing more'
bytes $r/txt-crlf-zero       "$H 0001 0001 0000 0000" "$Q" \
  'c00c 0010 0001 00000e10 000c 0b 610d0a627c632c00 3c2622  # TXT: CR LF | , NUL < & "'
bytes $r/name-separators     "$H 0001 0001 0000 0000" \
  '05 617c622c63 00 0001 0001                   # a|b,c' \
  'c00c 0005 0001 00000e10 0006 03 3c263e c00c  # CNAME <&>.a|b,c'
bytes $r/label-long-forms    "$H 0001 0001 0000 0000" \
  '40 6161616161616161616161616161616161616161616161616161616161616161' \
  '   6161616161616161616161616161616161616161616161616161616161616161' \
  '00 0001 0001                                 # a label of 64' \
  'c00c 0002 0001 00000e10 0002 8000            # NS: a label of 128, cut'
bytes $r/unknown-types       "$H 0001 0003 0001 0001" "$Q" \
  'c00c ff00 00ff ffffffff 0003 010203          # type 65280, class 255, ttl max' \
  'c00c 0029 0001 00000000 0000                 # OPT-like, no data' \
  'c00c 000c 0001 00000e10 0002 c00c            # PTR' \
  '00   0002 0001 00000e10 0002 c00c            # root owner, NS' \
  'c00c 0021 0001 00000e10 0000                 # SRV, no data'
# A chain of 100 one-byte labels, each a pointer hop apart: the step limit ends it.
chain=''
for i in $(seq 0 99); do chain+=" 0161 c0$(printf '%02x' $((12 + 4 * (i + 1))))"; done
bytes $r/pointer-chain       "$H 0001 0000 0000 0000" "$chain" '00 0001 0001'

# ---------------------------------------------------------------- options --
o=options
text $o/url            '\nvexa\n-server\n127.0.0.2\n-url\nwww.demo.test'
text $o/pipe-filter    '\nvexa\n-url_pipe\n-server\n127.0.0.2\n-filter\n*.demo.test|node*\n-filter_path\nC:\\X\n-filter_sig\n4d 5a|0x10'
text $o/xml-mx         '\nvexa\n-xml\n-mx\ndemo.test\n-server\n127.0.0.2\n-timeout\n2\n-retry\n3\n-delay\n1'
text $o/csv-tab-txt    '\nvexa\n-csv\n-csv_separator\ntab\n-txt\ndemo.test\n-server\n127.0.0.2'
text $o/ptr-verbose    '\nvexa\n-ip\n192.0.2.10\n-server\n-verbose\n-quiet\n-base10'
text $o/formats        '\nvexa\n-dateformat\ndd/mmm/yyyy\n-timeformat\nhh:mm:ss.xxxxxxxxx\n-server\n1.2.3.4\n-ns\ndemo.test'
text $o/formats-bad    '\nvexa\n-dateformat\nyyyymmdd\n-timeformat\nhh-mm-ss\n-server\n1.2.3.4\n-cname\nshop.demo.test'
text $o/time-bounds    '\nvexa\n-cmd_start_time\n2026-01-01 10:00:00\n-cmd_stop_time\n2026/12/31\n-server\n1.2.3.4\n-url_pipe'
text $o/time-bounds-bad '\nvexa\n-cmd_start_time\n2026-12-31 25:99\n-cmd_stop_time\n2020-01-01\n-server\n1.2.3.4'
text $o/time-refused   '\nvexa\n-cmd_start_time\n20261231\n-server\n1.2.3.4'
text $o/aliases        '\nvexa\n-alias\na|b\n-aliaspath\n%VEXA_FUZZ_DIR%\\x\\|"C:\\y\\"\n-server\n1.2.3.4'
text $o/alias-odd      '\nvexa\n-alias\na|b|c\n-server\n1.2.3.4'
text $o/unoffered      '\nvexa\n-sqlite\nx.db\n-server\n1.2.3.4'
text $o/two-commands   '\nvexa\n-url\na.example\n-mx\nb.example\n-server\n1.2.3.4'
text $o/forms          '\nvexa\n-no_whitespace\n-pair_datetime\n-multiline\n-bodyfile\n-csvl2t\n-csvgen\n-server\n1.2.3.4\n-url\na'
text $o/walk           '\nvexa\n-enumdir\n%HOME%\n-num_subdirs\n3\n-outdir\nout\n-profile\n-pipe\n-ns_pipe\n-server\n1.2.3.4'
text $o/files-stripped '\nvexa\n-out\nx.txt\n-append\n-diags\nd.txt\n-l2\n-signal\nev\n-server\n1.2.3.4\n-url\na'
text $o/no-server      '\nvexa\n-url\na.example'
text $o/numbers        '\nvexa\n-server\n1.2.3.4\n-timeout\nx10\n-retry\no17\n-delay\n-5\n-threads\n99999999999\n-url\na'
text $o/identity       '\nVEXA.EXE\n-hostname\nh\n-username\nu\n-cpuinst\n2\n-cpu\n1\n-fragment_files\n4\n-separate_files\n-gzip\n-zlib\n-zlibex\n9\n-split_pathfile\n-SERVER\n1.2.3.4\n-TXT_PIPE\n-ipv6'
text $o/program-only   '\nvexa'
text $o/ptr-bad        '\nvexa\n-ip\n1.2.3.4.5.6\n-server\n1.2.3.4'

# ----------------------------------------------------------------- filter --
f=filter
text $f/contains       '\n*example*\n\nNode1.Example.net\nexample'
text $f/ends-with      '\n*.example\n\na.example\na.example.example'
text $f/begins-with    '\nnode*\n\nnode.a.example\nxnode.a.example'
text $f/bar-list       '\na.example| b.example \n\na.example\nB.EXAMPLE\nc'
text $f/comma-wins     '\na|b,c , d\n\na|b\nd'
text $f/star-token     '\na.example|*\n\nanything'
text $f/two-stars      '\n**\n\n\nx\n/dir/'
text $f/colon          '\na:b\n\na\n2001:db8::1\n*:x'
text $f/dir-pattern    '\n\\a\n\nx\\a\\b\nx\\ab\\c\nx/a/b\na.example/\n\\a'
text $f/signature      '\nsig*\n4d 5a|0x10\nno-such-file\nsig.txt'
text $f/signature-oct  '\n\n4d5a,o17\nno-such-file'
text $f/signature-odd  '\n\n-1 100 0xfff|x10|\nx'
text $f/offset-long    '\n\nff|  123456789012345678901\nx'
text $f/utf8           '\n*\xc3\xa9cole*\n\n\xc3\x89COLE.\xc3\xa9cole.fr\n\xff\xfe\n\xed\xa0\x80'
text $f/wide-surrogate '\n*\n\n\x00\xd8a\x00\x00\xdc\x5c\x00'
text $f/empty-value    '\n\n\nabc'

# --------------------------------------------------------------- datetime --
d=datetime
{ printf '|yyyy-mm-dd|hh:mm:ss.xxx|2026-11-22|10:30:15.250|YMD|-|'; ticks 133100000000000000; } > $d/default
{ printf '|dd/mmm/yyyy|hh:mm:ss|22/11/26|10:30 pm|DMY|/|'; ticks 116444736010000000; } > $d/month-name
{ printf '|mm/dd/yy|hh:mm:ss.xxxxxxxxx|11//22///2026|1:2:3.4567 am|MDY|/|'; ticks 9223372036854775807; } > $d/far-future
{ printf '|yy mm dd|hh:mm:ss.xxxxxxxxxxxxx|0-0-0|99999:99999:99999|YMD|-|'; ticks 116444736000000000; } > $d/epoch-zero
{ printf '|ddmmyyyy|:xxx|31-12-1969|-1:-1|DMY|-|'; ticks 1; } > $d/before-1970
{ printf '|dd.mm|hh:mm|2026-13-40|nan:inf:1e400|YMD|-|'; ticks 9223372036854775808; } > $d/invalid
{ printf '|yyyy/mm/dd|hh:mm:ss.xx|4294967295/4294967295/4294967295|  12:30:59.9995|YMD|/|'; ticks 18446744073709551615; } > $d/overflow
{ printf '|mmm dd yyyy|hh:mm:ss.xxxxxx|2024-02-29|23:59:59.999|YMD|-|'; ticks 133535519999990000; } > $d/leap-day
{ printf '|yyyy-mm-dd|hh:mm:ss.xxx|2000-2-29|12:|XYZ|-|'; ticks 125911584000000000; } > $d/bad-order

# ------------------------------------------------------------------ paths --
p=paths
text $p/expand         '\n%VEXA_FUZZ_DIR%\\..\\b\nC:\\work\\x'
text $p/expand-self    '\n%VEXA_FUZZ_SELF%%VEXA_FUZZ_GROW%%vss%1\n/home/u'
text $p/expand-unset   '\n%NO_SUCH%\\%VEXA_FUZZ_EMPTY%%\n\\\\server\\share'
text $p/relative       '\n..\\..\\y\\x.txt\nC:\\a\\b\\c'
text $p/dot            '\n.\\x\n/a/b'
text $p/posix          '\n../y/x.txt\n/a/b\n/\n\\'
text $p/network        '\n\\\\?\\C:\\x\nC:\\'
text $p/rooted         '\n\\x\\y\nC:\\w'
text $p/quoted         '\n "C:\\my dir\\" \t\r\n'
text $p/trailing       '\nC:\\a\\b\\\\//\nD:'
text $p/parent-name    '\na\\..\nC:\\a'
text $p/blank          '\n   \t  \nC:\\'
text $p/number-values  '\nx1f|o17|-5| 12 |99999999999\n'
