// Random allele tables without a data file, prepared for the distances: many small data sets in a
// short time, and some that reach the bounds of the fast ways.
#ifndef KVA_TESTS_DISTANCE_RANDOM_SAMPLES_H
#define KVA_TESTS_DISTANCE_RANDOM_SAMPLES_H

#include "distance/samples.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace kva_test {

struct RandomSamples {
    kva::Samples Populations;      // 2 to 6
    kva::Samples Individuals;      // 0 to 12 a population, now and then 130
    std::vector<std::size_t> Loci; // drawn with replacement, now and then 1023 and more
};

// The same for the same seed. 1 to 6 loci with 1 to 70 alleles, now and then 300; entries are
// missing, or haploid, and loci are without any.
RandomSamples randomSamples(uint32_t seed);

} // namespace kva_test

#endif
