// RowSummer: the sums of one measure over a list of loci, row of pairs by row of pairs. Only
// one row is held, so that the memory does not grow with the square of the samples.
#ifndef KVA_DISTANCE_ROWSUMMER_H
#define KVA_DISTANCE_ROWSUMMER_H

#include "distance/measures.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kva {

class RowSummer {
  public:
    // samples: NOT OWNED, they outlive the object. keepBytes: what a locus adds as one number
    // is computed once and kept if all pairs and loci fit into that many bytes; 0: not at all.
    // The sums are the same. What a locus adds allele by allele is not kept: a product or a
    // minimum of two numbers at hand costs no more than reading it back.
    RowSummer(const Samples& samples, const Measure& measure, std::size_t keepBytes);

    // The sums of the pairs (i, j), j > i, over `loci` in their order, each from 0. They stand
    // until the next call.
    const RowSums& sum(int32_t i, std::span<const int32_t> loci);

    // Pair j of the row summed last.
    PairSums pair(int32_t j) const;

    const Measure& measure() const { return Rule; }
    const Samples& samples() const { return Prepared; }

  private:
    // The values of all pairs at one locus, rows of the upper triangle behind each other.
    struct KeptLocus {
        std::vector<double> Values;
        std::vector<char> Done; // by row
    };

    void addLocus(int32_t i, std::size_t locus);
    const double* keptValues(const LocusRow& row, std::size_t locus);
    void spread(const LocusRow& row, bool present); // sets Frequencies, or back to 0.0

    const Samples& Prepared;
    Measure Rule;
    RowSums Sums;
    std::vector<double> Frequencies; // of the row's sample by place in the pool; 0.0 between calls
    std::vector<double> Values;      // of one row where they are not kept
    std::vector<KeptLocus> Kept;     // by locus; empty: not kept
};

} // namespace kva

#endif
