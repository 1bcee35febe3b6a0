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

template <class Item>
void PairDeal<Item>::deal(std::span<const Item> row, const ShuffleSide& a, const ShuffleSide& b,
                          bool permutation) {
    const std::span<const Item> first = row.subspan(a.Base, a.Dealt);
    const std::span<const Item> second = row.subspan(b.Base, b.Dealt);
    const std::size_t all = a.Dealt + b.Dealt;
    resize(a.Dealt, b.Dealt);
    if (permutation) {
        const std::span<int32_t> places = std::span(Draws).first(all);
        drawIndices(static_cast<int32_t>(all), places);
        Pool.fill(first, second);
        Pool.deal(places, Items);
    } else {
        drawAgain(first, second);
    }
    if (all < a.Size + b.Size) {
        insertTails(row, a, b);
    }
}

template <class Item>
void PairDeal<Item>::drawAgain(std::span<const Item> first, std::span<const Item> second) {
    const std::size_t all = first.size() + second.size();
    for (Item& item : std::span(Items).first(all)) {
        const auto r = static_cast<std::size_t>(drawIndex(static_cast<int32_t>(all)));
        item = r < first.size() ? first[r] : second[r - first.size()];
    }
}

template <class Item>
void PairDeal<Item>::insertTails(std::span<const Item> row, const ShuffleSide& a,
                                 const ShuffleSide& b) {
    const auto tailOf = [row](const ShuffleSide& side) {
        return row.subspan(side.Base + side.Dealt, side.Size - side.Dealt);
    };
    const std::span<const Item> dealt = sample(1);
    resize(a.Size, b.Size);
    std::copy_backward(dealt.begin(), dealt.end(), sample(1).begin() + std::ssize(dealt));
    std::ranges::copy(tailOf(a), sample(0).subspan(a.Dealt).begin());
    std::ranges::copy(tailOf(b), sample(1).subspan(b.Dealt).begin());
}

namespace {

// Slots of all populations, each with the place behind its last.
std::size_t placesOf(const CodedData& data) {
    std::size_t places = 0;
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        places += static_cast<std::size_t>(data.slots(pop)) + 1;
    }
    return places;
}

} // namespace

PairShuffle::PairShuffle(const CodedData& data, const ShuffleMode& art)
    : Mode(art), Numbers(placesOf(data)), Places(Numbers.size()), Entries(Numbers.size()) {
    std::iota(Numbers.begin(), Numbers.end(), 0);
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        const int32_t size = data.slots(pop);
        const long dealt = Mode.Jackknife ? jackknifedSlots(size) : size;
        const ShuffleSide slots = {static_cast<std::size_t>(data.slotPlace(pop)),
                                   static_cast<std::size_t>(size), static_cast<std::size_t>(dealt)};
        Slots.push_back(slots);
        Pairs.push_back(
            {static_cast<std::size_t>(data.pairPlace(pop)), slots.Size / 2, slots.Dealt / 2});
    }
}

void PairShuffle::deal(std::size_t pop1, std::size_t pop2) {
    Paired = Mode.Genotypes && Slots[pop1].Size % 2 == 0 && Slots[pop2].Size % 2 == 0;
    if (Paired) {
        Places.deal(Numbers, Pairs[pop1], Pairs[pop2], Mode.Permutation);
    } else if (Mode.Genotypes) {
        dealOddPairs(Slots[pop1], Slots[pop2]);
    } else {
        Places.deal(Numbers, Slots[pop1], Slots[pop2], Mode.Permutation);
    }
}

void PairShuffle::dealEntries(const CodedLocus& locus, std::size_t pop1, std::size_t pop2) {
    Entries.deal(locus.Entries, Slots[pop1], Slots[pop2], Mode.Permutation);
}

void PairShuffle::readEntries(const CodedLocus& locus) {
    const uint8_t* const row = locus.Entries.data();
    Entries.resize(places(0).size(), places(1).size());
    for (std::size_t s = 0; s < 2; ++s) {
        std::transform(places(s).begin(), places(s).end(), Entries.sample(s).begin(),
                       [row](int32_t place) { return row[place]; });
    }
}

// A population has an odd number of slots. A pair can reach over the edge between the two,
// and belongs to the population of its first slot; a single slot is left for the end.
void PairShuffle::dealOddPairs(const ShuffleSide& a, const ShuffleSide& b) {
    const std::size_t all = a.Dealt + b.Dealt;
    const std::array<const ShuffleSide*, 2> sides = {&a, &b};
    std::array<std::size_t, 2> next = {0, 0};
    Places.resize(a.Size, b.Size);
    for (std::size_t s = 0; s < sides.size(); ++s) {
        const auto home = std::span(Numbers).subspan(sides[s]->Base, sides[s]->Size);
        std::copy(home.begin(), home.end(), Places.sample(s).begin());
        std::fill_n(Places.sample(s).begin(), sides[s]->Dealt, missingPlace(*sides[s]));
    }
    Pool.fill(std::span(Numbers).first(all / 2));
    for (std::size_t dealt = 0; dealt < all; dealt += 2) {
        const std::size_t pairs = Mode.Permutation ? (all - dealt) / 2 : all / 2;
        const int32_t r = std::max(drawIndex(static_cast<int32_t>(pairs)), 0);
        const int32_t pair = Mode.Permutation && pairs > 0 ? Pool.take(r) : r;
        const std::size_t first = pairs > 0 ? 2 * static_cast<std::size_t>(pair) : all - 1;
        const ShuffleSide& from = first < a.Dealt ? a : b;
        const std::size_t place = from.Base + first - (first < a.Dealt ? 0 : a.Dealt);
        const std::size_t s = dealt < a.Dealt ? 0 : 1;
        const int32_t partner = first + 1 < all ? Numbers[place + 1] : missingPlace(from);
        for (const int32_t source : {Numbers[place], partner}) {
            if (next[s] < sides[s]->Dealt) {
                Places.sample(s)[next[s]] = source;
            }
            ++next[s];
        }
    }
}

void PairShuffle::count(const CodedLocus& locus, ShuffleTable& t1, ShuffleTable& t2) const {
    t1.clear();
    t2.clear();
    if (Paired) {
        t1.addPairs(locus, places(0));
        t2.addPairs(locus, places(1));
    } else {
        t1.addSlots(locus, places(0));
        t2.addSlots(locus, places(1));
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
    Numbers.resize((SlotPlace.size() + 1) / 2);
    std::iota(Numbers.begin(), Numbers.end(), 0);
    Begin.push_back(0);
    for (std::size_t pop = 0; pop < data.populations(); ++pop) {
        Begin.push_back(Begin.back() + data.slots(pop) / (Paired ? 2 : 1));
        // A place that no shuffle reaches stays on the one behind its population's last.
        Places.resize(Begin.back(), data.slotPlace(pop) + data.slots(pop));
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

void GlobalShuffle::dealUnits(std::span<const int32_t> items) {
    Units.resize(items.size());
    Draws.assign(items.size(), 0); // the last one's place is 0
    if (!items.empty()) {
        drawIndices(static_cast<int32_t>(items.size()), std::span(Draws).first(items.size() - 1));
    }
    Pool.fill(items);
    Pool.deal(Draws, Units);
}

// A draw is of a slot, which takes its pair along: the same as a draw of a pair.
void GlobalShuffle::dealPairs() {
    dealUnits(Numbers);
    std::copy(Units.rbegin(), Units.rend(), Places.begin());
}

void GlobalShuffle::dealSlots() {
    dealUnits(SlotPlace);
    if (Total > 1) { // wanted: the last slot goes to place 1, and place 0 keeps what it held
        std::copy(Units.begin(), Units.end() - 1, Places.rbegin());
        Places[1] = Units.back();
    }
}

// A population has an odd number of slots. The source of a pair is read from the slot that
// was drawn, so that its partner can lie behind or before the population: both read as missing.
void GlobalShuffle::dealOddPairs() {
    Pool.fill(Numbers);
    for (int32_t rest = Total; rest > 2; rest -= 2) {
        const int32_t r = drawIndex(rest);
        const int32_t drawn = 2 * Pool.take(r / 2) + r % 2;
        const int32_t second = SlotPlace[drawn] + (r % 2 == 0 ? 1 : 0);
        putPair(rest - 1, second - 1, second);
    }
    if (Total > 1) {
        const int32_t slot = 2 * Pool.take(0);
        const int32_t first = SlotPlace[slot];
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
