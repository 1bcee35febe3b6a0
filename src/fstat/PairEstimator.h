// The estimator of the permutation tests of pairs, on the tables made for speed.
#ifndef KVA_FSTAT_PAIRESTIMATOR_H
#define KVA_FSTAT_PAIRESTIMATOR_H

#include "fstat/ShuffleTable.h"
#include "fstat/wc84.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kva {

// The components of variance of a pair's locus (Weir and Cockerham 1984), summed in the order of
// the first appearance of the alleles; twin of the plain reading in FstPair.cpp. The object holds
// the room.
class PairEstimator {
  public:
    // mostAlleles: of any locus.
    PairEstimator(HRule rule, int32_t mostAlleles);

    // From the tables of the two samples; nothing as in pairComponents().
    std::optional<VarianceComponents> components(const ShuffleTable& t1, const ShuffleTable& t2);

  private:
    // Writes the counts of an allele behind those before.
    void put(int32_t count1, int32_t count2) {
        Counts1[Found] = count1;
        Counts2[Found] = count2;
        ++Found;
    }
    // The components from the counts in the lists and the tallies and H of both samples.
    std::optional<VarianceComponents> estimate(const Tally& t1, const Tally& t2, double H1,
                                               double H2);

    HRule Rule;                   // which heterozygosity stands for H
    std::size_t Found = 0;        // alleles in the lists
    std::vector<int32_t> Counts1; // gene copies of each allele in sample 1, with room for a step
    std::vector<int32_t> Counts2; // ... in sample 2
};

} // namespace kva

#endif
