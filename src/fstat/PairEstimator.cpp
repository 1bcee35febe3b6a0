#include "fstat/PairEstimator.h"

namespace kva {

PairEstimator::PairEstimator(HRule rule, int32_t mostAlleles)
    : Rule(rule), Counts1(static_cast<std::size_t>(mostAlleles) + kAlleleStep), Counts2(Counts1) {}

std::optional<VarianceComponents> PairEstimator::components(const ShuffleTable& t1,
                                                            const ShuffleTable& t2) {
    Found = 0;
    for (const uint32_t code : t1.alleles()) {
        put(t1.count(code), t2.count(code));
    }
    for (const uint32_t code : t2.alleles()) {
        if (t1.count(code) == 0) {
            put(0, t2.count(code));
        }
    }
    const HRule choice = pairRule(Rule, t1, t2);
    return estimate(t1.tally(), t2.tally(), sampleH(choice, t1), sampleH(choice, t2));
}

std::optional<VarianceComponents> PairEstimator::estimate(const Tally& t1, const Tally& t2,
                                                          double H1, double H2) {
    while (Found % kAlleleStep != 0) {
        put(0, 0);
    }
    return pairComponents({t1.Copies, t2.Copies, H1, H2, std::span(Counts1).first(Found),
                           std::span(Counts2).first(Found)});
}

} // namespace kva
