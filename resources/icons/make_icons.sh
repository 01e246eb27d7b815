#!/bin/sh
# Draws the PNG sizes of the program's icon anew from the two drawings. Needs rsvg-convert.
set -eu
cd "$(dirname "$0")"
name=velmorant-dvr-tools
for size in 16 22 24 32 48 64 128 256 512; do
    drawing=hicolor/scalable/apps/$name.svg
    [ "$size" -le 24 ] && drawing=$name-small.svg
    mkdir -p "hicolor/${size}x${size}/apps"
    rsvg-convert -w "$size" -h "$size" "$drawing" -o "hicolor/${size}x${size}/apps/$name.png"
done
