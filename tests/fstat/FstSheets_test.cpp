// The bytes of the sheets, read from whole passes.
#include "fstat/FstSheets.h"

#include "fstat/passrun.h"

#include <gtest/gtest.h>

using namespace kva;

using kva_test::kGlobal;
using kva_test::kOnePop;
using kva_test::kPairs;
using kva_test::kThreePops;
using kva_test::kTwoPops;
using kva_test::kTwoPopsOneColumn;
using kva_test::LoadedRun;
using kva_test::PassRun;

// --- Pairs -----------------------------------------------------------------------------

// Farthest_East against the other two: 2/3, Fit 1 - .25/.75, Fis 1 - .25/.25 (FstPair_test).
TEST(FstSheets, MatricesInTheShapeOfDistances) {
    PassRun pass(kThreePops, kPairs, 0);
    EXPECT_EQ(pass.file("FST_WC84.txt"), "3\n"
                                         "     North  0.00000 -32767.00000  0.66667\n"
                                         "     South -32767.00000  0.00000  0.66667\n"
                                         "Farthest_E  0.66667  0.66667  0.00000\n"
                                         "\n");
    EXPECT_EQ(pass.file("FIT_WC84.txt"), "3\n"
                                         "     North  0.00000 -32767.00000  0.66667\n"
                                         "     South -32767.00000  0.00000  0.66667\n"
                                         "Farthest_E  0.66667  0.66667  0.00000\n"
                                         "\n");
    EXPECT_EQ(pass.file("FIS_WC84.txt"), "3\n"
                                         "     North  0.00000 -32767.00000  0.00000\n"
                                         "     South -32767.00000  0.00000  0.00000\n"
                                         "Farthest_E  0.00000  0.00000  0.00000\n"
                                         "\n");
}

TEST(FstSheets, OnePopulationIsAMatrixOfOne) {
    EXPECT_EQ(PassRun(kOnePop, kPairs, 0).file("FST_WC84.txt"), "1\n         A  0.00000\n\n");
}

TEST(FstSheets, PValuesWithoutSignificanceAndWithoutValue) {
    // One permutation: every p-value is 1, the corrected ones 3.
    PassRun pass(kThreePops, kPairs, 1);
    EXPECT_EQ(pass.file("FST_WC84-pValue.xls"), "Fst-values:\n"
                                                "North\t0.000000\tn.d.\t0.666667\n"
                                                "South\tn.d.\t0.000000\t0.666667\n"
                                                "Farthest_East\t0.666667\t0.666667\t0.000000\n"
                                                "\n"
                                                "\n"
                                                "P-values:\n"
                                                "North\t0.000000\tn.d.\t1.000000\n"
                                                "South\tn.d.\t0.000000\t1.000000\n"
                                                "Farthest_East\tn.s.\tn.s.\t0.000000\n"
                                                "\n");
}

TEST(FstSheets, ASignificantPairShowsItsCorrectedValue) {
    std::string text = "2 . . 2 .\n. . . 0 .\n. . . L1 L1b\n";
    for (int tier = 0; tier < 20; ++tier) {
        text += tier < 10 ? "A d 0 5 5\n" : tier == 10 ? "B d 0 5 6\n" : "B d 0 6 6\n";
    }
    PassRun pass(text, kPairs, 100);
    const std::string sheet = pass.file("FST_WC84-pValue.xls");
    EXPECT_EQ(sheet.substr(sheet.find("P-values")), "P-values:\n"
                                                    "A\t0.000000\t0.010000\n"
                                                    "B\t0.010000\t0.000000\n"
                                                    "\n");
}

TEST(FstSheets, FivePercentItselfIsShown) {
    LoadedRun run(kTwoPops);
    const FTriple f = newFTriple(2);
    FTriple p = newFTriple(2);
    p[0](0, 1) = 0.25;
    p[0](1, 0) = 0.05; // corrected
    EXPECT_TRUE(writeFstPValues(*run, f, p));
    const std::string sheet = run.resultFile("FST_WC84-pValue.xls");
    EXPECT_EQ(sheet.substr(sheet.find("P-values")), "P-values:\n"
                                                    "A\t0.000000\t0.250000\n"
                                                    "B\t0.050000\t0.000000\n"
                                                    "\n");
}

TEST(FstSheets, ThinningWritesMeansAndLimits) {
    PassRun pass(kThreePops, kPairs | 0x280, 20);
    const std::string mean = "3\n"
                             "North\t0.000000\tn.d.\t0.666667\n"
                             "South\tn.d.\t0.000000\t0.666667\n"
                             "Farthest_East\t0.666667\t0.666667\t0.000000\n"
                             "\n";
    EXPECT_EQ(pass.file("FST_WC84_MEAN.xls"), mean);
    EXPECT_EQ(pass.file("FST_WC84_OG.xls"), mean) << "no spread; n.d. where the mean is";
    EXPECT_EQ(pass.file("FST_WC84_UG.xls"), mean);
    EXPECT_EQ(pass.file("FIS_WC84_MEAN.xls"), "3\n"
                                              "North\t0.000000\tn.d.\t0.000000\n"
                                              "South\tn.d.\t0.000000\t0.000000\n"
                                              "Farthest_East\t0.000000\t0.000000\t0.000000\n"
                                              "\n");
    EXPECT_EQ(pass.files().size(), 3U + 3U + 2U + 1U);
}

// --- All populations -------------------------------------------------------------------

// The values of kTwoPops stand in GlobalFst_test.
TEST(GlobFstSheet, SheetWithoutPermutations) {
    EXPECT_EQ(PassRun(kTwoPops, kGlobal, 0).file("GlobFst.xls"),
              "Global Fst of Datafile: data.txt\n"
              "\n"
              "global Fst over all loci:\t0.166667\n"
              "global Fit over all loci:\t0.333333\n"
              "global Fis over all loci:\t0.200000\n"
              "Gst over all loci:\t0.263158\n"
              "Gst' over all loci:\t0.672515\n"
              "Locus: L1  /  L1b\n"
              "L1\tglobal Fst:\t0.466667\n"
              "L1\tglobal Fit: \t0.466667\n"
              "L1\tglobal Fis: \t0.000000\n"
              "L1\tGst:\t0.428571\n"
              "L1\tGst':\t0.942857\n"
              "Locus: L2  /  L2b\n"
              "L2\tglobal Fst:\t-0.333333\n"
              "L2\tglobal Fit: \t0.111111\n"
              "L2\tglobal Fis: \t0.333333\n"
              "L2\tGst:\t0.058824\n"
              "L2\tGst':\t0.176471\n");
}

// One permutation: p-values are 1, whether it hits or not.
TEST(GlobFstSheet, SheetWithPermutations) {
    const std::string sheet = PassRun(kTwoPopsOneColumn, kGlobal, 1).file("GlobFst.xls");
    EXPECT_EQ(sheet.substr(0, sheet.find("Locus: L2")),
              "Global Fst of Datafile: data.txt\n"
              "Number of permutations is: 1\n"
              "\n"
              "\tValues\tp-Values\n"
              "global Fst over all loci:\t0.166667\t1.000000\n"
              "global Fit over all loci:\t0.333333\n"
              "global Fis over all loci:\t0.200000\n"
              "Gst over all loci:\t0.263158\t1.000000\n"
              "Gst' over all loci:\t0.672515\t1.000000\n"
              "\t\tValues\tp-Values\n"
              "Locus: L1\n"
              "L1\tglobal Fst:\t0.466667\t1.000000\n"
              "L1\tglobal Fit: \t0.466667\n"
              "L1\tglobal Fis: \t0.000000\n"
              "L1\tGst:\t0.428571\t1.000000\n"
              "L1\tGst':\t0.942857\t1.000000\n");
}

TEST(GlobFstSheet, OnePopulationShowsRawValuesAndNoPValues) {
    EXPECT_EQ(PassRun(kOnePop, kGlobal, 5).file("GlobFst.xls"),
              "Global Fst of Datafile: data.txt\n"
              "Number of permutations is: 5\n"
              "\n"
              "\tValues\tp-Values\n"
              "global Fst over all loci:\t-32767.000000\tn.d.\n"
              "global Fit over all loci:\t-32767.000000\n"
              "global Fis over all loci:\t-32767.000000\n"
              "Gst over all loci:\t-32767.000000\tn.d.\n"
              "Gst' over all loci:\t-32767.000000\tn.d.\n"
              "\t\tValues\tp-Values\n"
              "Locus: L1  /  L1b\n"
              "L1\tglobal Fst:\t-32767.000000\tn.d.\n"
              "L1\tglobal Fit: \t-32767.000000\n"
              "L1\tglobal Fis: \t-32767.000000\n"
              "L1\tGst:\t-32767.000000\tn.d.\n"
              "L1\tGst':\t-32767.000000\tn.d.\n");
}
