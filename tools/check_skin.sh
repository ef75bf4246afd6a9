#!/usr/bin/env bash
# Says in plain words what is missing or wrong in a skin:  tools/check_skin.sh FOLDER
set -euo pipefail
[ $# -eq 1 ] || { echo "usage: tools/check_skin.sh FOLDER" >&2; exit 2; }
folder=$(realpath -m "$1")
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export PATH=/usr/bin:/bin:$PATH
tools/setup.sh build
mkdir -p build
if ! tools/build.sh native nqp_skin >build/skin-check-build.log 2>&1; then
  tail -n 20 build/skin-check-build.log >&2
  echo "The checker does not build; the whole log is build/skin-check-build.log" >&2
  exit 2
fi
build/native/src/nqp_skin "$folder"
