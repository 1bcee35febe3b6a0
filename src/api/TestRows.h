// The permutation tests of a run, a row for each statistic of each pair or locus, with the p-values
// that a paper wants beside those of the sheets.
#ifndef KVA_API_TESTROWS_H
#define KVA_API_TESTROWS_H

#include "results/tidy.h"
#include "run/testrecord.h"

#include <string>
#include <vector>

namespace kva {

// Names that the rows take.
struct TestNames {
    std::vector<std::string> Populations; // from 0
    std::vector<std::string> Loci;        // the same
};

// One test. The numbers are those of fstat/adjustedp.h; nan: there is no observed value, or it is
// not one of several pairs.
struct TestRow {
    std::string Statistic; // "fst_pairwise", ...
    std::string Population1;
    std::string Population2;
    std::string Locus;
    TestCount Count;
    double P;
    double Error; // Monte Carlo standard error of P
    double Holm;  // adjusted for all pairs of the statistic
    double BenjaminiHochberg;
};

// All tests, pairs first, statistic by statistic.
std::vector<TestRow> testRows(const TestRecord& record, const TestNames& names);

// A test in the long table: rows of STATISTIC_test_hits, ..._permutations, ..._p, ..._p_error and,
// for pairs, ..._p_holm and ..._p_bh.
void writeTest(const TestRow& row, TidyWriter& table);

} // namespace kva

#endif
