#!/usr/bin/env bash
# Installs the Debian packages that are missing:  tools/setup.sh GROUP...
# Groups: build (both compilers), run (Wine, a virtual display and sound), test, fuzz.
set -euo pipefail

build_packages=(
  ca-certificates cmake ninja-build make g++ g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix
  mingw-w64-tools libwine googletest librsvg2-bin imagemagick python3
  # The libraries that the companion cuts with: built for Windows, ready-made for the tests here.
  nasm dpkg-dev xz-utils patch libz-mingw-w64-dev pkg-config
  libavcodec-dev libavfilter-dev libavformat-dev libavutil-dev libswresample-dev libswscale-dev
)
run_packages=(
  wine wine64 xvfb openbox xdotool x11-utils x11-xserver-utils imagemagick ffmpeg
  pulseaudio pulseaudio-utils sox
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad
  gstreamer1.0-plugins-ugly gstreamer1.0-libav
  fontconfig fonts-dejavu-core fonts-open-sans fonts-wqy-microhei
)
test_packages=(
  clang-format shellcheck git python3 python3-pytest python3-pytest-xdist python3-numpy python3-pil
  tint2
)
fuzz_packages=(clang libclang-rt-14-dev llvm ffmpeg)

group_packages() {
  case $1 in
    build) printf '%s\n' "${build_packages[@]}" ;;
    run) printf '%s\n' "${run_packages[@]}" ;;
    test) printf '%s\n' "${test_packages[@]}" ;;
    fuzz) printf '%s\n' "${fuzz_packages[@]}" ;;
    *)
      echo "tools/setup.sh: unknown group '$1'" >&2
      return 2
      ;;
  esac
}

missing_packages() {
  local installed
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
    sed -n 's/^installed //p' || true)
  printf '%s\n' "$@" | grep -Fxv -f <(printf '%s\n' "$installed") || true
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "Packages are missing and neither root nor sudo is at hand. As root, run:" >&2
    echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
    return 1
  fi
}

install_packages() {
  local log
  log=$(mktemp)
  echo "Installing ${#missing[@]} packages: ${missing[*]}"
  if ! as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq >"$log" 2>&1 ||
    ! as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
      --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed." >&2
    return 1
  fi
  rm -f "$log"
}

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
  echo "This system has no apt-get; the packages that are needed are listed in tools/setup.sh." >&2
  exit 0
fi
wanted=()
for group in "$@"; do
  mapfile -t -O "${#wanted[@]}" wanted < <(group_packages "$group")
done
[ "${#wanted[@]}" -gt 0 ] || { echo "usage: tools/setup.sh build|run|test|fuzz ..." >&2; exit 2; }
mapfile -t missing < <(missing_packages "${wanted[@]}")
[ "${#missing[@]}" -eq 0 ] || install_packages
