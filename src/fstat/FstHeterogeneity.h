// Heterogeneity of F-statistics among loci: replicas draw loci with replacement, and the
// limits of their mean F are appended to "LocusFHeterogeneity.xls". The draws go on
// with the random stream as it stands, one for each locus of a replica and one for each locus
// drawn in vain, that is without a value.
#ifndef KVA_FSTAT_FSTHETEROGENEITY_H
#define KVA_FSTAT_FSTHETEROGENEITY_H

#include <cstdint>

namespace kva {

class Run;
class CMatrix;
class ResultFile;

// Loci drawn for a replica. replicaLoci: 0 all loci, n > 0 n loci, n < 0 all but -n. More than
// there are count as all but one; where nothing is left, 2 loci are drawn, of a single one 1.
int32_t lociPerReplica(int32_t replicaLoci, int32_t anzLoci);

// Both draw Run::Replikate replicas and write to `sheet` where it stands; DistFehlerwert in
// `locusTable` (indices from 0) is a locus without a value. A row where no locus has one is "n.d.",
// and said so on the console and in the log.

// Writes the head and a row for each pair: limits and mean of Fst, 95 % then 99 %. locusTable: Fst,
// a row a locus, a column a pair (ConvertPoptoPoint).
void writePairHeterogeneity(Run& run, const CMatrix& locusTable, ResultFile& sheet);

// Writes the row for all populations: the same of Fst, Fit and Fis. locusTable: Fst, Fit, Fis in
// rows 0 to 2, a column a locus. The head comes first where no pairwise pass wrote it.
void writeGlobalHeterogeneity(Run& run, const CMatrix& locusTable, ResultFile& sheet);

} // namespace kva

#endif
