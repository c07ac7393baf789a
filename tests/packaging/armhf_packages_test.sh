#!/bin/sh
# Unpacks the packages for the panel's processor over a copy of its system and uses what they bring, under qemu.
# Usage: armhf_packages_test.sh FOLDER SYSROOT
# The copy lies beside the folder and shares the system's files, so that it costs neither time nor room.
set -eu
packages=$1 sysroot=$2
root=$(mktemp -d "$(dirname "$packages")/root.XXXXXX")
trap 'rm -rf "$root"' EXIT
cp -al "$sysroot/." "$root"
for package in "$packages"/*.deb; do
    dpkg-deb -x "$package" "$root"
    dpkg-deb -c "$package" | awk '/^-/ { print substr($6, 2) }'
done > "$root/packed"

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

unset LD_LIBRARY_PATH DISPLAY WAYLAND_DISPLAY
panelsim() { qemu-arm-static -L "$root" "$root/usr/bin/panelsim" "$@"; }

loaded=$(qemu-arm-static -L "$root" -E LD_TRACE_LOADED_OBJECTS=1 "$root/usr/bin/panelsim")
for library in panelkit hmi_event device_struct sys_base; do
    used=$(echo "$loaded" | awk -v name="lib$library.so" 'index($1, name) == 1 { print $3; exit }')
    [ -n "$used" ] || fail "panelsim does not load lib$library.so: $loaded"
    used=$(realpath -m "$root/${used#"$root"}")
    grep -qxF "${used#"$root"}" "$root/packed" || fail "lib$library.so comes from '$used', which no package has"
done

version=$(dpkg-deb -f "$(find "$packages" -name 'panelsim_*.deb')" Version)
said=$(panelsim --version)
[ "$said" = "panelsim $version" ] || fail "panelsim --version printed: $said"
shown=$(panelsim show)
case $shown in *LOT-0417-A*) ;; *) fail "panelsim show printed: $shown" ;; esac
checked=$(panelsim check --all) || fail "panelsim check --all printed: $checked"
drivers=$(panelsim check --drivers) || fail "panelsim check --drivers printed: $drivers"
panelsim gui --page device --language zh_CN --screenshot "$root/picture.png" > "$root/log" 2>&1 ||
    fail "panelsim gui printed: $(cat "$root/log")"
echo "used: panelsim $version with $(wc -l < "$root/packed") files"
