// Values of a table after its random-discard replicates: the mean over the
// replicates if the table holds haploid entries and at least one replicate ran,
// else the plain value. -1.0 if there is none, as in AllelCount.
#ifndef KVA_DATA_RANDOMDISCARD_H
#define KVA_DATA_RANDOMDISCARD_H

namespace kva {

class AllelCount;

double rdHet(const AllelCount& table);              // plain: CalcHet()
double rdMean(const AllelCount& table);             // plain: CalcMean()
double rdVar(const AllelCount& table, double mean); // plain: CalcVar(mean)
double rdAlleles(const AllelCount& table);          // plain: AnzAllele, -1.0 for none

} // namespace kva

#endif
