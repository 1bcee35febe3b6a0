// The test of all pairs. The clock stands still, so the stream is that of its second; draws of
// seed 1 stand in fstatsupport.h.
#include "fstat/FstPermutation.h"

#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"

#include <gtest/gtest.h>

using namespace kva;

using kva_test::FrozenClock;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::quietly;
using kva_test::StdoutCapture;
using kva_test::streamIsBehind;
using kva_test::tabbed;

namespace {

constexpr uint32_t kDefault = 0x39; // Hobs, genotypes, linked, permutation

// A tested data set.
struct Tested {
    Tested(const std::string& text, int permutations, uint32_t mask = kDefault, long seconds = 1)
        : run(text) {
        run.counted();
        run->FstMask = mask;
        run->Permutationen = permutations;
        f = newFTriple(run->AnzPop);
        p = newFTriple(run->AnzPop);
        run->FST_PAIR_WC84(f, run->PopAllele, locusTable);
        const FrozenClock clock(seconds);
        StdoutCapture capture;
        result = run->FST_P_WC84(p, f, run->PopAllele, locusTable);
        console = capture.text();
    }

    LoadedRun run;
    FTriple f;
    FTriple p;
    CMatrix locusTable;
    int result = -1;
    std::string console;
};

// Individuals u0 = 5/5 in A, u1 = 5/6 and u2 = 6/6 in B. Fst of the deal that gives one of them to
// sample 1, nA = 1, nB = 2, S = 3, nc = 4/3:
//   u0: p5 1 .25, pbar .5, s2 .25, x .125: a 0, b .375; two alleles: a 0, b .75; H 1/3: a 3/8,
//       b 1/12, c 1/3: Fst 9/19, Fit 11/19, Fis .2
//   u1: p5 .5 .5: a -9/8, b 3/2; H 1/3: a -3/4, b 5/6, c 1/3: Fst -1.8, Fit .2, Fis 5/7
//   u2: as u0, with the alleles and their order exchanged: the same to the last bit
const char* const kTiny = "2 . . 2 .\n"
                          ". . . 0 .\n"
                          ". . . L1 L1b\n"
                          "A d 0 5 5\n"
                          "B d 0 5 6\n"
                          "B d 0 6 6\n";

// `pops` populations of ten individuals, each nearly fixed for an allele of its own.
std::string farApart(int pops) {
    std::string text = "2 . . 2 .\n. . . 0 .\n. . . L1 L1b\n";
    for (int pop = 0; pop < pops; ++pop) {
        for (int tier = 0; tier < 10; ++tier) {
            const std::string own = std::to_string(10 + pop);
            text.append("P").append(own).append(" d 0 ").append(own).append(" ");
            text.append(tier == 0 ? "99" : own).append("\n");
        }
    }
    return text;
}

const char* const kFixed = "2 . . 2 .\n"
                           ". . . 0 .\n"
                           ". . . L1 L1b\n"
                           "A d 0 5 5\n"
                           "A d 0 5 5\n"
                           "B d 0 5 5\n"
                           "B d 0 5 5\n";

} // namespace

// Each permutation draws 3, the first of which, times 3, is the individual in sample 1:
// .416 1, .5297 1, .6539 1, .6711 2, .8847 2, .2378 0, .7534 2, .2727 0, .5163 1, .4865 1.
// Fst and Fit are reached by u0 and u2, 5 of 10; Fis is reached by all.
TEST(FstPermutation, TenPermutationsReplayedByHand) {
    const Tested t(kTiny, 10);
    EXPECT_EQ(t.result, 0);
    EXPECT_NEAR(t.f[0](0, 1), 9.0 / 19.0, 1e-14);
    EXPECT_EQ(t.p[0](0, 1), 0.5);
    EXPECT_EQ(t.p[1](0, 1), 0.5);
    EXPECT_EQ(t.p[2](0, 1), 1.0);
    EXPECT_EQ(t.p[0](1, 0), 0.5) << "one pair: the corrected value is the plain one";
    EXPECT_EQ(t.p[0](0, 0), 0.0);
    EXPECT_TRUE(streamIsBehind(1, 30));
}

TEST(FstPermutation, TiesCountForThePermutation) {
    // Only 9/19 and -1.8 occur; counted as ties they are 5 of 10, else 0 of 10 (and so 0.1).
    EXPECT_EQ(Tested(kTiny, 10).p[0](0, 1), 0.5);
}

TEST(FstPermutation, TellsEachReplica) {
    EXPECT_EQ(Tested(kTiny, 3).console, "\nCalc Replica: 0\nCalc Replica: 1\nCalc Replica: 2");
}

TEST(FstPermutation, NeverReachedIsOneOfN) {
    const Tested t(farApart(3), 100);
    for (int i = 0; i < 3; ++i) {
        for (int j = i + 1; j < 3; ++j) {
            EXPECT_EQ(t.p[0](i, j), 0.01);
            EXPECT_EQ(t.p[0](j, i), 0.03) << "times three pairs";
        }
    }
}

TEST(FstPermutation, CorrectedValueMayExceedOne) {
    // Three populations of equal genotypes: Fst of each pair is the lowest there is.
    const Tested t("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 1 2\nA d 0 1 2\nB d 0 1 2\n"
                   "B d 0 1 2\nC d 0 1 2\nC d 0 1 2\n",
                   10);
    EXPECT_EQ(t.p[0](0, 1), 1.0);
    EXPECT_EQ(t.p[0](1, 0), 3.0);
}

TEST(FstPermutation, UndefinedPairCountsAlways) {
    const Tested t(kFixed, 20);
    EXPECT_EQ(t.f[0](0, 1), -32767.0);
    EXPECT_EQ(t.p[0](0, 1), 1.0);
}

TEST(FstPermutation, OnePopulationDrawsNothing) {
    const Tested t("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 5 6\n", 10);
    EXPECT_EQ(t.p[0](0, 0), 0.0);
    EXPECT_TRUE(streamIsBehind(1, 0));
}

TEST(FstPermutation, EveryFiftiethSeedsAgain) {
    // With the clock standing still the second fifty repeat the first: the same shares.
    const Tested fifty(kTwoPops, 50, kDefault, 4711);
    const Tested hundred(kTwoPops, 100, kDefault, 4711);
    const Tested fortyNine(kTwoPops, 49, kDefault, 4711);
    for (std::size_t s = 0; s < 3; ++s) {
        EXPECT_EQ(fifty.p[s](0, 1), hundred.p[s](0, 1));
    }
    EXPECT_NE(fortyNine.p[0](0, 1), fifty.p[0](0, 1));
}

TEST(FstPermutation, StreamBehind51PermutationsIsThatBehindOne) {
    const Tested t(kTiny, 51);
    EXPECT_TRUE(streamIsBehind(1, 3));
}

TEST(FstPermutation, UnlinkedLociDrawOneShuffleALocus) {
    const Tested linked(kTwoPops, 1, 0x39);
    EXPECT_TRUE(streamIsBehind(1, 4));
    const Tested unlinked(kTwoPops, 1, 0x29);
    EXPECT_TRUE(streamIsBehind(1, 8));
    const Tested alleles(kTwoPops, 1, 0x21);
    EXPECT_TRUE(streamIsBehind(1, 16)) << "single alleles, unlinked";
}

TEST(FstPermutation, UnlinkedLocusAbsentFromOnePopulationDrawsNothing) {
    const Tested t("2 . . 2 . 2 .\n. . . 0 . 0 .\n. . . L1 L1b L2 L2b\nA d 0 1 2 1 2\n"
                   "A d 0 1 1 3 3\nB d 0 . . 4 4\nB d 0 . . 4 5\n",
                   1, 0x29);
    EXPECT_TRUE(streamIsBehind(1, 4)) << "a shuffle of four pairs for L2 alone";
}

TEST(FstPermutation, EachPairIsShuffledByItself) {
    const Tested t("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 1 2\nB d 0 1 2\nB d 0 1 2\n"
                   "C d 0 1 2\n",
                   1);
    EXPECT_TRUE(streamIsBehind(1, 3 + 2 + 3)); // A+B, A+C, B+C
}

TEST(FstPermutation, LocusTableHoldsTheLastPermutation) {
    // The tenth permutation gives u1 to sample 1: Fst of the locus is -1.8.
    LoadedRun run(kTiny);
    run.counted();
    run->FstMask = kDefault | 0x2000;
    run->Permutationen = 10;
    FTriple f = newFTriple(2);
    FTriple p = newFTriple(2);
    CMatrix locusTable;
    locusTable.Resize(1, 1);
    run->FST_PAIR_WC84(f, run->PopAllele, locusTable);
    const FrozenClock clock(1);
    quietly([&] { run->FST_P_WC84(p, f, run->PopAllele, locusTable); });
    EXPECT_NEAR(locusTable(0, 0), -1.8, 1e-14);
}

TEST(HitsToPValues, NoHitCountsAsOne) {
    FTriple p = newFTriple(2);
    p[1](0, 1) = 7.0;
    hitsToPValues(p, 0, 1, 10.0, 100.0);
    EXPECT_EQ(p[0](0, 1), 0.01);
    EXPECT_EQ(p[0](1, 0), 0.1);
    EXPECT_EQ(p[1](0, 1), 0.07);
    EXPECT_EQ(p[1](1, 0), 0.7);
}

TEST(PairNumber, OfThePopulations) {
    EXPECT_EQ(pairNumber(0), 0.0);
    EXPECT_EQ(pairNumber(1), 0.0);
    EXPECT_EQ(pairNumber(17), 136.0);
}
