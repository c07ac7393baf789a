#!/bin/sh
# Installs the packages into a folder of its own, uses what they bring and removes them. Usage: packages_test.sh FOLDER
# The folder gets a copy of what dpkg knows of this machine, so that dependencies are checked in earnest; the machine
# itself stays as it is, and root is not needed.
set -eu
packages=$1
here=$(cd "$(dirname "$0")" && pwd)
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/usr"
cp /var/lib/dpkg/status "$root/var/lib/dpkg/status"

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

# dpkg in the folder. It misses the lists of files of this machine's own packages, and says so for each.
in_root() {
    dpkg --root="$root" --force-not-root --force-script-chrootless --no-triggers --log="$root/var/log" "$@" 2> "$root/var/complaints" || {
        grep -v 'files list file for package' "$root/var/complaints" >&2
        return 1
    }
}

# of PACKAGE: its file.
of() { find "$packages" -maxdepth 1 -name "$1_*.deb"; }

# Without a platform the library is not configured, without the library panelsim is not.
in_root --unpack "$(of 'libpanelkit[0-9]*')" > /dev/null
! in_root --configure -a > /dev/null 2>&1 || fail "the library is content without a platform"
in_root --install "$packages"/*.deb > /dev/null
echo "installed: $(find "$root/usr" ! -type d | wc -l) files"

# panelsim as a user runs it: found on the path, with its libraries, drivers, page and completion.
PATH=$root/usr/bin:$PATH
shown=$(panelsim show)
case $shown in *LOT-0417-A*) ;; *) fail "panelsim show printed: $shown" ;; esac
panelsim check --all > /dev/null || fail "panelsim check --all"
"$here/panelsim_page_test.sh" "$root/usr/bin/panelsim" "$root/usr/share/man/man1/panelsim.1.gz"
"$here/completion_test.bash" "$root/usr/share/bash-completion/completions/panelsim" "$root/usr/bin/panelsim"

# The development package as a project uses it.
config=$(find "$root/usr" -name panelkitConfig.cmake)
libdir=$(dirname "$(dirname "$(dirname "${config#"$root/usr/"}")")")
version=$(dpkg-deb -f "$(of libpanelkit-dev)" Version)
for road in cmake pkg-config; do
    "$here/consumer_test.sh" "$road" "$here/consumer" "$root/usr" "$libdir" c++ "$version"
done

# A stranger with the packages and their pages.
for page in calling driver; do
    "$here/../docs/follow_test.sh" "$root/usr/share/doc/libpanelkit-dev/$page.md" "$root/usr"
done

in_root --purge panelsim libpanelkit-dev "libpanelkit${version%%.*}" panelkit-platform-sim > /dev/null
left=$(find "$root" -path "$root/var" -prune -o ! -type d -print)
[ -z "$left" ] || fail "left behind: $left"
echo "removed: nothing is left"
