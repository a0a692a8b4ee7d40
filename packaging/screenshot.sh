#!/bin/sh
# Takes the screenshot of the AppStream metainfo: the desktop program on the
# demo data in a virtual 1280x800 screen (Xvfb, openbox, xdotool, ImageMagick).
#   packaging/screenshot.sh [DISPLAY] [BUILD]     (after `make demo`)
# Writes packaging/screenshot.png. Options and settings go to a scratch home,
# so your own stay untouched.
set -eu
display=${1:-:99} build=${2:-build}
cd "$(dirname "$0")/.."
[ -x "$build/vantrel" ] && [ -d "$build/demo" ] || { echo "run 'make demo' first"; exit 2; }

scratch=$(mktemp -d)
pids=""
cleanup() { for p in $pids; do kill "$p" 2>/dev/null || true; done; rm -rf "$scratch"; }
trap cleanup EXIT
cp -r "$build/demo" "$scratch/app"

Xvfb "$display" -screen 0 1280x800x24 -nolisten tcp & pids="$! $pids"
sleep 1
DISPLAY=$display openbox & pids="$! $pids"
sleep 1
DISPLAY=$display HOME=$scratch XDG_CONFIG_HOME=$scratch/config XDG_DATA_HOME=$scratch/data \
    "$build/vantrel" --app-dir "$scratch/app" & pids="$! $pids"

# A new profile starts with its Settings (AI name and author): accept them.
settings=$(DISPLAY=$display timeout 30 xdotool search --sync --onlyvisible --name '^Settings$' | head -1)
DISPLAY=$display xdotool windowactivate --sync "$settings" key Return
window=$(DISPLAY=$display xdotool search --onlyvisible --name '^Vantrel' | head -1)
DISPLAY=$display xdotool windowmove "$window" 0 0 windowsize "$window" 1280 800
# The board shows cards once a side and a type are chosen: Side, Arm; Type,
# All (which asks first whether to go on: Yes).
sleep 1
DISPLAY=$display xdotool windowactivate --sync "$window" key alt+s Return
sleep 1
DISPLAY=$display xdotool key alt+t Return
sleep 1
DISPLAY=$display xdotool key Return
sleep 3
DISPLAY=$display import -window root packaging/screenshot.png
echo "packaging/screenshot.png"
