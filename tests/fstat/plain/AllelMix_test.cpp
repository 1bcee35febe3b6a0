// Tables of shuffled samples. Draws are those of seed 1, see fstatsupport.h.
#include "data/lociclass.h"
#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"
#include "support/draws.h"

#include <gtest/gtest.h>

using namespace kva;

using kva_test::kTwoPops;
using kva_test::kTwoPopsOneColumn;
using kva_test::LoadedRun;
using kva_test::streamIsBehind;

namespace {

// "number:copies" of the rows in table order.
std::string rows(const AllelCount& t) {
    std::string text;
    for (int32_t row = 0; row < t.AnzAllele; ++row) {
        const AllelEintrag& entry = t.Allele[static_cast<std::size_t>(row)];
        text += std::to_string(entry.Nummer) + ":" + std::to_string(entry.Anzahl) + " ";
    }
    return text;
}

// Room for a pair mix of `run`, the sheet being the identity.
struct Mix {
    explicit Mix(LoadedRun& run, std::size_t tables = 3)
        : mix(tables, LocusTables(static_cast<std::size_t>(run->AnzLoci))) {
        for (SampleMap* map : {&map1, &map2}) {
            *map = {std::vector<int32_t>(20), std::vector<int32_t>(20)};
        }
        std::vector<std::vector<long>> ofLocus;
        for (int pop = 1; pop <= run->AnzPop; ++pop) {
            ofLocus.emplace_back();
            for (long slot = 0; slot < run->Daten->GetAnzDatenChromosome(pop); ++slot) {
                ofLocus.back().push_back(slot);
            }
        }
        sheet.assign(static_cast<std::size_t>(run->AnzLoci), ofLocus);
        srand2(1);
    }

    void pairs(LoadedRun& run, int genotypes, int linked) {
        EXPECT_EQ(run->Daten->AllelMix(run->PopAllele, mix, 0, 1, sheet, map1, map2, genotypes,
                                       linked, 1, 0, buffer),
                  0);
    }

    SampleTables mix;
    SampleMap map1;
    SampleMap map2;
    SlotSheet sheet;
    std::vector<int32_t> buffer;
};

// Population B has no data at L1.
const char* const kAbsent = "2 . . 2 . 2 .\n"
                            ". . . 0 . 0 .\n"
                            ". . . L1 L1b L2 L2b\n"
                            "A d 0 1 2 1 2\n"
                            "A d 0 1 1 3 3\n"
                            "B d 0 . . 4 4\n"
                            "B d 0 . . 4 5\n";

} // namespace

TEST(AllelMix, TablesFollowTheDealInOrderOfAppearance) {
    // Pairs A01 A23 B01 B23; the deal of seed 1 is A23 A01 | B23 B01 (see MakeMix_test).
    // L1: A 100/100 100/102, B 104/104 102/104. L2: A 204/208 200/200, B 200/200 200/204.
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run);
    m.pairs(run, 1, 1);
    EXPECT_EQ(rows(m.mix[1][0]), "100:3 102:1 ");
    EXPECT_EQ(rows(m.mix[2][0]), "104:3 102:1 ");
    EXPECT_EQ(rows(m.mix[0][0]), "100:3 102:2 104:3 ");
    EXPECT_EQ(rows(m.mix[1][1]), "204:1 208:1 200:2 ");
    EXPECT_EQ(rows(m.mix[2][1]), "200:3 204:1 ");
    EXPECT_EQ(rows(m.mix[0][1]), "204:2 208:1 200:5 ");
    EXPECT_EQ(m.mix[1][0].AnzHetero, 1) << "individuals stay together";
    EXPECT_TRUE(streamIsBehind(1, 4)) << "one shuffle for both loci";
}

TEST(AllelMix, UnlinkedLociAreShuffledOneByOne) {
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run);
    m.pairs(run, 1, 0);
    EXPECT_TRUE(streamIsBehind(1, 8));
    // The second deal: 4 x 0.9304 -> 3, B23; of A01 A23 B01 3 x 0.3835 -> 1, A23; of A01 B01
    // 2 x 0.6539 -> 1, B01; then A01.
    EXPECT_EQ(rows(m.mix[1][1]), "200:2 204:1 208:1 ");
    EXPECT_EQ(rows(m.mix[2][1]), "200:3 204:1 ");
}

TEST(AllelMix, LocusAbsentFromOnePopulationIsEmptyAndDrawsNothing) {
    LoadedRun run(kAbsent);
    run.counted();
    Mix m(run);
    m.mix[0][0].AddAllel(9, 0);
    m.pairs(run, 1, 0);
    for (std::size_t table = 0; table < 3; ++table) {
        EXPECT_EQ(m.mix[table][0].AnzGesamt, -1) << table;
    }
    EXPECT_EQ(m.mix[0][1].AnzGesamt, 8);
    EXPECT_TRUE(streamIsBehind(1, 4)) << "one shuffle of four pairs, for L2 alone";
}

TEST(AllelMix, SingleAllelesMoveAlone) {
    // Flat slots A0..A3 B0..B3: 8 x 0.416 -> 3 = A3; of 0 1 2 4 5 6 7, 7 x 0.092 -> 0 = A0; of
    // 1 2 4 5 6 7, 6 x 0.7564 -> 4: 6 = B2; of 1 2 4 5 7, 5 x 0.5297 -> 2: 4 = B0. L1: 100 100 104
    // 102.
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run);
    m.pairs(run, 0, 1);
    EXPECT_EQ(rows(m.mix[1][0]), "100:2 104:1 102:1 ");
    EXPECT_EQ(m.mix[1][0].AnzHetero, 1) << "104/102, two neighbours in the deal";
    EXPECT_TRUE(streamIsBehind(1, 8));
}

TEST(AllelMix, SheetRedirectsAndSilencesSlots) {
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run);
    m.sheet[0][0] = {0, 0, -1, -1}; // A: 100/100, then nothing
    m.pairs(run, 1, 1);             // A23 A01 | B23 B01
    EXPECT_EQ(rows(m.mix[1][0]), "100:2 ");
    EXPECT_EQ(m.mix[1][0].AnzTypisiert, 2);
    EXPECT_EQ(rows(m.mix[1][1]), "204:1 208:1 200:2 ") << "the other locus has its own row";
}

TEST(AllelMixE, TestTablesAreNotShuffled) {
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run, 6);
    m.sheet[0][1] = {1, 1, 2, 3}; // B: 104/104 104/104 at L1
    run->Daten->AllelMixE(run->PopAllele, m.mix, 0, 1, m.sheet, m.map1, m.map2, 1, 1, 1, 0,
                          m.buffer);
    EXPECT_EQ(rows(m.mix[4][0]), "100:3 102:1 ");
    EXPECT_EQ(rows(m.mix[5][0]), "104:4 ");
    EXPECT_EQ(rows(m.mix[3][0]), "100:3 102:1 104:4 ");
    EXPECT_EQ(rows(m.mix[2][0]), "104:4 ") << "the drawn sample reads through the sheet, too";
}

TEST(AllelMixE, LocusAbsentFromOnePopulationLeavesAllSixEmpty) {
    LoadedRun run(kAbsent);
    run.counted();
    Mix m(run, 6);
    run->Daten->AllelMixE(run->PopAllele, m.mix, 0, 1, m.sheet, m.map1, m.map2, 1, 1, 1, 0,
                          m.buffer);
    for (std::size_t table = 0; table < 6; ++table) {
        EXPECT_EQ(m.mix[table][0].AnzGesamt, -1) << table;
        EXPECT_GT(m.mix[table][1].AnzGesamt, 0) << table;
    }
}

TEST(AllelMixWithReplacement, DrawsPopulationAndIndividualForEachPlace) {
    // Two individuals each, border 2 / 4. L1: 0.416 -> B, 2 x 0.092 -> B0 102/104; 0.7564 -> A,
    // 2 x 0.5297 -> A1 100/100. Sample 2: 0.9304 -> A, 2 x 0.3835 -> A0 100/102; 0.6539 -> A,
    // 2 x 0.0668 -> A0.
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run);
    run->Daten->AllelMix(m.mix, 0, 1, 1);
    EXPECT_EQ(rows(m.mix[1][0]), "102:1 104:1 100:2 ");
    EXPECT_EQ(rows(m.mix[2][0]), "100:2 102:2 ");
    EXPECT_EQ(rows(m.mix[0][0]), "102:3 104:1 100:4 ");
    EXPECT_TRUE(streamIsBehind(1, 16)) << "two draws a place, four places, two loci";
}

TEST(AllelMixWithReplacement, DrawsSlotByToSlot) {
    LoadedRun run(kTwoPops);
    run.counted();
    Mix m(run);
    run->Daten->AllelMix(m.mix, 0, 1, 0);
    // 0.416 -> B, 4 x 0.092 -> slot 0: 102. 0.7564 -> A, 4 x 0.5297 -> slot 2: 100. 0.9304 -> A,
    // 4 x 0.3835 -> 1: 102. 0.6539 -> A, 4 x 0.0668 -> 0: 100.
    EXPECT_EQ(rows(m.mix[1][0]), "102:2 100:2 ");
    EXPECT_TRUE(streamIsBehind(1, 32));
}

TEST(AllelMixWithReplacement, TheBorderItselfDrawsFromTheSecondPopulation) {
    // One individual each, border 1 / 2: the first draw, for the first place, is the border.
    LoadedRun run("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 1 1\nB d 0 2 2\n");
    run.counted();
    Mix m(run);
    srand2(kva_test::kSeedOfOneHalf);
    EXPECT_EQ(run->Daten->AllelMix(m.mix, 0, 1, 1), 0);
    EXPECT_EQ(rows(m.mix[1][0]), "2:2 ");
}

TEST(CountMixGlobal, TablesOfAllPopulations) {
    // Pairs A0 A1 B0 B1. 8 x 0.416 -> 3: pair A1 to B1. Left A0 B0 B1: 6 x 0.092 -> 0: A0 to B0.
    // Left B0 B1: 4 x 0.7564 -> 3: B1 to A1. Then B0 to A0.
    LoadedRun run(kTwoPops);
    run.counted();
    SampleTables tab(3, LocusTables(2));
    std::vector<std::vector<int32_t>> slot{std::vector<int32_t>(4, -1),
                                           std::vector<int32_t>(4, -1)};
    std::vector<std::vector<int32_t>> pop = slot;
    std::vector<int32_t> buffer;
    const std::vector<int32_t> sizes{4, 4};
    srand2(1);
    EXPECT_EQ(run->Daten->CountMixGlobal(tab, slot, pop, sizes, 8, buffer, 1, 1), 0);
    EXPECT_EQ(rows(tab[1][0]), "102:1 104:3 ");
    EXPECT_EQ(rows(tab[2][0]), "100:3 102:1 ");
    EXPECT_EQ(rows(tab[0][0]), "102:2 104:3 100:3 ");
    EXPECT_TRUE(streamIsBehind(1, 3));
    srand2(1);
    run->Daten->CountMixGlobal(tab, slot, pop, sizes, 8, buffer, 0, 1);
    EXPECT_TRUE(streamIsBehind(1, 6)) << "unlinked: a shuffle for each locus";
}

TEST(CountMixGlobal, InAlleleModeTheFirstPlaceRepeatsTheShuffleBefore) {
    LoadedRun run(kTwoPopsOneColumn);
    run.counted();
    SampleTables tab(3, LocusTables(2));
    std::vector<std::vector<int32_t>> slot{std::vector<int32_t>(4, -1),
                                           std::vector<int32_t>(4, -1)};
    std::vector<std::vector<int32_t>> pop = slot;
    std::vector<int32_t> buffer;
    const std::vector<int32_t> sizes{4, 4};
    srand2(1);
    run->Daten->CountMixGlobal(tab, slot, pop, sizes, 8, buffer, 1, 0);
    EXPECT_EQ(slot[0][0], -1);
    EXPECT_EQ(tab[0][0].AnzGesamt, 7) << "place 0 reads as missing";
    slot[0][0] = 2; // as if an earlier shuffle had dealt A2, a 100, to it
    pop[0][0] = 0;
    run->Daten->CountMixGlobal(tab, slot, pop, sizes, 8, buffer, 1, 0);
    EXPECT_EQ(slot[0][0], 2);
    EXPECT_EQ(tab[0][0].AnzGesamt, 8);
}
