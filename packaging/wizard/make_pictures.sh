#!/usr/bin/env bash
# Renders the drawings into the pictures of the wizard, at three times their size.
# The results are kept in the repository, so that a build needs no renderer.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for name in video audio image; do
    rsvg-convert --width 120 --height 120 "$name.svg" --output "$work/$name.png"
    convert "$work/$name.png" "BMP:$name.bmp"
done
