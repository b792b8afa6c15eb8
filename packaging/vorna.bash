# Completion of vorna(1) for bash: an option or a database.
_vorna()
{
    local cur prev words cword
    _init_completion || return
    # One argument counts.
    ((cword == 1)) || return 0
    case $cur in
        -*) mapfile -t COMPREPLY < <(compgen -W '--help --version' -- "$cur") ;;
        *) _filedir '@(vrn|vsh)' ;;
    esac
} && complete -F _vorna vorna
