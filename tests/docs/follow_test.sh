#!/bin/sh
# Does what a page of docs/ says, in a folder of its own, with nothing but an installation of panelkit. Every block of
# the page that names a file, as in "```cpp host.cpp", becomes that file; every "sh" block is run, in the order of the
# page, and has to print what the "text" block behind it shows. Usage: follow_test.sh PAGE PREFIX
set -eu
page=$1
PATH=$2/bin:$PATH
CMAKE_PREFIX_PATH=$2
export PATH CMAKE_PREFIX_PATH
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/steps" "$work/folder"

awk -v work="$work" '
    /^```./ && !inside {
        inside = 1
        language = substr($1, 4)
        file = ""
        if (NF > 1) file = work "/folder/" $2
        else if (language == "sh") file = sprintf("%s/steps/%03d.sh", work, ++step)
        else if (language == "text" && step) file = sprintf("%s/steps/%03d.expected", work, step)
        next
    }
    /^```$/ { inside = 0; if (file != "") close(file); file = ""; next }
    inside && file != "" { print > file }' "$page"

count=0
cd "$work/folder"
for script in "$work"/steps/*.sh; do
    sh -eu "$script" > "$work/printed" 2> "$work/errors" || {
        cat "$script" "$work/printed" "$work/errors"
        echo "$page: this step failed"
        exit 1
    } >&2
    expected=${script%.sh}.expected
    if [ -f "$expected" ]; then
        count=$((count + 1))
        # What a build says is not what a reader compares: the expected lines are the last ones.
        tail -n "$(wc -l < "$expected")" "$work/printed" | diff -u "$expected" - || {
            echo "$page: a step prints something else" >&2
            exit 1
        }
    fi
done
[ "$count" -gt 0 ] || { echo "$page: nothing was compared" >&2; exit 1; }
echo "$page: followed"
