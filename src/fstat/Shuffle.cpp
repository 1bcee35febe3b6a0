#include "fstat/Shuffle.h"

#include "base/settings.h"
#include "fstat/jackknife.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <numeric>

namespace kva {

ShuffleMode ShuffleMode::of(uint32_t fstMask) {
    return {hasBit(fstMask, FstBit::Genotypes), hasBit(fstMask, FstBit::Linked),
            hasBit(fstMask, FstBit::Permutation), hasBit(fstMask, FstBit::Jackknife)};
}

// --- Two populations -------------------------------------------------------------------

PairShuffle::PairShuffle(const CodedData& data, const ShuffleMode& art) : Data(data), Mode(art) {}

PairShuffle::Side PairShuffle::slotsOf(std::size_t pop) const {
    const int32_t size = Data.slots(pop);
    return {Data.slotPlace(pop), size,
            Mode.Jackknife ? static_cast<int32_t>(jackknifedSlots(size)) : size};
}

PairShuffle::Side PairShuffle::pairsOf(std::size_t pop) const {
    const Side slots = slotsOf(pop);
    return {Data.pairPlace(pop), slots.Size / 2, slots.Dealt / 2};
}

void PairShuffle::deal(std::size_t pop1, std::size_t pop2) {
    Paired = Mode.Genotypes && Data.slots(pop1) % 2 == 0 && Data.slots(pop2) % 2 == 0;
    if (Paired) {
        dealUnits(pairsOf(pop1), pairsOf(pop2));
    } else if (Mode.Genotypes) {
        dealOddPairs(slotsOf(pop1), slotsOf(pop2));
    } else {
        dealUnits(slotsOf(pop1), slotsOf(pop2));
    }
}

void PairShuffle::dealUnits(const Side& a, const Side& b) {
    const int32_t all = a.Dealt + b.Dealt;
    Draws.resize(static_cast<std::size_t>(all));
    Units.resize(static_cast<std::size_t>(all));
    rand2Fill(Draws);
    if (Mode.Permutation) {
        Pool.deal<1>(all, Draws, Units);
    } else {
        std::transform(Draws.begin(), Draws.end(), Units.begin(),
                       [all](float value) { return indexOf(value, all); });
    }
    auto unit = Units.cbegin();
    const std::array<Side, 2> sides = {a, b};
    for (std::size_t s = 0; s < sides.size(); ++s) {
        Places[s].resize(static_cast<std::size_t>(sides[s].Size));
        const int32_t border = a.Dealt;
        const int32_t inA = a.Base;
        const int32_t inB = b.Base - border;
        std::transform(unit, unit + sides[s].Dealt, Places[s].begin(),
                       [=](int32_t u) { return u + (u < border ? inA : inB); });
        unit += sides[s].Dealt;
        keepTail(s, sides[s]);
    }
}

// A population has an odd number of slots. A pair can reach over the edge between the two,
// and belongs to the population of its first slot; a single slot is left for the end.
void PairShuffle::dealOddPairs(const Side& a, const Side& b) {
    const int32_t all = a.Dealt + b.Dealt;
    const std::array<const Side*, 2> sides = {&a, &b};
    std::array<int32_t, 2> next = {0, 0};
    for (std::size_t s = 0; s < sides.size(); ++s) {
        Places[s].assign(static_cast<std::size_t>(sides[s]->Size), sides[s]->Base + sides[s]->Size);
    }
    Pool.fill(all / 2);
    for (int32_t dealt = 0; dealt < all; dealt += 2) {
        const int32_t pairs = Mode.Permutation ? (all - dealt) / 2 : all / 2;
        const int32_t r = std::max(drawIndex(pairs), 0);
        const int32_t pair = Mode.Permutation && pairs > 0 ? Pool.take(r) : r;
        const int32_t first = pairs > 0 ? 2 * pair : all - 1;
        const Side& from = first < a.Dealt ? a : b;
        const int32_t place = from.Base + first - (first < a.Dealt ? 0 : a.Dealt);
        const int32_t missing = from.Base + from.Size;
        const std::size_t s = dealt < a.Dealt ? 0 : 1;
        for (const int32_t source : {place, first + 1 < all ? place + 1 : missing}) {
            if (next[s] < sides[s]->Dealt) {
                Places[s][static_cast<std::size_t>(next[s])] = source;
            }
            ++next[s];
        }
    }
    keepTail(0, a);
    keepTail(1, b);
}

void PairShuffle::keepTail(std::size_t sample, const Side& side) {
    std::iota(Places[sample].begin() + side.Dealt, Places[sample].end(), side.Base + side.Dealt);
}

void PairShuffle::count(const CodedLocus& locus, ShuffleTable& t1, ShuffleTable& t2) const {
    t1.clear();
    t2.clear();
    if (Paired) {
        t1.addPairs(locus, Places[0]);
        t2.addPairs(locus, Places[1]);
    } else {
        t1.addSlots(locus, Places[0]);
        t2.addSlots(locus, Places[1]);
    }
}

// --- All populations -------------------------------------------------------------------

GlobalShuffle::GlobalShuffle(const CodedData& data, bool genotypes) : Genotypes(genotypes) {
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        Paired = Paired && data.slots(pop) % 2 == 0;
        for (int32_t slot = 0; slot < data.slots(pop); ++slot) {
            SlotPlace.push_back(data.slotPlace(pop) + slot);
        }
    }
    Paired = Paired && genotypes;
    Total = static_cast<int32_t>(SlotPlace.size());
    Begin.push_back(0);
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        Begin.push_back(Begin.back() + data.slots(pop) / (Paired ? 2 : 1));
        // A place that no shuffle reaches stays on the one behind its population's last.
        Places.resize(static_cast<std::size_t>(Begin.back()),
                      data.slotPlace(pop) + data.slots(pop));
    }
}

void GlobalShuffle::deal() {
    if (Paired) {
        dealPairs();
    } else if (Genotypes) {
        dealOddPairs();
    } else {
        dealSlots();
    }
}

// Deals n units into Units, in the order in which they are drawn; the last goes without.
template <int32_t Scale> void GlobalShuffle::dealUnits(int32_t n) {
    Draws.resize(static_cast<std::size_t>(std::max(n - 1, 0)));
    Units.resize(static_cast<std::size_t>(n));
    rand2Fill(Draws);
    Pool.deal<Scale>(n, Draws, Units);
    if (n > 0) {
        Units.back() = Pool.take(0);
    }
}

void GlobalShuffle::dealPairs() {
    dealUnits<2>(Total / 2); // a draw is of a slot, which takes its pair along
    std::copy(Units.rbegin(), Units.rend(), Places.begin());
}

void GlobalShuffle::dealSlots() {
    dealUnits<1>(Total);
    const auto placeOf = [this](int32_t slot) { return SlotPlace[static_cast<std::size_t>(slot)]; };
    for (std::size_t k = 0; k + 1 < Units.size(); ++k) {
        Places[Units.size() - 1 - k] = placeOf(Units[k]);
    }
    if (Total > 1) { // wanted: the last slot goes to place 1, and place 0 keeps what it held
        Places[1] = placeOf(Units.back());
    }
}

// A population has an odd number of slots. The source of a pair is read from the slot that
// was drawn, so that its partner can lie behind or before the population: both read as missing.
void GlobalShuffle::dealOddPairs() {
    Pool.fill((Total + 1) / 2);
    for (int32_t rest = Total; rest > 2; rest -= 2) {
        const int32_t r = drawIndex(rest);
        const int32_t drawn = 2 * Pool.take(r / 2) + r % 2;
        const int32_t second = SlotPlace[static_cast<std::size_t>(drawn)] + (r % 2 == 0 ? 1 : 0);
        putPair(rest - 1, second - 1, second);
    }
    if (Total > 1) {
        const int32_t slot = 2 * Pool.take(0);
        const int32_t first = SlotPlace[static_cast<std::size_t>(slot)];
        putPair(1, first, first + 1);
    }
}

// Puts a pair on flat place `last` and the one before it, unless that lies in another population.
void GlobalShuffle::putPair(int32_t last, int32_t first, int32_t second) {
    const auto place = static_cast<std::size_t>(last);
    Places[place] = second;
    if (SlotPlace[place] - SlotPlace[place - 1] == 1) {
        Places[place - 1] = first;
    }
}

void GlobalShuffle::count(const CodedLocus& locus, std::size_t pop, ShuffleTable& table) const {
    table.clear();
    if (Paired) {
        table.addPairs(locus, places(pop));
    } else {
        table.addSlots(locus, places(pop));
    }
}

} // namespace kva
