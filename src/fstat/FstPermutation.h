// What the two permutation tests of population pairs share: the loop over pairs, and the way from
// hits to p-values. A hit is a permutation whose statistic reaches the observed one.
#ifndef KVA_FSTAT_FSTPERMUTATION_H
#define KVA_FSTAT_FSTPERMUTATION_H

#include "data/ftriple.h"
#include "fstat/nearvalues.h"

#include <cstdint>

namespace kva {

// Permutations after which the pairwise tests seed the stream again from the clock. Wanted: within
// one second the same permutations come again, and the p-values depend on it.
constexpr int32_t kPairSeedEvery = 50;

// Calls visit(i, j) for every pair i < j of n populations, both from 0, row by row.
template <class Visitor> void forEachPair(int32_t n, Visitor&& visit) {
    for (int32_t i = 0; i + 1 < n; ++i) {
        for (int32_t j = i + 1; j < n; ++j) {
            visit(i, j);
        }
    }
}

// Adds 1 to the hits of each statistic, at (i, j) of its matrix, whose observed value the permuted
// one reaches.
void countHits(FTriple& hits, int32_t i, int32_t j, const Reached& reached);

// Turns the hits of a pair i < j, at (i, j), out of n permutations into p-values: the plain one at
// (i, j), the one multiplied by the number of pairs (Bonferroni) at (j, i), which can exceed 1. No
// hit counts as one. With n of 0 both are infinite.
void hitsToPValues(FTriple& p, int32_t i, int32_t j, double pairs, double n);

// The same of one statistic.
void hitsToPValue(CMatrix& p, int32_t i, int32_t j, double pairs, double n);

// Number of pairs of n populations, n (n - 1) / 2.
double pairNumber(int32_t n);

} // namespace kva

#endif
