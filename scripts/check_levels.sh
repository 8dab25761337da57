#!/usr/bin/env bash
# check_levels.sh BUILD_DIR: checks by the symbols of their objects that the levels of the instruction set share
# nothing: the linker would keep one level's copy of a shared function for all. One line for each symbol at fault.
set -euo pipefail
# shellcheck source=scripts/binary_tools.sh
source "$(dirname "${BASH_SOURCE[0]}")/binary_tools.sh"
build=${1-}
[ -d "$build/CMakeFiles" ] || stop "there is no build in '$build'."

# What compilers call by themselves.
export ALLOWED='^(mem(cpy|set|move)|_GLOBAL_OFFSET_TABLE_|__stack_chk_.*|__(asan|ubsan|tsan)_.*)$'

# The objects' folders are named after the levels.
objects=$(find "$build/CMakeFiles" -path '*/ombrix_*.dir/*/level_loops.cpp.o')
[ "$objects" ] || stop "$build has no objects of levels."
status=0
for object in $objects; do
    choose_tools "$object"
    level=$(sed -E 's|.*/ombrix_(loops_)?([a-z0-9_]+)\.dir/.*|\2|' <<< "$object")
    "${tools}nm" --format=posix "$object" | LEVEL=$level awk '
        # A mangled name gives the length of a namespace, its name, and before it the one around it: spelled out at
        # first, S_, S0_ ... later. What is made from a type of the level is the level'"'"'s own wherever it lies.
        BEGIN { own = "(6ombrix|S[0-9A-Z]*_)" length(ENVIRON["LEVEL"]) ENVIRON["LEVEL"] }
        $2 ~ /^[tdrbaNn]$/ || $1 ~ own { next }  # what no other object sees, and the level'"'"'s own
        $2 == "U" && $1 ~ ENVIRON["ALLOWED"] { next }
        { print "level " ENVIRON["LEVEL"] ($2 == "U" ? " takes" : " gives") " " $1; wrong = 1 }
        END { exit wrong }' | c++filt || status=1
done
exit $status
