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

// The alleles that are open after the first sample belong to the second alone.
template <class Visitor>
void AlleleEstimator::forEachAllele(const Wholes& wholes, std::span<const uint8_t> entries2,
                                    int32_t copies2, Visitor&& visit) {
    int32_t open = copies2; // not yet found in the second sample
    for (std::size_t k = 0; k < Found; ++k) {
        const int32_t count1 = Count[Order[k]];
        const int32_t copies = wholes.count(Order[k]);
        visit(count1, copies - count1);
        open -= copies - count1;
    }
    for (std::size_t k = 0; open > 0; ++k) {
        const uint8_t code = entries2[k] & kCodeBits;
        if (Count[code] == 0) {
            const int32_t copies = wholes.count(code);
            visit(0, copies);
            open -= copies;
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
    const Wholes wholes = {whole1, whole2};
    const int32_t copies1 = countFirst(entries1);
    const int32_t copies2 = whole1.tally().Copies + whole2.tally().Copies - copies1;
    const int32_t weight = whole1.tally().Weight + whole2.tally().Weight;
    const bool haploid = weight < 2 * (copies1 + copies2);
    const int32_t weight1 = 2 * copies1 - (haploid ? countLight(entries1) : 0);
    const TypedPairs pairs1 = countPairs(entries1);
    const TypedPairs pairs2 = countPairs(entries2);
    const Tally first = {copies1, weight1, pairs1.Typed, pairs1.Hetero};
    const Tally second = {copies2, weight - weight1, pairs2.Typed, pairs2.Hetero};
    const bool small = std::max(copies1, copies2) <= PairTerms::kMostCopies;
    const auto components = small ? fromTerms(wholes, first, second, entries2)
                                  : fromCounts(wholes, first, second, entries2);
    for (std::size_t k = 0; k < Found; ++k) {
        Count[Order[k]] = 0;
    }
    return components;
}

std::optional<VarianceComponents> AlleleEstimator::fromTerms(const Wholes& wholes,
                                                             const Tally& first,
                                                             const Tally& second,
                                                             std::span<const uint8_t> entries2) {
    const PairTerms::Page& page = Terms.page(first.Copies, second.Copies);
    const double H1 = first.CalcHetobs();
    const double H2 = second.CalcHetobs();
    if (!page.Sizes || H1 < 0.0 || H2 < 0.0) {
        return std::nullopt;
    }
    TwoDoubles sum = {};
    const PairTerms::Term* const terms = page.Terms.data();
    const int32_t step = page.Step + 1;
    forEachAllele(wholes, entries2, second.Copies, [&](int32_t count1, int32_t count2) {
        sum += terms[count1 * step + count2].OfAB;
    });
    return withHeterozygosity(*page.Sizes, sum[0], sum[1], H1, H2);
}

std::optional<VarianceComponents> AlleleEstimator::fromCounts(const Wholes& wholes,
                                                              const Tally& first,
                                                              const Tally& second,
                                                              std::span<const uint8_t> entries2) {
    std::size_t n = 0;
    const auto put = [&](int32_t count1, int32_t count2) {
        Counts1[n] = count1;
        Counts2[n] = count2;
        ++n;
    };
    forEachAllele(wholes, entries2, second.Copies, put);
    while (n % kAlleleStep != 0) {
        put(0, 0);
    }
    return pairComponents({first.Copies, second.Copies, first.CalcHetobs(), second.CalcHetobs(),
                           std::span(Counts1).first(n), std::span(Counts2).first(n)});
}

} // namespace kva
