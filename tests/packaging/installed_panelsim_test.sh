#!/bin/sh
# The installed panelsim finds its libraries by itself, also where the installation has been moved to.
# Usage: installed_panelsim_test.sh PREFIX
set -eu
emulator=${PANELKIT_EMULATOR:-}
moved=$(mktemp -d)
trap 'rm -rf "$moved"' EXIT
cp -r "$1/." "$moved"
shown=$(env -u LD_LIBRARY_PATH $emulator "$moved/bin/panelsim" show)
case $shown in
*LOT-0417-A*) ;;
*)
    echo "$shown"
    exit 1
    ;;
esac
checked=$(env -u LD_LIBRARY_PATH $emulator "$moved/bin/panelsim" check --all) || {
    echo "$checked"
    exit 1
}
# The window's Chinese texts lie beside it.
if [ -z "$emulator" ]; then
    env -u LD_LIBRARY_PATH -u DISPLAY -u WAYLAND_DISPLAY "$moved/bin/panelsim" gui --language zh_CN \
        --screenshot "$moved/picture.png"
fi
# What the system's loader takes, told by itself.
loaded=$(LD_TRACE_LOADED_OBJECTS=1 $emulator "$moved/bin/panelsim")
for library in panelkit hmi_event device_struct sys_base; do
    used=$(echo "$loaded" | awk -v name="lib$library.so" 'index($1, name) == 1 { print $3; exit }')
    case $used in
    "$moved"/*) ;;
    *)
        echo "lib$library.so comes from '$used' and not from $moved"
        exit 1
        ;;
    esac
done
