# Completion of kva for bash: its options, and the keywords of the option that stands last.
_kva() {
    # The whole word: bash divides words at "=", too.
    local line=${COMP_LINE:0:COMP_POINT}
    local word=${line##*[[:space:]]}
    local option='' i words='' files=''
    for ((i = COMP_CWORD - 1; i > 0; --i)); do
        case ${COMP_WORDS[i]} in
        -[a-z]*) option=${COMP_WORDS[i]}; break ;;
        esac
    done
    case $option in
    -i | -fim) files=yes ;;
    -dist)
        words='population individual POSA FSS ADA KSC DMS ASD CAS DAN DSG n= calc=ln calc=1 locus
            nexus NEXUS'
        ;;
    -fst) words='global pairwise n= locus HW HW=YES HW=NO RD RD=ON RD=OFF beta' ;;
    -hetrange) words='n= linked individual ind RD RD=ON RD=OFF zero zero=ON zero=OFF' ;;
    -format) words='msvar arlequin migrate im' ;;
    esac
    if [[ $word == -* || -z $option ]]; then
        words='-i -fim -rare -dist -fst -hetrange -format'
        files=''
    fi
    if [[ -n $files ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    if [[ ${#COMPREPLY[@]} == 1 && ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace 2>/dev/null
    fi
    if [[ $word == *=* && $COMP_WORDBREAKS == *=* ]]; then
        COMPREPLY=("${COMPREPLY[@]#*=}") # what stands in front is on the line already
    fi
}
complete -F _kva kva
