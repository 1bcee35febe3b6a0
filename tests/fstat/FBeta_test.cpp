#include "fstat/fstatsupport.h"

#include <gtest/gtest.h>

using namespace kva;

using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::tabbed;

namespace {

constexpr double kUndefined = -32767.0;
constexpr double kRounding = 1e-14;

// A counted data set with its references.
struct Beta {
    explicit Beta(const char* text) : run(text) {
        run.counted();
        run->F_HELPER(N, W, Q);
        beta.Resize(run->AnzPop, run->AnzPop);
    }
    double single(int i, bool mittel = false) {
        run->F_Betai_SINGLE(i, beta, N, W, Q, mittel);
        return beta(i, i);
    }
    double pair(int i, int j, bool mittel = false) {
        result = run->F_Betaij_SINGLE(i, j, beta, N, W, Q, mittel);
        return beta(i, j);
    }

    LoadedRun run;
    CMatrix N;
    CMatrix W;
    CMatrix Q;
    CMatrix beta;
    int result = 7;
};

// B has no data at all; C is there.
const char* const kNoDataInB = "2 . . 2 .\n"
                               ". . . 0 .\n"
                               ". . . L1 L1b\n"
                               "A d 0 1 2\n"
                               "A d 0 1 1\n"
                               "B d 0 . .\n"
                               "C d 0 2 2\n"
                               "C d 0 1 2\n";

const char* const kOnePop = "2 . . 2 .\n"
                            ". . . 0 .\n"
                            ". . . L1 L1b\n"
                            "A d 0 1 2\n"
                            "A d 0 1 1\n";

} // namespace

// kTwoPops: nk 4 and 4, N 8, wk = 4 - 16/8 = 2, W 4.
//   L1  pbar 3/8 2/8 3/8. A (.75 .25 0): 4 (.375)^2 + .75 x 2 x .25, .25 x 2 x .75, 4 (.375)^2:
//       .5625 + .375 + .375 + .5625 = 1.875; B alike: Q 3.75
//   L2  pbar 5/8 2/8 1/8. A (.5 .25 .25): .0625 + .5, .375, .0625 + .375: 1.375;
//       B (.75 .25 0): .0625 + .375, .375, .0625: .875; Q 2.25
TEST(FHelper, ReferencesByHand) {
    const Beta b(kTwoPops);
    EXPECT_EQ(b.N(0, 0), 8.0);
    EXPECT_EQ(b.W(0, 0), 4.0);
    EXPECT_NEAR(b.Q(0, 0), 3.75, kRounding);
    EXPECT_NEAR(b.Q(1, 0), 2.25, kRounding);
    EXPECT_EQ(b.Q.MaxZeile, 1);
    EXPECT_EQ(b.Q.MaxSpalte, 0);
}

TEST(FHelper, LocusWithoutTwoGeneCopiesAnywhereIsMinusOne) {
    // A single copy is too few: used is a population with more than one.
    const Beta b("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 1 .\nB d 0 . 2\n");
    EXPECT_EQ(b.N(0, 0), -1.0);
    EXPECT_EQ(b.W(0, 0), -1.0);
    EXPECT_EQ(b.Q(0, 0), -1.0);
}

TEST(FHelper, PopulationWithOneGeneCopyIsNotUsed) {
    const Beta b("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 1 2\nB d 0 2 .\n");
    EXPECT_EQ(b.N(0, 0), 2.0);
}

// L1: A h = .375, v = 4/3 x .375 x 4 = 2; L2: h = .625, v = 10/3. Nenner 6, Zaehler 16/3.
// B: L1 2, L2 h = .375, v = 2: Zaehler 4.
TEST(FBetai, ByHand) {
    Beta b(kTwoPops);
    EXPECT_NEAR(b.single(0), 1.0 / 9.0, kRounding);
    EXPECT_NEAR(b.single(1), 1.0 / 3.0, kRounding);
    EXPECT_EQ(b.beta(0, 1), 0.0);
}

TEST(FBetai, SumOfRatios) {
    Beta b(kTwoPops);
    EXPECT_NEAR(b.single(0, true), 1.0 - 2.0 / 3.75 - (10.0 / 3.0) / 2.25, kRounding);
}

// L1: d = .75 + .375 + .75 = 1.875, v 7.5; L2: d = .5 + .375 + .25 = 1.125, v 4.5: 12 of 2 x 6.
TEST(FBetaij, ByHand) {
    Beta b(kTwoPops);
    EXPECT_NEAR(b.pair(0, 1), 0.0, kRounding);
    EXPECT_EQ(b.result, 0);
    EXPECT_EQ(b.beta(1, 0), b.beta(0, 1));
    EXPECT_NEAR(b.pair(0, 1, true), 1.0 - 7.5 / 7.5 - 4.5 / 4.5, kRounding) << "sum of ratios";
}

TEST(FBetaij, APopulationWithItselfIsRefused) {
    Beta b(kTwoPops);
    b.beta.Fill(3.0);
    b.pair(1, 1);
    EXPECT_EQ(b.result, -1);
    EXPECT_EQ(b.beta(1, 1), 3.0);
}

TEST(FBeta, OnePopulationIsUndefined) {
    Beta b(kOnePop);
    EXPECT_EQ(b.W(0, 0), 0.0);
    EXPECT_EQ(b.Q(0, 0), 0.0);
    EXPECT_EQ(b.single(0), kUndefined);
}

// Only A has two gene copies: N 2, its weight 2 - 4/2 = 0. The copy of B still stands in the pool:
// pbar 1/3 2/3, Q 2 (1/6)^2 + 2 (1/6)^2 = 1/9. So beta is 1 - 0 / (1/9), not undefined.
TEST(FBeta, LocusWhereOnePopulationAloneWeighsInCounts) {
    Beta b("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 1 2\nB d 0 2 .\n");
    EXPECT_EQ(b.W(0, 0), 0.0);
    EXPECT_NEAR(b.Q(0, 0), 1.0 / 9.0, kRounding);
    EXPECT_EQ(b.single(0), 1.0);
    EXPECT_EQ(b.single(1), kUndefined);
}

TEST(FBeta, LocusFixedEverywhereIsSkipped) {
    // L1 fixed: Q 0. L2 is L1 of kTwoPops by itself.
    Beta b("2 . . 2 . 2 .\n. . . 0 . 0 .\n. . . L1 L1b L2 L2b\nA d 0 7 7 100 102\n"
           "A d 0 7 7 100 100\nB d 0 7 7 102 104\nB d 0 7 7 104 104\n");
    EXPECT_EQ(b.Q(0, 0), 0.0);
    EXPECT_NEAR(b.single(0), 1.0 - 2.0 / 3.75, kRounding);
    EXPECT_NEAR(b.single(0, true), 1.0 - 2.0 / 3.75, kRounding) << "sum of ratios";
    EXPECT_NEAR(b.pair(0, 1, true), 0.0, kRounding);
}

TEST(FBeta, PairWithoutDataWipesOutTheDiagonal) {
    Beta b(kNoDataInB);
    const double own = b.single(0);
    EXPECT_NE(own, kUndefined);
    b.pair(0, 1);
    EXPECT_EQ(b.beta(0, 0), kUndefined);
    EXPECT_EQ(b.beta(1, 0), kUndefined);
    EXPECT_EQ(b.beta(0, 1), 0.0);
}

TEST(FBeta, SheetsOfTwoPopulations) {
    LoadedRun run(kTwoPops);
    run.counted();
    StdoutCapture capture;
    EXPECT_EQ(run->F_BETA_ALLG(), 0);
    EXPECT_EQ(capture.text(), "\nStart with F-beta-value calculation!\n");
    EXPECT_EQ(run.resultFile("Beta_POP.xls"), "\tA\tB\n"
                                              "A\t0.111111\t0.000000\n"
                                              "B\t0.000000\t0.333333\n");
    EXPECT_EQ(run.resultFile("Betaij_POP.txt"), "2\n"
                                                "         A  0.00000  0.00000\n"
                                                "         B  0.00000  0.00000\n");
}

// A and C: 1 and 2 in 3:1 and 1:3, as two alleles; N 8, pbar .5, Q per population 2 (4 x .0625 +
// .75 x 2 x .25) = 1.25: 2.5. beta i 1 - 4/3 x .375 x 4 / 2.5 = .2; d = 2 (.5625 + .0625) = 1.25,
// beta ij 1 - 5 / 5 = 0. The pair (A, B) wipes out beta A; (B, C) hits (B, B) and (C, B); (A, C)
// stays. B itself has no beta.
TEST(FBeta, SheetsWithAPopulationWithoutData) {
    LoadedRun run(kNoDataInB);
    run.counted();
    kva_test::quietly([&] { run->F_BETA_ALLG(); });
    EXPECT_EQ(run.resultFile("Beta_POP.xls"), "\tA\tB\tC\n"
                                              "A\t-32767.000000\t0.000000\t0.000000\n"
                                              "B\t-32767.000000\t-32767.000000\t0.000000\n"
                                              "C\t0.000000\t-32767.000000\t0.200000\n");
    EXPECT_EQ(run.resultFile("Betaij_POP.txt"), "3\n"
                                                "         A  0.00000  0.00000  0.00000\n"
                                                "         B -32767.00000  0.00000  0.00000\n"
                                                "         C  0.00000 -32767.00000  0.00000\n");
}

TEST(FBeta, SheetsOfOnePopulationAreOneRow) {
    LoadedRun run(kOnePop);
    run.counted();
    kva_test::quietly([&] { run->F_BETA_ALLG(); });
    EXPECT_EQ(run.resultFile("Beta_POP.xls"), "\tA\nA\t-32767.000000\n");
    EXPECT_EQ(run.resultFile("Betaij_POP.txt"), "1\n         A  0.00000\n");
}
