#!/bin/sh
# Compares what the library exports with the list in the tree. Usage: exported_symbols_test.sh PROJECT LIBRARY LIST
set -eu
if ! "$1/scripts/exported-symbols" "$2" | diff -u "$3" - ; then
    echo "libpanelkit.so does not export what $3 lists." >&2
    echo "If that is intended: scripts/exported-symbols $2 > $3" >&2
    exit 1
fi
[ -s "$3" ] || { echo "$3 is empty" >&2; exit 1; }
