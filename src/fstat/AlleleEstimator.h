// The estimator of the permutation tests of pairs whose single alleles are dealt out anew.
#ifndef KVA_FSTAT_ALLELEESTIMATOR_H
#define KVA_FSTAT_ALLELEESTIMATOR_H

#include "fstat/ShuffleTable.h"
#include "fstat/wc84.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

// The components of variance of a pair's locus (Weir and Cockerham 1984) with the observed
// heterozygosity, summed in the order of the first appearance of the alleles. Only the first sample
// is counted: of each allele the second one has what the first leaves over. Twin of
// PairEstimator::components(). The object holds the room.
class AlleleEstimator {
  public:
    // mostAlleles: of any locus.
    explicit AlleleEstimator(int32_t mostAlleles);

    // From the entries of both samples (CodedLocus::Entries), which are together those of two
    // populations; whole1, whole2: the tables of these. Nothing as in pairComponents().
    std::optional<VarianceComponents> components(const ShuffleTable& whole1,
                                                 const ShuffleTable& whole2,
                                                 std::span<const uint8_t> entries1,
                                                 std::span<const uint8_t> entries2);

  private:
    // Writes the counts of an allele behind those before.
    void put(int32_t count1, int32_t count2) {
        Counts1[Found] = count1;
        Counts2[Found] = count2;
        ++Found;
    }

    ShuffleTable Drawn;           // the first sample
    std::size_t Found = 0;        // alleles in the lists
    std::vector<int32_t> Counts1; // gene copies of each allele in sample 1, with room for a step
    std::vector<int32_t> Counts2; // ... in sample 2
};

} // namespace kva

#endif
