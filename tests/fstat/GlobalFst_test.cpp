#include "data/ftriple.h"
#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"

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

constexpr double kUndefined = -32767.0;
constexpr double kRounding = 1e-14;

// The statistics over all populations of a data set.
struct Global {
    explicit Global(const std::string& text, uint32_t mask = 0x39) : run(text) {
        run.counted();
        run->FstMask = mask;
        locus.Resize(FRow::Anzahl, std::max(run->AnzLoci, 1));
        locus.Fill(7.0);
        result = run->FST_GLOBAL_WC84(fst, fit, fis, gst, gstStrich, locus, run->PopAllele,
                                      run->AnzLoci, run->AnzPop);
    }
    void test(int permutations, long seconds = 1) {
        run->Permutationen = permutations;
        pLocus.Resize(3, run->AnzLoci);
        const FrozenClock clock(seconds);
        StdoutCapture capture;
        testResult =
            run->FST_GLOBAL_P_WC84(fst, gst, gstStrich, locus, pFst, pGst, pGstStrich, pLocus);
        console = capture.text();
    }
    std::vector<double> column(int32_t l) const {
        return {locus(0, l), locus(1, l), locus(2, l), locus(3, l), locus(4, l)};
    }

    LoadedRun run;
    double fst = 0.0;
    double fit = 0.0;
    double fis = 0.0;
    double gst = 0.0;
    double gstStrich = 0.0;
    CMatrix locus;
    int result = -1;
    double pFst = 0.0;
    double pGst = 0.0;
    double pGstStrich = 0.0;
    CMatrix pLocus;
    int testResult = -1;
    std::string console;
};

std::string oneLocus(const std::string& rows) {
    std::string text = "2 . . 2 .\n. . . 0 .\n. . . L1 L1b\n";
    return text.append(rows);
}

const std::vector<double> kAllUndefined(5, kUndefined);

} // namespace

// --- Estimator -------------------------------------------------------------------------

// kTwoPops: without missing data the pool's frequencies are the weighted means, so the values are
// those of the pair (FstPair_test): A .25, B .25, C 1.
//   Ht  L1 1 - (9 + 4 + 9)/64 = 42/64, L2 1 - (25 + 4 + 1)/64 = 34/64
//   hs  L1 (.375 + .375)/2 = 24/64, L2 (.625 + .375)/2 = 32/64; hmax (1 + hs)/2 = 44/64, 48/64
TEST(GlobalFst, TwoPopulationsAreThePairwiseCase) {
    const Global g(kTwoPops);
    EXPECT_EQ(g.result, 0);
    EXPECT_NEAR(g.fst, 0.25 / 1.5, kRounding);
    EXPECT_NEAR(g.fit, 1.0 - 1.0 / 1.5, kRounding);
    EXPECT_NEAR(g.fis, 0.2, kRounding);
    EXPECT_NEAR(g.locus(FRow::Fst, 0), 0.4375 / 0.9375, kRounding);
    EXPECT_NEAR(g.locus(FRow::Fit, 0), 1.0 - 0.5 / 0.9375, kRounding);
    EXPECT_NEAR(g.locus(FRow::Fis, 0), 0.0, kRounding);
    EXPECT_NEAR(g.locus(FRow::Fst, 1), -1.0 / 3.0, kRounding);
}

TEST(GlobalFst, GstByHand) {
    const Global g(kTwoPops);
    EXPECT_NEAR(g.locus(FRow::Gst, 0), 1.0 - 24.0 / 42.0, kRounding);
    EXPECT_NEAR(g.locus(FRow::GstStrich, 0), (18.0 / 42.0) / (20.0 / 44.0), kRounding);
    EXPECT_NEAR(g.locus(FRow::Gst, 1), 1.0 - 32.0 / 34.0, kRounding);
    EXPECT_NEAR(g.locus(FRow::GstStrich, 1), (2.0 / 34.0) / (16.0 / 48.0), kRounding);
    EXPECT_NEAR(g.gst, 1.0 - 56.0 / 76.0, kRounding) << "the ratio of the sums";
    EXPECT_NEAR(g.gstStrich, (20.0 / 76.0) / (1.0 - 56.0 / 92.0), kRounding);
}

// Three populations of 2, 2 and 1 individuals, allele 1 against 2: A 1/1 1/1, B 1/2 2/2, C 1/2.
//   s 3, SumN 5, SumN2 9, nbar 5/3, nc (5 - 9/5)/2 = 8/5; Hobs 0, .5, 1: H (0 + 1 + 1)/5 = 2/5
//   pool: 6 of 10: pbar .6; ss = 2 x .16 + 2 x .1225 + 1 x .01 = .575; s2 = .575/(5/3)/2 = .1725;
//   x = .24 - 2 x .1725/3 = .125; an allele adds a 5/3 (.1725 - .125/(2/3)) / (8/5) = -1/64 and
//   b 5/3 x .125/(2/3) = 5/16; two alleles: a -1/32, b 5/8
//   a += 5/3 x .4/(2 x 8/5 x 2/3) = 5/16: 9/32; b -= .4 (5/2 + 1)/2 = .7: -.075; c .4
TEST(GlobalFst, ThreePopulationsByHand) {
    const Global g(oneLocus("A d 0 1 1\nA d 0 1 1\nB d 0 1 2\nB d 0 2 2\nC d 0 1 2\n"));
    const double a = 9.0 / 32.0;
    const double T = a - 0.075 + 0.4;
    EXPECT_NEAR(g.fst, a / T, kRounding);
    EXPECT_NEAR(g.fit, 1.0 - 0.4 / T, kRounding);
    EXPECT_NEAR(g.fis, 1.0 - 0.4 / 0.325, kRounding);
    // Ht .48; hs (0 + .375 + .5)/3; hmax (2 + hs)/3
    const double hs = 0.875 / 3.0;
    EXPECT_NEAR(g.gst, 1.0 - hs / 0.48, kRounding);
    EXPECT_NEAR(g.gstStrich, g.gst / (1.0 - hs / ((2.0 + hs) / 3.0)), kRounding);
}

// The same with a fourth population that has one gene copy, allele 2: half an individual, which
// does not count, but its copy is in the pool: pbar 6/11.
TEST(GlobalFst, LessThanOneIndividualDropsThePopulationButNotItsAllele) {
    const Global g(oneLocus("A d 0 1 1\nA d 0 1 1\nB d 0 1 2\nB d 0 2 2\nC d 0 1 2\nD d 0 2 .\n"));
    const auto term = [](double pbar, double pA, double pB, double pC, double& a, double& b) {
        const double ss = 2 * (pA - pbar) * (pA - pbar) + 2 * (pB - pbar) * (pB - pbar) +
                          (pC - pbar) * (pC - pbar);
        const double s2 = ss / (5.0 / 3.0) / 2.0;
        const double x = pbar * (1 - pbar) - 2.0 * s2 / 3.0;
        a += 5.0 / 3.0 * (s2 - x / (2.0 / 3.0)) / 1.6;
        b += 5.0 / 3.0 * x / (2.0 / 3.0);
    };
    double a = 5.0 / 16.0;
    double b = -0.7;
    term(6.0 / 11.0, 1.0, 0.25, 0.5, a, b);
    term(5.0 / 11.0, 0.0, 0.75, 0.5, a, b);
    EXPECT_NEAR(g.fst, a / (a + b + 0.4), 1e-13);
    EXPECT_NEAR(g.fis, 1.0 - 0.4 / (b + 0.4), 1e-13);
}

TEST(GlobalFst, HeterozygosityIsChosenForEachPopulation) {
    // kInbredPop without an H bit: A, diploid, takes Hobs .5 .5; B, inbred, Hexp .75 .75, unlike
    // the pair, where both take Hexp. H = .625 at both loci: L1 a .1875 + .3125, b .75 - .9375,
    // c .625; L2 a -.4375 + .3125, b 1 - .9375, c .625. A .375, B -.125, C 1.25, T 1.5.
    const Global g(kInbredPop, 0x3C);
    EXPECT_NEAR(g.fst, 0.25, kRounding);
    EXPECT_NEAR(g.fit, 1.0 - 1.25 / 1.5, kRounding);
    EXPECT_NEAR(g.fis, 1.0 - 1.25 / 1.125, kRounding);
}

TEST(GlobalFst, ExpectedHeterozygosityForAll) {
    // As the pair under Hexp: A 1/3, B 0, C 7/6 (FstPair_test).
    EXPECT_NEAR(Global(kTwoPops, 0x3A).fst, 2.0 / 9.0, kRounding);
}

TEST(GlobalFst, MonomorphicPoolIsUndefined) {
    const Global g(oneLocus("A d 0 5 5\nA d 0 5 5\nB d 0 5 5\nB d 0 5 5\n"));
    EXPECT_EQ(g.column(0), kAllUndefined);
    for (const double value : {g.fst, g.fit, g.fis, g.gst, g.gstStrich}) {
        EXPECT_EQ(value, kUndefined);
    }
}

TEST(GlobalFst, OneIndividualInEveryPopulationHasGstAlone) {
    // A 1/2, B 1/1: Ht 1 - (9 + 1)/16 = .375, hs .25; SumN 2 = s.
    const Global g(oneLocus("A d 0 1 2\nB d 0 1 1\n"));
    EXPECT_EQ(g.locus(FRow::Fst, 0), kUndefined);
    EXPECT_EQ(g.locus(FRow::Fis, 0), kUndefined);
    EXPECT_NEAR(g.locus(FRow::Gst, 0), 1.0 / 3.0, kRounding);
    EXPECT_EQ(g.fst, kUndefined);
    EXPECT_NEAR(g.gst, 1.0 / 3.0, kRounding);
}

TEST(GlobalFst, NoPopulationWithAnIndividualKeepsTheGstRows) {
    // One gene copy each: the pool has two alleles, but nobody counts.
    const Global g(oneLocus("A d 0 1 .\nB d 0 2 .\n"));
    EXPECT_EQ(g.locus(FRow::Fst, 0), kUndefined);
    EXPECT_EQ(g.locus(FRow::Fis, 0), kUndefined);
    EXPECT_EQ(g.locus(FRow::Gst, 0), 7.0);
    EXPECT_EQ(g.locus(FRow::GstStrich, 0), 7.0);
    EXPECT_EQ(g.gst, kUndefined);
}

TEST(GlobalFst, LocusWithDataInOnePopulationIsNotANumber) {
    // s - 1 = 0 is not guarded, and the sums take it in.
    const Global g("2 . . 2 . 2 .\n. . . 0 . 0 .\n. . . L1 L1b L2 L2b\nA d 0 1 2 1 2\n"
                   "A d 0 1 1 1 1\nB d 0 . . 2 2\nB d 0 . . 1 2\n");
    EXPECT_TRUE(std::isnan(g.locus(FRow::Fst, 0)));
    EXPECT_FALSE(std::isnan(g.locus(FRow::Fst, 1)));
    EXPECT_TRUE(std::isnan(g.fst));
    EXPECT_FALSE(std::isnan(g.gst));
}

TEST(GlobalFst, UndefinedOfALocusLooksAtBAndHAlone) {
    // Fixed for different alleles: a 1, b and H 0.
    const Global g(oneLocus("A d 0 5 5\nA d 0 5 5\nB d 0 6 6\nB d 0 6 6\n"));
    EXPECT_EQ(g.locus(FRow::Fst, 0), kUndefined);
    EXPECT_NEAR(g.locus(FRow::Gst, 0), 1.0, kRounding);
    EXPECT_NEAR(g.locus(FRow::GstStrich, 0), 1.0, kRounding);
}

TEST(GlobalFst, OnePopulationLeavesTheTable) {
    const Global g(oneLocus("A d 0 5 6\nA d 0 5 5\n"));
    EXPECT_EQ(g.result, 1);
    EXPECT_EQ(g.column(0), std::vector<double>(5, 7.0));
    for (const double value : {g.fst, g.fit, g.fis, g.gst, g.gstStrich}) {
        EXPECT_EQ(value, kUndefined);
    }
}

TEST(GlobalFst, WithoutLociAllIsUndefined) {
    LoadedRun run(kTwoPops);
    run.counted();
    double v[5] = {1, 1, 1, 1, 1};
    CMatrix none;
    EXPECT_EQ(run->FST_GLOBAL_WC84(v[0], v[1], v[2], v[3], v[4], none, run->PopAllele, 0, 2), 0);
    for (const double value : v) {
        EXPECT_EQ(value, kUndefined);
    }
}

// --- Test ------------------------------------------------------------------------------

// A 5/5, B 5/6 6/6 (FstPermutation_test): Fst 9/19 if u0 or u2 is alone, else -1.8. A deal draws
// twice: r = trunc(6 u) and the pair r/2 goes to the last place, r = trunc(4 u) and the pair of the
// remaining two goes to the place before, the last one is alone in A.
//   .416 .092    2 -> u1 | 0 -> u0 : u2      .7564 .5297  4 -> u2 | 2 -> u1 : u0
//   .9304 .3835  5 -> u2 | 1 -> u0 : u1      .6539 .0668  3 -> u1 | 0 -> u0 : u2
//   .7227 .6711  4 -> u2 | 2 -> u1 : u0      .3834 .6316  2 -> u1 | 2 -> u2 : u0
// Five of six have u0 or u2 alone. With Hobs the terms are the same numbers in the same order but
// for the order of the populations' individuals, so the ties hold.
TEST(GlobalFst, SixPermutationsReplayedByHand) {
    Global g(oneLocus("A d 0 5 5\nB d 0 5 6\nB d 0 6 6\n"));
    EXPECT_NEAR(g.fst, 9.0 / 19.0, kRounding);
    g.test(6);
    EXPECT_EQ(g.testResult, 0);
    EXPECT_EQ(g.pFst, 5.0 / 6.0);
    EXPECT_EQ(g.pLocus(0, 0), 5.0 / 6.0);
    // Gst: Ht .5; u0 or u2 alone hs (0 + .375)/2, u1 alone (.5 + .5)/2: Gst 0 is less.
    EXPECT_EQ(g.pGst, 5.0 / 6.0);
    EXPECT_EQ(g.pGstStrich, 5.0 / 6.0);
    EXPECT_EQ(g.pLocus(1, 0), 5.0 / 6.0);
    EXPECT_EQ(g.pLocus(2, 0), 5.0 / 6.0);
    EXPECT_TRUE(streamIsBehind(1, 12));
    EXPECT_EQ(g.console.substr(0, 32), "\nCalc Replica: 0\nCalc Replica: 1");
}

TEST(GlobalFst, NoHitCountsAsOne) {
    std::string rows;
    for (int tier = 0; tier < 20; ++tier) {
        rows += tier < 10 ? "A d 0 5 5\n" : tier == 19 ? "B d 0 5 6\n" : "B d 0 6 6\n";
    }
    Global g(oneLocus(rows));
    g.test(50);
    EXPECT_EQ(g.pFst, 0.02);
    EXPECT_EQ(g.pGst, 0.02);
}

TEST(GlobalFst, MonomorphicDataHaveNoPValues) {
    Global g(oneLocus("A d 0 5 5\nA d 0 5 5\nB d 0 5 5\nB d 0 5 5\n"));
    g.test(10);
    EXPECT_EQ(g.pFst, kUndefined);
    EXPECT_EQ(g.pGst, kUndefined);
    EXPECT_EQ(g.pGstStrich, kUndefined);
    for (int32_t row = 0; row < 3; ++row) {
        EXPECT_EQ(g.pLocus(row, 0), kUndefined);
    }
}

TEST(GlobalFst, LocusDivisorsAreItsValidPermutations) {
    // Two populations of two alleles each, single alleles dealt, Hobs: the alleles 5 5 5 6 of L1.
    // One allele drops out of each shuffle; where it is the 6 the locus is monomorphic and does not
    // count.
    Global g(oneLocus("A d 0 5 5\nB d 0 5 6\n"), 0x31);
    g.test(200);
    ASSERT_NE(g.pLocus(1, 0), kUndefined);
    const double hits = g.pLocus(1, 0) * 200;
    EXPECT_NE(hits, std::round(hits)) << "the divisor is not 200";
}

TEST(GlobalFst, OnePopulationHasNoPValuesButDraws) {
    Global g(oneLocus("A d 0 5 6\nA d 0 5 5\nA d 0 6 6\n"));
    g.test(4);
    EXPECT_EQ(g.pFst, kUndefined);
    EXPECT_EQ(g.pLocus(0, 0), kUndefined);
    EXPECT_EQ(g.pLocus(1, 0), kUndefined);
    EXPECT_EQ(g.pLocus(2, 0), kUndefined);
    EXPECT_TRUE(streamIsBehind(1, 8)) << "two draws a shuffle of three";
}

TEST(GlobalFst, SeedsBeforeEveryThousandth) {
    Global g(oneLocus("A d 0 5 5\nB d 0 5 6\nB d 0 6 6\n"));
    g.test(999);
    EXPECT_TRUE(streamIsBehind(1, 1998)) << "not every fiftieth";
    g.test(1001);
    EXPECT_TRUE(streamIsBehind(1, 2));
}

TEST(GlobalFst, UnlinkedLociAreShuffledOneByOne) {
    Global g(kTwoPops, 0x29);
    g.test(1);
    EXPECT_TRUE(streamIsBehind(1, 6)) << "three draws a locus";
    Global alleles(kTwoPops, 0x31);
    alleles.test(1);
    EXPECT_TRUE(streamIsBehind(1, 7)) << "single alleles, linked";
}

TEST(GlobalFst, ThinningAndRandomisationHaveNoSay) {
    Global plain(kInbredPop, 0x39);
    plain.test(60);
    Global other(kInbredPop, 0x19 | 0x180); // no permutation bit, discard and jackknife
    other.test(60);
    EXPECT_EQ(plain.pFst, other.pFst);
    EXPECT_EQ(plain.pLocus.Daten, other.pLocus.Daten);
}
