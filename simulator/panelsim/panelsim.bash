# bash completion of panelsim. Commands, options and the names of faults are asked of the program itself, so that what
# it does not say about itself is not completed.

_panelsim_options() {
    "$1" "$2" --help 2> /dev/null | sed -nE 's/^  (-[a-z], )?(--[a-z-]+).*/\2/p'
}

_panelsim() {
    local program=$1 word=$2 previous=$3 command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "--help --version $("$program" --help 2> /dev/null |
            sed -nE '/^Commands:/,/^$/s/^  ([a-z-]+) .*/\1/p')" -- "$word")
        return
    fi
    case $previous in
    --root)
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        return
        ;;
    --csv | --pdf | --from | --project | --disk | --screenshot)
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
        ;;
    --run)
        mapfile -t COMPREPLY < <(compgen -W "press release" -- "$word")
        return
        ;;
    --language)
        mapfile -t COMPREPLY < <(compgen -W "en zh_CN" -- "$word")
        return
        ;;
    --fault)
        mapfile -t COMPREPLY < <(compgen -W "$("$program" "$command" --help 2> /dev/null | tr -d '\n' |
            sed -nE 's/.*Answer with a fault:([^.]*)\..*/\1/p' | tr -d ',')" -- "$word")
        return
        ;;
    esac
    case $word in
    -*) mapfile -t COMPREPLY < <(compgen -W "$(_panelsim_options "$program" "$command")" -- "$word") ;;
    *)
        case $command in
        link-params) mapfile -t COMPREPLY < <(compgen -W "show set" -- "$word") ;;
        network) mapfile -t COMPREPLY < <(compgen -W "show set plan" -- "$word") ;;
        *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        esac
        ;;
    esac
}

complete -o filenames -F _panelsim panelsim
