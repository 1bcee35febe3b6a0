// Values of a table after its random-discard replicates: the mean over the
// replicates (AllelCount::CalcRDF) if the table holds haploid entries and at least one
// replicate ran, else the plain value. -1.0 if there is none, as in AllelCount. Nothing is drawn
// here. A sample below 3 gene copies stops after one replicate: its sums of -1.0 are the value.
#ifndef KVA_DATA_RANDOMDISCARD_H
#define KVA_DATA_RANDOMDISCARD_H

namespace kva {

class AllelCount;

double rdHet(const AllelCount& table);              // heterozygosity; plain: CalcHet()
double rdMean(const AllelCount& table);             // allele number; plain: CalcMean()
double rdVar(const AllelCount& table, double mean); // its variance; plain: CalcVar(mean)
double rdAlleles(const AllelCount& table);          // alleles; plain: AnzAllele, -1.0 for none

} // namespace kva

#endif
