#!/usr/bin/env bash
# Makes a manual page of what the command says of itself, and one of each of its subcommands.
#   manual.sh COMMAND FOLDER
set -euo pipefail
command=$1 folder=$2
export COLUMNS=120
rm -rf "$folder"
mkdir -p "$folder"
version=$("$command" --version)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What help2man takes for the command: its help in the order of a manual page, and no line of
# its usage broken.
cat > "$work/ombrix" << 'SCRIPT'
#!/usr/bin/env bash
"$OMBRIX" "$@" | awk '
    /^[A-Z].*:$/ || /^$/ { section = $0 }
    { line[++lines] = $0; from[lines] = section }
    section == "Usage:" && /^  ombrix/ { form[++forms] = substr($0, 3) }
    section == "Usage:" && /^    / { form[forms] = form[forms] substr($0, 4) }
    END {
        for (i = 1; i <= forms; ++i) print (i == 1 ? "Usage: " : "  or:  ") form[i]
        if (forms) print ""
        for (i = 1; i <= lines; ++i) if (from[i] != "Usage:" && from[i] != "Examples:") print line[i]
        print ""
        for (i = 1; i <= lines; ++i) if (from[i] == "Examples:") print line[i]
    }'
SCRIPT
chmod +x "$work/ombrix"
export OMBRIX=$command

cat > "$work/common" << 'TEXT'
[EXIT STATUS]
.TP
0
All was done.
.TP
1
The work failed: a file cannot be read or written, a plug\-in cannot be loaded, an effect refused.
.TP
2
The command line is wrong. Nothing was touched.

[ENVIRONMENT]
.TP
.B OMBRIX_PLUGINS
Further plug\-ins: files, and folders of them, parted by colons. Those in
.I ombrix/plugins
of the user's data folder are found without it.
TEXT

names() {
    "$command" --help | awk '
        /^[A-Z].*:$/ { on = $0 == "Commands:" || $0 == "Effects:"; next }
        on && /^  [a-z]/ { name = $1; $1 = ""; print name "\t" substr($0, 2) }'
}

# page NAME SUMMARY WORD...
page() {
    local name=$1 summary=$2 other
    shift 2
    {
        cat "$work/common"
        printf '\n[SEE ALSO]\n'
        for other in "" $(names | cut -f 1); do
            [ "ombrix${other:+-$other}" = "$name" ] || printf '.BR ombrix%s (1),\n' "${other:+\\-$other}"
        done | sed '$ s/,$//'
    } > "$work/include"
    # The name of the program stands in the title of every page. Lists are sections of their own, and examples stand
    # line by line.
    help2man --no-info --name "$summary" --version-string "${version#ombrix }" --include "$work/include" \
        "$work/ombrix${1:+ $1}" |
        sed -e "s/^\.TH [A-Z]* /.TH ${name^^} /; s/^ombrix[^ ]*\( [a-z0-9_]*\)\? \\\\- /$name \\\\- /" \
            -e 's/^\.SS "\(Commands\|Effects\|Values\|Usage\):"$/.SH \U\1/' \
            -e '/^\.SH EXAMPLES/,/^\.\(SH\|SS\|PP\)/ { s/^\.IP$/.nf/; s/^\(ombrix .*\|source .*\)/    \1/ }' |
        awk '/^\.nf$/ { open = 1 } /^\.(SH|SS|PP)/ && open { print ".fi"; open = 0 } { print } END { if (open) print ".fi" }' |
        gzip -9n > "$folder/$name.1.gz"
}

page ombrix "apply image effects to image files"
names | while IFS=$'\t' read -r name summary; do
    summary=${summary%%.*}
    page "ombrix-$name" "${summary,}" "$name"
done
