// The estimator of the permutation tests of pairs whose single alleles are dealt out anew.
#ifndef KVA_FSTAT_ALLELEESTIMATOR_H
#define KVA_FSTAT_ALLELEESTIMATOR_H

#include "fstat/PairTerms.h"
#include "fstat/ShuffleTable.h"
#include "fstat/wc84.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kva {

// The components of variance of a pair's locus (Weir and Cockerham 1984) with the observed
// heterozygosity, summed in the order of the first appearance of the alleles. Only the first sample
// is counted: of each allele the second one has what the first leaves over. Twin of
// PairEstimator::components(). The object holds the room.
class AlleleEstimator {
  public:
    // From the entries of both samples (CodedLocus::Entries), which are together those of two
    // populations; whole1, whole2: the tables of these. Nothing as in pairComponents().
    std::optional<VarianceComponents> components(const ShuffleTable& whole1,
                                                 const ShuffleTable& whole2,
                                                 std::span<const uint8_t> entries1,
                                                 std::span<const uint8_t> entries2);

  private:
    // The two populations that are dealt.
    struct Wholes {
        const ShuffleTable& First;
        const ShuffleTable& Second;

        // Gene copies of an allele in both.
        int32_t count(uint32_t code) const { return First.count(code) + Second.count(code); }
    };

    // Counts the first sample into Count and Order; returns its gene copies.
    int32_t countFirst(std::span<const uint8_t> entries);
    // Calls visit(count1, count2) with the gene copies of each allele in both samples, in the order
    // of first appearance. copies2: gene copies of the second sample.
    template <class Visitor>
    void forEachAllele(const Wholes& wholes, std::span<const uint8_t> entries2, int32_t copies2,
                       Visitor&& visit);
    // The components after countFirst(), given the tallies of both samples: of small ones by terms
    // that are computed once ...
    std::optional<VarianceComponents> fromTerms(const Wholes& wholes, const Tally& first,
                                                const Tally& second,
                                                std::span<const uint8_t> entries2);
    // ... and of others anew.
    std::optional<VarianceComponents> fromCounts(const Wholes& wholes, const Tally& first,
                                                 const Tally& second,
                                                 std::span<const uint8_t> entries2);

    PairTerms Terms;                                // of small samples
    std::array<int32_t, kCodeBits + 1> Count = {1}; // in the first sample by code; 0 is never 0
    std::array<uint8_t, kCodeBits + 2> Order = {};  // codes by first appearance; one to spare
    std::size_t Found = 0;                          // alleles in Order
    // Gene copies of each allele in both samples, with room for a step.
    std::array<int32_t, kCodeBits + kAlleleStep> Counts1 = {};
    std::array<int32_t, kCodeBits + kAlleleStep> Counts2 = {};
};

} // namespace kva

#endif
