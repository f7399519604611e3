#!/usr/bin/env bash
# zsh_completion_test.sh PROGRAM   loads the script that the program prints into zsh, and asks it as zsh's completion does.
# Ends with 77 where there is no zsh.
set -euo pipefail
command -v zsh >/dev/null || {
    echo "skipped: there is no zsh"
    exit 77
}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" completion zsh >"$folder/script"
cat >"$folder/test" <<'EOF'
setopt no_unset pipe_fail
integer failed=0 defined=0
compdef() { [[ "$*" == '_tallowmere tallowmere' ]] && defined=1 }
source $1
((defined)) || { print -u2 'compdef was not called'; failed=1 }

# Within a completion zsh has these; here they collect what is offered to what is typed.
typeset -a offered words
integer CURRENT
compadd() {
    local -a candidates
    local anycase=0
    while [[ $1 != -- && $1 != -a ]]; do
        if [[ $1 == 'm:{a-zA-Z}={A-Za-z}' ]]; then anycase=1; fi
        shift
    done
    if [[ $1 == -a ]]; then candidates=("${(@P)2}"); else shift; candidates=("$@"); fi
    local typed=${(Q)words[CURRENT]} each
    for each in "$candidates[@]"; do
        if [[ $each == ${typed}* ]] || { ((anycase)) && [[ ${(L)each} == ${(L)typed}* ]] }; then offered+=("$each"); fi
    done
}
_files() { offered+=('(files)') }

# expect WANTED WORD...   the answers to the last of the words, separated by |
expect() {
    local wanted=$1
    shift
    words=(tallowmere "$@")
    CURRENT=$#words
    offered=()
    _tallowmere
    [[ ${(j:|:)offered} == $wanted ]] && return
    print -u2 -r -- "tallowmere $*: wanted $wanted, found ${(j:|:)offered}"
    failed=1
}

expect 'set|status|simulate' s
expect 'calibration' cal
expect '--version' --ve
expect '--boat' get --b
expect 'BSP|BspTr' get bsp
expect 'Mk Lat' get 'Mk\ La'
expect 'AWS' watch --boat 3 AWS
expect '' watch --boat ''
expect '' set BSP ''
expect 'list|show|eval|plot' calibration ''
expect 'Wind weight' calibration show wind
expect '' calibration eval Bsp ''
expect 'bash|zsh' completion ''
expect 'Bsp|(files)' check Bsp
expect '(files)' feed ra
expect '(files)' record BSP -o ra
expect 'BspTr' plot race.csv BspT
exit $failed
EOF
zsh -f "$folder/test" "$folder/script"
