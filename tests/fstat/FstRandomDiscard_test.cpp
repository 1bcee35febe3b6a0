// The test of all pairs on thinned data. Draws of seed 1 stand in fstatsupport.h.
#include "fstat/FstPermutation.h"
#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"
#include "run/testrecord.h"
#include "support/draws.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

using namespace kva;

using kva_test::FrozenClock;
using kva_test::kInbredPop;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::streamIsBehind;

namespace {

using Longs = std::vector<long>;

constexpr uint32_t kDiscard = 0x80;
constexpr uint32_t kJackknife = 0x100;
constexpr uint32_t kLimits = 0x200;
constexpr uint32_t kDefault = 0x39; // Hobs, genotypes, linked, permutation

// A data file of one locus with `sizes` individuals in populations A, B, ...; all are 5/6.
std::string equalPops(std::initializer_list<int> sizes, char type = 'd') {
    std::string text = "2 . . 2 .\n. . . 0 .\n. . . L1 L1b\n";
    char name = 'A';
    for (const int size : sizes) {
        for (int tier = 0; tier < size; ++tier) {
            text.append(1, name).append(1, ' ').append(1, type).append(" 0 5 6\n");
        }
        ++name;
    }
    return text;
}

// A sheet drawn from a seed.
SlotSheet sheetOf(LoadedRun& run, uint32_t mask, long seed = 1) {
    run->FstMask = mask;
    std::vector<Longs> ofLocus;
    for (int pop = 1; pop <= run->AnzPop; ++pop) {
        ofLocus.emplace_back(static_cast<std::size_t>(run->Daten->GetAnzDatenChromosome(pop)), 99);
    }
    SlotSheet sheet(static_cast<std::size_t>(run->AnzLoci), ofLocus);
    srand2(seed);
    EXPECT_EQ(run->CreateNewDataSheetMix(sheet), 0);
    return sheet;
}

// A tested data set.
struct Tested {
    Tested(const std::string& text, int permutations, uint32_t mask, double alpha = 0.05,
           TestRecord* record = nullptr)
        : run(text) {
        run->Tests = record;
        run.counted();
        run->FstMask = mask;
        run->Permutationen = permutations;
        run->FstAlpha = alpha;
        observed = newFTriple(run->AnzPop);
        run->FST_PAIR_WC84(observed, run->PopAllele, locusTable);
        f = observed;
        p = observed; // is cleared
        untergrenze.Resize(run->AnzPop, run->AnzPop);
        obergrenze.Resize(run->AnzPop, run->AnzPop);
        const FrozenClock clock(1);
        StdoutCapture capture;
        result = run->FST_RD_WC84(p, f, run->PopAllele, untergrenze, obergrenze, locusTable);
        console = capture.text();
    }

    LoadedRun run;
    FTriple observed;
    FTriple f;
    FTriple p;
    CMatrix untergrenze;
    CMatrix obergrenze;
    CMatrix locusTable;
    int result = -1;
    std::string console;
};

} // namespace

// --- The sheet: random discard ---------------------------------------------------------

TEST(DataSheetMix, WithoutInbredIndividualsTheSheetIsTheIdentity) {
    LoadedRun run(kTwoPops);
    const SlotSheet sheet = sheetOf(run, kDiscard | 0x10);
    EXPECT_EQ(sheet, (SlotSheet(2, {{0, 1, 2, 3}, {0, 1, 2, 3}})));
    EXPECT_TRUE(streamIsBehind(1, 0));
}

TEST(DataSheetMix, OfAnInbredIndividualOneEntryStandsForBoth) {
    // Two in B: 0.416 < 0.5: the second entry; 0.092: the second.
    LoadedRun run(kInbredPop);
    EXPECT_EQ(sheetOf(run, kDiscard | 0x10)[0], (std::vector<Longs>{{0, 1, 2, 3}, {1, 1, 3, 3}}));
    EXPECT_TRUE(streamIsBehind(1, 2));
}

TEST(DataSheetMix, OneHalfItselfKeepsTheFirstEntry) {
    LoadedRun run(equalPops({1}, 'h'));
    EXPECT_EQ(sheetOf(run, kDiscard, kva_test::kSeedOfOneHalf)[0], (std::vector<Longs>{{0, 0}}));
}

TEST(DataSheetMix, LinkedLociThinAlike) {
    LoadedRun run(kInbredPop);
    const SlotSheet sheet = sheetOf(run, kDiscard | 0x10);
    EXPECT_EQ(sheet[1], sheet[0]);
}

TEST(DataSheetMix, UnlinkedLociThinByThemselves) {
    // L1 of B: 0.416 0.092 as above; L2 of B: 0.7564 and 0.5297, both the first entry.
    LoadedRun run(kInbredPop);
    const SlotSheet sheet = sheetOf(run, kDiscard);
    EXPECT_EQ(sheet[0][1], (Longs{1, 1, 3, 3}));
    EXPECT_EQ(sheet[1][1], (Longs{0, 0, 2, 2}));
    EXPECT_TRUE(streamIsBehind(1, 4));
}

TEST(DataSheetMix, WithoutTheBitNothingIsDiscarded) {
    LoadedRun run(kInbredPop);
    EXPECT_EQ(sheetOf(run, kJackknife)[0][1], (Longs{0, 1, 2, 3}));
    EXPECT_TRUE(streamIsBehind(1, 0)) << "four slots are not jackknifed either";
}

TEST(DataSheetMix, OddLastRowReadsNoFurtherThanTheBlock) {
    // One column, three inbred rows: the second "individual" is row 3 and nothing. 0.416: row 2 for
    // both; 0.092 < 0.5: the slot behind the last, which is missing.
    LoadedRun run("1 . . 2\n. . . 0\n. . . L1\nA h 0 5\nA h 0 6\nA h 0 7\n");
    EXPECT_EQ(sheetOf(run, kDiscard | 0x10)[0][0], (Longs{1, 1, 3}));
}

// --- The sheet: jackknifing ------------------------------------------------------------

TEST(DataSheetMix, JackknifeDropsOneOfSix) {
    // 0.6 individuals: one; 6 x 0.416 -> individual 2. From target 4 on the source runs 2 ahead,
    // and the last target is empty.
    LoadedRun run(equalPops({6}));
    EXPECT_EQ(sheetOf(run, kJackknife | 0x10)[0][0],
              (Longs{0, 1, 2, 3, 6, 7, 8, 9, 10, 11, -1, -1}));
    EXPECT_TRUE(streamIsBehind(1, 1));
}

TEST(DataSheetMix, TheSecondDropIsReadAgainstTheTarget) {
    // Two of twenty: 20 x 0.416 -> 8, 20 x 0.092 -> 1; sorted 1 8. At target 2 the source becomes
    // individual 2; at target 16, where the source is individual 9, it becomes 10: of the two
    // individuals named 1 and 8, 1 and 9 are left out.
    LoadedRun run(equalPops({20}));
    const Longs sheet = sheetOf(run, kJackknife | 0x10)[0][0];
    Longs individuals;
    for (std::size_t target = 0; target < 40; target += 2) {
        individuals.push_back(sheet[target] < 0 ? -1 : sheet[target] / 2);
    }
    EXPECT_EQ(individuals,
              (Longs{0, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, -1, -1}));
    EXPECT_TRUE(streamIsBehind(1, 2));
}

TEST(DataSheetMix, EqualDropsAreDrawnAgain) {
    // Six of six are to be dropped, so that every individual has to come up: equal ones are
    // drawn again until all differ.
    LoadedRun run(equalPops({6}));
    run->JackknifeAnteil = 1.0;
    EXPECT_EQ(sheetOf(run, kJackknife | 0x10)[0][0], Longs(12, -1)) << "all six are dropped";
    EXPECT_FALSE(streamIsBehind(1, 6)) << "equal ones were drawn again";
}

TEST(DataSheetMix, FiveSlotsOrFewerAreNotJackknifed) {
    LoadedRun run(equalPops({2, 1}));
    const SlotSheet sheet = sheetOf(run, kJackknife | 0x10);
    EXPECT_EQ(sheet[0], (std::vector<Longs>{{0, 1, 2, 3}, {0, 1}}));
    EXPECT_TRUE(streamIsBehind(1, 0));
}

TEST(DataSheetMix, AtMost79IndividualsAreDropped) {
    LoadedRun run(equalPops({1000}));
    const Longs sheet = sheetOf(run, kJackknife | 0x10)[0][0];
    EXPECT_EQ(std::count(sheet.begin(), sheet.end(), -1), 158);
    EXPECT_EQ(sheet.back(), -1);
    EXPECT_NE(sheet[2000 - 159], -1);
}

TEST(DataSheetMix, DiscardAndJackknifeTogether) {
    // Six inbred: drop individual 2 (0.416); then one draw each for the sources 0 1 3 4 5, and none
    // behind the last. .092 second, .7564 first, .5297 first, .9304 first, .3835 second.
    LoadedRun run(equalPops({6}, 'h'));
    EXPECT_EQ(sheetOf(run, kDiscard | kJackknife | 0x10)[0][0],
              (Longs{1, 1, 2, 2, 6, 6, 8, 8, 11, 11, -1, -1}));
    EXPECT_TRUE(streamIsBehind(1, 6));
}

// --- The test --------------------------------------------------------------------------

TEST(FstRandomDiscard, WithoutInbredDataTheMeanIsTheObservedValue) {
    const Tested t(kTwoPops, 100, kDefault | kDiscard | kLimits);
    EXPECT_EQ(t.result, 0);
    for (std::size_t s = 0; s < 3; ++s) {
        EXPECT_NEAR(t.f[s](0, 1), t.observed[s](0, 1), 1e-14); // a sum of 100 equal values
        EXPECT_EQ(t.f[s](1, 0), t.f[s](0, 1));
    }
    EXPECT_EQ(t.untergrenze(0, 1), t.observed[0](0, 1));
    EXPECT_EQ(t.obergrenze(0, 1), t.observed[0](0, 1));
    EXPECT_EQ(t.obergrenze(1, 0), t.observed[0](0, 1));
}

TEST(FstRandomDiscard, WithoutInbredDataThePValuesAreThoseOfThePlainTest) {
    const Tested t(kTwoPops, 100, kDefault | kDiscard);
    FTriple p = newFTriple(2);
    CMatrix none;
    LoadedRun run(kTwoPops);
    run.counted();
    run->FstMask = kDefault;
    run->Permutationen = 100;
    const FrozenClock clock(1);
    kva_test::quietly([&] { run->FST_P_WC84(p, t.observed, run->PopAllele, none); });
    for (std::size_t s = 0; s < 3; ++s) {
        EXPECT_EQ(t.p[s].Daten, p[s].Daten);
    }
}

TEST(FstRandomDiscard, TellsTheLengthOfTheLists) {
    // 100 x 0.05 x 0.5 + 1 = 3.5; 20: 1.5, at least 2; 1000: 26.
    EXPECT_EQ(Tested(kTwoPops, 100, kDefault | kDiscard | kLimits).console.substr(0, 26),
              "\nConfidenz intervall:3\n\nCa");
    EXPECT_NE(Tested(kTwoPops, 20, kDefault | kDiscard | kLimits).console.find("intervall:2\n"),
              std::string::npos);
    EXPECT_NE(Tested(kTwoPops, 1000, kDefault | kDiscard | kLimits).console.find("intervall:26\n"),
              std::string::npos);
    EXPECT_EQ(Tested(kTwoPops, 20, kDefault | kDiscard).console.find("Confidenz"),
              std::string::npos);
}

TEST(FstRandomDiscard, MeanOfTwoThinnedDataSetsByHand) {
    // One locus, A 5/6 5/6 diploid, B one inbred 5/6: each replicate keeps 5/5 or 6/6 of B. Both
    // give the same Fst, by symmetry: nA 2, nB 1, S 3, nc 4/3; 5: p .5 1, pbar 2/3, s2 1/9, x 1/6;
    // a 3 (1/9 - 1/3) / (8/3) = -.25, b .5; 6 alike: a -.5, b 1; H (2 x 1 + 0) / 3 = 2/3:
    // a += 3 x 2/3 / (8/3) = .75, b -= 4 x 2/3 / 2 = 4/3: a .25, b -1/3, c 2/3: Fst 3/7.
    const Tested t("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 5 6\nA d 0 5 6\nB h 0 5 6\n", 60,
                   kDefault | kDiscard | kLimits);
    EXPECT_NEAR(t.f[0](0, 1), 3.0 / 7.0, 1e-13);
    EXPECT_NEAR(t.untergrenze(0, 1), 3.0 / 7.0, 1e-13);
    // The observed value has B as it stands: s2 0, x .25, H 1: a -1.125 + 1.125.
    EXPECT_NEAR(t.observed[0](0, 1), 0.0, 1e-14);
}

TEST(FstRandomDiscard, PairWithoutValidReplicateIsUndefined) {
    const Tested t("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 5 5\nA d 0 5 5\nB d 0 5 5\n"
                   "B d 0 5 5\n",
                   10, kDefault | kDiscard | kLimits);
    for (const CMatrix& matrix : t.f) {
        EXPECT_EQ(matrix(0, 1), -32767.0);
        EXPECT_EQ(matrix(1, 0), -32767.0);
    }
    EXPECT_EQ(t.untergrenze(0, 1), 100000.0) << "the fillers";
    EXPECT_EQ(t.obergrenze(0, 1), -100000.0);
    EXPECT_TRUE(std::isinf(t.p[0](0, 1))) << "1 out of no replicate";
}

TEST(FstRandomDiscard, LimitsOfThePermutedStatistic) {
    // The test statistic of diploid data never changes, the permuted one does.
    const Tested t(kTwoPops, 200, kDefault | kDiscard | kLimits | 0x400);
    EXPECT_LT(t.untergrenze(0, 1), t.obergrenze(0, 1));
}

TEST(FstRandomDiscard, WithoutTheBitThereAreNoLimits) {
    const Tested t(kTwoPops, 20, kDefault | kDiscard | 0x400);
    EXPECT_EQ(t.untergrenze(0, 1), 0.0);
    EXPECT_EQ(t.obergrenze(0, 1), 0.0);
}

TEST(FstRandomDiscard, JackknifeAloneSpreadsTheTestStatistic) {
    std::string text = equalPops({8, 8});
    text += "B d 0 5 5\nB d 0 6 6\nB d 0 7 7\n";
    const Tested t(text, 100, kDefault | kJackknife | kLimits);
    EXPECT_LT(t.untergrenze(0, 1), t.obergrenze(0, 1));
    EXPECT_NE(t.f[0](0, 1), t.observed[0](0, 1));
}

TEST(FstRandomDiscard, SeedsBeforeEveryFiftieth) {
    // A 5/6, B two 5/6: three pairs to draw a replicate, no thinning draws.
    const Tested t(equalPops({1, 2}), 51, kDefault | kDiscard);
    EXPECT_TRUE(streamIsBehind(1, 3));
}

// --- The record ----------------------------------------------------------------------------

TEST(FstRandomDiscard, RecordHoldsTheHitsOfThePValues) {
    TestRecord record;
    const Tested t(kInbredPop, 200, kDefault | kDiscard, 0.05, &record);
    ASSERT_EQ(record.Pairs.size(), 1U);
    for (std::size_t s = 0; s < 3; ++s) {
        const TestCount& count = record.Pairs[0].Of[s];
        ASSERT_GT(count.Hits, 0);
        EXPECT_LE(count.Permutations, 200);
        EXPECT_EQ(double(count.Hits) / double(count.Permutations), t.p[s](0, 1));
    }
}
