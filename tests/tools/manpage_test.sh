#!/bin/sh
# Every command and switch that `vantrel-cli --help` and each command's --help
# print is described in the manual page: a command in a subsection (.SS)
# headed by its name, its switches inside that subsection.
#   manpage_test.sh VANTREL_CLI MANUAL_PAGE
cli=$1 page=$2
[ -x "$cli" ] && [ -r "$page" ] || { echo "usage: $0 VANTREL_CLI MANUAL_PAGE"; exit 2; }
# The page as plain text: font changes and escaped hyphens removed.
text=$(sed -e 's/\\f[BIRP]//g' -e 's/\\-/-/g' -e 's/"//g' "$page")

passed=0 failed=0
check() { # check DESCRIPTION TEXT WORD
    if printf '%s\n' "$2" | grep -q -e "$3"; then passed=$((passed + 1))
    else echo "missing from $page: $1"; failed=$((failed + 1)); fi
}
switches() { grep -o -e '--[a-z][a-z-]*' | sort -u; }

for sw in $("$cli" --help | switches); do
    check "switch $sw" "$text" "$sw"
done
for cmd in $("$cli" --help | sed -n 's/^  \([a-z][a-z-]*\).*/\1/p' | sort -u); do
    section=$(printf '%s\n' "$text" | awk -v c="$cmd" '
        /^\.S[HS] / { inside = ($1 == ".SS" && $2 == c) }
        inside')
    check "command $cmd" "$section" "^\\.SS $cmd"
    for sw in $("$cli" "$cmd" --help | sed -n 1p | switches); do
        check "$cmd $sw" "$section" "$sw"
    done
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
