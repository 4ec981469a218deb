#!/usr/bin/env bash
# Renders the pictures drawn in the .svg files of this folder into the PNG files the program
# and the package use (png/): the command strip's pictures at 32 pixels and at twice that for
# screens at double density, and the program's icon at the sizes of the desktop's icon theme.
# Run it after changing a drawing (needs rsvg-convert, Debian package librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")"
mkdir -p png
for name in select activate deactivate partnumbers options associate dissociate mercantel; do
    rsvg-convert -w 32 -h 32 "$name.svg" -o "png/$name.png"
    rsvg-convert -w 64 -h 64 "$name.svg" -o "png/$name@2x.png"
done
for size in 16 48 128 256; do
    rsvg-convert -w "$size" -h "$size" mercantel.svg -o "png/mercantel-$size.png"
done
