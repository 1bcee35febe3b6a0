// What deals of tiny pairs of populations came to, kept by the individuals of the first sample: a
// few individuals make few samples, and a permutation test deals each of them again and again.
#ifndef KVA_FSTAT_KNOWNDEALS_H
#define KVA_FSTAT_KNOWNDEALS_H

#include "data/codeddata.h"
#include "fstat/nearvalues.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

// What is known of a deal.
struct KnownDeal {
    bool Known = false;          // it came before
    std::optional<Reached> Told; // by near values; nothing: they do not tell
};

class KnownDeals {
  public:
    static constexpr std::size_t kMostIndividuals = 10;             // of both populations
    static constexpr std::size_t kMostDeals = std::size_t{1} << 20; // of all pairs

    // Nothing is known. `data` gives the places and is not kept.
    explicit KnownDeals(const CodedData& data);

    // What is known of the deal of two populations (from 0, pop1 < pop2) whose first sample has the
    // individuals at `places` (pair places), in any order; null for a pair that is not kept.
    KnownDeal* find(std::size_t pop1, std::size_t pop2, std::span<const int32_t> places);

  private:
    // A population in pairs.
    struct Side {
        int32_t Place; // of its first individual
        int32_t Size;
    };

    std::vector<Side> Sides;                   // by population
    std::vector<std::vector<KnownDeal>> Deals; // [pair][a bit for each individual of both]
    std::size_t Kept = 0;                      // entries in Deals
};

} // namespace kva

#endif
