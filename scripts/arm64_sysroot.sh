#!/usr/bin/env bash
# Makes a folder with the libraries of a Debian for ARM64, for cmake/aarch64-linux-gnu.cmake, unless it is there.
#   arm64_sysroot.sh FOLDER
set -euo pipefail
folder=$1
list=$(dirname "${BASH_SOURCE[0]}")/packages.txt
packages=$(sed -n 's/^sysroot //p' "$list")
[ "$(cat "$folder/packages" 2> /dev/null)" != "$packages" ] || exit 0

archive=/etc/apt/sources.list
[ -s "$archive" ] || archive=/etc/apt/sources.list.d/debian.sources
rm -rf "$folder" "$folder.part"
mkdir -p "$folder.part"
# Packages are unpacked and not set up, which takes no program for ARM64. The folders left out are those where programs
# under qemu are to see the machine's own.
mmdebstrap --quiet --variant=extract --architectures=arm64 --skip=check/qemu --aptopt='Acquire::Retries "3"' \
    --include="${packages// /,}" bookworm - "$archive" |
    tar -x -C "$folder.part" --exclude='./dev' --exclude='./tmp' --exclude='./var' --exclude='./etc' --exclude='./root' \
        --exclude='./home' --exclude='./run' --exclude='./proc' --exclude='./sys'
echo "$packages" > "$folder.part/packages"
mv "$folder.part" "$folder"
