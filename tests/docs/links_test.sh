#!/bin/sh
# Every link of a page to a file of the tree has that file. Usage: links_test.sh PROJECT
set -eu
cd "$1"
count=0
failed=0
for page in README.md $(find docs -name '*.md' | sort); do
    # A link may be broken over two lines.
    for target in $(tr '\n' ' ' < "$page" | grep -oE '\]\([^)# ]+' | cut -c 3-); do
        case $target in
        *://*) continue ;;
        esac
        count=$((count + 1))
        [ -e "$(dirname "$page")/$target" ] || {
            echo "$page links to $target, which is not there" >&2
            failed=1
        }
    done
done
[ "$count" -ge 10 ] || { echo "next to no links were found in $1" >&2; exit 1; }
exit "$failed"
