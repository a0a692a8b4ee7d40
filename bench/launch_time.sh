#!/bin/sh
# Launch to first window on 20,000 units under the running X display: the
# desktop program against the CLI's load of the same folder plus Qt's own
# start to a bare window; medians of five runs each, in one run of this script.
#   DISPLAY=:N bench/launch_time.sh BUILD_DIR [OTHER_BUILD_DIR]
set -e
build=$1
other=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
here=$(dirname "$0")
/usr/bin/python3 - "$work/app/Units" <<'PY'
import os, sys
d = sys.argv[1]
os.makedirs(d)
for i in range(20000):
    with open(os.path.join(d, "U%05d.FBI" % i), "w") as f:
        f.write("[UNITINFO]\n{\nUnitName=U%05d;\nName=Unit %d;\nSide=%s;\nTEDClass=%s;\n"
                "BuildCostMetal=%d;\nDescription=A unit of our own;\n}\n"
                % (i, i, ("ARM", "CORE")[i % 2], ("TANK", "SHIP", "VTOL")[i % 3], 100 + i % 900))
PY
g++ -O2 -fPIC -o "$work/qt_first_window" "$here/qt_first_window.cpp" $(pkg-config --cflags --libs Qt6Widgets)

# Median ms from launch until a visible window whose title ends in "Vantrel".
first_window() {
    for i in 1 2 3 4 5; do
        s=$(date +%s%N)
        XDG_CONFIG_HOME="$work/config" "$@" &
        pid=$!
        # Polled every 10 ms (xdotool's own --sync waits half a second between looks).
        until xdotool search --onlyvisible --name 'Vantrel$' >/dev/null 2>&1; do sleep 0.01; done
        e=$(date +%s%N)
        kill "$pid"
        wait "$pid" 2>/dev/null || true
        echo $(((e - s) / 1000000))
    done | sort -n | sed -n 3p
}
cli_load() {
    for i in 1 2 3 4 5; do
        s=$(date +%s%N)
        "$1" units "$work/app/Units" >/dev/null
        e=$(date +%s%N)
        echo $(((e - s) / 1000000))
    done | sort -n | sed -n 3p
}
qt=$(first_window "$work/qt_first_window")
report() {
    load=$(cli_load "$1/vantrel-cli")
    launch=$(first_window "$1/vantrel" --app-dir "$work/app")
    echo "$2: launch to first window $launch ms; CLI load $load ms + Qt start $qt ms = $((load + qt)) ms; ratio $(echo "scale=2; $launch / ($load + $qt)" | bc)"
}
report "$build" "this build "
[ -n "$other" ] && report "$other" "other build"
exit 0
