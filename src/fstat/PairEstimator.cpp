#include "fstat/PairEstimator.h"

namespace kva {

PairEstimator::PairEstimator(HRule rule, int32_t mostAlleles)
    : Rule(rule), Counts1(static_cast<std::size_t>(mostAlleles) + kAlleleStep), Counts2(Counts1) {
    Drawn.resize(mostAlleles);
}

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

std::optional<VarianceComponents>
PairEstimator::componentsOfDeal(const CodedLocus& locus, const ShuffleTable& whole1,
                                const ShuffleTable& whole2, std::span<const int32_t> places1,
                                std::span<const int32_t> places2) {
    Drawn.clear();
    Drawn.addPairs(locus, places1);
    Tally rest = whole1.tally();
    rest += whole2.tally();
    rest -= Drawn.tally();
    Found = 0;
    int32_t open = rest.Copies; // not yet found in the second sample
    for (const uint32_t code : Drawn.alleles()) {
        const int32_t left = whole1.count(code) + whole2.count(code) - Drawn.count(code);
        put(Drawn.count(code), left);
        open -= left;
    }
    // What is open belongs to alleles that the second sample alone has, in their order there.
    const auto addNew = [&](uint32_t code) {
        if (Drawn.count(code) == 0) {
            const int32_t copies = whole1.count(code) + whole2.count(code);
            put(0, copies);
            open -= copies;
            Drawn.mark(code);
        }
    };
    for (const int32_t place : places2) {
        if (open <= 0) {
            break;
        }
        const CodedPair& pair = locus.Pairs[static_cast<std::size_t>(place)];
        addNew(pair.First);
        addNew(pair.Second);
    }
    return estimate(Drawn.tally(), rest, Drawn.CalcHetobs(), rest.CalcHetobs());
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
