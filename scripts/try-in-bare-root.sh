#!/usr/bin/env bash
# Runs a command of this repository in a Debian 12 that has nothing but its base system: whatever
# the command needs, it must install itself. The directory becomes such a system on first use and
# keeps what was installed and built in it; the clone of this repository in it is brought to the
# last commit each time. For a trial from nothing use a new directory.
#
# Runs as root, with debootstrap installed. The mirror is the one apt uses here, or the value of
# MIRROR. Mounts and processes end with the command.
set -euo pipefail

if (($# < 2)); then
    echo "usage: ${0##*/} DIRECTORY COMMAND [ARGUMENT...]   (COMMAND as seen from the repository)" >&2
    exit 2
fi
repository=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
mkdir -p "$1"
root=$(cd -- "$1" && pwd)
shift
release=bookworm

# "URI codename component" of each package index that apt uses here, for this release alone.
indexes() {
    # shellcheck disable=SC2016  # apt fills these in
    apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' |
        grep --extended-regexp " $release(-updates|-security)? main$" | sort --unique
}

make_root() {
    local mirror=${MIRROR:-$(indexes | grep " $release main$" | head -n 1 | cut -d ' ' -f 1)}
    debootstrap --variant=minbase "$release" "$root" "${mirror:?no mirror known}"
    if [[ -z ${MIRROR-} ]]; then
        indexes | sed 's/^/deb /' >"$root/etc/apt/sources.list"
    fi
}

# How this machine reaches the mirror, which is no business of the repository's own scripts.
carry_network_settings() {
    cp --dereference /etc/resolv.conf /etc/hosts "$root/etc/"
    apt-config dump --no-empty --format '%f "%v";%n' Acquire |
        grep --extended-regexp '^Acquire::(http|https|Check|Languages)' \
            >"$root/etc/apt/apt.conf.d/90machine" || true
}

# In a mount and a process namespace of its own: the kernel takes both down at the end.
run_inside() {
    mount -t proc proc "$root/proc"
    mount --rbind --make-rslave /sys "$root/sys"
    mount -t tmpfs tmpfs "$root/dev"
    local device
    for device in null zero full random urandom; do
        touch "$root/dev/$device"
        mount --bind "/dev/$device" "$root/dev/$device"
    done
    mkdir "$root/dev/shm" "$root/dev/pts"
    mount -t tmpfs tmpfs "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
    ln -s pts/ptmx "$root/dev/ptmx"
    ln -s /proc/self/fd "$root/dev/fd"
    ln -s /proc/self/fd/0 "$root/dev/stdin"
    ln -s /proc/self/fd/1 "$root/dev/stdout"
    ln -s /proc/self/fd/2 "$root/dev/stderr"
    exec env --ignore-environment PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        CI=true chroot "$root" /bin/bash -c 'cd /orvanta && exec "$@"' bash "$@"
}

[[ -e $root/etc/debian_version ]] || make_root
carry_network_settings
if [[ ! -e $root/orvanta ]]; then
    git clone --quiet --no-hardlinks "$repository" "$root/orvanta"
else
    git -C "$root/orvanta" pull --quiet --ff-only
fi
export root
export -f run_inside
exec unshare --mount --pid --fork --kill-child bash -euo pipefail -c 'run_inside "$@"' bash "$@" \
    </dev/null
