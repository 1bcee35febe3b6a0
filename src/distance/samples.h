// What the distances need to know of each sample (a population or an individual) at each
// locus, taken from the allele tables once per call: a replicate of the bootstrap then only
// adds up, and searches nothing.
#ifndef KVA_DISTANCE_SAMPLES_H
#define KVA_DISTANCE_SAMPLES_H

#include "data/allelcount.h"

#include <cstdint>
#include <vector>

namespace kva {

// One allele in one sample.
struct AlleleShare {
    double Share = 0.0; // frequency in the sample, above 0; 0.0 in a filler
    int32_t Place = 0;  // row of the allele in the pool table, from 0; Pool in a filler
};

// All samples at one locus. Flags are 1.0 or 0.0, so that they can be added up.
struct LocusSamples {
    int32_t Pool = 0;                // alleles in the pool
    std::vector<int32_t> First;      // the shares of sample j are First[j] to First[j + 1] - 1
    std::vector<AlleleShare> Shares; // of all samples, each in the order of the pool table
    std::vector<double> Typed;       // flag: the sample has an allele
    std::vector<double> Alleles;     // distinct alleles
    std::vector<double> HasMean;     // flag: there is a mean
    std::vector<double> Mean;        // mean allele number; -1.0 if there is none
    std::vector<double> Variance;    // of the allele numbers, -1.0 if there is none; 0.0 unused
    std::vector<double> InNei;       // flag: takes part in Nei's standard distance
    std::vector<double> Identity;    // J' = (n sum x^2 - 1) / (n - 1), n gene copies (Nei 1978)
    double Repeat = 1.0;             // repeat length that mean and variance are divided by
};

// The samples of all loci in locus order.
struct Samples {
    int32_t Count = 0;
    std::vector<LocusSamples> Loci;
};

// Where populations and individuals differ in what is taken from their tables.
struct SampleRules {
    // Whether the variance within the samples goes into the average squared difference.
    bool Variances = true;
    // Whether a sample of a single gene copy takes part in Nei's standard distance. Its J' is
    // then 0/0: wanted, it makes the sums of its pairs nan.
    bool SingleCopies = true;
    // Each sample gets at least this many shares, with fillers for those that are missing: an
    // individual then always has two, and the loops over them run without a guess.
    int32_t ShareSlots = 0;
};

constexpr SampleRules kPopulationRules{true, true, 0};
constexpr SampleRules kIndividualRules{false, false, 2};

// Prepares the samples tables[first] to tables[first + count - 1] for all loci of `pool`, the
// tables of all populations together. A sample that is not there counts as not typed.
// repeats: the repeat length of each locus, as many as `pool` has loci.
Samples prepareSamples(const SampleTables& tables, std::size_t first, int32_t count,
                       const LocusTables& pool, const std::vector<double>& repeats,
                       const SampleRules& rules);

} // namespace kva

#endif
