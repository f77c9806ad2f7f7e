#!/usr/bin/env bash
# Measures the wall beside libmpv and GStreamer and draws the result: docs/measured/walls.csv, docs/pictures/walls.png and the
# table of docs/performance.md on standard output. Wants an idle machine for a quarter of an hour or more.
#     scripts/compare_walls.sh [--windows 1,4,9,16,64] [--rounds 2] [--seconds 4]
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/bootstrap.sh
PACKAGES+=(libmpv-dev mpv libgstreamer-plugins-base1.0-dev gstreamer1.0-x python3-matplotlib libxres-dev)
install_packages
build default lumen-wall rtsp_test_server
cmake --preset bench >/dev/null # looks for the libraries once more
build bench wall_bench mpv_wall gstreamer_wall
on_display() {
    xvfb-run -a -s "-screen 0 1920x1080x24 +extension GLX" "$@"
}
on_display bench/peers/compare.py docs/measured "$@"
/usr/bin/python3 bench/peers/plot.py docs/measured/walls.csv docs/pictures/walls.png
on_display bench/peers/start.py
