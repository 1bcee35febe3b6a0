# Completion of kvatool for bash: its subcommands, their options, and the words that options take.
_kvatool() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' i words=''
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        check | import | report | run | tidy) command=${COMP_WORDS[i]}; break ;;
        esac
    done
    case $command:$before in
    import:--format) words='genepop structure fstat genetix genalex long' ;;
    import:--half-missing) words='inbred keep' ;;
    import:--populations) words='first last numbers' ;;
    import:--repeat) words='unknown' ;;
    import:--ploidy | import:--rows) words='1 2' ;;
    report:--measure) words='POSA FSS ADA KSC DMS ASD CAS DAN DSG' ;;
    run:--fst) words='pairs global beta' ;;
    run:--resample) words='genotypes alleles' ;;
    run:--heterozygosity) words='observed expected inbred' ;;
    run:--distances) words='all population individual population: individual:' ;;
    run:--formats) words='all msvar arlequin migrate im' ;;
    run:--permutations | run:--sequential | run:--bootstrap | run:--het-range | run:--rarefy | \
        run:--seed | run:--threads | \
        import:--missing | import:--pop-column | import:--pop-digits | import:--locus-column)
        COMPREPLY=()
        return
        ;;
    esac
    if [[ -z $words && $word == -* ]]; then
        case $command in
        check) words='-h --help --json' ;;
        tidy) words='-h --help -o --output' ;;
        report) words='-h --help -o --output --bootstrap --measure' ;;
        run)
            words='-h --help -o --output --force --tidy --json -q --quiet --fst --permutations
                --sequential --resample --heterozygosity --fst-loci --thin --distances --bootstrap
                --minus-log --distance-loci --nexus --het-range --het-linked --het-individuals
                --het-thin --het-uncorrected --formats --im-info --rarefy --seed --clock-seed
                --threads'
            ;;
        import)
            words='-h --help -o --output --format --repeat --repeats --force --missing --populations
                --ploidy --rows --pop-column --pop-digits --locus-column --half-missing'
            ;;
        *) words='-h --help --version' ;;
        esac
    elif [[ -z $words && -z $command ]]; then
        words='check import report run tidy'
    fi
    if [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -F _kvatool kvatool
