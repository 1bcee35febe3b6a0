#include "distance/measures.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

using namespace kva;

namespace {

const Measure& measure(const std::string& stem) {
    for (const Measure& row : allMeasures()) {
        if (row.Stem == stem) {
            return row;
        }
    }
    throw std::runtime_error("no measure " + stem);
}

CellPair cells(const std::string& stem, const PairSums& sums, bool minusLog) {
    return matrixCells(measure(stem), sums, {minusLog, 10.0, -32767.0});
}

std::optional<double> sheet(const std::string& stem, const PairSums& sums, bool minusLog) {
    return sheetCell(measure(stem), sums, {minusLog, 10.0, -32767.0});
}

} // namespace

TEST(Measures, NineInTheOrderOfTheOutput) {
    std::string stems;
    for (const Measure& row : allMeasures()) {
        stems += row.Stem + std::string(" ");
    }
    EXPECT_EQ(stems, "POSA FSS ADA KSC DMS ASD CAS DAN DSG ");
}

TEST(Measures, SelectionByBit) {
    const std::vector<Measure> selected = selectedMeasures(0x1 | 0x4 | 0x80);
    ASSERT_EQ(selected.size(), 3U); // the chord distance and Nei's of 1983 are one bit
    EXPECT_STREQ(selected[0].Stem, "FSS");
    EXPECT_STREQ(selected[1].Stem, "CAS");
    EXPECT_STREQ(selected[2].Stem, "DAN");
    EXPECT_TRUE(selectedMeasures(0x1 | 0x200 | 0x400 | 0x800).empty());
}

TEST(MatrixCells, PairWithoutCountedLociHasNoValue) {
    for (const Measure& row : allMeasures()) {
        for (const bool minusLog : {false, true}) {
            const CellPair pair = matrixCells(row, PairSums(), {minusLog, 10.0, -32767.0});
            EXPECT_EQ(pair.Upper, -32767.0) << row.Stem;
            EXPECT_EQ(pair.Lower, -32767.0) << row.Stem;
        }
    }
}

TEST(MatrixCells, SimilarityOverTheLoci) {
    for (const char* stem : {"POSA", "FSS", "KSC"}) {
        EXPECT_EQ(cells(stem, {1.0, 0.0, 4.0, 0.0}, false).Upper, 0.75) << stem;
        EXPECT_EQ(cells(stem, {1.0, 0.0, 4.0, 0.0}, true).Upper, -std::log(0.25)) << stem;
    }
}

TEST(MatrixCells, SimilarityOfZeroUnderLogIsTheStandIn) {
    for (const char* stem : {"POSA", "FSS", "KSC"}) {
        const CellPair pair = cells(stem, {0.0, 0.0, 4.0, 0.0}, true);
        EXPECT_EQ(pair.Upper, 10.0) << stem;
        EXPECT_EQ(pair.Lower, 10.0) << stem;
        EXPECT_EQ(cells(stem, {0.0, 0.0, 4.0, 0.0}, false).Upper, 1.0) << stem;
    }
}

TEST(MatrixCells, DistancesDoNotSeeTheLog) {
    for (const char* stem : {"ADA", "DMS", "ASD", "CAS", "DAN"}) {
        const PairSums sums{3.0, 0.0, 2.0, 0.0};
        EXPECT_EQ(cells(stem, sums, true).Upper, cells(stem, sums, false).Upper) << stem;
    }
    EXPECT_EQ(cells("ADA", {0.0, 0.0, 2.0, 0.0}, true).Upper, 0.0);
}

TEST(MatrixCells, ChordDistanceHasAShortPi) {
    EXPECT_EQ(cells("CAS", {3.0, 0.0, 2.0, 0.0}, false).Upper, 6.0 / (2.0 * 3.141592654));
    // The loci are multiplied by it first, which shows in the last digit here.
    EXPECT_EQ(cells("CAS", {0.875, 0.0, 3.0, 0.0}, false).Upper, 2.0 * 0.875 / (3.0 * 3.141592654));
    EXPECT_NE(2.0 * 0.875 / (3.0 * 3.141592654), 2.0 * 0.875 / 3.0 / 3.141592654);
}

// Jxy 1, J' 4 and 9, two loci: 1 / sqrt(36).
TEST(MatrixCells, NeisDistanceIsARatioOfSums) {
    EXPECT_EQ(cells("DSG", {4.0, 9.0, 1.0, 2.0}, false).Upper, 1.0 - 1.0 / 6.0);
    EXPECT_EQ(cells("DSG", {4.0, 9.0, 1.0, 2.0}, true).Lower, -std::log(1.0 / 6.0));
}

TEST(MatrixCells, NothingSharedInNeisDistance) {
    const PairSums sums{4.0, 9.0, 0.0, 2.0};
    EXPECT_EQ(cells("DSG", sums, false).Upper, 1.0);
    EXPECT_EQ(cells("DSG", sums, false).Lower, 1.0);
    EXPECT_EQ(cells("DSG", sums, true).Upper, -32767.0);
    EXPECT_EQ(cells("DSG", sums, true).Lower, 10.0);
}

TEST(SheetCell, SimilarityOfZeroUnderLogIsInfinite) {
    for (const char* stem : {"POSA", "FSS", "KSC"}) {
        EXPECT_EQ(sheet(stem, {0.0, 0.0, 1.0, 0.0}, true), HUGE_VAL) << stem;
    }
    EXPECT_EQ(sheet("DSG", {1.0, 1.0, 0.0, 1.0}, true), HUGE_VAL);
}

TEST(SheetCell, UncountedLocusHasNoCell) {
    for (const Measure& row : allMeasures()) {
        EXPECT_FALSE(sheetCell(row, PairSums(), CellRules())) << row.Stem;
    }
}

TEST(SheetCell, ADifferenceOfMinusOneIsNone) {
    EXPECT_FALSE(sheet("ASD", {-1.0, 0.0, 1.0, 0.0}, false));
    EXPECT_EQ(sheet("ASD", {-1.5, 0.0, 1.0, 0.0}, false), -1.5);
    EXPECT_EQ(sheet("KSC", {2.0, 0.0, 1.0, 0.0}, false), -1.0); // only a difference
}
