#!/bin/sh
# Renders the PNG sizes of the icon from packaging/vantrel.svg (needs
# rsvg-convert from librsvg2-bin). The PNGs are committed, so a build does not
# need the tool; run this after changing the SVG.
set -e
cd "$(dirname "$0")"
for size in 16 24 32 48 64 128 256; do
    rsvg-convert -w "$size" -h "$size" vantrel.svg -o "icons/vantrel-$size.png"
done
