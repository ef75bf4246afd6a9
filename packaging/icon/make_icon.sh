#!/usr/bin/env bash
# Renders each drawing into an icon, with one picture for each size that Windows shows:
#   make_icon.sh [NAME...]            nqp and framewright by default
# The results are kept in the repository, so that a build needs no renderer.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
[ $# -gt 0 ] || set -- nqp framewright
for name in "$@"; do
    pictures=()
    for size in 16 20 24 32 40 48 64 256; do
        rsvg-convert --width "$size" --height "$size" "$name.svg" --output "$work/$size.png"
        pictures+=("$work/$size.png")
    done
    convert "${pictures[@]}" "$name.ico"
done
