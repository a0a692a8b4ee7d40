#!/bin/bash
# Bash completion of vantrel-cli, run against the program itself.
#   completion_test.sh SCRIPT VANTREL_CLI
script=$1 cli=$2
source "$script" || exit 2
work=$(mktemp -d) && trap 'rm -rf "$work"' EXIT
cd "$work" && mkdir units_here && touch unit.fbi

passed=0 failed=0
# expect WORDS... = EXPECTED: completing the last word gives EXPECTED (sorted).
expect() {
    local words=()
    while [[ $1 != = ]]; do words+=("$1"); shift; done
    shift
    COMP_WORDS=("$cli" "${words[@]}") COMP_CWORD=${#words[@]}
    _vantrel_cli
    local got want
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | xargs)
    want=$(printf '%s\n' "$@" | sort | xargs)
    if [[ $got == "$want" ]]; then
        ((passed++))
    else
        echo "FAIL: vantrel-cli ${words[*]}<TAB> gave '$got', expected '$want'"
        ((failed++))
    fi
}

expect s = save show
expect -- = --help --version
expect save --o = --open
expect save --s = --set
expect hpi "" = extract list
expect hpi extract -- = --help --trusted
expect units u = units_here                 # a folder argument lists folders only
expect pcx u = unit.fbi units_here          # a file argument lists both
expect hpi extract --trusted a.hpi u = units_here
expect save UNITS OUT --open u = unit.fbi units_here
expect save UNITS OUT --name u =            # a value, not a file
expect save UNITS OUT --set u =
expect nosuchcommand x =

echo "$passed passed, $failed failed"
[[ $failed == 0 ]]
