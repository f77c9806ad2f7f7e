#!/usr/bin/env bash
# Compares what the libraries of a build export, names and types, with abi/*.abi; fails where they differ.
#     scripts/check_abi.sh [--renew] [BUILD FOLDER]
# --renew writes what the build has into abi/. A reference counts once docs/api-changes.md carries its sum: whoever changes
# the interface tells hosts about it.
set -euo pipefail
cd "$(dirname "$0")/.."
renew=false
[ "${1:-}" != --renew ] || { renew=true; shift; }
build=${1:-build/default}
log=docs/api-changes.md

# interface NAME: what the build has of it, on standard output.
interface() {
    local from=("$build/lib/liblumen_deck_interface.so")
    [ "$1" = lumen_deck ] || from=("$build/lib/libtide_pipe.so.1" --drop-private-types --headers-dir include/tide_pipe)
    abidw --exported-interfaces-only --no-elf-needed --no-corpus-path --no-comp-dir-path --no-show-locs --no-architecture \
        --type-id-style hash "${from[@]}"
}

found=$(mktemp)
trap 'rm -f "$found"' EXIT
status=0
for name in lumen_deck tide_pipe; do
    reference=abi/$name.abi
    interface "$name" >"$found"
    if $renew; then
        cp "$found" "$reference"
    elif ! abidiff --no-default-suppression "$reference" "$found"; then
        echo "$name exports something else than $reference: if that is meant, scripts/check_abi.sh --renew" >&2
        status=1
    fi
    sum=$(sha256sum "$reference" | cut -c 1-12)
    if ! grep -q "$sum" "$log"; then
        echo "$log tells nothing of this $reference: add what has changed, with its sum \`$sum\`" >&2
        status=1
    fi
done
exit $status
