# bash completion of panelsim. Commands, options, what they take and its names are asked of the program itself, so that
# what it does not say about itself is not completed.

# _panelsim_value OPTION: what the help that is read says of it, in one line: "<WHAT>  Text."
_panelsim_value() {
    sed -nE "/^  (-[a-z], )?$1( |\$)/,\$p" | sed -nE '1{s/^[^<]*//;p;d}; /^  -/q; /^ {4}/!q; p' | tr -s ' \n' ' '
}

_panelsim() {
    local program=$1 word=$2 previous=$3 command=${COMP_WORDS[1]} help value='' usage
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "--help --version $("$program" --help 2> /dev/null |
            sed -nE '/^Commands:/,/^$/s/^  ([a-z-]+) .*/\1/p')" -- "$word")
        return
    fi
    help=$("$program" "$command" --help 2> /dev/null) || return 0
    case $previous in
    --*[!a-z-]*) ;;
    --*) value=$(_panelsim_value "$previous" <<< "$help") ;;
    esac
    case $value in
    "<DIR>"*) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
    "<FILE>"* | "<PATH>"*) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    "<NAME>"* | "<LANGUAGE>"*) # "Text: one, two or three. More text."
        mapfile -t COMPREPLY < <(compgen -W "$(sed -nE 's/^[^:]*:([^.]*)\..*/\1/p' <<< "$value" |
            sed 's/,/ /g; s/ or / /g')" -- "$word")
        ;;
    "<"*"|"*) mapfile -t COMPREPLY < <(compgen -W "$(sed -E 's/^<([^>]*)>.*/\1/; s/\|/ /g' <<< "$value")" -- "$word") ;;
    "<"*) ;;
    *)
        usage=$(sed -n 's/^Usage: //p' <<< "$help")
        case $word,$usage in
        -*) mapfile -t COMPREPLY < <(compgen -W "$(sed -nE 's/^  (-[a-z], )?(--[a-z-]+).*/\2/p' <<< "$help")" -- "$word") ;;
        *,*" ["*"|"*) # "link-params [options] N [show|set]"
            mapfile -t COMPREPLY < <(compgen -W "$(sed -E 's/.*\[([a-z|]*\|[a-z|]*)\].*/\1/; s/\|/ /g' \
                <<< "$usage")" -- "$word")
            ;;
        *,*PROJECT* | *,*FILE*) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        esac
        ;;
    esac
}

complete -o filenames -F _panelsim panelsim
