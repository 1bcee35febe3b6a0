// What an allele adds to the components of variance of two small samples, computed once for all of
// its counts: in small samples the same counts come again and again.
#ifndef KVA_FSTAT_PAIRTERMS_H
#define KVA_FSTAT_PAIRTERMS_H

#include "fstat/nearvalues.h"
#include "fstat/wc84.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kva {

class PairTerms {
  public:
    // What an allele adds to a and to b.
    struct Term {
        TwoDoubles OfAB;
    };

    static constexpr int32_t kMostCopies = 48; // of a sample

    // The terms for two samples of given sizes.
    struct Page {
        std::optional<PairSizes> Sizes; // nothing: there are no components, and all terms are 0
        int32_t Step;                   // gene copies of sample 2
        std::vector<Term> Terms;        // [copies in sample 1 x Step + copies in both]
        NearFactors Near;               // only with sizes
    };

    PairTerms() : Pages(std::size_t{kSide} * kSide) {}

    // The page of two samples of so many gene copies each, from 0 to kMostCopies; it stays as long
    // as this object. Computed when it is first asked for.
    const Page& page(int32_t copies1, int32_t copies2) {
        const int32_t place = copies1 * kSide + copies2;
        std::unique_ptr<const Page>& page = Pages[place];
        if (!page) {
            page = compute(copies1, copies2);
        }
        return *page;
    }

  private:
    static constexpr int32_t kSide = kMostCopies + 1;

    static std::unique_ptr<const Page> compute(int32_t copies1, int32_t copies2);

    std::vector<std::unique_ptr<const Page>> Pages; // [copies1 x kSide + copies2]
};

} // namespace kva

#endif
