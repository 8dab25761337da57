#!/usr/bin/env bash
# Checks that a library offers public classes and C functions, and nothing else, and that it uses its own of them
# whatever others of the same names the process has.
#   exports.sh LIBRARY
set -euo pipefail
# shellcheck source=scripts/binary_tools.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/binary_tools.sh"
choose_tools "$1"
names=$("${tools}nm" -DC --defined-only "$1" | cut -d' ' -f3-)
grep -q '^ombrix::host::Host::Load(' <<< "$names"
classes='Error|Host|Object|Picture|Point|Value'
functions='BytesPerPixel|CopyPixels|HasAlpha|NewRowMemory|Objection|OverlapOf|Part|UpsideDown'
if grep -vE "^((typeinfo|typeinfo name|vtable) for )?ombrix::(host::($classes|$functions)|catalogue::[A-Z][A-Za-z]*)\b|^ombrix_[a-z_]+$" <<< "$names"; then
    echo "The names above are offered by $1 and are not public."
    exit 1
fi
if readelf --relocs --wide "$1" | c++filt | grep 'JUMP_SLOT.* ombrix'; then
    echo "The calls above could leave $1 for a copy of it."
    exit 1
fi
