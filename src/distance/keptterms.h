// KeptTerms: all that the loci add to all pairs of a few samples, computed once, so that a
// replicate of the bootstrap only adds up.
//
// A locus adds one number to a pair, or a term for each allele of sample i, in the order of the
// pool. The terms of row i are rows of their own, with a column for each sample j > i:
//
//      locus 0, allele 0:   t(i, i+1)  t(i, i+2)  t(i, i+3)  ...
//      locus 0, allele 1:   t(i, i+1)  t(i, i+2)  t(i, i+3)  ...
//      locus 1, allele 0:   ...
//
// so that the sums of eight pairs, of three quantities at once, are running sums down their
// columns, over the loci as they are drawn. A term of 0.0 leaves a sum as it is; so the order of
// the additions of every single pair is that of the plain way, which QuantityRule::Add goes.
#ifndef KVA_DISTANCE_KEPTTERMS_H
#define KVA_DISTANCE_KEPTTERMS_H

#include "distance/quantities.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace kva {

class KeptTerms {
  public:
    // What the terms of these quantities take, in bytes.
    static std::size_t bytes(const Samples& samples, QuantitySet wanted);

    KeptTerms(const Samples& samples, QuantitySet wanted);

    // Sets the sums of the wanted quantities over `loci`, in their order, for row i; i and loci
    // from 0. `sums` is for as many samples.
    void sum(std::size_t i, std::span<const std::size_t> loci, RowSums& sums) const;

  private:
    static constexpr std::size_t kColumns = 8;
    static constexpr std::size_t kTogether = 3; // quantities: their sums fill twelve registers
    using Two = double __attribute__((vector_size(16)));
    // The terms of neighbouring columns, quantity after quantity.
    struct Block {
        Two Parts[kTogether * kColumns / 2];
    };
    // The rows of terms of a locus in row i.
    struct LocusTerms {
        std::size_t First = 0; // first block of the first row, in Terms
        std::size_t Rows = 0;  // 1, or the alleles of sample i; 0 where it is not typed
    };
    // Quantities that are summed together: all of them allele by allele, or none.
    struct Group {
        std::vector<Quantity> Quantities; // at most kTogether
        std::vector<LocusTerms> Loci;     // of row i at locus l: entry i x loci + l
        std::vector<Block> Terms;         // rows behind each other, each filled up with 0.0
    };

    // Groups without terms.
    static std::vector<Group> groupsOf(QuantitySet wanted);
    static bool isByAllele(const Group& group);
    // Blocks in a row of terms of row i.
    static std::size_t widthOf(std::size_t samples, std::size_t i) {
        return (samples - i - 1 + kColumns - 1) / kColumns;
    }

    // Keeps what locus l adds to the pairs of a row.
    void keepRow(Group& group, const LocusRow& row, std::size_t l) const;

    std::size_t Count;     // samples
    std::size_t LociCount; // loci
    std::vector<Group> Groups;
};

} // namespace kva

#endif
