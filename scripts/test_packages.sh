#!/usr/bin/env bash
# Makes the Debian packages, looks them over with lintian, installs them into a bare Debian 12 and uses them there: the host
# runs, and a sample host is built with CMake and with pkg-config and shows a picture. As root; some minutes.
#     scripts/test_packages.sh
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/bootstrap.sh
PACKAGES+=(debootstrap lintian)
install_packages
[ "$(id -u)" -eq 0 ] || { echo "a clean root is made by root only" >&2; exit 2; }

build package
rm -f build/package/*.deb
cpack --preset package >build/package/cpack.log
ls build/package/*.deb
lintian --allow-root --fail-on error --tag-display-limit 0 build/package/*.deb

# What a machine has after Debian's smallest installation; kept, as it takes a minute.
bare=$PWD/build/clean/bare
mirror=$(apt-get indextargets --format '$(SITE)' | head -n 1)
if [ ! -f "$bare.done" ]; then
    rm -rf "$bare"
    mkdir -p "$bare"
    debootstrap --variant=minbase bookworm "$bare" "$mirror" >build/clean/debootstrap.log
    touch "$bare.done"
fi

root=$PWD/build/clean/root
unmount() {
    mountpoint -q "$root/proc" && umount "$root/proc"
    return 0
}
trap unmount EXIT
unmount
rm -rf "$root"
cp -a "$bare" "$root"
mkdir -p "$root/try"
cp -r build/package/*.deb examples scripts/try_packages.sh "$root/try/"
cp /etc/resolv.conf "$root/etc/"
cp -r /etc/apt/apt.conf.d/. "$root/etc/apt/apt.conf.d/"
mount -t proc proc "$root/proc"
env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 chroot "$root" /try/try_packages.sh
