#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::StartsWith;

namespace {

const std::string kHead =
    "2 C:\\cats.gtx\r\n2 nombre de pop\r\nLocA\r\n2 104 106\r\nLocB\r\n1 088\r\n";

} // namespace

TEST(Genetix, PopulationsWithNamesAndSizes) {
    const std::string text = kHead + "North\r\n2\r\n   N1 104106 088088\r\n   N2 000000 088088\r\n"
                                     "South\r\n1\r\n   S1 104104 000000";
    EXPECT_EQ(rowsOf(text, ""), "North d 0 104 106 88 88\n"
                                "North d 0 . . 88 88\n"
                                "South d 0 104 104 . .\n");
    EXPECT_EQ(lociOf(text, ""), "LocA LocB");
}

TEST(Genetix, BlocksOfOneNameAreOnePopulation) {
    const std::string text = kHead + "North\n1\nN1 104106 088088\nNorth\n1\nN2 104104 088088\n";
    EXPECT_EQ(rowsOf(text, "genetix"), "North d 0 104 106 88 88\nNorth d 0 104 104 88 88\n");
    EXPECT_EQ(notesOf(text, "genetix"),
              "population 'North' stands in several blocks, which are one population here\n");
}

TEST(Genetix, RefusalsTellTheLine) {
    const auto refused = [](const std::string& text) { return rowsOf(text, "genetix"); };
    EXPECT_THAT(refused("x\n2\n"), StartsWith("data: line 1: the number of loci"));
    EXPECT_THAT(refused("2\nx\n"), StartsWith("data: line 2: the number of populations"));
    EXPECT_THAT(refused("2\n2\nLocA\n"), StartsWith("data: the number of alleles"));
    EXPECT_THAT(refused("2000000000\n2\nLocA\n1 104\n"), StartsWith("data: 2000000000 loci"));
    EXPECT_THAT(refused(kHead + "North\nmany\n"),
                StartsWith("data: line 8: the number of individuals"));
    EXPECT_EQ(refused(kHead + "North\n2\nN1 104106 088088\n"),
              "data: the file ends before the last individual of population 'North'");
    EXPECT_EQ(refused(kHead + "North\n1\nN1\n"), "data: line 9: 1 genotypes, but 2 loci are named");
    EXPECT_THAT(refused(kHead + "North\n1\nN1 104x06 088088\n"),
                StartsWith("data: line 9: '104x06' is no genotype"));
}
