#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kText = "2,3,2,2,1\nCats,,,North,South\nSample,Pop,LocA,,LocB,\n"
                          "N1,North,104,106,88,92\nN2,North,0,0,88,0\nS1,South,104,104,92,92\n";

} // namespace

TEST(Genalex, TwoColumnsPerLocusAndZeroForMissing) {
    EXPECT_EQ(rowsOf(kText, ""), "North d 0 104 106 88 92\n"
                                 "North d 0 . . 88 .\n"
                                 "South d 0 104 104 92 92\n");
    EXPECT_EQ(lociOf(kText, ""), "LocA LocB");
}

TEST(Genalex, SemicolonsAndQuotes) {
    EXPECT_EQ(rowsOf("1;1;1;1\nCats\nSample;Pop;\"Loc;A\";\nN1;\"St. \"\"G\"\"\";104;106\n", ""),
              "St. \"G\" d 0 104 106\n");
}

TEST(Genalex, OneColumnPerLocusIsHaploid) {
    EXPECT_EQ(rowsOf("2,1,1,1\nCats\nSample,Pop,LocA,LocB\nN1,North,104,0\n", ""),
              "North h 0 104 104 . .\n");
}

TEST(Genalex, PloidyIsAskedForWhereNamesDoNotTell) {
    const std::string text = "1,1,1,1\nCats\nSample,Pop,LocA\nN1,North,104,106\n";
    EXPECT_THAT(rowsOf(text, "genalex", {}), StartsWith("North d 0 104 106"));
    const std::string mixed = "2,1,1,1\nCats\nSample,Pop,LocA,,,\nN1,North,104,106,88,92\n";
    EXPECT_THAT(rowsOf(mixed, "genalex"), StartsWith("option: line 3: the names do not tell"));
}

TEST(Genalex, OtherWordsForMissingAreTold) {
    std::string text = kText;
    text.replace(text.find("0,0"), 3, "-1,-1");
    EXPECT_THAT(rowsOf(text, ""), StartsWith("data: line 5: '-1' is neither an allele"));
    ImportOptions options;
    options.missing = {"0", "-1"};
    EXPECT_THAT(rowsOf(text, "", options), HasSubstr("North d 0 . . 88 .\n"));
}

TEST(Genalex, RowsBehindTheLastAreTold) {
    EXPECT_EQ(notesOf(kText, ""), "");
    EXPECT_EQ(notesOf(kText + "x,y\n", ""), "1 lines behind the last individual are not read\n");
}

TEST(Genalex, RefusalsTellTheLine) {
    const auto refused = [](const std::string& text) { return rowsOf(text, "genalex"); };
    EXPECT_THAT(refused("a,b,c\n\n\n"), StartsWith("data: line 1: not the numbers of GenAlEx"));
    EXPECT_EQ(refused("1,9,1,9\nCats\nSample,Pop,LocA,\nN1,North,104,106\n"),
              "data: line 1: 9 individuals are told, but 1 rows are there");
    EXPECT_EQ(refused("1,1,1,1\nCats\nSample,Pop,LocA,\nN1,North,104\n"),
              "data: line 4: 3 cells, but 4 are wanted");
    EXPECT_EQ(refused("1,1,1,1\nCats\nSample,Pop,LocA,\nN1,,104,106\n"),
              "data: the name '' of a population is empty");
    EXPECT_THAT(refused("2000000000,1,1,1\nCats\nSample,Pop\nN1,North\n"),
                StartsWith("data: 2000000000 loci are more"));
}
