#!/usr/bin/env bash
# Puts together the pictures of the README's windows in docs/images from those that the end-to-end
# tests leave in build/screens.
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
pages=(build/screens/options-{general,fragments,skin,schedule}-100.png)
convert '(' "${pages[@]:0:2}" +append ')' '(' "${pages[@]:2:2}" +append ')' -append \
  -strip -define png:compression-level=9 docs/images/options.png
convert build/screens/wizard-idle.png -strip -define png:compression-level=9 docs/images/wizard.png
convert build/screens/format-dialog.png -strip -define png:compression-level=9 \
  docs/images/format.png
