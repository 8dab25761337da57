#!/usr/bin/env bash
# Checks that a library offers public classes and C functions, and nothing else.
#   exports.sh LIBRARY
set -euo pipefail
names=$(nm -DC --defined-only "$1" | cut -d' ' -f3-)
grep -q '^ombrix::host::Host::Load(' <<< "$names"
classes='Error|Host|Object|Picture|Point|Value'
if grep -vE "^((typeinfo|typeinfo name|vtable) for )?ombrix::(host::($classes)|catalogue::[A-Z][A-Za-z]*)\b|^ombrix_[a-z_]+$" <<< "$names"; then
    echo "The names above are offered by $1 and are not public."
    exit 1
fi
