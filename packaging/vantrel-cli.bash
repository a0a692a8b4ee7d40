# bash completion for vantrel-cli
#
# The commands, their switches and what each argument takes are read from the
# program's own help (`vantrel-cli --help`, `vantrel-cli COMMAND --help`), so
# completion follows the program it completes. Placeholders ending in _DIR and
# DEST complete folders; N, NAME, AUTHOR and FILTER values complete nothing;
# every other placeholder completes file names.

_vantrel_cli() {
    local prog=${COMP_WORDS[0]} cur=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()

    if ((COMP_CWORD == 1)); then
        local commands
        commands=$("$prog" --help 2>/dev/null | sed -n 's/^  \([a-z][a-z-]*\) .*/\1/p; s/^  \([a-z][a-z-]*\)$/\1/p')
        COMPREPLY=($(compgen -W "$commands --help --version" -- "$cur"))
        return
    fi

    local command=${COMP_WORDS[1]} usage
    usage=$("$prog" "$command" --help 2>/dev/null | sed -n '1s/^usage: [^ ]* //p')
    [[ -n $usage ]] || return

    # A command with subcommands ("hpi list ARCHIVE | hpi extract ...").
    local alternatives=() alt
    IFS='|' read -r -a alternatives <<<"$usage"
    local words=() subs=""
    for alt in "${alternatives[@]}"; do
        read -r -a words <<<"${alt//[\[\]]/ }"
        if [[ ${words[1]} =~ ^[a-z][a-z-]*$ && ${#alternatives[@]} -gt 1 ]]; then
            subs+=" ${words[1]}"
        fi
    done
    local skip=2 chosen=$usage
    if [[ -n $subs ]]; then
        if ((COMP_CWORD == 2)); then
            COMPREPLY=($(compgen -W "$subs" -- "$cur"))
            return
        fi
        for alt in "${alternatives[@]}"; do
            read -r -a words <<<"$alt"
            [[ ${words[1]} == "${COMP_WORDS[2]}" ]] && chosen=$alt
        done
        skip=3
    fi

    # The usage's switches, the placeholder after each switch that takes a
    # value, and the positional placeholders in order.
    read -r -a words <<<"${chosen//[\[\]]/ }"
    local switches="--help" positional=() i w
    declare -A takes=()
    for ((i = skip - 1; i < ${#words[@]}; i++)); do
        w=${words[i]}
        [[ $w == ... || $w == *... ]] && w=${w%...}
        [[ -z $w ]] && continue
        if [[ $w == --* ]]; then
            [[ " $switches " == *" $w "* ]] || switches+=" $w"
            local next=${words[i + 1]%...}
            if [[ -n $next && $next != --* ]]; then
                takes[$w]=$next
                ((i++))
            fi
        else
            positional+=("$w")
        fi
    done

    local kind=""
    local prev=${COMP_WORDS[COMP_CWORD - 1]}
    if [[ -n ${takes[$prev]-} ]]; then
        kind=${takes[$prev]}
    elif [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$switches" -- "$cur"))
        return
    else
        # Which positional argument is this?
        local n=0
        for ((i = skip; i < COMP_CWORD; i++)); do
            w=${COMP_WORDS[i]}
            if [[ $w == --* ]]; then
                [[ -n ${takes[$w]-} ]] && ((i++))
            else
                ((n++))
            fi
        done
        kind=${positional[n]-}
    fi

    case $kind in
    "" | N | NAME | AUTHOR | FILTER*) return ;;
    *_DIR | DEST) COMPREPLY=($(compgen -d -- "$cur")) ;;
    *) COMPREPLY=($(compgen -f -- "$cur")) ;;
    esac
    compopt -o filenames 2>/dev/null
}

complete -F _vantrel_cli vantrel-cli
