#include "fstat/AlleleEstimator.h"

namespace kva {

AlleleEstimator::AlleleEstimator(int32_t mostAlleles)
    : Counts1(static_cast<std::size_t>(mostAlleles) + kAlleleStep), Counts2(Counts1) {
    Drawn.resize(mostAlleles);
}

std::optional<VarianceComponents> AlleleEstimator::components(const ShuffleTable& whole1,
                                                              const ShuffleTable& whole2,
                                                              std::span<const uint8_t> entries1,
                                                              std::span<const uint8_t> entries2) {
    Drawn.clear();
    Drawn.addEntries(entries1);
    const Tally first = Drawn.tally();
    const Tally second = tallyEntries(entries2);
    Found = 0;
    int32_t open = second.Copies; // not yet found in the second sample
    for (const uint32_t code : Drawn.alleles()) {
        const int32_t left = whole1.count(code) + whole2.count(code) - Drawn.count(code);
        put(Drawn.count(code), left);
        open -= left;
    }
    // What is open belongs to alleles that the second sample alone has, in their order there.
    for (std::size_t k = 0; open > 0; ++k) {
        const uint32_t code = entries2[k] & kCodeBits;
        if (Drawn.count(code) == 0) {
            const int32_t copies = whole1.count(code) + whole2.count(code);
            put(0, copies);
            open -= copies;
            Drawn.mark(code);
        }
    }
    while (Found % kAlleleStep != 0) {
        put(0, 0);
    }
    return pairComponents({first.Copies, second.Copies, first.CalcHetobs(), second.CalcHetobs(),
                           std::span(Counts1).first(Found), std::span(Counts2).first(Found)});
}

} // namespace kva
