#!/bin/sh
# The library needs no newer C++ runtime than the oldest compiler that builds it brings, gcc 8.
# Usage: cxx_runtime_test.sh LIBRARY
set -eu
needed=$(readelf --version-info --wide "$1" | grep -oE '(GLIBCXX|CXXABI)_[0-9.]+' | sort -uV)
[ -n "$needed" ] || { echo "$1 names no version of the C++ runtime" >&2; exit 1; }
for newest in GLIBCXX_3.4.25 CXXABI_1.3.11; do
    newer=$(printf '%s\n' "$needed" "$newest" | grep "^${newest%%_*}_" | sort -uV | sed "1,/^$newest\$/d")
    [ -z "$newer" ] || { echo "$1 needs $newer; gcc 8 gives up to $newest" >&2; exit 1; }
done
