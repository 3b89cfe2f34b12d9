#!/usr/bin/env bash
# What the bash completion offers at the cursor. Usage: completion_test.sh <vexa.bash>
set -u
source "$1"
cd "$(mktemp -d)" || exit 1
trap 'rm -rf "$PWD"' EXIT
touch report.txt report.csv
mkdir reports

failed=0
# expect "<words on the line, the last one being completed>" "<offers, sorted>"
expect() {
    read -ra COMP_WORDS <<<"$1"
    [[ $1 == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _vexa
    local got
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | xargs)
    if [[ $got != "$2" ]]; then
        echo "'$1': offered '$got', expected '$2'"
        failed=1
    fi
}

expect "vexa -url_" "-url_pipe"
expect "vexa -csv" "-csv -csv_separator -csvgen -csvl2t"
expect "vexa -out rep" "report.csv report.txt reports"
expect "vexa -OUTFILE report.c" "report.csv"
expect "vexa -diags " "report.csv report.txt reports"
expect "vexa -enumdir " "reports"
expect "vexa -EnumDir rep" "reports"
expect "vexa -server " ""
expect "vexa -url_pipe -server 127.0.0.2 -ti" "-timeformat -timeout"
exit $failed
