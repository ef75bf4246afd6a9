#!/usr/bin/env bash
# Puts together the pictures of the remote control for the README, docs/images/remote-100.png and
# remote-200.png, from those that tests/e2e/test_skins.py leaves in build/screens.
set -euo pipefail
cd "$(dirname "$0")/.."

for percent in 100 200; do
  columns=()
  for skin in Daylight Graphite Carnival; do
    remote=build/screens/remote-$skin
    columns+=('(' "$remote-compact-$percent.png" "$remote-expanded-$percent.png"
      -border "$((percent * 12 / 100))" -append ')')
  done
  convert -bordercolor '#8f959e' "${columns[@]}" +append -border "$((percent * 12 / 100))" \
    -strip -define png:compression-level=9 "docs/images/remote-$percent.png"
done
