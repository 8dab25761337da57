#!/usr/bin/env bash
# check_vectors.sh BUILD_DIR: checks by the plug-in's disassembly that the loops over pixels work on whole vectors, of
# their level's full width, and call nothing. One line for each fault.
set -euo pipefail
scripts=$(dirname "${BASH_SOURCE[0]}")
# shellcheck source=scripts/binary_tools.sh
source "$scripts/binary_tools.sh"

# Instructions on less than a whole vector that each loop may have: so many, and one for each four on whole vectors. An
# operation on each lane by itself takes more.
export ALLOWED=16

# Formulas whose loops may have more at a level: so many in all.
export EXCEPTIONS='
    # Without permutations of all bytes, tables are looked up entry by entry.
    ChannelTables  baseline  250
    ChannelTables  v3        450
    ChannelTables  v4        900
    # Without permutations of words, a bit of a table is looked up lane by lane; vectors without whole sums skip that.
    Grey           baseline  200
    SepiaTone      baseline  200
    # Four calls for colours whose sum is whole, skipped by nearly all.
    SepiaTone      v4_vbmi   80
    # It copies; pairs of general registers do that as well.
    Normal         baseline  20
'

plugin=${1-}/libombrix.so
choose_tools "$plugin"
"${tools}objdump" --disassemble --demangle --no-show-raw-insn "$plugin" |
    PROCESSOR=$processor awk -f "$scripts/check_vectors.awk"
