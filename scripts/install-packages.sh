#!/usr/bin/env bash
# Installs what a fresh Debian 12 lacks for Orvanta, group by group: to build it, to run it and its
# tests against a private audio server, to check the sources, for the other compiler with its
# sanitizers, for the other architecture, and to measure against other people's processors. Asks the
# network only when something is missing.
set -euo pipefail

build=(
    cmake g++ gcc ninja-build pkg-config
    libavcodec-dev libavformat-dev libavutil-dev
    libbenchmark-dev libcli11-dev libfmt-dev libgmock-dev libgtest-dev libicu-dev
    libpipewire-0.3-dev librapidcheck-dev libsndfile1-dev libsodium-dev libspa-0.2-dev
    libsqlite3-dev libxcb-xinput-dev libxcb-xkb-dev libxcb1-dev nlohmann-json3-dev
    qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools
    # The compiler of the views looks at these too, or compiles nothing.
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-layouts qml6-module-qtquick-templates
    qml6-module-qtquick-window
    # What the views draw with.
    fonts-inter libqt6svg6 python3 python3-fonttools
)
# Fetches assets. Somebody who has another build of it keeps that.
command -v npm >/dev/null || build+=(npm)
# A private audio server, players that speak each of its protocols, and what draws a picture.
run=(
    libspa-0.2-modules pipewire pipewire-alsa pipewire-bin pipewire-jack pipewire-pulse wireplumber
    alsa-utils pulseaudio-utils sox libsox-fmt-alsa libsox-fmt-base mpv
    gnuplot-nox procps python3 python3-numpy
    # A display of our own, and who sees and presses what is on it.
    at-spi2-core dbus gir1.2-atspi-2.0 imagemagick openbox python3-pyatspi x11-utils xdotool xvfb
)
# Besides the checks: an independent reader of audio files, a browser that plays, a display and a bus
# of the tests' own, who presses keys there, and who calls what is on the bus.
test=(
    ccache chromium clang-format ffmpeg git libglib2.0-bin openssl python3
    qml6-module-qttest trayer x11-xkb-utils
)
full=(clang clang-tidy libclang-rt-dev llvm)
# The other architecture: its compiler, and what runs its programs here.
arm64=(g++-aarch64-linux-gnu qemu-user-static)
# Plug-ins and libraries of the same trade, and what hosts them.
compare=(liblilv-dev lv2-dev libbs2b-dev libebur128-dev calf-plugins lsp-plugins-lv2 x42-plugins)

usage() {
    echo "usage: ${0##*/} GROUP...   (of: build run test full arm64 compare)" >&2
    exit 2
}

is_installed() {
    [[ "$(dpkg-query --show --showformat '${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

(($# > 0)) || usage
wanted=()
for group in "$@"; do
    case "$group" in
    build) wanted+=("${build[@]}") ;;
    run) wanted+=("${run[@]}") ;;
    test) wanted+=("${test[@]}") ;;
    full) wanted+=("${full[@]}") ;;
    arm64) wanted+=("${arm64[@]}") ;;
    compare) wanted+=("${compare[@]}") ;;
    *) usage ;;
    esac
done

missing=()
for package in "${wanted[@]}"; do
    is_installed "$package" || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
    exit 0
fi

if ! command -v apt-get >/dev/null; then
    echo "Not a Debian system. Please install the counterparts of: ${missing[*]}" >&2
    exit 1
fi
as_root=()
if ((EUID != 0)); then
    as_root=(sudo)
fi
apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --option Acquire::Retries=3 \
        --option DPkg::Lock::Timeout=300 "$@" </dev/null
}

echo "Installing: ${missing[*]}"
apt --quiet --quiet update
apt --quiet --quiet --yes --no-install-recommends install "${missing[@]}"
