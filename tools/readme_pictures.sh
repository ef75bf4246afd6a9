#!/usr/bin/env bash
# Puts together the pictures of the README, docs/images/remote-100.png, remote-200.png and wizard.png,
# from those that the end-to-end tests leave in build/screens.
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
convert build/screens/wizard-idle.png -strip -define png:compression-level=9 docs/images/wizard.png
