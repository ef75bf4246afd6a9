#!/usr/bin/env bash
# A private stage for the program: an X display, a window manager, a sound sink and a Wine prefix.
#   tools/stage.sh run COMMAND...     runs COMMAND on a stage of its own
#   tools/stage.sh hold               prints the stage's variables, ends it when its input closes
#   tools/stage.sh prefix DIR [DPI]   makes DIR a fresh Wine prefix (96 dots per inch by default)
# Sourced, it gives the functions stage_start, stage_stop and wine_prefix.
set -euo pipefail

stage_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
stage_screen=${NQP_STAGE_SCREEN:-1280x1024x24}
stage_dir=
stage_run=
stage_pids=()

stage_environment() {
  export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
  # Wine shows a program's debug output as warnings of this channel.
  export WINEDEBUG=${NQP_WINEDEBUG:--all,err+all,warn+seh}
  export LC_ALL=C.UTF-8
}

# wait_until SECONDS COMMAND...: polls until COMMAND succeeds.
wait_until() {
  local deadline=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.05
  done
}

wine_reaped() {
  ! WINEPREFIX=$1 timeout 2 wineserver -k0 2>/dev/null
}

# Ends what runs in one prefix, and nothing else.
wine_end() {
  [ -d "$1" ] || return 0
  WINEPREFIX=$1 timeout 10 wineserver -k 2>/dev/null || true
  wait_until 10 wine_reaped "$1" || true
}

template_key() {
  {
    wine --version 2>/dev/null
    sha256sum <"$stage_root/tools/wine-prefix.reg"
  } | sha256sum | cut -c1-12
}

make_template() {
  local template=$1 log=$1.log
  # Templates of older settings; what runs from them has links of its own to their files.
  rm -rf "$stage_root"/build/stage/template-*
  echo "Making the Wine prefix (once)" >&2
  if ! { WINEPREFIX=$template.new timeout 180 wineboot -i &&
    WINEPREFIX=$template.new timeout 60 wine regedit /S "$stage_root/tools/wine-prefix.reg" &&
    WINEPREFIX=$template.new timeout 60 wineserver -w; } </dev/null >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    echo "The Wine prefix could not be made; its log is $log" >&2
    return 1
  fi
  grep -q '"LogPixels"=dword:00000060' "$template.new/user.reg" || {
    echo "The Wine prefix lacks its settings; its log is $log" >&2
    return 1
  }
  mv "$template.new" "$template"
}

# Prints the path of the prefix that all others are copied from.
wine_template() {
  local template
  mkdir -p "$stage_root/build/stage"
  template=$stage_root/build/stage/template-$(template_key)
  exec 8>"$stage_root/build/stage/template.lock"
  flock 8
  [ -d "$template" ] || make_template "$template" 8>&-
  exec 8>&-
  printf '%s\n' "$template"
}

# wine_prefix DIR [DPI]: the system folders are shared with the template, all else is a copy.
wine_prefix() {
  local prefix=$1 dpi=${2:-96} template folder windows
  stage_environment
  template=$(wine_template)
  rm -rf "$prefix"
  mkdir -p "$prefix/drive_c/windows"
  for folder in "$template"/*; do
    [ "${folder##*/}" = drive_c ] || cp -a "$folder" "$prefix/"
  done
  cp -a "$template/.update-timestamp" "$prefix/"
  for folder in "$template"/drive_c/*; do
    [ "${folder##*/}" = windows ] || cp -a "$folder" "$prefix/drive_c/"
  done
  windows=$prefix/drive_c/windows
  for folder in "$template"/drive_c/windows/*; do
    case ${folder##*/} in
      system32 | syswow64) cp -al "$folder" "$windows/" ;;
      *) cp -a "$folder" "$windows/" ;;
    esac
  done
  sed -i "s/\"LogPixels\"=dword:.*/\"LogPixels\"=dword:$(printf '%08x' "$dpi")/" "$prefix/user.reg"
}

start_display() {
  local number
  Xvfb -displayfd 7 -screen 0 "$stage_screen" -nolisten tcp -noreset -dpi 96 \
    7>"$stage_run/display" >"$stage_dir/xvfb.log" 2>&1 </dev/null &
  stage_pids+=($!)
  wait_until 20 test -s "$stage_run/display" || {
    echo "The virtual display did not start; see $stage_dir/xvfb.log" >&2
    return 1
  }
  number=$(<"$stage_run/display")
  export DISPLAY=:$number
  openbox --sm-disable --config-file "$stage_root/tools/openbox.xml" \
    >"$stage_dir/openbox.log" 2>&1 </dev/null &
  stage_pids+=($!)
  wait_until 20 window_manager_ready || {
    echo "The window manager did not start; see $stage_dir/openbox.log" >&2
    return 1
  }
  xsetroot -solid '#2f4f6f'
}

window_manager_ready() {
  xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'
}

# The sink is named "rec"; parec -d rec.monitor hears what is played.
start_sound() {
  export PULSE_SERVER=unix:$stage_run/pulse/native
  pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disallow-exit \
    --log-target=stderr --log-level=notice \
    --load="module-native-protocol-unix auth-anonymous=1" \
    --load="module-null-sink sink_name=rec rate=48000 channels=2" \
    >"$stage_dir/pulse.log" 2>&1 </dev/null &
  stage_pids+=($!)
  wait_until 20 pactl info || {
    echo "The sound sink did not start; see $stage_dir/pulse.log" >&2
    return 1
  }
}

# Starts the stage; it ends with the shell.
stage_start() {
  mkdir -p "$stage_root/build/stage"
  stage_dir=$(mktemp -d "$stage_root/build/stage/run.XXXXXX")
  stage_run=$(mktemp -d /tmp/nqp-stage.XXXXXX)
  trap stage_stop EXIT
  trap 'exit 130' INT TERM HUP
  export NQP_STAGE=$stage_dir
  export XDG_RUNTIME_DIR=$stage_run XDG_CONFIG_HOME=$stage_run/config
  mkdir -p "$XDG_CONFIG_HOME"
  unset WAYLAND_DISPLAY
  stage_environment
  start_display
  start_sound
  export WINEPREFIX=$stage_dir/prefix
  wine_prefix "$WINEPREFIX"
}

stage_stop() {
  local prefix pid
  trap - EXIT INT TERM HUP
  set +e
  for prefix in "$stage_dir"/prefix*; do
    wine_end "$prefix"
  done
  for pid in "${stage_pids[@]}"; do
    kill "$pid" 2>/dev/null
    timeout 10 tail --pid="$pid" -f /dev/null || kill -9 "$pid" 2>/dev/null
  done
  [ -z "$stage_dir" ] || rm -rf "$stage_dir"
  [ -z "$stage_run" ] || rm -rf "$stage_run"
}

stage_hold() {
  stage_start
  printf '%s\n' "DISPLAY=$DISPLAY" "XDG_RUNTIME_DIR=$XDG_RUNTIME_DIR" \
    "XDG_CONFIG_HOME=$XDG_CONFIG_HOME" "PULSE_SERVER=$PULSE_SERVER" "WINEPREFIX=$WINEPREFIX" \
    "WINEDEBUG=$WINEDEBUG" "WINEDLLOVERRIDES=$WINEDLLOVERRIDES" "LC_ALL=$LC_ALL" \
    "NQP_STAGE=$NQP_STAGE" ready
  while read -r _; do :; done
}

stage_main() {
  local verb=${1:-}
  [ $# -eq 0 ] || shift
  case $verb in
    run)
      stage_start
      "$@"
      ;;
    hold) stage_hold ;;
    prefix) wine_prefix "$@" ;;
    *)
      sed -n '2,6s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
      return 2
      ;;
  esac
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
  stage_main "$@"
fi
