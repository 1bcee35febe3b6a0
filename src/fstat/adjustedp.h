// p-values out of permutations, and of many tests at once.
#ifndef KVA_FSTAT_ADJUSTEDP_H
#define KVA_FSTAT_ADJUSTEDP_H

#include "run/testrecord.h"

#include <span>
#include <vector>

namespace kva {

// The p-value of a test, above 0: (hits + 1) / (permutations + 1), the observed data being one of
// the arrangements (Davison and Hinkley 1997; Phipson and Smyth 2010); hits / permutations where
// the hits ended it (Besag and Clifford 1991).
double permutationP(const TestCount& count);

// The Monte Carlo standard error of that p-value, sqrt(p (1 - p) / permutations); nan without a
// permutation.
double permutationError(const TestCount& count);

// p-values adjusted for their number, in the order of p, each from 0 to 1.
std::vector<double> holm(std::span<const double> p);              // Holm 1979: step-down
std::vector<double> benjaminiHochberg(std::span<const double> p); // 1995: step-up

} // namespace kva

#endif
