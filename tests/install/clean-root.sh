#!/usr/bin/env bash
# Installs the Debian packages in a Debian system that holds nothing else of this project, and uses them there.
#   clean-root.sh FOLDER-WITH-PACKAGES
# The bare system and the packages that ours need are kept in build/packages/clean-root; delete it to fetch them again.
set -euo pipefail
cd "$(dirname "$0")/../.."
packages=$(realpath "$1")
cache=$PWD/build/packages/clean-root
# What a developer has who builds the examples.
base_packages=ca-certificates,cmake,gcc,libc6-dev,libssl-dev,make,ninja-build,openssl,pkgconf

if [ "$(id -u)" -ne 0 ] || ! unshare --mount true 2>/dev/null; then
    echo "clean-root.sh: left out: a root directory and mounts of its own need the rights of root" >&2
    exit 77
fi
mkdir -p "$cache/archives"
if [ ! -f "$cache/base.tar" ]; then
    echo "== Making a bare Debian 12"
    mmdebstrap --quiet --variant=minbase --include="$base_packages" --skip=cleanup/apt/lists bookworm "$cache/base.new.tar"
    mv "$cache/base.new.tar" "$cache/base.tar"
fi

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
tar -C "$root" -xf "$cache/base.tar"
find "$cache/archives" -name '*.deb' -exec cp -t "$root/var/cache/apt/archives" {} +
mkdir "$root/packages" "$root/test"
find "$packages" -name '*.deb' ! -name '*dbgsym*' -exec cp -t "$root/packages" {} +
cp -r examples tests/install/installed.sh "$root/test"
cp /etc/resolv.conf "$root/etc/resolv.conf"

# Mounts end with the namespace. No service is to be started in the root.
unshare --mount --pid --fork --kill-child bash -euo pipefail -c '
    root=$1 cache=$2
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
    mount -t tmpfs tmpfs "$root/tmp"
    inside() {
        chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive \
            http_proxy="${http_proxy:-}" https_proxy="${https_proxy:-}" "$@"
    }
    # The fonts are recommended only, but the layouts are checked with them.
    echo "== Installing the packages"
    # Archives are kept, for the next run; without synchronising each file the throw-away root is there sooner.
    echo "APT::Keep-Downloaded-Packages \"true\";" > "$root/etc/apt/apt.conf.d/keep"
    echo force-unsafe-io > "$root/etc/dpkg/dpkg.cfg.d/unsafe-io"
    inside sh -c "apt-get install -q -y --no-install-recommends /packages/*.deb fonts-noto-core" > "$cache/install.log" 2>&1 || {
        tail -n 30 "$cache/install.log" >&2
        exit 1
    }
    find "$root/var/cache/apt/archives" -name "*.deb" -exec cp -u -t "$cache/archives" {} +
    for case in demo tools cmake make; do
        echo "== Using them: $case"
        inside /test/installed.sh "$case" /usr /test/examples "/tmp/$case"
    done
    echo "== Removing them"
    inside sh -c "apt-get purge -q -y libvaultpad1 libvaultpad-host-platform1" >> "$cache/install.log" 2>&1
    left=$(find "$root/usr" -path "*vaultpad*" | head -n 5)
    if [ -n "$left" ]; then
        echo "clean-root.sh: the packages leave these files behind: $left" >&2
        exit 1
    fi
' bash "$root" "$cache"
echo "The packages can be installed, used and removed"
