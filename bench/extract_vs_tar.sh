#!/bin/sh
# `hpi extract` of a 17,000-file archive against `tar -x` of the same files,
# medians of five runs each (warm cache), in one run of this script.
#   bench/extract_vs_tar.sh CLI [OTHER_CLI]   (OTHER_CLI: an earlier build to compare)
set -e
cli=$1
other=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
here=$(dirname "$0")
/usr/bin/python3 "$here/make_hpi.py" "$work/big.hpi" 17000
"$cli" hpi extract "$work/big.hpi" "$work/tree" >/dev/null
tar -cf "$work/files.tar" -C "$work/tree" .
rm -rf "$work/tree"

# Prints the median wall time in ms of five runs of "$@" into a fresh $work/out.
median() {
    for i in 1 2 3 4 5; do
        rm -rf "$work/out" && mkdir "$work/out" && sync
        s=$(date +%s%N)
        "$@" >/dev/null
        e=$(date +%s%N)
        echo $(((e - s) / 1000000))
    done | sort -n | sed -n 3p
}
t_tar=$(median tar -xf "$work/files.tar" -C "$work/out")
t_ours=$(median "$cli" hpi extract "$work/big.hpi" "$work/out")
echo "tar -x:       $t_tar ms"
echo "hpi extract:  $t_ours ms  ($(echo "scale=2; $t_ours / $t_tar" | bc) x tar)"
if [ -n "$other" ]; then
    t_other=$(median "$other" hpi extract "$work/big.hpi" "$work/out")
    echo "other build:  $t_other ms  ($(echo "scale=2; $t_other / $t_tar" | bc) x tar)"
fi
