#!/bin/sh
# The folders depend one way: a file includes headers of its own folder and
# of the folders before it in this list, never of a folder after it.
#   base  formats  catalogue  profile  startup  forms  mainwindow  app|cli
cd "$(dirname "$0")/../.." || exit 2
rank() {
    case $1 in
    base) echo 0 ;; formats) echo 1 ;; catalogue) echo 2 ;; profile) echo 3 ;;
    startup) echo 4 ;; forms) echo 5 ;; mainwindow) echo 6 ;; app | cli) echo 7 ;; *) echo "" ;;
    esac
}
bad=0
for dir in base formats catalogue profile startup forms mainwindow app cli; do
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
