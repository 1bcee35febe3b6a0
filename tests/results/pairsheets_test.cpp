// Sheets of pairs.
#include "rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using kva_test::faultOf;
using kva_test::readAs;
using kva_test::rowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const kFst = "F-Statistic/FST_WC84.txt";
const char* const kDan = "Distance_data/DAN_Pop.txt";
const char* const kInd = "Distance_data/DAN_Ind.txt";
const char* const kLoci = "Distance_data/DAN_Pop_Loci.xls";

} // namespace

// --- Matrices -------------------------------------------------------------------------------

TEST(Matrix, PairsComeFromBelowTheDiagonal) {
    EXPECT_THAT(rowsOf(kFst, "3\n"
                             "         A  0.00000  9.00000  9.00000\n"
                             "         B  0.25000  0.00000  9.00000\n"
                             "         C -0.62500 -32767.00000  0.00000\n\n"),
                ElementsAre("fst_pairwise|A|B|||0.25000", "fst_pairwise|A|C|||-0.62500",
                            "fst_pairwise|B|C|||"));
}

TEST(Matrix, ReplicatesOfDistancesAreNumbered) {
    EXPECT_THAT(rowsOf(kDan, "2\n"
                             "         A  0.00000  0.25000\n"
                             "         B  0.25000  0.00000\n\n"
                             "2\n"
                             "         A  0.00000     -inf\n"
                             "         B     -inf  0.00000\n\n"),
                ElementsAre("distance_dan|A|B||1|0.25000", "distance_dan|A|B||2|-Inf"));
}

// Ten bytes are the label, whatever they hold.
TEST(Matrix, LabelsMayHoldBlanksAndNumbers) {
    EXPECT_THAT(rowsOf(kFst, "2\n"
                             "  1  2  3   0.00000  0.25000\n"
                             "            0.25000  0.00000\n\n"),
                ElementsAre("fst_pairwise|1  2  3 ||||0.25000"));
}

TEST(Matrix, NamesCutInTheLabelAreMadeWhole) {
    const char* const text = "2\n"
                             "Long name   0.00000  0.25000\n"
                             "         B  0.25000  0.00000\n\n";
    EXPECT_THAT(rowsOf(kFst, text, {"Long name of it", "B"}),
                ElementsAre("fst_pairwise|Long name of it|B|||0.25000"));
    EXPECT_THAT(rowsOf(kFst, text, {"Another", "B"}),
                ElementsAre("fst_pairwise|Long name |B|||0.25000"));
    EXPECT_THAT(rowsOf(kFst, text, {"Long name of it", "B", "C"}),
                ElementsAre("fst_pairwise|Long name |B|||0.25000"));
}

TEST(Matrix, OfOnePopulationAndOfNoneHaveNoRows) {
    EXPECT_THAT(rowsOf(kFst, "1\n         A  0.00000\n\n"), IsEmpty());
    EXPECT_THAT(rowsOf(kFst, "0\n\n"), IsEmpty());
}

TEST(Matrix, CutSheetsAreTold) {
    EXPECT_EQ(faultOf(kFst, ""),
              "line 1: the sheet ends, where the number of populations should follow");
    EXPECT_EQ(faultOf(kFst, "2\n         A  0.00000  0.25000\n"),
              "line 3: the sheet ends, where row 2 of 2 should follow");
    EXPECT_EQ(faultOf(kFst, "2\n         A  0.00000  0.25000\n         B  0.25\n\n"),
              "line 3: 1 cells instead of 2");
    EXPECT_EQ(faultOf(kFst, "1\n         A  0.00000\n"),
              "line 3: the sheet ends, where an empty line should follow");
    EXPECT_EQ(faultOf(kFst, "1\n         A  0.000"), "line 2: the sheet is cut off here");
}

TEST(Matrix, WhatIsNoMatrixIsTold) {
    EXPECT_EQ(faultOf(kFst, "x\n"), "line 1: the number of rows should stand here");
    EXPECT_EQ(faultOf(kFst, "-1\n"), "line 1: the number of rows should stand here");
    EXPECT_EQ(faultOf(kFst, "1\nA\n"), "line 2: no label in front");
    EXPECT_EQ(faultOf(kFst, "1\n        |A  0.00000\n\n"), "line 2: no label in front");
    EXPECT_EQ(faultOf(kFst, "1\n         A  0.00000\nB\n"), "line 3: 1 cells instead of 0");
}

// No room is taken for rows that are told and not there.
TEST(Matrix, NumberOfRowsIsNotBelieved) {
    EXPECT_EQ(faultOf(kFst, "999999999\n         A  0.00000\n"),
              "line 2: 1 cells instead of 999999999");
}

TEST(IndividualMatrix, LabelEndsWithItsDigits) {
    EXPECT_THAT(rowsOf(kInd, "2\n"
                             "    A001  0.00000  0.25000\n"
                             "N 12 1000  0.25000  0.00000\n\n"),
                ElementsAre("distance_dan_individuals|A001|N 12 1000||1|0.25000"));
}

TEST(IndividualMatrix, LabelNeedsThreeDigits) {
    EXPECT_EQ(faultOf(kInd, "1\n    A01  0.00000\n\n"), "line 2: no label in front");
    EXPECT_EQ(faultOf(kInd, "1\n A\n\n"), "line 2: no label in front");
}

namespace {

const std::string kNexusHead = "#NEXUS\n[!user defined distances]\nBegin distances;\n"
                               "Dimensions ntax=2;\nformat triangle = both;\nmatrix\n";
const std::string kNexusRows = "    A001  0.00000  0.25000\n    A002  0.25000  0.00000;\n";

} // namespace

TEST(Nexus, IsOneMatrix) {
    EXPECT_THAT(rowsOf(kInd, kNexusHead + kNexusRows + "end;\nBegin paup;\nend;\n\n"),
                ElementsAre("distance_dan_individuals|A001|A002||1|0.25000"));
}

TEST(Nexus, CutFilesAreTold) {
    EXPECT_EQ(faultOf(kInd, "#NEXUS\nBegin distances;\n"),
              "line 3: the sheet ends, where the matrix should follow");
    EXPECT_EQ(faultOf(kInd, "#NEXUS\nmatrix\n"), "line 2: the number of individuals is not told");
    EXPECT_EQ(faultOf(kInd, kNexusHead), "line 7: the sheet ends, where row 1 of 2 should follow");
    EXPECT_EQ(faultOf(kInd, kNexusHead + kNexusRows),
              "line 9: the sheet ends, where the end of the block should follow");
    EXPECT_EQ(faultOf(kInd, kNexusHead + kNexusRows + "    A003  0.25000  0.00000\n"),
              "line 9: more rows than told");
}

// --- Pairs and loci ---------------------------------------------------------------------------

TEST(PairColumns, HeadNamesThePairs) {
    EXPECT_THAT(rowsOf(kLoci, "|A|A|B\n|B|C|C\nL1|0.5|n.d.|inf\n"),
                ElementsAre("distance_dan_locus|A|B|L1|1|0.5", "distance_dan_locus|A|C|L1|1|",
                            "distance_dan_locus|B|C|L1|1|Inf"));
}

TEST(PairColumns, TwoColumnDataHaveTwoNamesInFront) {
    EXPECT_THAT(rowsOf(kLoci, "||A|A|B\n||B|C|C\nL1|L1b|0.5|1|2\n"),
                ElementsAre("distance_dan_locus|A|B|L1|1|0.5", "distance_dan_locus|A|C|L1|1|1",
                            "distance_dan_locus|B|C|L1|1|2"));
}

// The first population and the first locus have no name: the cells in front are counted by the
// number of pairs.
TEST(PairColumns, EmptyNamesAreNoCellsInFront) {
    EXPECT_THAT(rowsOf(kLoci, "|\n|B\n|0.5\n"), ElementsAre("distance_dan_locus||B||1|0.5"));
    EXPECT_THAT(rowsOf(kLoci, "|||B\n|B|C|C\nL1|1|2|3\n"),
                ElementsAre("distance_dan_locus||B|L1|1|1", "distance_dan_locus||C|L1|1|2",
                            "distance_dan_locus|B|C|L1|1|3"));
    EXPECT_THAT(rowsOf(kLoci, "||\n||B\n|L1b|0.5\n"), ElementsAre("distance_dan_locus||B||1|0.5"));
}

TEST(PairColumns, HeadAgainBeginsTheNextReplicate) {
    EXPECT_THAT(rowsOf(kLoci, "|A\n|B\nL1|1\nL1|1\n|A\n|B\nL2|2\nL1|1\n"),
                ElementsAre("distance_dan_locus|A|B|L1|1|1", "distance_dan_locus|A|B|L1|1|1",
                            "distance_dan_locus|A|B|L2|2|2", "distance_dan_locus|A|B|L1|2|1"));
}

TEST(PairColumns, LocusWithoutAllelesIsItsNames) {
    EXPECT_THAT(rowsOf(kLoci, "|A\n|B\nL1\nL2|2\n"), ElementsAre("distance_dan_locus|A|B|L2|1|2"));
    EXPECT_THAT(rowsOf(kLoci, "||A\n||B\nL1|L1b\n"), IsEmpty());
}

TEST(PairColumns, SinglePopulationHasNoPairs) {
    EXPECT_THAT(rowsOf(kLoci, "\n\nL1\n"), IsEmpty());
    EXPECT_THAT(rowsOf(kLoci, "|\n|\nL1|L1b\n"), IsEmpty());
}

TEST(PairColumns, FaultsAreTold) {
    EXPECT_EQ(faultOf(kLoci, ""),
              "line 1: the sheet ends, where the first populations of the pairs should follow");
    EXPECT_EQ(faultOf(kLoci, "|A\n"),
              "line 2: the sheet ends, where the second populations of the pairs should follow");
    // 5 cells: neither 4 nor 3 pairs with one or two in front, but 3 has two; 6: 5 or 4 have none.
    EXPECT_EQ(faultOf(kLoci, "|A|A|A|B|B\n|B|C|D|C|D\n"),
              "line 2: no head of pairs of populations");
    EXPECT_EQ(faultOf(kLoci, "|A|A|B\n|B|C\n"), "line 2: no head of pairs of populations");
    EXPECT_EQ(faultOf(kLoci, "|A|A|B\n|B|C|C\nL1|1|2\n"), "line 3: 3 cells instead of 4");
    EXPECT_EQ(faultOf(kLoci, "|A\n|B\nL1|1\n|A\n|C\n"), "line 5: another head than the first one");
    EXPECT_EQ(faultOf(kLoci, "|A\n|B\nL1|1\nL2|1\n|A\n|B\nL1|1\n"),
              "line 8: a block of 1 loci, not of 2");
}

TEST(PairRows, CellsHaveBlanksInFront) {
    EXPECT_THAT(rowsOf("F-Statistic/Fst_per_locus.xls",
                       "||L1|L2|\n||L1b|L2b|\nA|B| 0.39507|-0.00515\nA||n.d.| 0.10000\n"),
                ElementsAre("fst_pairwise_locus|A|B|L1||0.39507",
                            "fst_pairwise_locus|A|B|L2||-0.00515", "fst_pairwise_locus|A||L1||",
                            "fst_pairwise_locus|A||L2||0.10000"));
}

TEST(PairRows, ShortRowIsAFault) {
    EXPECT_EQ(faultOf("F-Statistic/Fst_per_locus.xls", "||L1|L2|\nA|B| 0.39507\n"),
              "line 2: 3 cells instead of 4");
}

// --- Squares ------------------------------------------------------------------------------------

TEST(SquareSheet, IsReadFromBelowTheDiagonal) {
    EXPECT_THAT(rowsOf("F-Statistic/FIT_WC84_MEAN.xls", "2\nA|0|9\nB|0.5|0\n\n"),
                ElementsAre("fit_pairwise_thinned|A|B||mean|0.5"));
}

TEST(SquareSheet, LimitsThatAreNoneAreEmpty) {
    EXPECT_THAT(rowsOf("F-Statistic/FST_WC84_UG.xls", "2\nA|0|9\nB|100000.000000|0\n\n"),
                ElementsAre("fst_pairwise_thinned|A|B||lower 95 %|"));
    EXPECT_THAT(rowsOf("F-Statistic/FST_WC84_OG.xls", "2\nA|0|9\nB|-100000.000000|0\n\n"),
                ElementsAre("fst_pairwise_thinned|A|B||upper 95 %|"));
}

TEST(SquareSheet, MissingRowsAndCellsAreTold) {
    EXPECT_EQ(faultOf("F-Statistic/FIT_WC84_MEAN.xls", "2\nA|0|9\n"),
              "line 3: the table ends with row 1 of 2");
    EXPECT_EQ(faultOf("F-Statistic/FIT_WC84_MEAN.xls", "2\nA|0\n"), "line 2: 2 cells instead of 3");
    EXPECT_EQ(faultOf("F-Statistic/FIT_WC84_MEAN.xls", "A\n"),
              "line 1: the number of populations should stand here");
}

TEST(PValues, PlainAboveAndCorrectedBelowTheDiagonal) {
    EXPECT_THAT(rowsOf("F-Statistic/FST_WC84-pValue.xls", "Fst-values:\nA|0|0.1|0.2\nB|0.1|0|0.3\n"
                                                          "C|0.2|0.3|0\n\n\nP-values:\n"
                                                          "A|0|0.004|0.060\nB|0.012|0|0.002\n"
                                                          "C|n.s.|0.006|0\n\n"),
                ElementsAre("fst_pairwise_tested|A|B|||0.1", "fst_pairwise_tested|A|C|||0.2",
                            "fst_pairwise_tested|B|C|||0.3", "fst_pairwise_p|A|B|||0.004",
                            "fst_pairwise_p|A|C|||0.060", "fst_pairwise_p|B|C|||0.002",
                            "fst_pairwise_p_bonferroni|A|B|||0.012",
                            "fst_pairwise_p_bonferroni|A|C|||",
                            "fst_pairwise_p_bonferroni|B|C|||0.006"));
}

TEST(PValues, MissingHalfIsTold) {
    const char* const sheet = "F-Statistic/FST_WC84-pValue.xls";
    EXPECT_EQ(faultOf(sheet, "else\n"), "line 1: \"Fst-values:\" should stand here");
    EXPECT_EQ(faultOf(sheet, "Fst-values:\nA|0|1\nB|1|0\n\n\n"),
              "line 6: the sheet ends, where \"P-values:\" should follow");
    EXPECT_EQ(faultOf(sheet, "Fst-values:\nA|0|1\nB|1|0\n\n\nP-values:\nA|0|1\n\n"),
              "line 8: the table ends with row 1 of 2");
}

TEST(Beta, DiagonalIsOfThePopulations) {
    EXPECT_THAT(rowsOf("F-Statistic/Beta_POP.xls", "|A|B\nA|0.4|9\nB|-32767.000000|0.6\n"),
                ElementsAre("beta_population|A||||0.4", "beta_population|B||||0.6",
                            "beta_pairwise|A|B|||"));
}

TEST(Beta, HeadTellsTheSize) {
    EXPECT_EQ(faultOf("F-Statistic/Beta_POP.xls", "|A|B\nA|0.4|9\n"),
              "line 3: the table ends with row 1 of 2");
    EXPECT_THAT(rowsOf("F-Statistic/Beta_POP.xls", "\n"), IsEmpty());
}
