#include "importsupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;
using testing::StartsWith;

namespace {

const std::string kText = "individual,population,locus,allele1,allele2\n"
                          "N1,North,LocA,104,106\nN1,North,LocB,88,88\nS1,South,LocB,92,\n";

} // namespace

TEST(LongTable, GenotypesThatHaveNoRowAreMissing) {
    EXPECT_EQ(rowsOf(kText, ""), "North d 0 104 106 88 88\nSouth d 0 . . 92 .\n");
    EXPECT_EQ(lociOf(kText, ""), "LocA LocB");
}

TEST(LongTable, ColumnsStandInAnyOrder) {
    EXPECT_EQ(
        rowsOf("Marker\tAllele_1\tAllele_2\tnote\tPop\tSample ID\nLocA\t104\t106\tx\tN\t7\n", ""),
        "N d 0 104 106\n");
}

TEST(LongTable, OneLabelInTwoPopulationsIsTwoIndividuals) {
    EXPECT_EQ(rowsOf("ind;pop;locus;allele1;allele2\n1;N;L;104;104\n1;S;L;106;106\n", ""),
              "N d 0 104 104\nS d 0 106 106\n");
}

TEST(LongTable, WordsForMissingAndZeroAreAskedFor) {
    const std::string head = "ind,pop,locus,allele1,allele2\n";
    EXPECT_THAT(rowsOf(head + "1,N,L,NA,NA\n", "long"),
                StartsWith("option: line 2: 'NA' is no allele; name the words"));
    EXPECT_THAT(rowsOf(head + "1,N,L,0,0\n", "long"),
                StartsWith("option: line 2: is 0 a missing allele"));
    ImportOptions options;
    options.missing = {"NA", "0"};
    EXPECT_EQ(rowsOf(head + "1,N,L,NA,0\n", "long", options), "N d 0 . .\n");
    options.missing = {"none"};
    EXPECT_EQ(rowsOf(head + "1,N,L,0,104\n", "long", options), "N d 0 0 104\n");
    EXPECT_THAT(rowsOf(head + "1,N,L,104.5,104\n", "long", options),
                StartsWith("data: line 2: '104.5' is neither"));
}

TEST(LongTable, OneColumnOfAllelesNeedsThePloidy) {
    const std::string text = "ind,pop,locus,allele\n1,N,L,104\n";
    EXPECT_THAT(rowsOf(text, "long"), StartsWith("option: the table has one column of alleles"));
    ImportOptions options;
    options.ploidy = 1;
    EXPECT_EQ(rowsOf(text, "long", options), "N h 0 104 104\n");
    EXPECT_THAT(rowsOf(kText, "long", options), StartsWith("option: --ploidy 1, but"));
}

TEST(LongTable, RefusalsTellTheLine) {
    EXPECT_THAT(rowsOf("a,b\n1,2\n", "long"), StartsWith("data: line 1: not the heads"));
    EXPECT_THAT(rowsOf("ind,sample,pop,locus,allele1,allele2\n", "long"),
                StartsWith("data: line 1: not the heads"));
    EXPECT_EQ(rowsOf(kText + "N2,North,LocA\n", "long"), "data: line 5: 3 cells, but 5 are wanted");
    EXPECT_EQ(rowsOf(kText + "N1,North,LocA,1,1\n", "long"),
              "data: line 5: a second genotype of individual 'N1' at locus 'LocA'");
}
