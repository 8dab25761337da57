#!/usr/bin/env bash
# Makes the Debian packages, has lintian look at them, and installs them in a fresh Debian, where each line of the
# README's section on packages and of docs/other-programs.md has to work.
#   packages.sh SOURCE BUILD FOLDER
# Exits with 77 when there can be no fresh Debian here: without the rights, or without Debian's archive.
set -euo pipefail
source=$1 build=$2 folder=$3
rm -rf "$folder"
mkdir -p "$folder/packages"

"$source/run" package > "$folder/log" 2>&1 || { cat "$folder/log"; exit 1; }
cp "$source"/build/package/packages/*.deb "$folder/packages"
echo "lintian:"
# It has no other complaint than those that an override explains.
lintian --allow-root --fail-on error,warning --tag-display-limit 0 "$folder"/packages/*.deb

# The lines that the README shows, and the C program.
blocks() {
    awk -v heading="## From packages" -v language="$1" '
        /^## / && !fence { on = $0 == heading; next }
        on && /^```/ { fence = fence ? "" : substr($0, 4); next }
        on && fence == language { print }
    ' "$source/README.md"
}
blocks sh > "$folder/lines.sh"
blocks c > "$folder/tone.c"
awk '/^```/ { on = $0 == "```sh"; next } on' "$source/docs/other-programs.md" > "$folder/programs.sh"
[ "$(grep -c . "$folder/lines.sh")" -ge 4 ] && [ "$(grep -c . "$folder/programs.sh")" -ge 12 ] && [ -s "$folder/tone.c" ] || { echo "the README has lost its lines"; exit 1; }
cp "$source"/examples/{photo,texture}.jpg "$folder"

cat > "$folder/try.sh" << 'END'
set -eux
cd /try
apt-get update
core=$(ls ./packages/*.deb | grep -v -e libvips-ombrix -e frei0r-plugins -e gegl-plugins)
# shellcheck disable=SC2086
apt-get install -y --no-install-recommends $core
apt-get install -y --no-install-recommends python3-numpy gcc libc6-dev pkg-config
bash -eux lines.sh
# The module of libvips is not in the way of the command, nor of programs that it does not concern.
cp packages/*.deb .
echo 'APT::Install-Recommends "false";' > /etc/apt/apt.conf.d/99try
QT_QPA_PLATFORM=offscreen bash -eux programs.sh
test "$(ombrix sepia 30 photo.jpg again.jpg 2>&1)" = ""
cmp old.jpg again.jpg
test -z "$(vips --version 2>&1 > /dev/null)"

# Who runs a program with more rights than their own has it load no plug-ins of theirs.
cp /usr/bin/ombrix /usr/bin/with-rights
chown nobody /usr/bin/with-rights
chmod u+s /usr/bin/with-rights
OMBRIX_PLUGINS=/none.so ombrix list 2>&1 > /dev/null | grep -F /none.so
test -z "$(OMBRIX_PLUGINS=/none.so with-rights list 2>&1 > /dev/null)"

test -z "$(dpkg --audit)"
END

if [ "$(id -u)" -ne 0 ] && ! unshare --user --map-root-user true 2> /dev/null; then
    echo "The packages were not installed: a fresh Debian takes root's rights or user namespaces, and there are neither."
    exit 77
fi
archive=/etc/apt/sources.list
[ -s "$archive" ] || archive=/etc/apt/sources.list.d/debian.sources
# shellcheck disable=SC2016
if ! mmdebstrap --variant=minbase --aptopt='Acquire::Retries "3"' bookworm "$folder/root" "$archive" > "$folder/log" 2>&1; then
    tail -5 "$folder/log"
    echo "The packages were not installed: no fresh Debian could be made, as the lines above say."
    exit 77
fi
mkdir "$folder/root/try"
cp -r "$folder"/{packages,photo.jpg,texture.jpg,lines.sh,programs.sh,tone.c,try.sh} "$folder/root/try"
inside() {
    if [ "$(id -u)" -eq 0 ]; then chroot "$@"; else unshare --user --map-root-user chroot "$@"; fi
}
cp /etc/resolv.conf "$folder/root/etc/resolv.conf"
inside "$folder/root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive sh /try/try.sh \
    > "$folder/log" 2>&1 || { tail -40 "$folder/log"; exit 1; }
"$build/ombrix" sepia 30 "$source/examples/photo.jpg" "$folder/old.jpg"
cmp "$folder/old.jpg" "$folder/root/try/old.jpg"
for made in vips.jpg ruby.jpg ffmpeg.png gst.jpg mlt1.png gegl.png; do
    [ -s "$folder/root/try/$made" ] || { echo "docs/other-programs.md does not make $made"; exit 1; }
done
rm -rf "$folder/root"
