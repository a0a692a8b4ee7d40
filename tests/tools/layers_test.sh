#!/bin/sh
# The folders depend one way: a file includes headers of its own folder and
# of the folders before it in this list, never of a folder after it.
#   base  catalogue  profile  startup  forms  mainwindow  app|cli
cd "$(dirname "$0")/../.." || exit 2
rank() {
    case $1 in
    base) echo 0 ;; catalogue) echo 1 ;; profile) echo 2 ;; startup) echo 3 ;;
    forms) echo 4 ;; mainwindow) echo 5 ;; app | cli) echo 6 ;; *) echo "" ;;
    esac
}
bad=0
for dir in base catalogue profile startup forms mainwindow app cli; do
    own=$(rank "$dir")
    for file in "$dir"/*.h "$dir"/*.cpp; do
        [ -f "$file" ] || continue
        for used in $(sed -n 's|^#include "\([a-z]*\)/.*|\1|p' "$file" | sort -u); do
            r=$(rank "$used")
            if [ -n "$r" ] && [ "$r" -gt "$own" ]; then
                echo "$file includes a header of $used/, a later layer"
                bad=1
            fi
        done
    done
done
[ "$bad" = 0 ] && echo "1 passed, 0 failed" || echo "0 passed, 1 failed"
exit "$bad"
