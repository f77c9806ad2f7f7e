# Sourced by run-wall.sh and run-tests.sh from the root of the tree: packages, configure, build.

# One clone's compile results serve the next one.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1

PACKAGES=(
    build-essential ccache cmake ninja-build pkg-config
    qtbase5-dev libqt5svg5-dev libfreetype-dev libgl-dev libglx-dev libx11-dev
    libavformat-dev libavcodec-dev libavutil-dev libswscale-dev libswresample-dev
    libasound2-dev libcurl4-openssl-dev libssl-dev libcli11-dev
    libgtest-dev libgmock-dev python3 python3-jsonschema abigail-tools
    ffmpeg fonts-unifont fonts-dejavu-core libgl1-mesa-dri xvfb xauth x11-utils xdotool
    libgstrtspserver-1.0-dev gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad
    gstreamer1.0-libav
)

install_packages() {
    local missing=()
    for package in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
