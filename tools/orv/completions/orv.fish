# Completion of orv for fish. The program itself lists the candidates.
function __orv_offered
    set -l words (commandline -opc) (commandline -ct)
    set -l offered (command orv complete $words[2..-1] 2>/dev/null)
    if test "$offered[1]" = :files
        __fish_complete_path (commandline -ct)
    else
        string join \n -- $offered
    end
end
complete -c orv -f -a '(__orv_offered)'
