#include "fstat/fstatsupport.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace kva;

using kva_test::kInbredPop;
using kva_test::kTwoPops;
using kva_test::kTwoPopsOneColumn;
using kva_test::kWithGaps;
using kva_test::LoadedRun;

namespace {

constexpr double kUndefined = -32767.0;
constexpr double kRounding = 1e-14; // of the division of sums that are exact, or nearly so

// The pairwise statistics of a data set under the given flags.
struct Pairs {
    explicit Pairs(const char* text, uint32_t mask = 0x1) : run(text) {
        run.counted();
        run->FstMask = mask;
        f = newFTriple(run->AnzPop);
        locusTable.Resize(run->AnzLoci, 10);
        locusTable.Fill(7.0);
        result = run->FST_PAIR_WC84(f, run->PopAllele, locusTable);
    }
    double fst(int i = 0, int j = 1) const { return f[0](i, j); }
    double fit(int i = 0, int j = 1) const { return f[1](i, j); }
    double fis(int i = 0, int j = 1) const { return f[2](i, j); }

    LoadedRun run;
    FTriple f;
    CMatrix locusTable;
    int result = -1;
};

// Three populations of two individuals, one locus. A and B are fixed for the same allele.
const char* const kFixed = "2 . . 2 .\n"
                           ". . . 0 .\n"
                           ". . . L1 L1b\n"
                           "A d 0 5 5\n"
                           "A d 0 5 5\n"
                           "B d 0 5 5\n"
                           "B d 0 5 5\n"
                           "C d 0 5 6\n"
                           "C d 0 6 6\n";

// A and B are fixed for different alleles.
const char* const kApart = "2 . . 2 .\n"
                           ". . . 0 .\n"
                           ". . . L1 L1b\n"
                           "A d 0 5 5\n"
                           "A d 0 5 5\n"
                           "B d 0 6 6\n"
                           "B d 0 6 6\n";

// One individual each: S = 2.
const char* const kOneEach = "2 . . 2 .\n"
                             ". . . 0 .\n"
                             ". . . L1 L1b\n"
                             "A d 0 5 6\n"
                             "B d 0 6 7\n";

} // namespace

// --- Weir and Cockerham (1984), worked out by hand -------------------------------------

// kTwoPops, H = Hobs, nA = nB = 2, S = 4, nc = 2 x 2 x 2 / 4 = 2. Terms of an allele:
// a: S (s2 - 2x/(S-2)) / (2 nc) = s2 - x, b: S x / (S-2) = 2x.
//   L1  100: p .75  0    pbar .375 s2 .28125 x .09375 | a  .1875 b .1875
//       102: p .25  .25  pbar .25  s2 0      x .1875  | a -.1875 b .375
//       104: p 0    .75  as 100                       | a  .1875 b .1875
//       sums a .1875, b .75; H = .5: a += 4 x .5 / (4 x 2) = .25, b -= 3 x .5 / 2 = .75, c = .5
//       a .4375, b 0, c .5: Fst .4375 / .9375
//   L2  200: p .5   .75  pbar .625 s2 .03125 x .21875 | a -.1875 b .4375
//       204: p .25  .25  pbar .25  s2 0      x .1875  | a -.1875 b .375
//       208: p .25  0    pbar .125 s2 .03125 x .09375 | a -.0625 b .1875
//       sums a -.4375, b 1; H = .5: a -.1875, b .25, c .5: Fst -.1875 / .5625
//   A = .25, B = .25, C = 1, T = 1.5
TEST(FstPair, TwoPopulationsTwoLociByHand) {
    const Pairs pairs(kTwoPops);
    EXPECT_EQ(pairs.result, 0);
    EXPECT_NEAR(pairs.fst(), 0.25 / 1.5, kRounding);
    EXPECT_NEAR(pairs.fit(), 1.0 - 1.0 / 1.5, kRounding);
    EXPECT_NEAR(pairs.fis(), 0.2, kRounding);
}

TEST(FstPair, MatricesAreSymmetricWithZeroDiagonal) {
    const Pairs pairs(kTwoPops);
    for (const CMatrix& matrix : pairs.f) {
        EXPECT_EQ(matrix(0, 1), matrix(1, 0));
        EXPECT_EQ(matrix(0, 0), 0.0);
        EXPECT_EQ(matrix(1, 1), 0.0);
    }
}

TEST(FstPair, OneColumnDataGiveTheSame) {
    EXPECT_EQ(Pairs(kTwoPopsOneColumn).fst(), Pairs(kTwoPops).fst());
}

// kWithGaps: at L1 A has 100/102 100/-, so nA = 1.5, H 1/2; nB = 2; S = 3.5, nc = 12/7. B has no
// data at L2, which leaves that locus out.
//   100: p 2/3 0    pbar 2/7  s2 32/147 x 2/21  | a 5/54     b 2/9
//   102: p 1/3 1/4  pbar 2/7  s2 1/294  x 17/84 | a -235/864 b 17/36
//   104: p 0   3/4  pbar 3/7  s2 27/98  x 3/28  | a 13/96    b 1/4
//   sums a -19/432, b 17/18; H = .5: a += 3.5 x .5 / (24/7 x 1.5) = 49/144,
//   b -= (3.5/1.5 + 1) x .5 / 2 = 5/6: a 8/27, b 1/9, c 1/2, T 49/54
TEST(FstPair, MissingDataByHand) {
    const Pairs pairs(kWithGaps);
    EXPECT_NEAR(pairs.fst(), 16.0 / 49.0, kRounding);
    EXPECT_NEAR(pairs.fit(), 22.0 / 49.0, kRounding);
    EXPECT_NEAR(pairs.fis(), 2.0 / 11.0, kRounding);
}

TEST(FstPair, InbredDataCountHalfTheirEntriesAsIndividuals) {
    // With Hobs the flag changes nothing: n is half the gene copies all the same.
    EXPECT_EQ(Pairs(kInbredPop, 0x1).fst(), Pairs(kTwoPops, 0x1).fst());
}

// kInbredPop without an H bit: B is inbred, so both samples take Hexp.
//   L1  A: C 8, 8/6 x (1 - .625) = .5; B: C 4, 2 x (1 - .625) = .75; H .625
//       a .1875 + 4 x .625 / 8 = .5; b .75 - 3 x .625 / 2 = -.1875; c .625
//   L2  A: 8/6 x (1 - .375) = 5/6; B: 2 x (1 - .625) = .75; H 19/24
//       a -.4375 + 19/48 = -1/24; b 1 - 19/16 = -.1875; c 19/24
//   A 11/24, B -9/24, C 34/24, T 36/24
TEST(FstPair, OneInbredSampleTurnsBothToExpectedHeterozygosity) {
    const Pairs pairs(kInbredPop, 0x4);
    EXPECT_NEAR(pairs.fst(), 11.0 / 36.0, kRounding);
    EXPECT_NEAR(pairs.fit(), 2.0 / 36.0, kRounding);
    EXPECT_NEAR(pairs.fis(), 1.0 - 34.0 / 25.0, kRounding);
}

TEST(FstPair, WithoutInbredSamplesTheAutomaticChoiceIsObserved) {
    EXPECT_EQ(Pairs(kTwoPops, 0x4).fst(), Pairs(kTwoPops, 0x1).fst());
    EXPECT_EQ(Pairs(kTwoPops, 0x0).fst(), Pairs(kTwoPops, 0x1).fst());
}

// kTwoPops with Hexp: L1 both 4/3 x .375 = .5: as with Hobs, a .4375, b 0, c .5.
//   L2  A 4/3 x .625 = 5/6, B .5: H 2/3; a -.4375 + 4 x 2/3 / 8 = -5/48, b 1 - 1 = 0, c 2/3
//   A 1/3, B 0, C 7/6, T 3/2
TEST(FstPair, ExpectedHeterozygosityByHand) {
    const Pairs pairs(kTwoPops, 0x2);
    EXPECT_NEAR(pairs.fst(), 2.0 / 9.0, kRounding);
    EXPECT_NEAR(pairs.fit(), 2.0 / 9.0, kRounding);
    EXPECT_NEAR(pairs.fis(), 0.0, kRounding);
}

TEST(FstPair, ObservedWinsOverExpected) {
    EXPECT_EQ(Pairs(kTwoPops, 0x3).fst(), Pairs(kTwoPops, 0x1).fst());
}

// --- Undefined values ------------------------------------------------------------------

TEST(FstPair, FixedForOneAlleleIsUndefined) {
    const Pairs pairs(kFixed);
    for (const CMatrix& matrix : pairs.f) {
        EXPECT_EQ(matrix(0, 1), kUndefined);
        EXPECT_EQ(matrix(1, 0), kUndefined);
        EXPECT_NE(matrix(0, 2), kUndefined);
    }
}

TEST(FstPair, FixedForDifferentAllelesIsUndefinedToo) {
    // a is 1 but b and c are 0: pbar (1 - pbar) = .25, s2 = .5.
    const Pairs pairs(kApart, 0x2041);
    EXPECT_EQ(pairs.fst(), kUndefined);
    EXPECT_EQ(pairs.locusTable(0, 0), 1.0) << "of the locus alone it is 1";
}

TEST(FstPair, TwoIndividualsAreTooFew) {
    EXPECT_EQ(Pairs(kOneEach).fst(), kUndefined);
}

TEST(FstPair, LocusAbsentFromOnePopulationIsUndefined) {
    const Pairs pairs(kWithGaps, 0x2001);
    EXPECT_NEAR(pairs.locusTable(0, 0), 16.0 / 49.0, kRounding);
    EXPECT_EQ(pairs.locusTable(1, 0), kUndefined);
}

TEST(FstPair, ResultsAreNotClamped) {
    // L2 of kTwoPops by itself is negative.
    const Pairs pairs(kTwoPops, 0x4001);
    EXPECT_NEAR(pairs.locusTable(1, 0), -1.0 / 3.0, kRounding);
}

TEST(FstPair, OnePopulationHasNoPair) {
    const Pairs pairs("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 5 6\nA d 0 6 6\n");
    EXPECT_EQ(pairs.result, 0);
    EXPECT_EQ(pairs.fst(0, 0), 0.0);
}

TEST(FstPair, WithoutTablesNothingIsDone) {
    LoadedRun run(kTwoPops);
    FTriple f = newFTriple(2);
    f[0].Fill(3.0);
    CMatrix none;
    EXPECT_EQ(run->FST_PAIR_WC84(f, {}, none), 1);
    EXPECT_EQ(f[0](0, 1), 3.0);
}

// --- Where the values of a locus go ----------------------------------------------------

TEST(FstPair, LocusTableIsFilledWithEitherBit) {
    for (const uint32_t bit : {0x2000U, 0x4000U}) {
        const Pairs pairs(kTwoPops, 0x1 | bit);
        EXPECT_NEAR(pairs.locusTable(0, 0), 0.4375 / 0.9375, kRounding) << bit;
    }
    EXPECT_EQ(Pairs(kTwoPops, 0x1).locusTable(0, 0), 7.0) << "left alone";
}

TEST(FstPair, LocusTableHasAColumnForEachPairRowByRow) {
    const Pairs pairs(kFixed, 0x2001);
    EXPECT_EQ(pairs.locusTable(0, 0), kUndefined) << "A and B";
    EXPECT_NEAR(pairs.locusTable(0, 1), pairs.fst(0, 2), kRounding) << "A and C";
    EXPECT_NEAR(pairs.locusTable(0, 2), pairs.fst(1, 2), kRounding) << "B and C";
}

TEST(FstPair, SheetPerLocusTwoColumns) {
    const Pairs pairs(kTwoPops, 0x41);
    EXPECT_EQ(pairs.run.resultFile("Fst_per_locus.xls"), "\t\tL1\tL2\t\n"
                                                         "\t\tL1b\tL2b\t\n"
                                                         "A\tB\t 0.46667\t-0.33333\n");
}

TEST(FstPair, SheetPerLocusOneColumnHasOneHeadLine) {
    const Pairs pairs(kTwoPopsOneColumn, 0x41);
    EXPECT_EQ(pairs.run.resultFile("Fst_per_locus.xls"), "\t\tL1\tL2\t\n"
                                                         "A\tB\t 0.46667\t-0.33333\n");
}

TEST(FstPair, SheetPerLocusShowsUndefinedLoci) {
    // A and C: A fixed, C 5/6 6/6. 5: p 1 .25, pbar .625, s2 .28125, x .09375; 6 alike: a .375,
    // b .375; H .25: a += 4 x .25 / 8, b -= 3 x .25 / 2: a .5, b 0, c .25: 2/3.
    const Pairs pairs(kFixed, 0x41);
    EXPECT_EQ(pairs.run.resultFile("Fst_per_locus.xls"), "\t\tL1\t\n"
                                                         "\t\tL1b\t\n"
                                                         "A\tB\tn.d.\n"
                                                         "A\tC\t 0.66667\n"
                                                         "B\tC\t 0.66667\n");
}

TEST(FstPair, SingleStoresWhereItIsTold) {
    // The samples come from tables 0 + 1 and 1 + 1, the result goes to (2, 3).
    LoadedRun run(kTwoPops);
    run.counted();
    run->FstMask = 0x1;
    FTriple f = newFTriple(4);
    CMatrix none;
    EXPECT_EQ(run->FST_SINGLE_WC84(2, 3, f, run->PopAllele, 2, 0, 1, nullptr, none), 0);
    EXPECT_NEAR(f[0](2, 3), 0.25 / 1.5, kRounding);
    EXPECT_EQ(f[0](3, 2), f[0](2, 3));
    EXPECT_EQ(f[0](0, 1), 0.0);
}

TEST(FstPair, WithoutLociAllIsUndefined) {
    LoadedRun run(kTwoPops);
    run.counted();
    FTriple f = newFTriple(2);
    CMatrix none;
    run->FST_SINGLE_WC84(0, 1, f, run->PopAllele, 0, 0, 1, nullptr, none);
    EXPECT_EQ(f[0](0, 1), kUndefined);
    EXPECT_EQ(f[2](1, 0), kUndefined);
}

// --- Log-likelihood ratio --------------------------------------------------------------

// L1: 100 3:0, 102 1:1, 104 0:3 of 4 and 4: 3 ln 2 + 1 ln 1 + 1 ln 1 + 3 ln 2. L2: 200 2:3,
// 204 1:1, 208 1:0: 2 ln(2 / 2.5) + 3 ln(3 / 2.5) + 0 + ln 2.
TEST(LoggSingle, ByHand) {
    LoadedRun run(kTwoPops);
    run.counted();
    FTriple f = newFTriple(2);
    EXPECT_EQ(run->LOGG_SINGLE_WC84(0, 1, f, run->PopAllele, 2, 0, 1), 0);
    const double G = 7.0 * std::log(2.0) + 2.0 * std::log(0.8) + 3.0 * std::log(1.2);
    for (const CMatrix& matrix : f) {
        EXPECT_NEAR(matrix(0, 1), 2.0 * G, 1e-13);
        EXPECT_EQ(matrix(1, 0), matrix(0, 1));
    }
}

TEST(LoggSingle, APopulationWithoutDataIsNotCompared) {
    LoadedRun run(kWithGaps); // B has no data at L2
    run.counted();
    const SampleTables onlyL2 = {
        {run->PopAllele[0][1]}, {run->PopAllele[1][1]}, {run->PopAllele[2][1]}};
    FTriple f = newFTriple(2);
    f[0](0, 1) = f[0](1, 0) = 7.0;
    run->LOGG_SINGLE_WC84(0, 1, f, onlyL2, 1, 1, 0); // B first
    EXPECT_EQ(f[0](0, 1), 0.0);
}

TEST(LoggSingle, NothingToCompareIsZero) {
    LoadedRun run(kWithGaps);
    run.counted();
    FTriple f = newFTriple(2);
    const SampleTables onlyL2 = {
        {run->PopAllele[0][1]}, {run->PopAllele[1][1]}, {run->PopAllele[2][1]}};
    run->LOGG_SINGLE_WC84(0, 1, f, onlyL2, 1, 0, 1);
    EXPECT_EQ(f[0](0, 1), 0.0);
}

// Tables in order of first appearance, as the shuffles make them, are looked up allele by allele;
// tables that ascend are walked along. The pool gives the order of the sums, so it stays.
TEST(FstPair, SamplesThatAreNotSortedGiveTheSame) {
    for (const char* text : {kTwoPops, kWithGaps, kFixed, kInbredPop}) {
        Pairs pairs(text);
        SampleTables unsorted = pairs.run->PopAllele;
        for (std::size_t pop = 1; pop < unsorted.size(); ++pop) {
            for (int locus = 1; locus <= pairs.run->AnzLoci; ++locus) {
                AllelCount& table = unsorted[pop][static_cast<std::size_t>(locus - 1)];
                table = AllelCount();
                pairs.run->Daten->Locus(locus)->AllelCountP(table, static_cast<int>(pop), 0);
                ASSERT_FALSE(table.isSorted() && table.AnzAllele > 0);
            }
        }
        FTriple f = newFTriple(pairs.run->AnzPop);
        pairs.run->FST_PAIR_WC84(f, unsorted, pairs.locusTable);
        for (std::size_t s = 0; s < f.size(); ++s) {
            EXPECT_EQ(f[s](0, 1), pairs.f[s](0, 1)) << text;
        }
    }
}
