#!/usr/bin/env bash
# Configures a preset when needed and builds it:  tools/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=$1
shift
folder=build/$preset
mkdir -p build
if [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ]; then
  cmake --preset "$preset"
fi
targets=()
[ $# -eq 0 ] || targets=(--target "$@")
cmake --build --preset "$preset" "${targets[@]}"
