#!/usr/bin/env bash
# Fills build/arm64-root with the libraries for 64-bit ARM that the processors' tests need. They are
# only unpacked there: the machine's own packages know nothing of the other architecture.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

packages=(libgmock-dev:arm64 libgtest-dev:arm64 librapidcheck-dev:arm64 nlohmann-json3-dev)
root=$PWD/build/arm64-root
apt=$PWD/build/arm64-apt

[[ "$(cat "$root/complete" 2>/dev/null)" == "${packages[*]}" ]] && exit 0
rm -rf "$root" "$apt"
mkdir -p "$root" "$apt/lists/partial" "$apt/cache/archives/partial" "$apt/packages"
options=(
    --option APT::Architectures::="$(dpkg --print-architecture)"
    --option APT::Architectures::=arm64
    --option APT::Sandbox::User=root
    --option Dir::State::lists="$apt/lists"
    --option Dir::Cache="$apt/cache"
)
apt-get "${options[@]}" --quiet --quiet update
(cd "$apt/packages" && apt-get "${options[@]}" --quiet --quiet download "${packages[@]}")
for package in "$apt/packages"/*.deb; do
    dpkg-deb --extract "$package" "$root"
done
echo "${packages[*]}" >"$root/complete"
