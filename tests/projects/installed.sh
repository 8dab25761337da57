#!/usr/bin/env bash
# Installs what was built, moves it, and uses it from there as people do who have nothing else.
#   installed.sh SOURCE BUILD FOLDER
set -euo pipefail
source=$1 build=$2 folder=$3
rm -rf "$folder"
mkdir -p "$folder"

# quiet COMMAND...: shows what it said only when it fails.
quiet() {
    "$@" > "$folder/log" 2>&1 || { cat "$folder/log"; echo "failed: $*"; exit 1; }
}

# same WHAT EXPECTED ACTUAL
same() {
    [ "$2" = "$3" ] || { printf '%s gives:\n%s\nand not:\n%s\n' "$1" "$3" "$2"; exit 1; }
}

for component in command runtime development sdk python; do
    quiet cmake --install "$build" --component $component --prefix "$folder/first"
done
mv "$folder/first" "$folder/moved"
installed=$folder/moved
header=$installed/include/ombrix/ombrix.h
pkgconfig=$(dirname "$(find "$installed" -name ombrix.pc)")
libraries=$(dirname "$pkgconfig")

in_c=$'152 115 90\n46 9 0'
in_cpp=$'alpha 0, red 40, green 0, blue 0\nerror code 0'
plugin=$libraries/ombrix/libombrix.so

# By CMake.
for example in c embed; do
    cp -r "$source/examples/$example" "$folder/$example"
    quiet cmake -G Ninja -S "$folder/$example" -B "$folder/$example/build" -DCMAKE_PREFIX_PATH="$installed" \
        -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror"
    quiet cmake --build "$folder/$example/build"
    if ninja -C "$folder/$example/build" -t deps | grep -vF "$folder/" | grep -F "$source/"; then
        echo "examples/$example was built with the files above, which are not installed"
        exit 1
    fi
done
same "the C example" "$in_c" "$("$folder/c/build/c_example")"
same "the C++ example" "$in_cpp" "$("$folder/embed/build/embed_example" "$plugin")"

# By pkg-config.
export PKG_CONFIG_PATH=$pkgconfig
read -ra flags <<< "$(pkg-config --cflags --libs ombrix)"
quiet cc -std=c99 -pedantic -Wall -Werror "$folder/c/main.c" -o "$folder/in_c" "${flags[@]}"
quiet c++ -std=c++20 -Wall -Wextra -Werror "$folder/embed/main.cpp" -o "$folder/in_cpp" "${flags[@]}"
same "the C example by pkg-config" "$in_c" "$(LD_LIBRARY_PATH=$libraries "$folder/in_c")"
same "the C++ example by pkg-config" "$in_cpp" "$(LD_LIBRARY_PATH=$libraries "$folder/in_cpp" "$plugin")"
same "pkg-config --modversion" "$("$build/ombrix" --version)" "ombrix $(pkg-config --modversion ombrix)"

# Each header by itself.
for each in "$installed"/include/ombrix/*.h; do
    quiet c++ -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I "$installed/include" -x c++ -include "$each" /dev/null
done
quiet cc -std=c89 -pedantic -Wall -Werror -fsyntax-only -x c -include "$header" /dev/null

# The command and the Python package. They find the libraries beside them, not those of the build.
"$build/ombrix" sepia 30 "$source/examples/photo.jpg" "$folder/built.png"
"$installed/bin/ombrix" sepia 30 "$source/examples/photo.jpg" "$folder/installed.png"
cmp "$folder/built.png" "$folder/installed.png"
"$installed/bin/ombrix" list --json | grep -qF "\"$plugin\"" || { echo "the command loads another plug-in"; exit 1; }
same "Python" "[[152 115  90]]" "$(cd "$folder" && env -u OMBRIX_LIBRARY LD_LIBRARY_PATH="$libraries" \
    PYTHONPATH="$(dirname "$(find "$installed" -name ombrix -path '*python3*' -type d)")" PYTHONDONTWRITEBYTECODE=1 \
    /usr/bin/python3 -c 'import numpy, ombrix; print(ombrix.Sepia(30)(numpy.array([[[200, 100, 50]]], "uint8"))[0])')"
if find "$installed" -type f -exec grep -lF -e "$source" -e "$build" {} +; then
    echo "the files above name the folder that they were built in"
    exit 1
fi
