// The plain shuffles, replayed by hand. Draws are those of seed 1, see fstatsupport.h.
#include "fstat/plain/MakeMix.h"

#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <utility>

using namespace kva;

using kva_test::streamIsBehind;

namespace {

using Ints = std::vector<int32_t>;

// Both maps of a deal of populations 0 and 1.
struct Deal {
    Deal(int permutation, int genotypes, int jackknife, long nA, long nB)
        : map1{Ints(static_cast<std::size_t>(nA), 77), Ints(static_cast<std::size_t>(nA), 77)},
          map2{Ints(static_cast<std::size_t>(nB), 77), Ints(static_cast<std::size_t>(nB), 77)} {
        srand2(1);
        result = MakeMix2(permutation, genotypes, 1, jackknife, nA, nB, 0, 1, map1, map2, buffer);
    }

    SampleMap map1;
    SampleMap map2;
    Ints buffer;
    int result = -1;
};

// All (population, slot) of both maps.
std::multiset<std::pair<int, int>> sources(const Deal& deal) {
    std::multiset<std::pair<int, int>> all;
    for (const SampleMap* map : {&deal.map1, &deal.map2}) {
        for (std::size_t c = 0; c < (*map)[0].size(); ++c) {
            all.emplace((*map)[1][c], (*map)[0][c]);
        }
    }
    return all;
}

} // namespace

// --- MakeMix2 --------------------------------------------------------------------------

TEST(MakeMix2, DealsAllelesOneByOneWithOrderKept) {
    // Pool A0 A1 B0 B1 (0 1 2 3). 4 x 0.416 -> 1: A1; left 0 2 3, 3 x 0.092 -> 0: A0; left 2 3,
    // 2 x 0.7564 -> 1: B1; left 2: B0.
    const Deal deal(1, 0, 0, 2, 2);
    EXPECT_EQ(deal.result, 0);
    EXPECT_EQ(deal.map1[0], (Ints{1, 0}));
    EXPECT_EQ(deal.map1[1], (Ints{0, 0}));
    EXPECT_EQ(deal.map2[0], (Ints{1, 0}));
    EXPECT_EQ(deal.map2[1], (Ints{1, 1}));
    EXPECT_TRUE(streamIsBehind(1, 4)) << "the last one is drawn, too";
}

TEST(MakeMix2, DealsGenotypesInPairs) {
    // Pairs of A: 0, 1; of B: 2, 3. 4 x 0.416 -> pair 1; of 0 2 3, 3 x 0.092 -> 0; of 2 3,
    // 2 x 0.7564 -> 3; then 2.
    const Deal deal(1, 1, 0, 4, 4);
    EXPECT_EQ(deal.map1[0], (Ints{2, 3, 0, 1}));
    EXPECT_EQ(deal.map1[1], (Ints{0, 0, 0, 0}));
    EXPECT_EQ(deal.map2[0], (Ints{2, 3, 0, 1}));
    EXPECT_EQ(deal.map2[1], (Ints{1, 1, 1, 1}));
    EXPECT_TRUE(streamIsBehind(1, 4));
}

TEST(MakeMix2, EverySlotIsDealtOnce) {
    for (const int genotypes : {0, 1}) {
        const Deal deal(1, genotypes, 0, 12, 8);
        std::multiset<std::pair<int, int>> all;
        for (int slot = 0; slot < 12; ++slot) {
            all.emplace(0, slot);
        }
        for (int slot = 0; slot < 8; ++slot) {
            all.emplace(1, slot);
        }
        EXPECT_EQ(sources(deal), all) << genotypes;
    }
}

TEST(MakeMix2, PairOverTheEdgeBelongsToItsFirstSlot) {
    // A has 3 slots, B has 3: pairs (A0 A1), (A2 A3: there is no A3), (B1 B2). 3 x 0.416 -> the
    // second; of the others 2 x 0.092 -> the first; then the third. Sample 1 takes three places of
    // the two pairs, sample 2 two, and its third place is not dealt.
    const Deal deal(1, 1, 0, 3, 3);
    EXPECT_EQ(deal.map1[0], (Ints{2, 3, 0}));
    EXPECT_EQ(deal.map1[1], (Ints{0, 0, 0}));
    EXPECT_EQ(deal.map2[0], (Ints{1, 2, -1}));
    EXPECT_EQ(deal.map2[1], (Ints{1, 1, 1}));
    EXPECT_TRUE(streamIsBehind(1, 3));
}

TEST(MakeMix2, SingleLastSlotUsesUpADrawAndHasNoPartner) {
    // A 2 slots, B 3: pairs (A0 A1), (B0 B1) and the single B2. 2 x 0.416 -> the first; then the
    // second; then B2 with a draw of its own.
    const Deal deal(1, 1, 0, 2, 3);
    EXPECT_EQ(deal.map1[0], (Ints{0, 1}));
    EXPECT_EQ(deal.map2[0], (Ints{0, 1, 2}));
    EXPECT_EQ(deal.map2[1], (Ints{1, 1, 1}));
    EXPECT_TRUE(streamIsBehind(1, 3));
}

TEST(MakeMix2, ThePartnerOfASingleSlotIsDroppedBehindTheSample) {
    // A 4 slots, B 1: pairs (A0 A1), (A2 A3), single B0: it goes to the only place of B.
    const Deal deal(1, 1, 0, 4, 1);
    EXPECT_EQ(deal.map2[0], (Ints{0}));
    EXPECT_EQ(deal.map2[1], (Ints{1}));
}

TEST(MakeMix2, JackknifeKeepsTheTailsAtHome) {
    // 40 slots each: 36 take part, two individuals stay.
    const Deal deal(1, 1, 1, 40, 40);
    for (std::size_t c = 36; c < 40; ++c) {
        EXPECT_EQ(deal.map1[0][c], static_cast<int>(c));
        EXPECT_EQ(deal.map1[1][c], 0);
        EXPECT_EQ(deal.map2[0][c], static_cast<int>(c));
        EXPECT_EQ(deal.map2[1][c], 1);
    }
    for (std::size_t c = 0; c < 36; ++c) {
        EXPECT_LT(deal.map1[0][c], 36);
        EXPECT_LT(deal.map2[0][c], 36);
    }
    EXPECT_TRUE(streamIsBehind(1, 36)) << "36 pairs";
}

TEST(MakeMix2, FiveSlotsAreNotJackknifed) {
    const Deal deal(1, 0, 1, 5, 5);
    EXPECT_TRUE(streamIsBehind(1, 10));
}

TEST(MakeMix2, RandomisationDrawsEveryPlaceFromAllSlots) {
    // Pool A0 A1 B0 B1; 4 x 0.416 -> 1, 4 x 0.092 -> 0, 4 x 0.7564 -> 3, 4 x 0.5297 -> 2.
    const Deal deal(0, 0, 0, 2, 2);
    EXPECT_EQ(deal.map1[0], (Ints{1, 0}));
    EXPECT_EQ(deal.map1[1], (Ints{0, 0}));
    EXPECT_EQ(deal.map2[0], (Ints{1, 0}));
    EXPECT_EQ(deal.map2[1], (Ints{1, 1}));
    EXPECT_TRUE(streamIsBehind(1, 4));
}

TEST(MakeMix2, RandomisationOfGenotypesTakesOneDrawAPair) {
    // Pairs A01 A23 B01; 3 x 0.416 -> 1, 3 x 0.092 -> 0, 3 x 0.7564 -> 2.
    const Deal deal(0, 1, 0, 4, 2);
    EXPECT_EQ(deal.map1[0], (Ints{2, 3, 0, 1}));
    EXPECT_EQ(deal.map2[0], (Ints{0, 1}));
    EXPECT_EQ(deal.map2[1], (Ints{1, 1}));
    EXPECT_TRUE(streamIsBehind(1, 3));
}

TEST(MakeMix2, EmptyPopulationsDrawNothing) {
    const Deal deal(1, 1, 0, 0, 0);
    EXPECT_TRUE(streamIsBehind(1, 0));
}

// --- MakeMix ---------------------------------------------------------------------------

TEST(MakeMix, WalksEachPopulationFromARandomStart) {
    // Two slots each, border 2 / 4. Start of A: 2 x 0.416 -> 0. A0: 0.092, to sample 2. A1:
    // 0.7564, to sample 1. Start of B: 2 x 0.5297 -> 1. B1: 0.9304, to 1, now full. B0: 0.3835, to
    // 2, now full.
    SampleMap map1{Ints(2), Ints(2)};
    SampleMap map2{Ints(2), Ints(2)};
    srand2(1);
    EXPECT_EQ(MakeMix(1, 0, 1, 2, 2, 0, 1, map1, map2), 0);
    EXPECT_EQ(map1[0], (Ints{1, 1}));
    EXPECT_EQ(map1[1], (Ints{0, 1}));
    EXPECT_EQ(map2[0], (Ints{0, 0}));
    EXPECT_EQ(map2[1], (Ints{0, 1}));
    EXPECT_TRUE(streamIsBehind(1, 6));
}

TEST(MakeMix, AFullSampleSendsToTheOther) {
    // A has 3 slots, B 1, border 0.75. Start 3 x 0.416 -> 1. A1: 0.092, to sample 2, now full. A2:
    // 0.7564, to 1. A0: 0.5297, to 2, which is full: 1. Start of B 0. B0: 0.3835, to 2: 1.
    SampleMap map1{Ints(3), Ints(3)};
    SampleMap map2{Ints(1), Ints(1)};
    srand2(1);
    MakeMix(1, 0, 1, 3, 1, 0, 1, map1, map2);
    EXPECT_EQ(map1[0], (Ints{2, 0, 0}));
    EXPECT_EQ(map1[1], (Ints{0, 0, 1}));
    EXPECT_EQ(map2[0], (Ints{1}));
}

TEST(MakeMix, AFullFirstSampleSendsToTheSecond) {
    // A has 1 slot, B 2, border 1/3. Start of A 0.416 -> 0. A0: 0.092, to sample 2. Start of B
    // 2 x 0.7564 -> 1. B1: 0.5297, to 1, now full. B0: 0.9304, to 1: 2.
    SampleMap map1{Ints(1), Ints(1)};
    SampleMap map2{Ints(2), Ints(2)};
    srand2(1);
    MakeMix(1, 0, 1, 1, 2, 0, 1, map1, map2);
    EXPECT_EQ(map1[0], (Ints{1}));
    EXPECT_EQ(map1[1], (Ints{1}));
    EXPECT_EQ(map2[0], (Ints{0, 0}));
    EXPECT_EQ(map2[1], (Ints{0, 1}));
}

TEST(MakeMix, APopulationWithoutAPairDrawsNothing) {
    // A has no slot: the pair of B starts with 0.416 -> 0 and goes by 0.092 > 0 to sample 1, which
    // has no place; sample 2 takes it.
    SampleMap map1{Ints(0), Ints(0)};
    SampleMap map2{Ints(2), Ints(2)};
    srand2(1);
    MakeMix(1, 1, 1, 0, 2, 0, 1, map1, map2);
    EXPECT_EQ(map2[0], (Ints{0, 1}));
    EXPECT_TRUE(streamIsBehind(1, 2));
}

TEST(MakeMix, GenotypesWalkInPairs) {
    // Pairs A01, B01; border 0.5. Start 0 with a draw. A01: 0.092, to 2. Start of B with a draw.
    // B01: 0.5297, to 1.
    SampleMap map1{Ints(2), Ints(2)};
    SampleMap map2{Ints(2), Ints(2)};
    srand2(1);
    MakeMix(1, 1, 1, 2, 2, 0, 1, map1, map2);
    EXPECT_EQ(map1[0], (Ints{0, 1}));
    EXPECT_EQ(map1[1], (Ints{1, 1}));
    EXPECT_EQ(map2[1], (Ints{0, 0}));
}

TEST(MakeMix, WithoutPermutationTheMapsStay) {
    SampleMap map1{Ints{5, 6}, Ints{7, 8}};
    SampleMap map2 = map1;
    srand2(1);
    MakeMix(0, 0, 1, 2, 2, 0, 1, map1, map2);
    EXPECT_EQ(map1[0], (Ints{5, 6}));
    EXPECT_TRUE(streamIsBehind(1, 0));
}

// --- MakeMixGlobal ---------------------------------------------------------------------

namespace {

struct GlobalDeal {
    explicit GlobalDeal(Ints groessen) : sizes(std::move(groessen)) {
        for (const int32_t size : sizes) {
            slot.emplace_back(static_cast<std::size_t>(size), -1);
            total += size;
        }
        pop = slot;
    }
    void run(int genotypes, long seed = 1) {
        srand2(seed);
        MakeMixGlobal(static_cast<int>(sizes.size()), slot, pop, sizes, total, buffer, genotypes);
    }

    Ints sizes;
    std::vector<Ints> slot;
    std::vector<Ints> pop;
    Ints buffer;
    int total = 0;
};

} // namespace

TEST(MakeMixGlobal, DealsGenotypesFromTheLastPlaceDown) {
    // Flat slots A0 A1 B0 B1 C0 C1 = 0..5. rest 6: 6 x 0.416 -> 2, the pair (2 3) = B goes to
    // places 4 5 = C. Left 0 1 4 5. rest 4: 4 x 0.092 -> 0, the pair A to places 2 3 = B. The rest,
    // C, to places 0 1 = A, without a draw.
    GlobalDeal deal({2, 2, 2});
    deal.run(1);
    EXPECT_EQ(deal.pop, (std::vector<Ints>{{2, 2}, {0, 0}, {1, 1}}));
    EXPECT_EQ(deal.slot, (std::vector<Ints>{{0, 1}, {0, 1}, {0, 1}}));
    EXPECT_TRUE(streamIsBehind(1, 2));
}

TEST(MakeMixGlobal, AnOddDrawTakesThePairOfItsSlot) {
    GlobalDeal deal({4, 2});
    srand2(1);
    for (int draw = 0; draw < 3; ++draw) {
        (void)rand2(); // 0.5297 comes next, then 0.9304
    }
    MakeMixGlobal(2, deal.slot, deal.pop, deal.sizes, deal.total, deal.buffer, 1);
    // 6 x 0.5297 -> 3, odd: pair (2 3) = A2 A3 to places 4 5. Left 0 1 4 5: 4 x 0.9304 -> 3, odd:
    // the entry 5, pair (4 5) = B to places 2 3. Then (0 1).
    EXPECT_EQ(deal.slot, (std::vector<Ints>{{0, 1, 0, 1}, {2, 3}}));
    EXPECT_EQ(deal.pop, (std::vector<Ints>{{0, 0, 1, 1}, {0, 0}}));
}

TEST(MakeMixGlobal, InAlleleModeOneAlleleDropsOutAndTheFirstPlaceStays) {
    // Flat 0 1 2 3. rest 4: 4 x 0.416 -> 1: slot 1 to place 3. Left 0 2 3; 3 x 0.092 -> 0: slot 0
    // to place 2. Left 2 3; 2 x 0.7564 -> 1: slot 3 to place 1. The last, 2, goes to place 1 over
    // it.
    GlobalDeal deal({2, 2});
    deal.run(0);
    EXPECT_EQ(deal.slot, (std::vector<Ints>{{-1, 0}, {0, 1}}));
    EXPECT_EQ(deal.pop, (std::vector<Ints>{{-1, 1}, {0, 0}}));
    EXPECT_TRUE(streamIsBehind(1, 3));
}

TEST(MakeMixGlobal, OddPopulationsReachOverTheirEdges) {
    // A0 A1 A2 B0 B1 B2 = 0..5; pairs of flat numbers (0 1) (2 3) (4 5). rest 6: 6 x 0.416 -> 2,
    // even: slot A2 and the one behind it, A3, to places 4 5 = B1 B2. Left 0 1 4 5; rest 4:
    // 4 x 0.092 -> 0: A0 A1; place 3 = B0 takes A1, the place before lies outside B: dropped. Then
    // (4 5) = B1 B2 to places 0 1.
    GlobalDeal deal({3, 3});
    deal.run(1);
    EXPECT_EQ(deal.slot, (std::vector<Ints>{{1, 2, -1}, {1, 2, 3}}));
    EXPECT_EQ(deal.pop, (std::vector<Ints>{{1, 1, -1}, {0, 0, 0}}));
}

TEST(MakeMixGlobal, TinyDataStayInside) {
    for (const Ints& sizes : {Ints{}, Ints{0}, Ints{1}, Ints{0, 1}, Ints{1, 1}, Ints{2}}) {
        for (const int genotypes : {0, 1}) {
            GlobalDeal deal(sizes);
            deal.run(genotypes);
            for (std::size_t p = 0; p < sizes.size(); ++p) {
                for (const int32_t source : deal.slot[p]) {
                    EXPECT_LE(source, 2);
                }
            }
        }
    }
}
