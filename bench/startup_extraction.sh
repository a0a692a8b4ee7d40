#!/bin/sh
# Start-up extraction from three archives (`vantrel-cli extract`, the same
# passes as the desktop program): how often each archive is opened, and the
# median wall time of five runs into a fresh program folder.
#   bench/startup_extraction.sh CLI [OTHER_CLI]   (OTHER_CLI: an earlier build to compare)
set -e
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
here=$(dirname "$0")
mkdir "$work/game"
for n in 1 2 3; do
    /usr/bin/python3 "$here/make_hpi.py" "$work/game/TOTALA$n.HPI" 4000 "$n"
done

measure() {
    opens=$(strace -f -e trace=open,openat "$1" extract "$work/game" "$work/app" 2>&1 >/dev/null |
        grep -c 'TOTALA1.HPI"')
    times=$(for i in 1 2 3 4 5; do
        rm -rf "$work/app"
        s=$(date +%s%N)
        "$1" extract "$work/game" "$work/app" >/dev/null
        e=$(date +%s%N)
        echo $(((e - s) / 1000000))
    done | sort -n | sed -n 3p)
    echo "$2: TOTALA1.HPI opened $opens times per start; median $times ms"
}
measure "$1" "this build "
[ -n "$2" ] && measure "$2" "other build"
exit 0
