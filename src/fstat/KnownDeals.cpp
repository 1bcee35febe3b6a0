#include "fstat/KnownDeals.h"

namespace kva {

KnownDeals::KnownDeals(const CodedData& data) : Deals(data.populations() * data.populations()) {
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        Sides.push_back({data.pairPlace(pop), data.slots(pop) / 2});
    }
}

KnownDeal* KnownDeals::find(std::size_t pop1, std::size_t pop2, std::span<const int32_t> places) {
    const Side& first = Sides[pop1];
    const Side& second = Sides[pop2];
    const auto individuals = static_cast<uint32_t>(first.Size + second.Size);
    if (individuals > kMostIndividuals) {
        return nullptr;
    }
    std::vector<KnownDeal>& ofPair = Deals[pop1 * Sides.size() + pop2];
    if (ofPair.empty()) {
        const std::size_t deals = std::size_t{1} << individuals;
        if (Kept + deals > kMostDeals) {
            return nullptr;
        }
        Kept += deals;
        ofPair.resize(deals);
    }
    const int32_t between = second.Place - first.Size;
    std::size_t drawn = 0;
    for (const int32_t place : places) {
        drawn |= std::size_t{1} << (place < second.Place ? place - first.Place : place - between);
    }
    return &ofPair[drawn];
}

} // namespace kva
