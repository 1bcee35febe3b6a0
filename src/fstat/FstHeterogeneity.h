// Heterogeneity of F-statistics among loci: replicas draw loci with replacement, and the
// limits of their mean F are appended to "LocusFHeterogeneity.xls". The draws go on
// with the random stream as it stands.
#ifndef KVA_FSTAT_FSTHETEROGENEITY_H
#define KVA_FSTAT_FSTHETEROGENEITY_H

#include <cstdint>

namespace kva {

class Run;
class CMatrix;
class ResultFile;

// Loci drawn for a replica. replicaLoci: 0 all loci, n > 0 n loci, n < 0 all but -n.
int32_t lociPerReplica(int32_t replicaLoci, int32_t anzLoci);

// Writes the head and a row for each pair. locusTable: Fst, a row a locus, a column a pair.
void writePairHeterogeneity(Run& run, const CMatrix& locusTable, ResultFile& sheet);

// Writes the row for all populations. locusTable: Fst, Fit, Fis in rows 0 to 2, a column a
// locus. The head comes first where no pairwise pass wrote it.
void writeGlobalHeterogeneity(Run& run, const CMatrix& locusTable, ResultFile& sheet);

} // namespace kva

#endif
