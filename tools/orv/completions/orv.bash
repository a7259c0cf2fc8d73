# Completion of orv for bash. The program itself says what may stand where.
_orv()
{
    local word words=() offered
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        [[ $word == = ]] || words+=("$word") # bash makes a word of the "=" in --language=de_DE
    done
    [[ $word != = ]] || words+=('')
    word=${words[-1]}
    mapfile -t offered < <("$1" complete "${words[@]}" 2>/dev/null)
    if [[ ${offered[0]-} == :files ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "${offered[*]}" -- "$word")
    fi
} && complete -F _orv orv
