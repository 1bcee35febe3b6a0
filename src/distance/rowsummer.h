// RowSummer: the sums of all quantities over a list of loci, row of pairs by row of pairs. Only
// one row is held, so that the memory does not grow with the square of the samples.
#ifndef KVA_DISTANCE_ROWSUMMER_H
#define KVA_DISTANCE_ROWSUMMER_H

#include "distance/genotypetables.h"
#include "distance/keptterms.h"
#include "distance/quantities.h"

#include <cstddef>
#include <optional>
#include <span>

namespace kva {

class RowSummer {
  public:
    // How much is worth computing beforehand.
    struct Effort {
        std::size_t Replicates = 1; // how often each row will be summed
        std::size_t KeepBytes = 0;  // for what is kept from row to row; 0: nothing is kept
    };

    // samples: NOT OWNED, they outlive the object and stay where they are. wanted: all that will be
    // asked for. Individuals are summed by GenotypeTables, several replicates of a few samples by
    // KeptTerms, all others plainly; the sums are the same.
    RowSummer(const Samples& samples, QuantitySet wanted, Effort effort);

    // The sums of the pairs (i, j), j > i, over `loci` in their order; i and the loci count from
    // 0, and a locus may stand there more than once. A locus where sample i is not typed adds
    // nothing. asked: the quantities that are read, some of those wanted. The sums stand until the
    // next call.
    const RowSums& sum(std::size_t i, std::span<const std::size_t> loci, QuantitySet asked);

    const Samples& samples() const { return Prepared; } // what is summed of

  private:
    // The plain way.
    void sumPlainly(std::size_t i, std::span<const std::size_t> loci, QuantitySet asked);

    const Samples& Prepared;                 // NOT OWNED
    RowSums Sums;                            // of the row summed last
    RowMaker Maker;                          // for the plain way
    std::optional<GenotypeTables> Genotypes; // there if they sum
    std::optional<KeptTerms> Kept;           // the same
};

} // namespace kva

#endif
