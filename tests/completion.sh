#!/usr/bin/env bash
# Lets bash complete command lines of zint-obd. Usage: completion.sh FILE, the file that describes them.
# shellcheck source=/dev/null
source "$1"
status=0

# expect WANTED WORD... : the words, of which the last one is completed
expect() {
    local wanted=$1
    shift
    COMP_WORDS=(zint-obd "$@") COMP_CWORD=$#
    _zint_obd
    [ "${COMPREPLY[*]}" = "$wanted" ] || { echo "$*: ${COMPREPLY[*]} instead of $wanted" && status=1; }
}

folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
cd "$folder" && touch my.obc my.log
complete -p zint-obd >/dev/null || status=1
expect "codes" co
expect "my.obc" my
expect "my.obc" poll m
expect "setup" dtc s
expect "--comma --csv" dtc export FILE --c
expect "search" parameters s
expect "nonzero" scan --show n
expect "" poll --log ""
expect "com3" --port com3
exit $status
