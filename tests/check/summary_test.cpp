#include "check/summary.h"

#include "support/datasets.h"

#include <gtest/gtest.h>

using namespace kva;
using namespace kva_test;

TEST(DataSummary, TellsPopulationsAndLoci) {
    // L1: A 100/102 100/-, B 102/104 104/104; L2: A 200/200 204/208, B nothing. Repeats 2 and 4,
    // rests 50 and 60.
    LoadedRun run(kWithGaps);
    const DataSummary summary = summaryOf(*run);
    EXPECT_EQ(summary.columns, 2);
    EXPECT_EQ(summary.headerRows, 3);
    EXPECT_EQ(summary.individuals, 4);
    EXPECT_EQ(summary.alleles, 16); // 4 individuals x 2 loci x 2
    EXPECT_EQ(summary.missing, 5);  // one at L1, four at L2
    ASSERT_EQ(summary.populations.size(), 2U);
    EXPECT_EQ(summary.populations[0].name, "A");
    EXPECT_EQ(summary.populations[0].individuals, 2);
    EXPECT_EQ(summary.populations[0].missing, 1);
    EXPECT_EQ(summary.populations[1].missing, 4);
    ASSERT_EQ(summary.loci.size(), 2U);
    EXPECT_EQ(summary.loci[0].alleles, 3); // 100 102 104
    EXPECT_EQ(summary.loci[0].copies, 7);
    EXPECT_EQ(summary.loci[0].smallest, 100);
    EXPECT_EQ(summary.loci[0].largest, 104);
    EXPECT_EQ(summary.loci[0].populations, 2);
    EXPECT_EQ(summary.loci[0].remainder, 0); // all are even
    EXPECT_EQ(summary.loci[0].onGrid, 7);
    EXPECT_EQ(summary.loci[1].populations, 1);
    EXPECT_EQ(summary.loci[1].repeat, 4);
    EXPECT_EQ(summary.loci[1].rest, 60);
}

TEST(DataSummary, GroupsAndInbredIndividualsAreOfTheReader) {
    LoadedRun run(kInbredPop);
    const DataSummary summary = summaryOf(*run);
    EXPECT_EQ(summary.populations[0].inbred, 0);
    EXPECT_EQ(summary.populations[0].group, 1);
    EXPECT_EQ(summary.populations[1].inbred, 2);
    EXPECT_EQ(summary.populations[1].group, 2);
}

TEST(DataSummary, HalfAnIndividualCounts) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 100\nA d 0 102\nA d 0 104\n");
    const DataSummary summary = summaryOf(*run);
    EXPECT_EQ(summary.individuals, 2); // three rows: one whole and half a second
    EXPECT_EQ(summary.alleles, 3);
}
