#!/usr/bin/env bash
# Fetches what assets/packages names into build/assets, each package in a folder of its own, and
# nothing that is there already. An archive that is not the one that was looked at is refused.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

target=$PWD/build/assets
scratch=
cleanup() {
    [[ -z $scratch ]] || rm -rf -- "$scratch"
}
trap cleanup EXIT

fetch() {
    local name=$1 version=$2 checksum=$3 archive
    shift 3
    scratch=$(mktemp -d)
    archive=$(cd -- "$scratch" && npm pack --silent "$name@$version") || {
        echo "Cannot fetch $name $version. Is there a network?" >&2
        return 1
    }
    if ! sha256sum --check --status <<<"$checksum  $scratch/$archive"; then
        echo "$name $version is not what it was: its checksum differs." >&2
        return 1
    fi
    mkdir -p "$scratch/files"
    tar --extract --file "$scratch/$archive" --directory "$scratch/files" --strip-components 1 \
        --no-same-owner "${@/#/package/}"
    mkdir -p "$target"
    rm -rf -- "${target:?}/$name"
    mv -- "$scratch/files" "$target/$name"
    # Last: what has it is complete.
    echo "$version $checksum" >"$target/$name/.version"
    rm -rf -- "$scratch"
    scratch=
}

while read -r name version checksum _licence files; do
    [[ $name != '#'* && -n $name ]] || continue
    if [[ "$(cat "$target/$name/.version" 2>/dev/null)" != "$version $checksum" ]]; then
        read -ra list <<<"$files"
        fetch "$name" "$version" "$checksum" "${list[@]}"
    fi
done <assets/packages
