#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::HasSubstr;
using testing::StartsWith;

TEST(Fstat, GenotypesMayLackZerosInFront) {
    // With two digits 409 is 04 09, 4 is 00 04.
    const std::string text = "2 3 18 2\nLocA\nLocB\nLocC\n 1 0409 409 4\n 2 0 1812 0000\n";
    EXPECT_EQ(rowsOf(text, ""), "1 d 0 4 9 4 9 . 4\n2 d 0 . . 18 12 . .\n");
    EXPECT_EQ(lociOf(text, ""), "LocA LocB LocC");
}

TEST(Fstat, RowsOfAPopulationComeTogether) {
    EXPECT_EQ(rowsOf("2 1 9 1\nL\n2 11\n1 12\n2 13\n", "fstat"),
              "2 d 0 1 1\n2 d 0 1 3\n1 d 0 1 2\n");
}

TEST(Fstat, PopulationsCanBeNamed) {
    ImportOptions options;
    options.populations = {"North", "South"};
    EXPECT_EQ(rowsOf("2 1 200 3\nL\n1 104106\n2 104104\n", "fstat", options),
              "North d 0 104 106\nSouth d 0 104 104\n");
}

TEST(Fstat, RefusalsTellTheLine) {
    const auto refused = [](const std::string& text) { return rowsOf(text, "fstat"); };
    EXPECT_THAT(refused("2 1 9\nL\n1 11\n"), StartsWith("data: line 1: not the four numbers"));
    EXPECT_THAT(refused("2 1 9 4\nL\n1 11\n"), StartsWith("data: line 1: not the four numbers"));
    EXPECT_THAT(refused("2 2000000000 9 2\nL\n"), HasSubstr("before its 2000000000 loci"));
    EXPECT_EQ(refused("2 1 9 1\nL\n3 11\n"), "data: line 3: '3' is no population of 1 to 2");
    EXPECT_EQ(refused("2 1 9 1\nL\n1 11 12\n"), "data: line 3: 2 genotypes, but 1 loci are named");
    EXPECT_EQ(refused("2 1 9 1\nL\n1 111\n"),
              "data: line 3: '111' is no genotype of two alleles with 1 digit");
    EXPECT_EQ(refused("2 1 9 1\nL\n"), "data: no individual in the file");
}
