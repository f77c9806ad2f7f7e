#!/bin/sh
# Installs the build tree given, moves the installed tree and builds a small host against it, once with the CMake package
# and once with pkg-config. Usage: run.sh BUILD_DIR
set -eu
sources=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export PWD="$work"

cmake --install "$1" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/tree"

cmake -S "$sources" -B "$work/host" -DCMAKE_PREFIX_PATH="$work/tree" >/dev/null
cmake --build "$work/host" >/dev/null
"$work/host/small_host"

libdir=$(dirname "$(find "$work/tree" -name liblumen_deck.so)")
flags=$(PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --cflags --libs lumen_deck)
# shellcheck disable=SC2086
c++ -std=c++17 -fPIC "$sources/main.cpp" $flags -o "$work/by_pkg_config"
LD_LIBRARY_PATH="$libdir" "$work/by_pkg_config"

readelf -d "$libdir/liblumen_deck.so" | grep -q 'soname: \[liblumen_deck.so.1\]'
