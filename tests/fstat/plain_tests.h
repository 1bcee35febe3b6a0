// The permutation tests once more, slow and obvious: allele tables made slot by slot, one
// estimate after the other, every list whole. The tests of the program must give the same bits.
#ifndef KVA_TESTS_FSTAT_PLAIN_TESTS_H
#define KVA_TESTS_FSTAT_PLAIN_TESTS_H

#include "control/AnalyseDataObj.h"

#include <array>
#include <string>

namespace kva_test {

using namespace kva;

// As AnalyseDataObj::FST_P_WC84.
void plainPairTest(const AnalyseDataObj& obj, FTriple& p, const FTriple& f, CMatrix& locusTable);

// As AnalyseDataObj::FST_RD_WC84.
void plainDiscardTest(const AnalyseDataObj& obj, FTriple& p, FTriple& f, CMatrix& untergrenze,
                      CMatrix& obergrenze, CMatrix& locusTable);

// What the test over all populations gives.
struct GlobalP {
    double fst = 0.0;
    double gst = 0.0;
    double gstStrich = 0.0;
    CMatrix locus; // three rows
};

// As AnalyseDataObj::FST_GLOBAL_P_WC84; `observed` are the three values over all loci.
GlobalP plainGlobalTest(const AnalyseDataObj& obj, const std::array<double, 3>& observed,
                        const CMatrix& observedLocus);

// Run a test of the program and its plain twin on the observed F-statistics of a run whose tables
// are counted, under its FstMask and Permutationen. Result: the names of what differs in a bit, the
// place in the random stream among them; empty if nothing does. The clock stands still.
std::string pairTestDifference(AnalyseDataObj& run);
std::string discardTestDifference(AnalyseDataObj& run);
std::string globalTestDifference(AnalyseDataObj& run); // of two populations or more

} // namespace kva_test

#endif
