#!/usr/bin/env bash
# completion_test.sh PROGRAM   loads the script that the program prints, and asks it as readline does.
set -euo pipefail
eval "$("$1" completion bash)"
compopt() { :; } # readline's own, which is not there outside of a completion
status=0

# asks WORD...   completes the last of the words; the answers, a line each
asks() {
    COMP_WORDS=(tallowmere "$@")
    COMP_CWORD=$#
    _tallowmere
    [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}"
}
# expect WANTED WORD...   WANTED: the answers, separated by |
expect() {
    local wanted=$1 found
    shift
    found=$(asks "$@" | paste -s -d '|')
    [ "$found" = "$wanted" ] && return
    printf 'tallowmere %s\n  wanted: %s\n  found:  %s\n' "$*" "$wanted" "$found" >&2
    status=1
}
# holds ANSWER WORD...   one of the answers is this
holds() {
    local wanted=$1 found
    shift
    found=$(asks "$@")
    grep -Fxq -- "$wanted" <<<"$found" && return
    printf 'tallowmere %s: no "%s"\n' "$*" "$wanted" >&2
    status=1
}

expect 'set|status|simulate' s
expect 'calibration' cal
holds get ''
holds record ''
expect '--version' --ve
expect '--boat' get --b
expect '--interval' watch BSP --int
expect 'BSP' get BSP
expect 'BSP|BspTr' get bsp
holds 'AWA' watch BSP AW
expect 'Mk\ Lat' get 'Mk\ La'
expect 'Mk Lat' get '"Mk La'
holds 'AWS' watch --boat 3 AW
expect '' watch --boat ''
expect '' get --boat 3 nosuchchannel
expect '' set BSP ''
expect 'list|show|eval|plot' calibration ''
expect 'show' calibration sh
expect 'Wind\ weight' calibration show wind
expect '' calibration eval Bsp ''
expect 'bash|zsh' completion ''
expect 'Bsp' check bs
holds '--json' status -

cd "$(mktemp -d)"
touch 'race one.nmea' race.csv
holds 'race one.nmea' feed ra
holds 'race.csv' feed ra
expect 'race.csv' plot race.c
holds 'BSP' plot race.csv BS
expect 'Rate\ of\ turn' check ra
expect 'race.csv' check race.
expect 'race.csv' record BSP -o race.c
rm 'race one.nmea' race.csv
exit $status
