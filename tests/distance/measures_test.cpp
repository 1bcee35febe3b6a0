#include "distance/measures.h"

#include <algorithm>
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
    for (const char* stem : {"POSA", "KSC"}) {
        EXPECT_EQ(cells(stem, {1.0, 0.0, 4.0, 0.0}, false).Upper, 0.75) << stem;
        EXPECT_EQ(cells(stem, {1.0, 0.0, 4.0, 0.0}, true).Upper, -std::log(0.25)) << stem;
    }
}

// The one sample has two alleles and the other three, of which they share one: four in all.
TEST(MatrixCells, SharedAllelesOfAll) {
    EXPECT_EQ(cells("FSS", {1.0, 0.0, 5.0, 0.0}, false).Upper, 0.75);
    EXPECT_EQ(cells("FSS", {1.0, 0.0, 5.0, 0.0}, true).Upper, -std::log(0.25));
}

// Under -ln two samples of Nei's distance that share nothing have two cells.
TEST(MatrixCells, TheUpperCellsOfARowAreThoseOfItsPairs) {
    RowSums sums(4);
    const double values[] = {0.0, 0.0, 0.5, 3.0};
    for (const Quantity quantity : kAllQuantities) {
        std::copy(values, values + 4, sums.of(quantity));
    }
    sums.of(Quantity::NeiProducts)[3] = 0.0;
    for (const Measure& row : allMeasures()) {
        for (const bool minusLog : {false, true}) {
            const CellRules rules{minusLog, 10.0, -32767.0};
            double upper[4];
            row.FromSums.UpperCells(row.Sums, sums, rules, 1, 4, upper);
            bool symmetric = true;
            for (std::size_t j = 1; j < 4; ++j) {
                const CellPair pair = matrixCells(row, pairSums(row, sums, j), rules);
                EXPECT_TRUE(upper[j] == pair.Upper || std::isnan(pair.Upper)) << row.Stem;
                symmetric = symmetric && !(pair.Upper < pair.Lower);
            }
            EXPECT_EQ(isSymmetric(row, rules), symmetric) << row.Stem;
        }
    }
}

TEST(PairSums, ComeFromTheQuantitiesOfTheMeasure) {
    RowSums sums(2);
    for (const Quantity quantity : kAllQuantities) {
        sums.of(quantity)[1] = static_cast<double>(placeOf(quantity)) + 1.0;
    }
    const PairSums dsg = pairSums(measure("DSG"), sums, 1);
    EXPECT_EQ(dsg.Summe, 14.0);  // IdentityI
    EXPECT_EQ(dsg.Summe2, 15.0); // IdentityJ
    EXPECT_EQ(dsg.Nenner, 6.0);  // NeiProducts
    EXPECT_EQ(dsg.Nenner2, 3.0); // InNei
    const PairSums posa = pairSums(measure("POSA"), sums, 1);
    EXPECT_EQ(posa.Summe, 4.0);  // Smaller
    EXPECT_EQ(posa.Summe2, 0.0); // none
    EXPECT_EQ(posa.Nenner, 1.0); // Typed
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
