#!/bin/sh
# Fails when a text of the sources is not in a translation or has none there, and when a translation holds a
# text that the sources do not. Usage: complete_test.sh PROJECT LUPDATE TRANSLATION FOLDER...
set -eu
project=$1 lupdate=$2 translation=$3
shift 3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp "$translation" "$work/updated.ts"
# lupdate takes the ' within a number for the begin of a character.
for folder in "$@"; do
    mkdir -p "$work/$folder"
    for file in "$project/$folder"/*.cpp "$project/$folder"/*.h; do
        [ ! -f "$file" ] || sed "s/\([0-9]\)'\([0-9]\)/\1\2/g" "$file" > "$work/$folder/$(basename "$file")"
    done
done
cd "$work"
"$lupdate" -silent -locations none -source-language en -I . "$@" -ts "$work/updated.ts" > "$work/log" 2>&1 || {
    cat "$work/log" >&2
    exit 1
}

# What lupdate says of each text: nothing, "unfinished" (new, or without a translation) or "vanished".
awk '
    /<name>/ { context = $0; gsub(/ *<\/?name>/, "", context) }
    /<source>/ { text = $0; gsub(/ *<\/?source>/, "", text); texts++ }
    /<translation/ && (/type="/ || /><\// || /\/>/) {
        state = /vanished|obsolete/ ? "is not in the sources" : "has no translation"
        print context ": \"" text "\" " state
        bad = 1
    }
    END {
        if (!texts) { print "no texts were found"; bad = 1 }
        if (!bad) print texts " texts, all translated"
        exit bad
    }' "$work/updated.ts"
