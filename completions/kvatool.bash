# Completion of kvatool for bash: its subcommands, their options, and the words that options take.
_kvatool() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' i words=''
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        check | import) command=${COMP_WORDS[i]}; break ;;
        esac
    done
    case $command:$before in
    import:--format) words='genepop structure fstat genetix genalex long' ;;
    import:--half-missing) words='inbred keep' ;;
    import:--populations) words='first last numbers' ;;
    import:--repeat) words='unknown' ;;
    import:--ploidy | import:--rows) words='1 2' ;;
    import:--missing | import:--pop-column | import:--pop-digits | import:--locus-column)
        COMPREPLY=()
        return
        ;;
    esac
    if [[ -z $words && $word == -* ]]; then
        case $command in
        check) words='-h --help --json' ;;
        import)
            words='-h --help -o --output --format --repeat --repeats --force --missing --populations
                --ploidy --rows --pop-column --pop-digits --locus-column --half-missing'
            ;;
        *) words='-h --help --version' ;;
        esac
    elif [[ -z $words && -z $command ]]; then
        words='check import'
    fi
    if [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -F _kvatool kvatool
