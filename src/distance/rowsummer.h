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
    // samples: NOT OWNED, they outlive the object and stay where they are. keepBytes: what a locus
    // adds as one number is computed once and kept if all pairs and loci fit into that many bytes;
    // 0: not at all. The sums are the same. What a locus adds allele by allele is not kept: a
    // product or a minimum of two numbers at hand costs no more than reading it back.
    RowSummer(const Samples& samples, const Measure& measure, std::size_t keepBytes);

    // The sums of the pairs (i, j), j > i, over `loci` in their order; i and the loci count from
    // 0, and a locus may stand there more than once. A locus where sample i is not typed adds
    // nothing. The sums stand until the next call.
    const RowSums& sum(int32_t i, std::span<const int32_t> loci);

    // Pair (i, j) of the row i summed last; j from 0, j > i.
    PairSums pair(int32_t j) const;

    const Measure& measure() const { return Rule; }     // what is summed
    const Samples& samples() const { return Prepared; } // what it is summed of

  private:
    // The values of all pairs at one locus, rows of the upper triangle behind each other.
    struct KeptLocus {
        std::vector<double> Values; // row r has n - r places, from column r on, of n samples
        std::vector<char> Done;     // by row: 1 if its values are there; empty before the first
    };

    // Adds a locus (from 0) to the sums of row i.
    void addLocus(int32_t i, std::size_t locus);
    // The values of a row at a locus, computed once; entry j is that of pair (I, j), j > I.
    const double* keptValues(const LocusRow& row, std::size_t locus);
    // Sets Frequencies to those of the row's sample (present), or its places back to 0.0.
    void spread(const LocusRow& row, bool present);

    const Samples& Prepared;         // NOT OWNED
    Measure Rule;                    // what is summed
    RowSums Sums;                    // of the row summed last
    std::vector<double> Frequencies; // of the row's sample by place in the pool; 0.0 between calls
    std::vector<double> Values;      // of one row where they are not kept, by sample
    std::vector<KeptLocus> Kept;     // by locus, from 0; empty: not kept
};

} // namespace kva

#endif
