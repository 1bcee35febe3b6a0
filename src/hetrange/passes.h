// The pass of the heterozygosity range and its parts: CalcHetRange.cpp. The data of a population
// are drawn again with replacement (bootstrap, Efron 1979), replicate by replicate.
#ifndef KVA_HETRANGE_PASSES_H
#define KVA_HETRANGE_PASSES_H

#include "hetrange/HetReplika.h"

#include <vector>

namespace kva {

class Run;

// The pass: counts the alleles if no pass did, writes the nine sheets into the folder
// "Resampling_data" and an entry into the log; the process is in the result folder afterwards. 0;
// -4 if nothing is loaded; 1 if there are no tables; 1 or 2 if the folder (new, or there already)
// cannot be entered. The random stream is not seeded: it goes on as the earlier passes left it.
long heterozygosityRange(Run& run);

// All populations, the nine sheets: "HetRangeMin.xls", "HetRangeMean.xls", "HetRangeMax.xls" and
// those of "VarRange..." and "AlleleRange...", a row a population and a column a locus, in the
// current folder; "n.d." where no replicate counted for H. PopAllele must be there.
void writeHeterozygosityRanges(Run& run);

// Resamples population `pop` (from 0), HetRandomisierungen times. `tabellen`: an entry per locus,
// loaded here. Result: an entry per locus, from 0. Writes the replicate sheets if they are asked
// for.
std::vector<HetBereich> resamplePopulation(Run& run, int pop, std::vector<HetTable>& tabellen);

// The sheets of every replicate of a population (from 0), "North_HetRange.xls",
// "North_VarRange.xls" and "North_AlleleRange.xls" in the current folder, with heads; closed ones
// without HetRangeBit::ReplicateSheets.
HetReplicateSheets openReplicateSheets(Run& run, int pop);

// Draws the sample of one replicate for a population (from 0): row by row, a random number per
// entry, or with HetRangeBit::Individuals per pair of entries, as many as the population has. A
// place that this does not reach stays as it was, all of them without HetRangeBit::Draw. `replikat`
// is not read.
void drawReplicate(const Run& run, int replikat, int pop, HetStichprobe& stichprobe);

// Computes the statistics of replicate `replikat` (from 0; from 1 in the sheets), replaces an H of
// 0 or about 1 with HetRangeBit::CorrectZero, writes them as a row to the open replicate sheets and
// takes them into `bereich`. `bereich` and `tabellen` hold an entry per locus; the counts of
// `tabellen` are those of the replicate then. Draws from the random stream with
// HetRangeBit::RandomDiscard alone, see HetTable::Add. 0, or -100 if the H of the last locus is
// negative, which stops nothing.
int evaluateReplicate(const Run& run, int replikat, const HetStichprobe& stichprobe,
                      std::vector<HetBereich>& bereich, std::vector<HetTable>& tabellen,
                      HetReplicateSheets& sheets);

} // namespace kva

#endif
