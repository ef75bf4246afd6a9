#!/usr/bin/env bash
# Renders nqp.svg into nqp.ico, with one picture for each size that Windows shows.
# The result is kept in the repository, so that a build needs no renderer.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pictures=()
for size in 16 20 24 32 40 48 64 256; do
    rsvg-convert --width "$size" --height "$size" nqp.svg --output "$work/$size.png"
    pictures+=("$work/$size.png")
done
convert "${pictures[@]}" nqp.ico
