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
echo "every fault is refused"
