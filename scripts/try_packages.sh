#!/usr/bin/env bash
# The half of test_packages.sh that runs inside the clean root: installs the packages and uses them.
set -euo pipefail
cd "$(dirname "$0")"

install() {
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$@" >install.log 2>&1 ||
        { tail -n 20 install.log; return 1; }
}

# shows_pictures COMMAND...: it runs, and what is on the display after some seconds is a picture, then another one.
shows_pictures() {
    "$@" &
    local shown=$!
    sleep 4
    xwd -root -silent >first.xwd
    sleep 1
    xwd -root -silent >second.xwd
    kill "$shown"
    wait "$shown" || true
    ! cmp -s first.xwd second.xwd || { echo "$1 shows nothing that moves" >&2; return 1; }
    echo "shows pictures: $1"
}

if [ "${1:-}" = "under-display" ]; then
    shows_pictures lumen-wall 'test:pattern?size=704x576&rate=25'
    shows_pictures built/example_minimal
    shows_pictures ./by_pkg_config
    exit
fi

apt-get update -qq
install ./liblumen-deck1_*.deb ./libtide-pipe1_*.deb ./lumen-wall_*.deb
QT_QPA_PLATFORM=offscreen lumen-wall --version

install ./liblumen-deck-dev_*.deb cmake g++ make pkg-config xvfb xauth x11-apps libgl1-mesa-dri
cmake -S examples -B built >cmake.log
cmake --build built >>cmake.log
# shellcheck disable=SC2046
c++ -std=c++17 -fPIC examples/minimal.cpp $(pkg-config --cflags --libs lumen_deck) -o by_pkg_config
useradd --create-home viewer
chown -R viewer .
su viewer -c "xvfb-run -a -s '-screen 0 1280x800x24 +extension GLX' $PWD/try_packages.sh under-display"

apt-get purge -y -qq lumen-wall liblumen-deck-dev liblumen-deck1 libtide-pipe1 >purge.log 2>&1
left=$(find / -xdev -path /try -prune -o -path /proc -prune -o \( -name '*lumen*deck*' -o -name '*tide_pipe*' \) -print)
[ -z "$left" ] || { echo "left after removal: $left" >&2; exit 1; }
echo "installed, used and removed without a trace"
