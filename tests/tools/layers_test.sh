#!/bin/sh
# The folders depend one way: a file includes headers of its own folder and
# of the folders before it in this order, never of a folder after it.
cd "$(dirname "$0")/../.." || exit 2
find base formats catalogue profile startup forms mainwindow app cli -maxdepth 1 \
    \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 awk '
BEGIN {
    n = split("base formats catalogue profile startup forms mainwindow app", order, " ")
    for (i = 1; i <= n; i++) rank[order[i]] = i
    rank["cli"] = rank["app"]
}
/^#include "[a-z]+\// {
    split(FILENAME, own, "/")
    used = substr($2, 2)
    sub(/\/.*/, "", used)
    if ((used in rank) && rank[used] > rank[own[1]]) {
        print FILENAME " includes a header of " used "/, a later layer"
        bad = 1
    }
}
END { exit bad }'
