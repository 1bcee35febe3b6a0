#!/bin/sh
# Times this program beside what its users run today, on the same data and machine, in one sitting.
# Usage: bench/peers.sh [PROGRAM]        default: build/release/kva
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh peers
program=$(realpath "${1:-build/release/kva}")
scripts=$PWD/bench/peers
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
cd "$place"
Rscript "$scripts/microbov.R" 2>/dev/null

# Wall time of a command: the least of five runs.
seconds() {
    python3 - "$@" <<'P'
import subprocess, sys, time
best = 1e9
for _ in range(5):  # the results of the last run stay
    subprocess.run("rm -rf outfile outtree *_KVAresult*", shell=True, check=True)
    begun = time.monotonic()
    subprocess.run(sys.argv[1], shell=True, check=False, stdout=subprocess.DEVNULL)
    best = min(best, time.monotonic() - begun)
print("%6.3f s" % best)
P
}

echo "Shared alleles of 704 individuals at 30 loci"
cat > shared.R <<'R'
suppressMessages(library(adegenet))
data(microbov)
cat(sprintf("%6.3f s\n", min(replicate(5, system.time(propShared(microbov))["elapsed"]))))
R
printf '  adegenet propShared, the matrix in memory   %s\n' "$(Rscript shared.R)"
printf '  kva -dist i POSA, with all default sheets   %s\n' \
    "$(seconds "$program -i microbov.txt -dist i POSA")"

echo "Chord distances of 15 breeds, 100 bootstrap replicates"
cp infile frequencies
seqboot=$(seconds "cp frequencies infile; printf 'D\nD\nD\nA\nY\n4333\n' | phylip seqboot")
mv outfile replicates
gendist=$(seconds "cp replicates infile; printf 'C\nA\nM\n100\nY\n' | phylip gendist")
printf '  PHYLIP seqboot                              %s\n' "$seqboot"
printf '  PHYLIP gendist                              %s\n' "$gendist"
printf '  kva -dist p CAS n=100, all default sheets   %s\n' \
    "$(seconds "$program -i microbov.txt -dist p CAS n=100")"
