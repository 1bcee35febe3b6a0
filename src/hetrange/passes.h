// The pass of the heterozygosity range and its parts: CalcHetRange.cpp.
#ifndef KVA_HETRANGE_PASSES_H
#define KVA_HETRANGE_PASSES_H

#include "hetrange/HetReplika.h"

#include <vector>

namespace kva {

class Run;

// The pass. 0; -4 if nothing is loaded; 1 or 2 if the folder cannot be entered. The random stream
// is not seeded: it goes on as the earlier passes left it.
long heterozygosityRange(Run& run);

// All populations, the nine sheets. 0.
long writeHeterozygosityRanges(Run& run);

// Resamples population `pop` (from 0). Result: an entry per locus.
std::vector<HetBereich> resamplePopulation(Run& run, int pop, std::vector<HetTable>& tabellen);

// The sheets of every replicate of a population (from 0), with heads; closed ones if they are not
// asked for.
HetReplicateSheets openReplicateSheets(Run& run, int pop);

// Draws the sample of one replicate for a population (from 0): a random number per place, row by
// row. Without HetRangeBit::Draw the sample stays as it was. 0.
int drawReplicate(const Run& run, int replikat, int pop, HetStichprobe& stichprobe);

// Computes the statistics of one replicate, writes them to the open replicate sheets and takes them
// into `bereich`. `bereich` and `tabellen` hold an entry per locus. 0, or -100 if the H of the last
// locus is negative.
int evaluateReplicate(const Run& run, int replikat, const HetStichprobe& stichprobe,
                      std::vector<HetBereich>& bereich, std::vector<HetTable>& tabellen,
                      HetReplicateSheets& sheets);

} // namespace kva

#endif
