// The quantities that the genetic distances are made of: what a locus adds to a pair of samples.
//
// A sample is a population or an individual; x and y are the frequencies of an allele in the two
// samples of a pair i < j. Sums run over the loci in the order they are drawn, and within a locus
// over the alleles in the order of the pool, one addition at a time: the order is part of the
// result. A locus adds something only to a pair whose samples are both typed there.
#ifndef KVA_DISTANCE_QUANTITIES_H
#define KVA_DISTANCE_QUANTITIES_H

#include "distance/samples.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kva {

// m is the mean allele number of a sample and v its variance, r the repeat length of the locus.
enum class Quantity : uint8_t {
    Typed,       // 1
    WithMean,    // 1 if both samples have a mean
    InNei,       // 1 if both take part in Nei's standard distance
    Smaller,     // min(x, y), allele by allele
    Products,    // x y, allele by allele
    NeiProducts, // the same where both take part in Nei's standard distance
    Shared,      // alleles that both samples have
    Alleles,     // alleles of the one and alleles of the other
    Difference,  // |mi - mj| / r, where both have a mean; also the next two
    Square,      // (mi - mj)^2 / r^2
    Spread,      // (vi + (mi - mj)^2 + vj) / r^2; wanted: a variance of -1.0 goes in as it stands
    Chord,       // sqrt(2 (1 - B)), 0 where B exceeds 1 by rounding
    Cosine,      // B, the sum of sqrt(x y)
    IdentityI,   // J' of sample i, where both take part in Nei's standard distance
    IdentityJ,   // J' of sample j
    None         // no quantity
};
constexpr std::size_t kQuantities = static_cast<std::size_t>(Quantity::None);
constexpr auto kAllQuantities = [] {
    std::array<Quantity, kQuantities> all{};
    for (std::size_t q = 0; q < kQuantities; ++q) {
        all[q] = static_cast<Quantity>(q);
    }
    return all;
}();
constexpr std::size_t placeOf(Quantity quantity) { // in an array by quantity
    return static_cast<std::size_t>(quantity);
}

// Some of the quantities, a bit for each.
class QuantitySet {
  public:
    void add(Quantity quantity) { Bits |= bit(quantity) & kAll; } // None is left out
    bool has(Quantity quantity) const { return (Bits & bit(quantity)) != 0; }
    bool empty() const { return Bits == 0; }

  private:
    static constexpr uint32_t bit(Quantity quantity) {
        return uint32_t{1} << static_cast<uint32_t>(quantity);
    }
    static constexpr uint32_t kAll = (uint32_t{1} << kQuantities) - 1;

    uint32_t Bits = 0;
};

// The sums of a row of pairs (i, j): entry j of each vector belongs to sample j, from 0, j > i.
class RowSums {
  public:
    // For so many samples, all sums 0.0. There is room for a few entries more behind the last.
    explicit RowSums(std::size_t samples);

    void clear(QuantitySet wanted); // sets the sums of these quantities to 0.0

    // Entry 0 of a quantity; not None.
    double* of(Quantity quantity) { return Sums[placeOf(quantity)].data(); }
    const double* of(Quantity quantity) const { return Sums[placeOf(quantity)].data(); }

    static constexpr std::size_t kRoom = 8; // entries behind the last

  private:
    std::array<std::vector<double>, kQuantities> Sums; // by quantity
};

// One row of pairs at one locus, whose sample I is typed.
struct LocusRow {
    const LocusSamples& Locus; // NOT OWNED
    std::size_t I;             // the row's sample, from 0
    std::size_t First;         // the row's first pair is (I, First)
    const double* X; // NOT OWNED; frequency in I of each allele of the pool, by place from 0; 0.0
                     // for one it has not got and for the place Pool of the fillers
};

// Makes rows: spreads the alleles of a sample over the pool.
class RowMaker {
  public:
    explicit RowMaker(const Samples& samples); // for rows at the loci of these

    // The row of sample `i` from the pair (i, first) on. It holds until the next call.
    LocusRow row(const LocusSamples& locus, std::size_t i, std::size_t first);

  private:
    std::vector<double> Frequencies; // of the row's sample by place; 0.0 but at the next
    std::vector<std::size_t> Places; // of its alleles
};

// How a locus adds a quantity.
struct QuantityRule {
    // Adds it to the sums of the row, sums[j] for each sample j from First on.
    void (*Add)(const LocusRow& row, double* sums);
    // What an allele adds where it is added allele by allele; 0.0 if x or y is 0.0. Else null: the
    // locus adds one number.
    double (*Term)(double x, double y);
};

const QuantityRule& ruleOf(Quantity quantity); // not None

} // namespace kva

#endif
