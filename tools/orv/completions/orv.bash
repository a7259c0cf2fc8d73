# Completion of orv for bash. The program itself lists the candidates.
_orv()
{
    local word words=() offered
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        [[ $word == = ]] || words+=("$word") # in --language=de_DE, bash takes "=" as a word
    done
    [[ $word != = ]] || words+=('')
    word=${words[-1]}
    offered=$("$1" complete "${words[@]}" 2>/dev/null)
    if [[ $offered == :files* ]]; then
        compopt -o filenames 2>/dev/null
        offered=$(compgen -f -- "$word")
    else
        offered=$(compgen -W "$offered" -- "$word")
    fi
    COMPREPLY=()
    [[ -z $offered ]] || mapfile -t COMPREPLY <<<"$offered"
} && complete -F _orv orv
