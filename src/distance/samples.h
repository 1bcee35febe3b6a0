// What the distances need to know of each sample (a population or an individual) at each
// locus, taken from the allele tables once per call: a replicate of the bootstrap then only
// adds up, and searches nothing.
#ifndef KVA_DISTANCE_SAMPLES_H
#define KVA_DISTANCE_SAMPLES_H

#include "data/allelcount.h"

#include <cstddef>
#include <vector>

namespace kva {

// One allele in one sample.
struct AlleleShare {
    double Share = 0.0;    // frequency in the sample, above 0; 0.0 in a filler
    std::size_t Place = 0; // row of the allele in the pool table, from 0; Pool in a filler
};

// All samples at one locus, one entry per sample from 0 unless told otherwise. Flags are 1.0 or
// 0.0, so that they can be added up.
struct LocusSamples {
    std::size_t Pool = 0;            // distinct alleles in the pool
    std::vector<std::size_t> First;  // first share of each sample in Shares, from 0, and the end
    std::vector<AlleleShare> Shares; // of all samples, each in the order of the pool table
    std::vector<double> Typed;       // flag: the sample has an allele
    std::vector<double> Alleles;     // distinct alleles
    std::vector<double> HasMean;     // flag: typed, and there is a mean
    std::vector<double> Mean;        // mean allele number, in base pairs; -1.0 if there is none
    std::vector<double> Variance;    // of the allele numbers (rdVar), in squared base pairs; -1.0
                                     // if there is none; 0.0 where the rules leave it out
    std::vector<double> InNei;       // flag: takes part in Nei's standard distance
    std::vector<double> Identity;    // J' = (n sum x^2 - 1) / (n - 1), n gene copies (Nei 1978);
                                     // 0.0 where it takes no part
    double Repeat = 1.0;             // repeat length, in base pairs: it divides differences of
                                     // means, its square variances
};

// The samples of all loci in locus order.
struct Samples {
    std::size_t Count = 0;          // samples at each locus
    std::vector<LocusSamples> Loci; // locus l, from 0
};

// Where populations and individuals differ in what is taken from their tables.
struct SampleRules {
    // Whether the variance within the samples goes into the average squared difference.
    bool Variances = true;
    // Whether a sample of a single gene copy takes part in Nei's standard distance. Its J' is
    // then 0/0: wanted, it makes the sums of its pairs nan, and their cells show it.
    bool SingleCopies = true;
    // Each sample gets at least this many shares, with fillers for those that are missing: an
    // individual then always has two, and the loops over them run without a guess.
    std::size_t ShareSlots = 0;
};

// With variances and single copies, without fillers; and the other way round for individuals.
constexpr SampleRules kPopulationRules{true, true, 0};
constexpr SampleRules kIndividualRules{false, false, 2};

// Prepares the samples tables[first] to tables[first + count - 1] for all loci of `pool`, the
// tables of all populations together. All tables are sorted. A sample that is not there counts as
// not typed. repeats: the repeat length of each locus, in base pairs, at least 1, as many as `pool`
// has loci; 1 leaves allele numbers as they are. `first` counts from 0.
Samples prepareSamples(const SampleTables& tables, std::size_t first, std::size_t count,
                       const LocusTables& pool, const std::vector<double>& repeats,
                       const SampleRules& rules);

} // namespace kva

#endif
