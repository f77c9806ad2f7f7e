# Sourced by run-wall.sh: a display to show the wall on.

has_display() {
    [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1
}

# A virtual display that ends with the script.
start_virtual_display() {
    local number
    exec {display_pipe}< <(exec Xvfb -displayfd 1 -screen 0 1920x1080x24 +extension GLX -nolisten tcp -noreset 2>/dev/null)
    VIRTUAL_DISPLAY=$!
    read -r -t 20 -u "$display_pipe" number || { echo "the virtual display does not start" >&2; return 1; }
    export DISPLAY=:$number
}
