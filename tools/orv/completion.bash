# Completion of orv for bash, with the commands, options and languages that the program itself lists.

# _orv_listed HEADING WORD…: the first column below HEADING in what WORD… --help prints
_orv_listed()
{
    local heading=$1
    shift
    "$@" --help 2>/dev/null | sed -n "/^$heading:\$/,/^\$/s/^  \([^ ]*\)  .*/\1/p"
}

_orv()
{
    local cur prev words cword split
    _init_completion -s || return

    local program=$1 command=${words[1]-} choices=
    if ((cword == 1)); then
        choices=$(_orv_listed Commands "$program")
        [[ $cur != -* ]] || choices='--help --version'
        COMPREPLY=($(compgen -W "$choices" -- "$cur"))
        return
    fi

    case $prev in
        --language) choices=languages ;;
        --context) choices='general brandsound a4a' ;;
        --type) choices='default alternate' ;;
        --store | --root | -o)
            _filedir
            return
            ;;
        --brand | --default | --rds | --rbds | --satellite) return ;; # free words
        *)
            if $split; then
                return
            elif [[ $cur == -* ]]; then
                choices=$(_parse_help "$program" "$command --help")
            elif [[ $command == language ]]; then
                choices=languages
            elif [[ $command != @(genre|sound) ]]; then
                # Where a command lists actions or kinds, the first argument is one of them.
                choices=$(_orv_listed '\(Actions\|Kinds\)' "$program" "$command")
                if [[ ! $choices || " ${words[*]:2:cword-2} " == *" "@(${choices//$'\n'/|})" "* ]]; then
                    _filedir
                    return
                fi
            fi
            ;;
    esac
    # The first row of the languages names the columns.
    [[ $choices != languages ]] || choices=$("$program" language 2>/dev/null | awk 'NR > 1 { print $2 }')
    COMPREPLY=($(compgen -W "$choices" -- "$cur"))
} && complete -F _orv orv
