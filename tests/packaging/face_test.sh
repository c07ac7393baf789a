#!/bin/sh
# Builds and runs the program that calls everything that is exported, and compares what it calls with the list.
# Usage: face_test.sh SOURCES PREFIX COMPILER LIST
# With PANELKIT_EMULATOR and CMAKE_TOOLCHAIN_FILE in the environment it is built for another processor.
set -eu
sources=$1 prefix=$2 compiler=$3 list=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake -S "$sources" -B "$work" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_FIND_ROOT_PATH="$prefix" \
    -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" > "$work/log" 2>&1 && cmake --build "$work" >> "$work/log" 2>&1 || {
    cat "$work/log"
    exit 1
}
cd "$work"
QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work ${PANELKIT_EMULATOR:-} ./face

# The linker's and the compiler's own symbols, and what the headers declare as private.
nm --undefined-only --dynamic --demangle face | sed -E 's,^[0-9a-f ]+ [A-Za-z] ,,' | LC_ALL=C sort -u > called
grep -vE '^(typeinfo name for|vtable for|non-virtual thunk to) ' "$list" |
    grep -vE '^(FileBrowser::on_[a-zA-Z_]+|ProgressBar::buildLayout|UTimer::reload)\(' > callable
[ "$(wc -l < callable)" -ge 100 ] || { echo "$list lists next to nothing" >&2; exit 1; }
left=$(LC_ALL=C comm -13 called callable)
[ -z "$left" ] || {
    echo "tests/packaging/face/face.cpp does not call:"
    echo "$left"
    exit 1
} >&2
