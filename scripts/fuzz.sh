#!/bin/sh
# Runs the fuzz harnesses (clang's libFuzzer) under the address and undefined-behaviour sanitizers.
# Usage: scripts/fuzz.sh SECONDS [HARNESS...]   each for so long; all of them by default
#        scripts/fuzz.sh minimise [HARNESS...]  what was found new goes, minimised, into fuzz/corpus
# A find is written to build/fuzz/finds and ends the script with an error.
set -eu
cd "$(dirname "$0")/.."

task=${1:?seconds, or minimise}
shift
[ $# -gt 0 ] || set -- reader options iminfo menu passes results check report import_genepop \
    import_structure import_fstat import_genetix import_genalex import_long

scripts/setup.sh build test clang
cmake --preset fuzz >/dev/null
mkdir -p build/fuzz/finds
for name in "$@"; do
    program=build/fuzz/fuzz/kva_${name}_fuzz
    kept=fuzz/corpus/$name
    grown=build/fuzz/corpus/$name
    cmake --build --preset fuzz -j2 --target "kva_${name}_fuzz"
    mkdir -p "$kept" "$grown"
    if [ "$task" = minimise ]; then
        mkdir -p "$grown.least"
        "$program" -merge=1 "$grown.least" "$kept" "$grown"
        rm -r "$kept"
        mv "$grown.least" "$kept"
    else
        "$program" -max_total_time="$task" -timeout=120 -max_len=4096 -print_final_stats=1 \
            -artifact_prefix="$PWD/build/fuzz/finds/$name-" "$grown" "$kept"
    fi
done
