#!/usr/bin/env bash
# Makes a manual page of what the command says of itself, and one of each of its subcommands.
#   manual.sh COMMAND FOLDER
set -euo pipefail
command=$1 folder=$2
export COLUMNS=120
rm -rf "$folder"
mkdir -p "$folder"
version=$("$command" --version)

# page NAME SUMMARY WORD...
page() {
    local name=$1 summary=$2
    shift 2
    # The name of the program stands in the title of every page.
    help2man --no-info --name "$summary" --version-string "${version#ombrix }" "$command${1:+ $1}" |
        sed "s/^\.TH [A-Z]* /.TH ${name^^} /; s/^ombrix[^ ]*\( [a-z_]*\)\? \\\\- /$name \\\\- /" |
        gzip -9n > "$folder/$name.1.gz"
}

page ombrix "apply image effects to image files"
"$command" --help | awk '
    /^[A-Z].*:$/ { on = $0 == "Commands:" || $0 == "Effects:"; next }
    on && /^  [a-z]/ { name = $1; $1 = ""; print name "\t" substr($0, 2) }
' | while IFS=$'\t' read -r name summary; do
    summary=${summary%%[.,]*}
    page "ombrix-$name" "${summary,}" "$name"
done
