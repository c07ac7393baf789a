#!/bin/sh
# The manual page of panelsim and the program agree: each has the commands and options that the other has.
# Usage: panelsim_page_test.sh PANELSIM PAGE
set -eu
panelsim=$1 page=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Lines "COMMAND OPTION" of both.
"$panelsim" --help | sed -nE '/^Commands:/,/^$/s/^  ([a-z-]+) .*/\1/p' | sort > "$work/commands"
[ "$(uniq -d "$work/commands" | wc -l)" -eq 0 ] || { echo "panelsim --help lists a command twice" >&2; exit 1; }
while read -r command; do
    "$panelsim" "$command" --help | sed -nE "s/^  (-[a-z], )?(--[a-z-]+).*/$command \2/p"
    echo "$command"
done < "$work/commands" | grep -v ' --help$' | sort -u > "$work/said"
zcat -f "$page" | sed 's/\\f[A-Z]//g; s/\\//g' | awk '
    /^\.SH/ { command = "" }
    /^\.SS/ { command = $2; print command }
    command != "" {
        while (match($0, /--[a-z-]+/)) {
            print command, substr($0, RSTART, RLENGTH)
            $0 = substr($0, RSTART + RLENGTH)
        }
    }' | sort -u > "$work/written.all"
# Another command that a text names is no option of this one.
grep -vE ' --(help|version)$' "$work/written.all" > "$work/written"
[ "$(wc -l < "$work/said")" -ge 20 ] || { echo "panelsim says next to nothing about itself" >&2; exit 1; }
if ! diff "$work/said" "$work/written" > "$work/difference"; then
    echo "The program (<) and its page (>) differ:" >&2
    cat "$work/difference" >&2
    exit 1
fi
if command -v man > /dev/null; then
    complaints=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>&1 > /dev/null)
    [ -z "$complaints" ] || { echo "$complaints" >&2; exit 1; }
fi
