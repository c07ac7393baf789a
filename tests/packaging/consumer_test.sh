#!/bin/sh
# Builds and runs a program against the installed package.
# Usage: consumer_test.sh cmake|pkg-config SOURCES PREFIX LIBDIR COMPILER VERSION
# With PANELKIT_EMULATOR and CMAKE_TOOLCHAIN_FILE in the environment it is built for another processor.
set -eu
road=$1 sources=$2 prefix=$3 libdir=$4 compiler=$5 version=$6
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

case $road in
cmake)
    cmake -S "$sources" -B "$work" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_FIND_ROOT_PATH="$prefix" \
        -DCMAKE_CXX_COMPILER="$compiler" \
        -DPANELKIT_WANTED_VERSION="$version" > "$work/log" 2>&1 && cmake --build "$work" >> "$work/log" 2>&1 || {
        cat "$work/log"
        exit 1
    }
    ${PANELKIT_EMULATOR:-} "$work/consumer"
    ;;
pkg-config)
    PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
    export PKG_CONFIG_PATH
    [ "$(pkg-config --modversion panelkit)" = "$version" ] || { echo "not version $version"; exit 1; }
    # shellcheck disable=SC2046 # the flags are words
    "$compiler" -std=c++17 -fPIC "$sources/consumer.cpp" -o "$work/consumer" $(pkg-config --cflags --libs panelkit)
    LD_LIBRARY_PATH=$prefix/$libdir "$work/consumer"
    ;;
*)
    echo "$road is no way to find a package: give cmake or pkg-config" >&2
    exit 2
    ;;
esac
