#!/bin/sh
# scripts/check-abi takes what is added and a new major version, and refuses what is gone: small libraries stand for the
# releases of this one. Usage: check_abi_test.sh PROJECT
set -eu
project=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/scripts" "$tree/tests/packaging" "$tree/build/package/lib"
cp "$project/scripts/check-abi" "$project/scripts/steps.sh" "$tree/scripts/"
released=$tree/tests/packaging/libpanelkit-qt5-amd64.abi.xz

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

# build MAJOR DECLARATION...: the library of that major version, which has these functions.
build() {
    major=$1
    shift
    header=$tree/build/package/functions.h
    : > "$header"
    for declaration; do echo "$declaration;" >> "$header"; done
    sed 's/;$/ { return 0; }/' "$header" > "$tree/functions.cpp"
    echo "file(INSTALL \"$header\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}/include/panelkit\")" \
        > "$tree/build/package/cmake_install.cmake"
    c++ -g -shared -fPIC -include "$header" "-Wl,-soname,libpanelkit.so.$major" "$tree/functions.cpp" \
        -o "$tree/build/package/lib/libpanelkit.so"
}

# says STATUS TEXT ARGUMENT...
says() {
    status=$1 text=$2
    shift 2
    result=0
    said=$("$tree/scripts/check-abi" "$@" 2>&1) || result=$?
    case $said in
    "not compared: "*)
        echo "$said"
        exit 0
        ;;
    *"$text"*) ;;
    *) fail "check-abi $* says '$said' and not '$text'" ;;
    esac
    [ "$result" -eq "$status" ] || fail "check-abi $* ends with $result and not $status: $said"
}

build 1 'int first()' 'int second(int)'
says 1 "nothing has been released yet"
says 0 "bytes" --write
says 0 "as it was"
says 0 "is this build's" --same

build 1 'int first()' 'int second(int)' 'int third()'
says 0 "as it was"
says 1 "is not this build's" --same
says 0 "bytes" --write
says 0 "is this build's" --same

build 1 'int first()' 'int second(long)' 'int third()'
before=$(cksum < "$released")
says 1 "raise the major version"
says 1 "raise the major version" --write
[ "$(cksum < "$released")" = "$before" ] || fail "what is refused was written all the same"

build 2 'int first()' 'int second(long)'
says 0 "a new major version: not compared"
says 1 "is not this build's" --same
says 0 "bytes" --write
says 0 "as it was"

build 1 'int first()' 'int second(long)'
says 1 "raise the major version"
says 1 "'--wrote' is not known" --wrote
echo "every change is judged"
