#!/bin/sh
# scripts/release refuses a tree that is not to be released, and says why: each is a small repository with one fault.
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
    git -C "$tree/work" -c user.name=test -c user.email=test@localhost "$@" > "$tree/log" 2>&1 || fail "git $*: $(cat "$tree/log")"
}

# A repository that may be released as 1.2.3.
start() {
    rm -rf "$tree/work"
    mkdir -p "$tree/work/scripts"
    cp "$project/scripts/release" "$project/scripts/steps.sh" "$tree/work/scripts/"
    printf 'project(panelkit\n  VERSION 1.2.3\n  LANGUAGES CXX)\n' > "$tree/work/CMakeLists.txt"
    printf '# Changelog\n\n## Unreleased\n\n## 1.2.3 2026-01-01\n\n- Something new.\n' > "$tree/work/CHANGELOG.md"
    echo /build/ > "$tree/work/.gitignore"
    in_tree init
    in_tree add -A
    in_tree commit -m start
}

# refuses TEXT ARGUMENT...
refuses() {
    text=$1
    shift
    if said=$("$tree/work/scripts/release" --check "$@" 2>&1); then
        fail "not refused: $text"
    fi
    case $said in
    *"$text"*) ;;
    *) fail "refused by '$said' and not by '$text'" ;;
    esac
}

start
"$tree/work/scripts/release" --check > /dev/null || fail "a tree in order is refused"
"$tree/work/scripts/release" 1.2.3 --check > /dev/null || fail "its own version is refused"
refuses "says VERSION 1.2.3 and not 1.2.4" 1.2.4
refuses "'--force' is not known" --force
refuses "one version too many" 1.2.3 1.2.3

echo "# changed" >> "$tree/work/CMakeLists.txt"
refuses "changes that are not committed"

start
in_tree tag v1.2.3
refuses "the tag v1.2.3 is there already"

start
sed -i 's/^## 1.2.3.*/## 1.2.2 2025-01-01/' "$tree/work/CHANGELOG.md"
in_tree commit -a -m changelog
refuses "CHANGELOG.md has no section '## 1.2.3'"

start
sed -i 's/^## Unreleased$/&\n\n- Not in it./' "$tree/work/CHANGELOG.md"
in_tree commit -a -m changelog
refuses "still has entries under 'Unreleased'"
case $("$tree/work/scripts/release" --check --dry-run) in
*"a release would be refused: CHANGELOG.md still has"*) ;;
*) fail "a dry run does not say what a release would refuse" ;;
esac

start
sed -i 's/VERSION 1.2.3/VERSION 1.2/' "$tree/work/CMakeLists.txt"
refuses "found no line 'VERSION N.N.N'"
echo "every fault is refused"
