#!/usr/bin/env bash
# Checks that every #include points down: fails with one line for each that does not.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What each folder may include besides itself; a row also stands for the folders within, unless they have a row of
# their own. `*` is everything, `cli/*` the files that lie in cli/ itself. What lies in an include/ gets installed, and
# is included as "ombrix/...".
export ARROWS='
    bridges        host/include catalogue/include capi/include
    python         host/include catalogue/include capi/include
    capi           host/include catalogue/include
    cli            catalogue host text
    cli/commands   cli catalogue host text
    cli/studio     cli/* cli/images cli/gallery catalogue host text
    cli/gallery    cli/* cli/images cli/supervisor catalogue host text
    cli/images     cli/* cli/supervisor catalogue host text
    cli/supervisor cli/* host text
    catalogue      host text
    host           text platform sdk/definition_records.h
    text
    plugin         effects blend engine pixels sdk platform
    effects        engine pixels sdk platform
    blend          engine pixels sdk platform
    engine         pixels sdk platform
    pixels         sdk
    sdk            platform
    platform
    examples       host/include catalogue/include capi/include sdk
    tests          *
    bench          *
    fuzz           *
'

INSTALLED=$(git ls-files -- '*/include/ombrix/*')
export INSTALLED
git ls-files -z -- '*.c' '*.cpp' '*.h' | xargs -0 awk '
    BEGIN {
        count = split(ENVIRON["INSTALLED"], header, "\n")
        for (i = 1; i <= count; ++i) {
            name = header[i]
            sub("^.*/include/", "", name)
            installed[name] = header[i]
        }
        rows = split(ENVIRON["ARROWS"], row, "\n")
        for (i = 1; i <= rows; ++i) {
            if (split(row[i], word, " ")) {
                known[word[1]] = 1
                allowed[word[1]] = row[i]
            }
        }
    }

    # The row that stands for a file: of the folders around it, the innermost that has one; "" when none has.
    function RowOf(path) {
        while (sub("/[^/]*$", "", path)) {
            if (path in known) return path
        }
        return ""
    }

    function Within(path, folder) { return index(path, folder "/") == 1 }

    function MayInclude(room, path,    words, word, i) {
        if (Within(path, room)) return 1
        words = split(allowed[room], word, " ")
        for (i = 2; i <= words; ++i) {
            if (word[i] == "*" || word[i] == path || Within(path, word[i])) return 1
            if (sub("/[*]$", "", word[i]) && Within(path, word[i]) && path !~ "^" word[i] "/.*/") return 1
        }
        return 0
    }

    function Complain(message) {
        print FILENAME ":" FNR ": " message
        wrong = 1
    }

    FNR == 1 {
        room = RowOf(FILENAME)
        if (!room) Complain("its folder has no row in scripts/check_arrows.sh")
    }

    room && /^[ \t]*#[ \t]*include[ \t]*["<]/ {
        inQuotes = /include[ \t]*"/
        path = $0
        sub("^[^\"<]*[\"<]", "", path)
        sub("[\">].*$", "", path)
        if (path in installed) path = installed[path]
        if (path !~ "/" || (!inQuotes && !RowOf(path))) next  # a neighbour, or a header of another library
        if (!RowOf(path)) Complain(path " lies in no folder that has a row in scripts/check_arrows.sh")
        else if (!MayInclude(room, path)) Complain(room "/ may not include " path)
    }

    END { exit wrong }
'
