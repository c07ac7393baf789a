#!/bin/sh
# The scripts that guard the tree find what they are there for: each is run on a small tree with one fault.
set -eu
project=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

# refuses WHAT TEXT SCRIPT: the script exits with an error and says TEXT.
refuses() {
    if said=$("$project/scripts/$3" "$tree" 2>&1); then
        fail "$1: $3 saw nothing"
    fi
    case $said in
    *"$2"*) ;;
    *) fail "$1: $3 said: $said" ;;
    esac
}

start() {
    rm -rf "$tree"
    mkdir -p "$tree/scripts" "$tree/platform" "$tree/register"
    cp "$project/scripts/layers.txt" "$tree/scripts/"
    echo '#pragma once' > "$tree/platform/base.h"
    printf '#pragma once\n#include "platform/base.h"\n' > "$tree/register/value.h"
    echo '#include "register/value.h"' > "$tree/register/value.cpp"
    echo 'panelkit_sources(SOURCES value.cpp)' > "$tree/register/CMakeLists.txt"
}

start
"$project/scripts/check-layers" "$tree" > /dev/null || fail "a tree in order is refused by check-layers"
"$project/scripts/check-sources" "$tree" > /dev/null || fail "a tree in order is refused by check-sources"

start
echo '#include "register/value.h"' >> "$tree/platform/base.h"
refuses "an include against the layers" 'platform may not include register' check-layers

start
echo '#include "value.h"' >> "$tree/register/value.cpp"
refuses "an include without its folder" 'does not carry its folder' check-layers

start
echo '#include "platform/gone.h"' >> "$tree/register/value.cpp"
refuses "an include of a missing file" 'is not there' check-layers

start
sed -i 's/^platform:/platform: register/' "$tree/scripts/layers.txt"
refuses "a circle in the layers" 'which no earlier line has' check-layers

start
: > "$tree/register/forgotten.cpp"
refuses "a source that nothing builds" 'register/forgotten.cpp: not named' check-sources
echo "every rule refuses what breaks it"
