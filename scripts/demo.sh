#!/bin/sh
# Builds the program and runs its main job on the shipped example, in scratch/demo.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build
cmake --preset release
cmake --build --preset release -j2

rm -rf scratch/demo
mkdir -p scratch/demo
cp examples/testdata.dat scratch/demo
(cd scratch/demo && ../../build/release/kva -i testdata.dat -dist population DAN -fst pairwise n=0) ||
    [ $? -eq 1 ] # 1: a run took place

result=scratch/demo/testdata.dat_KVAresult00
echo
echo
echo "The results are in $result:"
(cd "$result" && find . -type f | sort | sed 's|^\./|    |')
echo
echo "The sheets (.xls) are tab-delimited text; open them in a spreadsheet. The beginning of"
echo "Single_data/Hetexp.xls, the expected heterozygosity of each population and locus:"
echo
cut -f 1-7 "$result/Single_data/Hetexp.xls" | expand -t 10 | sed 's/^/    /'
echo
echo "F-Statistic/FST_WC84.txt, the Fst of each pair of populations:"
echo
sed 's/^/    /' "$result/F-Statistic/FST_WC84.txt"
