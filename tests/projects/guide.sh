#!/usr/bin/env bash
# Follows docs/writing-an-effect.md: takes the files and changes from the document itself, builds them, and tries them.
#   guide.sh inside|outside SOURCE BUILD FOLDER CMAKE_OPTION...
set -euo pipefail
where=$1 source=$2 build=$3 folder=$4
shift 4
rm -rf "$folder"
mkdir -p "$folder"

# blocks HEADING FOLDER: the code below a heading. A block that begins with a comment of nothing but a file's name is that
# file; changes are gathered in changes.diff.
blocks() {
    awk -v heading="## $1" -v folder="$2" '
        /^## / && !fence { on = $0 == heading; next }
        !on { next }
        /^```/ {
            fence = fence ? "" : substr($0, 4)
            file = fence == "diff" ? folder "/changes.diff" : ""
            first = 1
            next
        }
        fence && first && /^(\/\/|#) [^ ]+\.[a-z]+$/ {
            file = folder "/" $2
            parent = file
            sub("/[^/]*$", "", parent)
            system("mkdir -p \"" parent "\"")
            first = 0
            next
        }
        fence { first = 0 }
        fence && file { print > file }
    ' "$source/docs/writing-an-effect.md"
}

# quiet COMMAND...: shows what it said only when it fails.
quiet() {
    "$@" > "$folder/log" 2>&1 || { cat "$folder/log"; echo "failed: $*"; exit 1; }
}

if [ "$where" = inside ]; then
    clone=$folder/clone
    mkdir "$clone"
    tar -C "$source" --exclude=./build --exclude=./out --exclude=./.git -cf - . | tar -C "$clone" -xf -
    blocks "In this plug-in" "$clone"
    # Git would otherwise take the paths from the top of the repository around this folder.
    (cd "$clone" && GIT_CEILING_DIRECTORIES=$folder quiet git apply changes.diff)
    if command -v clang-format > /dev/null; then
        quiet clang-format --dry-run --Werror "$clone"/effects/solariz* "$clone"/tests/effects/values_test.cpp
    fi
    quiet cmake -G Ninja -S "$clone" -B "$folder/build" -DOMBRIX_BUILD_COMMAND=OFF "$@"
    quiet cmake --build "$folder/build" --target ombrix_plugin posterize plugin_tests effects_tests
    quiet ctest --test-dir "$folder/build" -R '^(plugin|effects): ' --no-tests=error --output-on-failure
    exit
fi

quiet cmake --install "$build" --component sdk --prefix "$folder/installed"
blocks "In a plug-in of your own" "$folder/found"
# The other way: a folder with the SDK alone.
cp -r "$folder/found" "$folder/added"
mkdir "$folder/added/ombrix"
cp -r "$source/sdk" "$folder/added/ombrix/sdk"
sed -i 's|^find_package(ombrix REQUIRED)$|add_subdirectory(ombrix/sdk)|' "$folder/added/CMakeLists.txt"
grep -q ombrix/sdk "$folder/added/CMakeLists.txt"
for way in found added; do
    quiet cmake -G Ninja -S "$folder/$way" -B "$folder/$way/build" -DCMAKE_PREFIX_PATH="$folder/installed" \
        -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" "$@"
    quiet cmake --build "$folder/$way/build"
    "$build/tests/try_saturation" "$build/libombrix.so" "$folder/$way/build/libsaturation.so"
done
