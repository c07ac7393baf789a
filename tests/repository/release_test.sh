#!/bin/sh
# scripts/release refuses a tree that is not to be released, and says why: each is a small repository with one fault.
# What it puts together of one that is built is whole.
set -eu
project=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
HOME=$tree # nobody's settings of git
export HOME

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

in_tree() {
    git -C "$tree/project" -c user.name=test -c user.email=test@localhost "$@" > "$tree/log" 2>&1 || fail "git $*: $(cat "$tree/log")"
}

# A repository that may be released as 1.2.3.
start() {
    rm -rf "$tree/project"
    mkdir -p "$tree/project/scripts"
    cp "$project/scripts/release" "$project/scripts/steps.sh" "$tree/project/scripts/"
    printf 'project(panelkit\n  VERSION 1.2.3\n  LANGUAGES CXX)\n' > "$tree/project/CMakeLists.txt"
    printf '# Changelog\n\n## Unreleased\n\n## 1.2.3 2026-01-01\n\n- Something new.\n' > "$tree/project/CHANGELOG.md"
    echo /build/ > "$tree/project/.gitignore"
    in_tree init
    in_tree add -A
    in_tree commit -m start
}

# refuses TEXT ARGUMENT...
refuses() {
    text=$1
    shift
    if said=$("$tree/project/scripts/release" --check "$@" 2>&1); then
        fail "not refused: $text"
    fi
    case $said in
    *"$text"*) ;;
    *) fail "refused by '$said' and not by '$text'" ;;
    esac
}

start
"$tree/project/scripts/release" --check > /dev/null || fail "a tree in order is refused"
"$tree/project/scripts/release" 1.2.3 --check > /dev/null || fail "its own version is refused"
refuses "says VERSION 1.2.3 and not 1.2.4" 1.2.4
refuses "'--force' is not known" --force
refuses "one version too many" 1.2.3 1.2.3

echo "# changed" >> "$tree/project/CMakeLists.txt"
refuses "changes that are not committed"

start
in_tree tag v1.2.3
refuses "the tag v1.2.3 is there already"

start
sed -i 's/^## 1.2.3.*/## 1.2.2 2025-01-01/' "$tree/project/CHANGELOG.md"
in_tree commit -a -m changelog
refuses "CHANGELOG.md has no section '## 1.2.3'"

start
sed -i 's/^## Unreleased$/&\n\n- Not in it./' "$tree/project/CHANGELOG.md"
in_tree commit -a -m changelog
refuses "still has entries under 'Unreleased'"
case $("$tree/project/scripts/release" --check --dry-run) in
*"a release would be refused: CHANGELOG.md still has"*) ;;
*) fail "a dry run does not say what a release would refuse" ;;
esac

start
sed -i 's/VERSION 1.2.3/VERSION 1.2/' "$tree/project/CMakeLists.txt"
refuses "found no line 'VERSION N.N.N'"

# What was built, as far as it is packed: packages of VERSION and a page of the reference.
build() {
    for folder in package armhf; do
        packages=$tree/project/build/$folder/packages
        mkdir -p "$packages" "$tree/package/DEBIAN"
        printf 'Package: panelkit-%s\nVersion: %s\nArchitecture: all\nMaintainer: test\nDescription: test\n' \
            "$folder" "$1" > "$tree/package/DEBIAN/control"
        dpkg-deb --root-owner-group --build "$tree/package" "$packages" > "$tree/log"
    done
    mkdir -p "$tree/project/build/reference/html"
    echo page > "$tree/project/build/reference/html/index.html"
}

if command -v dpkg-deb > /dev/null; then
    start
    build 1.2.3
    echo "# changed" >> "$tree/project/CMakeLists.txt"
    said=$("$tree/project/scripts/release" --archive 2>&1) || fail "the archive is not made: $said"
    case $said in
    *"a release would be refused: the tree has changes"*"nothing was tagged"*) ;;
    *) fail "an archive of a changed tree is said to be a release: $said" ;;
    esac
    in_tree tag
    [ ! -s "$tree/log" ] || fail "an archive was tagged"
    out=$tree/project/build/release-1.2.3
    [ "$(cat "$out/tag-message.txt")" = "$(printf 'panelkit 1.2.3\n\n- Something new.')" ] ||
        fail "the tag's message is: $(cat "$out/tag-message.txt")"
    listed=$(cut -d ' ' -f 3 "$out/SHA256SUMS" | tr '\n' ' ')
    wanted="panelkit-armhf_1.2.3_all.deb panelkit-package_1.2.3_all.deb panelkit-1.2.3-reference.tar.xz"
    [ "$listed" = "$wanted panelkit-1.2.3.tar.xz " ] || fail "the checksums are of: $listed"
    (cd "$out" && sha256sum --quiet --check SHA256SUMS) || fail "a checksum is wrong"
    [ "$(tar -xOf "$out/panelkit-1.2.3.tar.xz" panelkit-1.2.3/CMakeLists.txt | wc -l)" -eq 3 ] ||
        fail "the source archive holds what is not committed"

    # A release goes this way too, behind the checks, and only with an ABI in the tree that is its own.
    start
    build 1.2.3
    for script in packages test arm reference check-abi; do
        echo "#!/bin/sh" > "$tree/project/scripts/$script"
        chmod +x "$tree/project/scripts/$script"
    done
    in_tree add -A
    in_tree commit -m scripts
    case $("$tree/project/scripts/release" 2>&1) in
    *"tag it with: git tag -a v1.2.3 -F build/release-1.2.3/tag-message.txt") ;;
    *) fail "a tree in order is not released" ;;
    esac
    rm -r "$out"
    # shellcheck disable=SC2016 # for the script
    echo '[ "$1" != --same ]' >> "$tree/project/scripts/check-abi"
    in_tree commit -a -m abi
    ! said=$("$tree/project/scripts/release" 2>&1) || fail "released with another release's ABI"
    case $said in *"scripts/check-abi --write"*) ;; *) fail "refused by '$said'" ;; esac
    [ ! -d "$out" ] || fail "something is archived that no release is"

    rm -r "$tree/project/build/armhf"
    ! "$tree/project/scripts/release" --archive > /dev/null 2>&1 || fail "an archive without packages is taken for whole"
    rm -r "$tree/project/build"
    build 1.2.2
    ! "$tree/project/scripts/release" --archive > /dev/null 2>&1 || fail "packages of another version are released"
fi
echo "every fault is refused"
