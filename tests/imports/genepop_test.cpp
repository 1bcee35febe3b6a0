#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kTwoDigits = "Title\nLocA\nLocB\nPOP\nNorth, 0102 0303\nNorth, 0100 0000\n"
                               "pop\nSouth , 0202   0101\n";

} // namespace

TEST(Genepop, TwoDigitsAndZerosForMissing) {
    EXPECT_EQ(rowsOf(kTwoDigits, "genepop"), "North d 0 1 2 3 3\n"
                                             "North d 0 1 . . .\n"
                                             "South d 0 2 2 1 1\n");
    EXPECT_EQ(lociOf(kTwoDigits, "genepop"), "LocA LocB");
}

TEST(Genepop, ThreeDigitsLociOnOneLineAndCrLf) {
    EXPECT_EQ(rowsOf("t\r\nLocA, LocB\r\nPop\r\nN, 104106 000088\r\nPop\r\nS, 104104 092092", ""),
              "N d 0 104 106 . 88\nS d 0 104 104 92 92\n");
}

TEST(Genepop, OneAlleleIsAnInbredIndividual) {
    const std::string text = "t\nLocA\nLocB\nPop\nN, 104 000\nPop\nS, 104106 088092\n";
    EXPECT_EQ(rowsOf(text, "genepop"), "N h 0 104 104 . .\nS d 0 104 106 88 92\n");
    EXPECT_EQ(notesOf(text, "genepop"),
              "1 individuals with one gene copy are inbred (h), their allele twice\n");
}

TEST(Genepop, NamesOfPopulationsAreAskedForWhereLabelsDiffer) {
    const std::string text = "t\nLocA\nPop\nN1, 0101\nN2, 0102\nPop\nS1, 0101\n";
    EXPECT_THAT(rowsOf(text, "genepop"), StartsWith("option: Genepop has no names of populations"));
    ImportOptions options;
    options.populations = {"first"};
    EXPECT_EQ(rowsOf(text, "genepop", options), "N1 d 0 1 1\nN1 d 0 1 2\nS1 d 0 1 1\n");
    options.populations = {"last"};
    EXPECT_EQ(rowsOf(text, "genepop", options), "N2 d 0 1 1\nN2 d 0 1 2\nS1 d 0 1 1\n");
    options.populations = {"numbers"};
    EXPECT_EQ(rowsOf(text, "genepop", options), "pop1 d 0 1 1\npop1 d 0 1 2\npop2 d 0 1 1\n");
    options.populations = {"North", "South"};
    EXPECT_EQ(rowsOf(text, "genepop", options), "North d 0 1 1\nNorth d 0 1 2\nSouth d 0 1 1\n");
    options.populations = {"North"};
    EXPECT_EQ(rowsOf(text, "genepop", options),
              "option: --populations names 1, the file has 2 populations");
    options.populations = {"North", "North"};
    EXPECT_THAT(rowsOf(text, "genepop", options), StartsWith("option: --populations needs a name"));
}

TEST(Genepop, OneLabelInTwoPopulationsIsNoName) {
    const std::string text = "t\nLocA\nPop\nN, 0101\nPop\nN, 0101\n";
    EXPECT_THAT(rowsOf(text, "genepop"), StartsWith("option: Genepop has no names"));
    ImportOptions options;
    options.populations = {"last"};
    EXPECT_THAT(rowsOf(text, "genepop", options), StartsWith("option: --populations last gives"));
}

TEST(Genepop, LabelsMayHoldCommasAndBlanks) {
    EXPECT_EQ(rowsOf("t\nLocA\nPop\nSt. Gallen, upper, 0101\n", "genepop"),
              "St. Gallen, upper d 0 1 1\n");
}

TEST(Genepop, EmptyPopulationsAreLeftOut) {
    EXPECT_EQ(rowsOf("t\nLocA\nPop\nPop\nN, 0101\nPop\n", "genepop"), "N d 0 1 1\n");
}

TEST(Genepop, RefusalsTellTheLine) {
    const auto refused = [](const std::string& text) { return rowsOf(text, "genepop"); };
    EXPECT_THAT(refused("t\nLocA\n"), HasSubstr("no line \"Pop\""));
    EXPECT_THAT(refused("t\nPop\nN, 0101\n"), StartsWith("data: line 2: no names of loci"));
    EXPECT_THAT(refused("t\nLocA\nPop\nN 0101\n"), StartsWith("data: line 4: no comma"));
    EXPECT_EQ(refused("t\nLocA\nPop\nN, 0101 0101\n"),
              "data: line 4: 2 genotypes, but 1 loci are named");
    EXPECT_THAT(refused("t\nLocA\nPop\nN, 01011\n"), StartsWith("data: line 4: '01011' is no"));
    EXPECT_THAT(refused("t\nLocA\nPop\nN, 0101\nN, 001001\n"),
                StartsWith("data: line 5: '001001' is no genotype of alleles with 2 digits"));
    EXPECT_THAT(refused("t\nLocA\nPop\nN, 01x1\n"), StartsWith("data: line 4: '01x1' is no"));
    EXPECT_THAT(refused("t\nLocA\nLocB\nPop\nN, 0101 01\n"),
                StartsWith("data: line 5: the individual has one allele at some loci"));
    EXPECT_THAT(refused("t\nLocA\nPop\n"), StartsWith("data: no individual"));
}
