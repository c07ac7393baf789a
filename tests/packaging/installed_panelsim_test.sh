#!/bin/sh
# The installed panelsim finds its libraries by itself, also where the installation has been moved to.
# Usage: installed_panelsim_test.sh PREFIX
set -eu
moved=$(mktemp -d)
trap 'rm -rf "$moved"' EXIT
cp -r "$1/." "$moved"
shown=$(env -u LD_LIBRARY_PATH "$moved/bin/panelsim" show)
case $shown in
*LOT-0417-A*) ;;
*)
    echo "$shown"
    exit 1
    ;;
esac
checked=$(env -u LD_LIBRARY_PATH "$moved/bin/panelsim" check --all) || {
    echo "$checked"
    exit 1
}
for library in panelkit hmi_event device_struct sys_base; do
    used=$(ldd "$moved/bin/panelsim" "$moved/lib/libpanelkit.so" 2> /dev/null | awk -v name="lib$library.so" 'index($1, name) == 1 { print $3; exit }')
    case $used in
    "$moved"/*) ;;
    *)
        echo "lib$library.so comes from '$used' and not from $moved"
        exit 1
        ;;
    esac
done
