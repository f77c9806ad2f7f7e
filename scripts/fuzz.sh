#!/usr/bin/env bash
# Fuzzes for SECONDS (60 if left out) with each fuzzer, or with those named. What it finds lies in build/fuzz/found.
#     scripts/fuzz.sh [SECONDS] [calls|layout|config|drawing|engine]...
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/bootstrap.sh
PACKAGES+=(clang)
install_packages
seconds=${1:-60}
shift $(($# > 0 ? 1 : 0))
[ $# -gt 0 ] || set -- calls layout config drawing engine
build fuzz keep_libraries "${@/#/fuzz_}"
export LSAN_OPTIONS=suppressions=$PWD/tests/support/lsan.supp
words=$PWD/build/fuzz/words.dict # keys and names that no mutation would find
grep -oh '"[A-Za-z][A-Za-z_ ]*"' docs/schema/*.json | sort -u >"$words"
grep -o 'LD_[A-Za-z]*' include/lumen_deck/functions.def | sort -u | sed 's/.*/"&"/' >>"$words"
status=0
for name in "$@"; do
    corpus=$PWD/build/fuzz/corpus/$name
    mkdir -p "$corpus" build/fuzz/found
    xvfb-run -a env LD_PRELOAD="$PWD/build/fuzz/lib/libkeep_libraries.so" "build/fuzz/bin/fuzz_$name" \
        -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -max_len=4096 -print_final_stats=1 \
        -dict="$words" -artifact_prefix="$PWD/build/fuzz/found/$name-" "$corpus" "$PWD/fuzz/seeds/$name" || status=1
done
exit $status
