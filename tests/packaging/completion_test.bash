#!/bin/bash
# What bash offers behind the beginning of a panelsim command line. Usage: completion_test.bash COMPLETION PANELSIM
set -eu
. "$1"
panelsim=$2
failed=0

# offers EXPECTED WORD...: the last word is the one that is begun.
offers() {
    local expected=$1
    shift
    COMP_WORDS=(panelsim "$@")
    COMP_CWORD=$#
    _panelsim "$panelsim" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    if [ "${COMPREPLY[*]}" != "$expected" ]; then
        echo "panelsim $*: '${COMPREPLY[*]}' in place of '$expected'" >&2
        failed=1
    fi
}

here=$(mktemp -d)
trap 'rm -rf "$here"' EXIT
cd "$here"
mkdir folder
touch folder.json

offers "check" che
offers "link-params" li
offers "--help --version" --
offers "--append" export --app
offers "--json" info --j
offers "" nothing-like-it --
offers "wrong-transaction wrong-unit" serve --fault wrong
offers "zh_CN" gui --language z
offers "release" macro --run r
offers "folder" show --root fol
offers "folder.json" link-params 1 --project folder.
offers "folder.json" check --all folder.j
offers "plan" network p
offers "show set" link-params 1 s
offers "en zh_CN" gui --language ""
offers "values operate export network device address" gui --page ""
offers "folder" gui --root fol
offers "folder folder.json" info --disk fol
# No file is a link's name, an address, a number or the argument of a command without one.
for word in "" fol; do
    offers "" check --link "$word"
    offers "" macro --set "$word"
    offers "" show --plc "$word"
    offers "" serve --port "$word"
    offers "" soak --minutes "$word"
    offers "" serve "$word"
    offers "" info "$word"
done
offers "folder folder.json" show --json fol
offers "folder.json" encoding folder.j
offers "" nothing-like-it fol
exit "$failed"
