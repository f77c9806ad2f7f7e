#!/usr/bin/env bash
# Installs what is missing, builds, and shows a wall that plays video.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: ./run-wall.sh [option...] [source...]

Without sources a 2 by 2 wall plays three clips, made on the spot, and a live camera on this machine; the first window has
sound. Sources are files and addresses (rtsp, http, https), one a window.

  --grid N            windows a side, 1 to 4
  --seconds N         end after that time
  --screenshot PATH   write a picture of the wall there at the end
  --control           be driven by JSON lines on standard input
  --help              this text

Every other option goes to lumen-wall (build/default/bin/lumen-wall --help). With a display a window opens. Without one the
wall runs under a virtual display for some seconds and the path of a screenshot is printed.
TEXT
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$root/scripts/bootstrap.sh"
. "$root/scripts/clips.sh"
. "$root/scripts/display.sh"

options=() sources=() control= screenshot= seconds=
while [ $# -gt 0 ]; do
    case $1 in
        -h | --help) usage; exit 0 ;;
        --control) control=1; options+=("$1") ;;
        --screenshot=*) screenshot=${1#*=} ;;
        --seconds=*) seconds=${1#*=} ;;
        --screenshot | --seconds | -g | --grid | --sound | --size | --ratio | --protocol | --log)
            [ $# -ge 2 ] || { echo "$1 wants a value; see $0 --help" >&2; exit 2; }
            case $1 in
                --screenshot) screenshot=$2 ;;
                --seconds) seconds=$2 ;;
                *) options+=("$1" "$2") ;;
            esac
            shift ;;
        -*) options+=("$1") ;;
        *) sources+=("$1") ;;
    esac
    shift
done

exec 3>&1 1>&2 # only the program and the screenshot's path write to standard output
(
    cd "$root"
    install_packages
    build default lumen-wall lumen-camera
)
place=$root/build/wall
programs=$root/build/default/bin
mkdir -p "$place/home" "$place/run"
chmod 700 "$place/run"

helpers=()
stop_helpers() {
    [ ${#helpers[@]} -gt 0 ] || return 0
    kill "${helpers[@]}" 2>/dev/null || true
    wait "${helpers[@]}" 2>/dev/null || true
}
trap stop_helpers EXIT

if [ ${#sources[@]} -eq 0 ]; then
    make_clips "$place/clips"
    exec {camera}< <(exec "$programs/lumen-camera" "$place/clips/bridge.h264" "$CLIP_RATE")
    helpers+=($!)
    read -r -t 20 -u "$camera" live
    sources=("$place/clips/gate.mp4" "$place/clips/harbour.mp4" "$place/clips/yard.mp4" "$live")
    options+=(--loop --sound 1)
fi

if ! has_display; then
    start_virtual_display
    helpers+=("$VIRTUAL_DISPLAY")
    if [ -z "$control" ]; then
        screenshot=${screenshot:-$place/wall.png}
        seconds=${seconds:-8}
    fi
fi
[ -z "$seconds" ] || options+=(--seconds "$seconds")
[ -z "$screenshot" ] || options+=(--screenshot "$screenshot")

# PWD names the folder that the library keeps its files in.
status=0
env PWD="$place/home" QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-$place/run}" "$programs/lumen-wall" "${options[@]}" "${sources[@]}" >&3 || status=$?
[ "$status" -ne 0 ] || [ -z "$screenshot" ] || [ -n "$control" ] || echo "$screenshot" >&3
exit "$status"
