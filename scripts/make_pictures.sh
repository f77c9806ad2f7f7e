#!/usr/bin/env bash
# Makes the pictures of the docs: lumen-wall plays clips under a virtual display and writes the screenshots itself.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/scripts/clips.sh"
. "$root/scripts/display.sh"
pictures=$root/docs/pictures
place=$root/build/wall
mkdir -p "$pictures" "$place/home" "$place/run"
chmod 700 "$place/run"

unset DISPLAY
"$root/run-wall.sh" --seconds 8 --screenshot "$pictures/wall.png"

call() {
    printf '{"call": "%s", "args": %s}\n' "$1" "$2"
}

# The lines that make the picture of the guide: two windows with shapes and texts.
drawing() {
    call LD_ArrangeWindow '{"custom": [
        {"width": 0.5, "height": 1, "name": "yard", "ratio": 3}, {"left": 0.5, "width": 0.5, "height": 1, "name": "gate", "ratio": 3}]}' | tr -d '\n'
    echo
    call LD_Play "{\"wndIndex\": 0, \"url\": \"$place/clips/yard.mp4\", \"auth\": \"\"}"
    call LD_Play "{\"wndIndex\": 1, \"url\": \"$place/clips/harbour.mp4\", \"auth\": \"\"}"
    call LD_SetPolygonInfo '{"polygonInfo": [{"id": 1, "wndIndex": 0, "points": [[0.1, 0.3], [0.45, 0.2], [0.5, 0.65], [0.15, 0.7]], "drawColor": "#00ff80", "tips": "entrance"}]}'
    call LD_SetRectInfo '{"rectInfo": [{"id": 2, "wndIndex": 0, "points": [[0.6, 0.4], [0.6, 0.8], [0.9, 0.8], [0.9, 0.4]], "drawColor": "#ff8000", "tips": "parking"}]}'
    call LD_SetLineInfo '{"lineInfo": [{"id": 3, "wndIndex": 1, "points": [[0.15, 0.7], [0.8, 0.4]], "lineType": 3, "direction": 2, "drawColor": "#ffff00"}]}'
    call LD_SetTextOverlay '{"overlayInfo": {"channelName": {"name": "Yard 2", "enable": true, "point": [0.04, 0.06]}, "date": {"timeFormat": "24hour", "enable": true, "point": [0.04, 0.16]}}}'
    sleep 5
    printf '{"screenshot": "%s"}\n{"quit": true}\n' "$pictures/drawing.png"
}

start_virtual_display
trap 'kill "$VIRTUAL_DISPLAY"' EXIT
drawing | env PWD="$place/home" QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="$place/run" \
    "$root/build/default/bin/lumen-wall" --control --size 1280x640
