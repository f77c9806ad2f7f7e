#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/bootstrap.sh
preset=default
for option in "$@"; do
    case $option in
        --preset=*) preset=${option#--preset=} ;;
        *) echo "usage: $0 [--preset=default|dev|asan|tsan]" >&2; exit 2 ;;
    esac
done
install_packages
build "$preset"
xvfb-run -a -s "-screen 0 1920x1080x24 +extension GLX" ctest --test-dir "build/$preset" --output-on-failure
