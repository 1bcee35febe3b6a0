// The fast count of single alleles against AllelCount and the equations.
#include "fstat/AlleleEstimator.h"

#include "fstat/genotypes.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using namespace kva;

using kva_test::addSlots;
using kva_test::expectSameBits;
using kva_test::plainComponents;
using kva_test::randomGenotypes;
using kva_test::SlotOf;

namespace {

constexpr uint32_t kSeeds = 1000;

std::vector<SlotOf> slotsOfPair(const CodedData& data, std::array<std::size_t, 2> pops) {
    std::vector<SlotOf> slots;
    for (const std::size_t pop : pops) {
        for (int32_t slot = 0; slot < data.slots(pop); ++slot) {
            slots.push_back({static_cast<int32_t>(pop), slot});
        }
    }
    return slots;
}

std::vector<uint8_t> entriesAt(const CodedData& data, std::size_t l,
                               std::span<const SlotOf> slots) {
    std::vector<uint8_t> entries;
    for (const SlotOf& slot : slots) {
        const int32_t place = data.slotPlace(static_cast<std::size_t>(slot.Pop)) + slot.Slot;
        entries.push_back(data.locus(l).Entries[static_cast<std::size_t>(place)]);
    }
    return entries;
}

ShuffleTable tableOf(const CodedData& data, std::size_t l, std::size_t pop) {
    std::vector<int32_t> places(static_cast<std::size_t>(data.slots(pop)));
    std::iota(places.begin(), places.end(), data.slotPlace(pop));
    ShuffleTable table;
    table.resize(data.locus(l).Alleles);
    table.addSlots(data.locus(l), places);
    return table;
}

// The slots dealt, of which the first sample takes `size1`.
void expectAsCounted(const Datensatz& daten, const CodedData& data, std::size_t l,
                     std::array<std::size_t, 2> pops, std::span<const SlotOf> dealt,
                     std::size_t size1, AlleleEstimator& estimator) {
    AllelCount pool;
    AllelCount t1;
    AllelCount t2;
    const std::array<AllelCount*, 2> first = {&pool, &t1};
    const std::array<AllelCount*, 2> second = {&pool, &t2};
    addSlots(daten, l, dealt.first(size1), first);
    addSlots(daten, l, dealt.subspan(size1), second);
    expectSameBits(estimator.components(tableOf(data, l, pops[0]), tableOf(data, l, pops[1]),
                                        entriesAt(data, l, dealt.first(size1)),
                                        entriesAt(data, l, dealt.subspan(size1))),
                   plainComponents(pool, t1, t2));
}

} // namespace

// Samples of the sizes of the populations, and of any size, odd ones too.
TEST(AlleleEstimator, ADealIsAsCountedSlotBySlot) {
    AlleleEstimator estimator;
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        const Datensatz daten = randomGenotypes(seed);
        const CodedData data(daten);
        std::mt19937 stream(seed);
        for (std::size_t l = 0; l < data.loci(); ++l) {
            if (data.locus(l).Entries.empty()) {
                continue; // too many alleles
            }
            const std::array<std::size_t, 2> pops = {0, 1 + seed % (data.populations() - 1)};
            std::vector<SlotOf> slots = slotsOfPair(data, pops);
            std::shuffle(slots.begin(), slots.end(), stream);
            const std::size_t any = stream() % (slots.size() + 1);
            for (const std::size_t size1 : {static_cast<std::size_t>(data.slots(0)), any}) {
                expectAsCounted(daten, data, l, pops, slots, size1, estimator);
            }
        }
    }
}

// Two populations of 127 alleles: each allele once in the first, twice in the second.
TEST(AlleleEstimator, AByteHoldsTheMostAlleles) {
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("A", 128);
    daten.AddPopulation("B", 254);
    for (int allele = 0; allele < 127; ++allele) {
        if (allele % 2 == 0) {
            daten.AddTier(1, 1, 100 + allele, allele < 126 ? 101 + allele : -1, 0);
        }
        daten.AddTier(1, 2, 100 + allele, 100 + allele, 0);
    }
    const CodedData data(daten);
    ASSERT_EQ(data.locus(0).Alleles, 127);
    std::vector<SlotOf> slots = slotsOfPair(data, {0, 1});
    std::mt19937 stream(5);
    AlleleEstimator estimator;
    for (int deal = 0; deal < 20; ++deal) {
        std::shuffle(slots.begin(), slots.end(), stream);
        expectAsCounted(daten, data, 0, {0, 1}, slots, 128, estimator);
    }
}

// 16 bits count the individuals of four fields at a time: beyond 65536 entries they are emptied.
TEST(CountPairs, ManyEntriesDoNotOverflow) {
    for (const std::size_t n : {65534U, 65536U, 65543U, 131081U}) {
        std::vector<uint8_t> entries(n, 1);
        for (std::size_t k = 0; k < n; k += 2) {
            entries[k] = 2;
        }
        const TypedPairs all = countPairs(entries);
        EXPECT_EQ(all.Typed, static_cast<int32_t>(n));
        EXPECT_EQ(all.Hetero, static_cast<int32_t>(n / 2));
    }
}

// Every pair of two entries out of missing, two alleles, the largest code, and each haploid, at
// every place of a row.
TEST(CountPairs, CountsAsTallyPair) {
    const std::vector<uint8_t> kinds = {0, 1, 2, 127, 1 | kHaploidBit, 127 | kHaploidBit};
    for (const uint8_t a : kinds) {
        for (const uint8_t b : kinds) {
            const Tally pair = tallyPair(a & kCodeBits, 2, b & kCodeBits, 2);
            for (std::size_t place = 0; place < 14; place += 2) {
                std::vector<uint8_t> entries(15, 0); // the last one stays open: it counts as typed
                entries[place] = a;
                entries[place + 1] = b;
                EXPECT_EQ(countPairs(entries).Typed, pair.Typed + 1) << +a << ' ' << +b;
                EXPECT_EQ(countPairs(entries).Hetero, pair.Hetero) << +a << ' ' << +b;
            }
        }
    }
}
