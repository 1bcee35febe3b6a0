#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

ImportOptions structureOptions(int rows, int popColumn) {
    ImportOptions options;
    options.rows = rows;
    options.populationColumn = popColumn;
    options.missing = {"-9"};
    return options;
}

const std::string kTwoRows = "LocA LocB\n"
                             "N1 1 104 88\nN1 1 106 -9\n"
                             "S1 2 104 92\nS1 2 104 92\n";

} // namespace

TEST(Structure, TwoRowsAnIndividualWithNames) {
    EXPECT_EQ(rowsOf(kTwoRows, "", structureOptions(2, 2)),
              "1 d 0 104 106 88 .\n2 d 0 104 104 92 92\n");
    EXPECT_EQ(lociOf(kTwoRows, "", structureOptions(2, 2)), "LocA LocB");
}

TEST(Structure, OneRowAnIndividual) {
    // Two names, two columns of alleles each, so that they begin in column 3.
    const std::string text = "LocA LocB\nN1 1 104 106 88 -9\nS1 2 104 104 92 92\n";
    EXPECT_EQ(rowsOf(text, "", structureOptions(1, 2)),
              "1 d 0 104 106 88 .\n2 d 0 104 104 92 92\n");
}

TEST(Structure, NamesOfAllColumns) {
    const std::string text = "id\tpop\tLocA\tLocB\nN 1\tNorth\t104\t88\nN 1\tNorth\t106\t88\n";
    ImportOptions options = structureOptions(2, 2);
    options.locusColumn = 3;
    EXPECT_EQ(rowsOf(text, "structure", options), "North d 0 104 106 88 88\n");
    EXPECT_EQ(lociOf(text, "structure", options), "LocA LocB");
    EXPECT_EQ(notesOf(text, "structure", options),
              "the first row is taken as the names of the loci\n");
}

TEST(Structure, FirstRowOfMissingAllelesIsNoRowOfNames) {
    ImportOptions options = structureOptions(2, 2);
    options.locusColumn = 3;
    options.missing = {"NA"};
    EXPECT_EQ(rowsOf("N1 1 NA NA\nN1 1 106 88\n", "structure", options), "1 d 0 . 106 . 88\n");
}

TEST(Structure, PopulationInFrontOfTheDigitsOfTheLabel) {
    const std::string text = "St. Gallen000\t104\t88\nSt. Gallen000\t106\t-9\n";
    ImportOptions options;
    options.rows = 2;
    options.populationDigits = 3;
    options.locusColumn = 2;
    options.missing = {"-9"};
    EXPECT_EQ(rowsOf(text, "structure", options), "St. Gallen d 0 104 106 88 .\n");
    EXPECT_EQ(notesOf(text, "structure", options),
              "the file names no loci; they are Locus1 to Locus2\n");
    options.populationDigits = 4;
    EXPECT_THAT(rowsOf(text, "structure", options),
                StartsWith("data: line 1: 'St. Gallen000' is no label"));
}

TEST(Structure, NumbersOfIndividualsMayGrowLonger) {
    ImportOptions options;
    options.rows = 1;
    options.populationDigits = 3;
    options.locusColumn = 2;
    options.missing = {"-9"};
    EXPECT_EQ(rowsOf("N999 1 1\nN1000 2 2\nN1001 3 3\nS000 4 4\n", "structure", options),
              "N d 0 1 1\nN d 0 2 2\nN d 0 3 3\nS d 0 4 4\n");
    // 1000 does not count on from 998, so the population is N1.
    EXPECT_EQ(rowsOf("N998 1 1\nN1000 2 2\n", "structure", options), "N d 0 1 1\nN1 d 0 2 2\n");
}

TEST(Structure, WithoutPopulationsThereIsOneName) {
    ImportOptions options = structureOptions(2, 0);
    EXPECT_THAT(rowsOf(kTwoRows, "structure", options), StartsWith("option: --pop-column 0"));
    options.populations = {"Cats"};
    EXPECT_EQ(rowsOf(kTwoRows, "structure", options),
              "Cats d 0 104 106 88 .\nCats d 0 104 104 92 92\n");
}

TEST(Structure, SecondAllelesThatAreAllMissingAreAskedFor) {
    const std::string text = "LocA LocB\nN1 1 104 -9\nN1 1 -9 -9\nN2 1 104 88\nN2 1 106 -9\n";
    ImportOptions options = structureOptions(2, 2);
    EXPECT_THAT(rowsOf(text, "", options),
                StartsWith("option: the second alleles of individual 'N1'"));
    ImportOptions onlyLabels = structureOptions(2, 0);
    onlyLabels.populations = {"Cats"};
    EXPECT_THAT(rowsOf("LocA LocB\nN1 104 88\nN1 -9 -9\n", "", onlyLabels),
                StartsWith("option: the second alleles of individual 'N1'"));
    options.halfMissing = "inbred";
    EXPECT_EQ(rowsOf(text, "", options), "1 h 0 104 104 . .\n1 d 0 104 106 88 .\n");
    options.halfMissing = "keep";
    EXPECT_EQ(rowsOf(text, "", options), "1 d 0 104 . . .\n1 d 0 104 106 88 .\n");
}

TEST(Structure, RowsMayBeginWithTheAlleles) {
    ImportOptions options = structureOptions(2, 0);
    options.locusColumn = 1;
    options.populations = {"Cats"};
    EXPECT_EQ(rowsOf("104 88\n106 92\n", "structure", options), "Cats d 0 104 106 88 92\n");
}

TEST(Structure, IsKnownByRowsOfOneLengthThatEndInANumber) {
    const ImportOptions options = structureOptions(2, 2);
    const auto isKnown = [&options](const std::string& text) {
        return rowsOf(text, "", options).find("none of the known formats") == std::string::npos;
    };
    EXPECT_TRUE(isKnown(kTwoRows));
    EXPECT_TRUE(isKnown("LocA\nN1 104\nN1 106\n"));
    EXPECT_FALSE(isKnown("LocA LocB\nN1 1 104 x\nN1 1 106 88\n"));
    EXPECT_FALSE(isKnown("LocA LocB\nN1 1 104 88\nN1 1 106\n"));
    EXPECT_FALSE(isKnown("LocA LocB\nN1 1 104 88\nN1 1 106 x\n"));
    EXPECT_FALSE(isKnown("LocA\n104\n106\n"));
}

TEST(Structure, WhatTheFileCannotSayIsAskedFor) {
    ImportOptions options;
    EXPECT_THAT(rowsOf(kTwoRows, "", options), HasSubstr("option: STRUCTURE: say --rows"));
    options.rows = 2;
    EXPECT_THAT(rowsOf(kTwoRows, "", options), HasSubstr("--pop-column"));
    options.populationColumn = 2;
    EXPECT_THAT(rowsOf(kTwoRows, "", options), HasSubstr("--missing"));
    const std::string nameless = kTwoRows.substr(kTwoRows.find('\n') + 1);
    EXPECT_THAT(rowsOf(nameless, "structure", options), HasSubstr("--locus-column"));
    options.missing = {"-9"};
    options.populationColumn = 3;
    EXPECT_THAT(rowsOf(kTwoRows, "", options), HasSubstr("is a column of alleles"));
}

TEST(Structure, RefusalsTellTheLine) {
    const ImportOptions options = structureOptions(2, 2);
    const auto refused = [&options](const std::string& text) {
        return rowsOf(text, "structure", options);
    };
    EXPECT_EQ(refused("LocA\n"), "data: fewer than two rows");
    EXPECT_THAT(refused("LocA\nN1 1 104\n"), HasSubstr("line 2: the individual has no second row"));
    EXPECT_THAT(refused("LocA\nN1 1 104\nN2 1 104\n"), StartsWith("data: line 3: this row and"));
    EXPECT_THAT(refused("LocA\nN1 1 104\nN1 2 104\n"), StartsWith("data: line 3: this row and"));
    EXPECT_EQ(refused("LocA\nN1 1 104\nN1 1 104 106\n"), "data: line 3: 4 cells, but 3 are wanted");
    EXPECT_THAT(refused("LocA\nN1 1 104\nN1 1 x\n"), StartsWith("data: line 3: 'x' is neither"));
    ImportOptions fifth = options;
    fifth.locusColumn = 5;
    EXPECT_THAT(rowsOf("id pop x y LocA\nN1 1 104\n", "structure", fifth),
                StartsWith("data: line 2: 3 cells make no whole loci from column 5 on"));
    ImportOptions oneRow = options;
    oneRow.rows = 1;
    EXPECT_THAT(rowsOf("LocA LocB\nN1 1 104\n", "structure", oneRow),
                HasSubstr("is --rows right?"));
    oneRow.locusColumn = 3;
    EXPECT_THAT(rowsOf("LocA LocB\nN1 1 104\n", "structure", oneRow),
                StartsWith("data: line 2: 3 cells make no whole loci from column 3 on"));
}
