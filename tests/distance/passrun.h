// The two passes run in a test, and what they leave.
#ifndef KVA_TESTS_DISTANCE_PASSRUN_H
#define KVA_TESTS_DISTANCE_PASSRUN_H

#include "support/datasets.h"

#include <string>

namespace kva_test {

using namespace kva;

// Three populations of two diploids, two loci with repeat lengths 2 and 4. Frequencies:
//   L1: A 100 1,   B 100 1/2 104 1/2, C 104 1
//   L2: A 200 1/2 208 1/2, B the same, C 200 3/4 208 1/4
extern const char* const kThreePops;

struct Pass {
    long Result = 0;
    std::string Console;
};

// CalcDistancesPop or CalcDistancesInd with the measures of `mask`; the master switch is added.
Pass popPass(LoadedRun& run, uint32_t mask, long bootstraps = 1);
Pass indPass(LoadedRun& run, uint32_t mask, long bootstraps = 1);

// A file of the folder "Distance_data".
std::string distanceFile(const LoadedRun& run, const std::string& name);
bool hasDistanceFile(LoadedRun& run, const std::string& name);

// How often `part` stands in `text`.
int occurrences(const std::string& text, const std::string& part);

} // namespace kva_test

#endif
