#include "fstat/AlleleEstimator.h"

#include <algorithm>

namespace kva {

// A code seen for the first time is written behind the last and the end moves on: no branch to
// mispredict.
int32_t AlleleEstimator::countFirst(std::span<const uint8_t> entries) {
    std::size_t found = 0;
    for (const uint8_t entry : entries) {
        const uint8_t code = entry & kCodeBits;
        Order[found] = code;
        found += Count[code] == 0 ? 1 : 0;
        ++Count[code];
    }
    Found = found;
    const int32_t missing = Count[kMissingCode] - 1;
    Count[kMissingCode] = 1;
    return static_cast<int32_t>(entries.size()) - missing;
}

void AlleleEstimator::listCounts(const ShuffleTable& whole1, const ShuffleTable& whole2,
                                 std::span<const uint8_t> entries2, int32_t copies2) {
    int32_t open = copies2; // not yet found in the second sample
    for (std::size_t k = 0; k < Found; ++k) {
        const uint32_t code = Order[k];
        Counts1[k] = Count[code];
        Counts2[k] = whole1.count(code) + whole2.count(code) - Count[code];
        open -= Counts2[k];
    }
    for (std::size_t k = 0; open > 0; ++k) {
        const uint8_t code = entries2[k] & kCodeBits;
        if (Count[code] == 0) {
            Counts1[Found] = 0;
            Counts2[Found] = whole1.count(code) + whole2.count(code);
            open -= Counts2[Found];
            Count[code] = 1; // no longer new
            Order[Found] = code;
            ++Found;
        }
    }
}

std::optional<VarianceComponents> AlleleEstimator::components(const ShuffleTable& whole1,
                                                              const ShuffleTable& whole2,
                                                              std::span<const uint8_t> entries1,
                                                              std::span<const uint8_t> entries2) {
    const Tally& all1 = whole1.tally();
    const Tally& all2 = whole2.tally();
    const int32_t copies1 = countFirst(entries1);
    const int32_t copies2 = all1.Copies + all2.Copies - copies1;
    const int32_t weight = all1.Weight + all2.Weight;
    const bool haploid = weight < 2 * (copies1 + copies2);
    const int32_t weight1 = 2 * copies1 - (haploid ? countLight(entries1) : 0);
    const TypedPairs pairs1 = countPairs(entries1);
    const TypedPairs pairs2 = countPairs(entries2);
    const Tally first = {copies1, weight1, pairs1.Typed, pairs1.Hetero};
    const Tally second = {copies2, weight - weight1, pairs2.Typed, pairs2.Hetero};
    listCounts(whole1, whole2, entries2, copies2);
    for (const uint8_t code : std::span(Order).first(Found)) {
        Count[code] = 0;
    }
    std::fill_n(&Counts1[Found], kAlleleStep, 0);
    std::fill_n(&Counts2[Found], kAlleleStep, 0);
    const std::size_t filled = (Found + kAlleleStep - 1) / kAlleleStep * kAlleleStep;
    return pairComponents({copies1, copies2, first.CalcHetobs(), second.CalcHetobs(),
                           std::span(Counts1).first(filled), std::span(Counts2).first(filled)});
}

} // namespace kva
