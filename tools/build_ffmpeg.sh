#!/usr/bin/env bash
# Builds the libraries that Framewright cuts with, FFmpeg and LAME, as static libraries for 64-bit
# Windows, out of Debian's source packages, and prints the folder that they are in (with --where it
# only prints that):
#   tools/build_ffmpeg.sh [--where]
# It is done once for each state of this script: the result lies in the user's cache folder, or in
# NQP_CACHE. The licences and the sources' own archives lie beside the libraries.
set -euo pipefail

# Everything here is LGPL 2.1 or later; nothing below may need --enable-gpl or --enable-nonfree.
demuxers=(
  aac ac3 aiff amr ape asf au avi caf dts dv eac3 flac flic flv gif h263 h264 hevc ivf m4v
  matroska mjpeg mov mp3 mpegps mpegts mpegvideo mxf nsv nut ogg rm swf tta vc1 voc w64 wav wtv wv
  yuv4mpegpipe
)
video_decoders=(
  asv1 asv2 cfhd cinepak cljr dnxhd dvvideo ffv1 ffvhuff flashsv flashsv2 flic flv fraps gif h261
  h263 h263i h263p h264 hevc hq_hqa hqx huffyuv indeo2 indeo3 indeo4 indeo5 lagarith magicyuv
  mjpeg mjpegb mpeg1video mpeg2video mpeg4 msmpeg4v1 msmpeg4v2 msmpeg4v3 msrle msvideo1 png prores
  qtrle rawvideo rpza rv10 rv20 rv30 rv40 svq1 svq3 theora tscc utvideo vc1 vp3 vp4 vp5 vp6 vp6a
  vp6f vp7 vp8 vp9 wmv1 wmv2 wmv3 zmbv
)
sound_decoders=(
  aac aac_latm ac3 adpcm_ima_qt adpcm_ima_wav adpcm_ms adpcm_swf adpcm_yamaha alac als amrnb amrwb
  ape cook dca eac3 flac gsm gsm_ms mlp mp1float mp2float mp3float nellymoser opus pcm_alaw
  pcm_bluray pcm_dvd pcm_f32be pcm_f32le pcm_f64be pcm_f64le pcm_mulaw pcm_s16be pcm_s16le
  pcm_s24be pcm_s24le pcm_s32be pcm_s32le pcm_s8 pcm_u8 qdm2 qdmc ra_144 ra_288 ralf sipr speex
  truehd tta vorbis wavpack wmalossless wmapro wmav1 wmav2 wmavoice
)
encoders=(msmpeg4v3 mpeg4 mjpeg ffv1 pcm_s16le pcm_s24le libmp3lame)
muxers=(avi mp3 wav)
filters=(buffer buffersink format hflip overlay scale transpose vflip yadif)
bitstream_filters=(dump_extradata)

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cache=${NQP_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/nuvex-quillon-player}
state=$(sha256sum "$here/build_ffmpeg.sh" | cut -c 1-16)
prefix=$cache/ffmpeg-$state

# Without touching the system's own lists: they may be without sources.
fetch_sources() {
  local lists=$work/apt options
  mkdir -p "$lists/lists/partial" "$lists/cache/archives/partial"
  python3 "$here/source_list.py" >"$lists/sources.list"
  options=(
    -o "Dir::Etc::sourcelist=$lists/sources.list" -o Dir::Etc::sourceparts=-
    -o "Dir::State::lists=$lists/lists" -o "Dir::Cache=$lists/cache" -o APT::Sandbox::User=root
  )
  apt-get "${options[@]}" -qq update
  (cd "$work" && apt-get "${options[@]}" -qq source --download-only ffmpeg lame)
  dpkg-source --no-check -x "$work"/ffmpeg_*.dsc "$work/ffmpeg"
  dpkg-source --no-check -x "$work"/lame_*.dsc "$work/lame"
}

build_lame() {
  cd "$work/lame"
  ./configure --host=x86_64-w64-mingw32 --prefix="$made" --enable-static --disable-shared \
    --disable-frontend --disable-decoder --disable-gtktest CFLAGS=-O2
  make -j "$(nproc)"
  make install
}

each() {
  local option=$1
  shift
  printf -- "--enable-$option=%s\n" "$@"
}

build_ffmpeg() {
  local chosen
  mapfile -t chosen < <(
    each demuxer "${demuxers[@]}"
    each decoder "${video_decoders[@]}" "${sound_decoders[@]}"
    each encoder "${encoders[@]}"
    each muxer "${muxers[@]}"
    each filter "${filters[@]}"
    each bsf "${bitstream_filters[@]}"
  )
  mkdir -p "$work/ffmpeg-build"
  cd "$work/ffmpeg-build"
  "$work/ffmpeg/configure" --prefix="$made" --arch=x86_64 --target-os=mingw32 \
    --enable-cross-compile --cross-prefix=x86_64-w64-mingw32- --pkg-config=false \
    --disable-shared --enable-static --disable-autodetect --enable-w32threads \
    --disable-programs --disable-doc --disable-debug --disable-network --disable-avdevice \
    --disable-postproc --disable-everything --enable-parsers --enable-libmp3lame --enable-zlib \
    "${chosen[@]}" --extra-cflags="-I$made/include" --extra-ldflags="-L$made/lib"
  make -j "$(nproc)"
  make install
}

# What the licence asks for: its text, and what somebody needs to build the same from changed
# sources.
keep_licences() {
  mkdir -p "$made/licences" "$made/sources"
  cp "$work/ffmpeg/COPYING.LGPLv2.1" "$made/licences/FFmpeg-LGPL-2.1.txt"
  cp "$work/lame/COPYING" "$made/licences/LAME-LGPL-2.txt"
  cp "$work"/ffmpeg_* "$work"/lame_* "$made/sources/"
  cp "$here/build_ffmpeg.sh" "$here/source_list.py" "$made/sources/"
}

build() {
  fetch_sources
  (build_lame)
  (build_ffmpeg)
  keep_licences
}

case ${1:-} in
  '') ;;
  --where)
    echo "$prefix"
    exit
    ;;
  *)
    echo "usage: tools/build_ffmpeg.sh [--where]" >&2
    exit 2
    ;;
esac
mkdir -p "$cache"
# Two builds at once would do the same work twice.
exec 9>"$cache/ffmpeg.lock"
flock 9
if [ ! -f "$prefix/lib/libavcodec.a" ]; then
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  made=$work/made
  log=$cache/ffmpeg-build.log
  echo "Building FFmpeg and LAME once; this takes some minutes. The log is $log" >&2
  build >"$log" 2>&1 || { tail -n 20 "$log" >&2; exit 1; }
  rm -rf "$prefix"
  mv "$made" "$prefix"
fi
echo "$prefix"
