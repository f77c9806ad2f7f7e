#!/bin/sh
# Starts each sample host and looks at what it says. Usage: examples.sh BIN_DIR EXAMPLES_DIR PYTHON
set -eu
bin=$1 examples=$2 python=$3
work=$(mktemp -d)
cd "$work"
export PWD="$work"
host=
end() {
    [ -z "$host" ] || kill "$host" 2>/dev/null || true
    [ -z "$host" ] || wait "$host" 2>/dev/null || true
    host=
}
trap 'end; rm -rf "$work"' EXIT

fail() {
    echo "$1" >&2
    cat "$work/out" >&2
    exit 1
}

start() {
    end
    "$bin/$1" >"$work/out" 2>&1 &
    host=$!
    window=$(timeout 30 xdotool search --sync --onlyvisible --pid $host | tail -1)
    [ -n "$window" ] || fail "$1 shows no window"
}

# says TEXT: within 20 seconds
says() {
    tries=0
    until grep -q "$1" "$work/out"; do
        tries=$((tries + 1))
        [ $tries -lt 200 ] || fail "nobody says: $1"
        sleep 0.1
    done
}

start example_minimal
kill -0 "$host" || fail "the minimal host has ended"

start example_events
for index in 0 1 2 3; do says "window $index: the picture is there"; done

start example_drawing
xdotool mousemove --window "$window" 500 150 mousedown 1 mousemove --window "$window" 600 250 \
    mousemove --window "$window" 700 300 mouseup 1
says '^drawn: .*"drawColor":"#ff8000","id":666'
end

"$python" "$examples/control.py" "$bin/lumen-wall" >"$work/out" 2>&1 || fail "control.py fails"
says "window 0 shows test:pattern"
[ -s wall.png ] || fail "there is no screenshot"
find Web/PlaybackFiles -name sample.mp4 -size +10k | grep -q . || fail "there is no recording"
