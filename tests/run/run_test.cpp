#include "run/run.h"

#include "support/datasets.h"

#include <gtest/gtest.h>

using namespace kva;
using kva_test::kTwoPops;
using kva_test::LoadedRun;

TEST(Run, TakesOverEachSettingOfAFrontEnd) {
    const AnalyseSettings masks{1, 2, 3, 4, 5};
    const ScalarSettings scalars{.Bootstraps = 11,
                                 .BootLoci = 12,
                                 .Permutationen = 13,
                                 .RichnessRef = 14,
                                 .HetRandomisierungen = 15,
                                 .ReplikaLoci = 16,
                                 .Replikate = 17};
    kva::Run run; // a test has a Run of its own
    run.TakeSettings(masks, scalars);
    EXPECT_EQ(run.GeneralMask, 1U);
    EXPECT_EQ(run.PopDistMask, 2U);
    EXPECT_EQ(run.IndDistMask, 3U);
    EXPECT_EQ(run.FstMask, 4U);
    EXPECT_EQ(run.HetRangeMask, 5U);
    EXPECT_EQ(run.BootLoci, 12);
    EXPECT_EQ(run.RichnessRef, 14);
    EXPECT_EQ(run.HetRandomisierungen, 15);
    EXPECT_EQ(run.ReplikaLoci, 16);
    EXPECT_EQ(run.Replikate, 17);
    EXPECT_EQ(run.Bootstraps, 1) << "travels to its pass as an argument";
    EXPECT_EQ(run.Permutationen, 0) << "travels to its pass as an argument";
}

TEST(Run, AMergeDropsTheCountedTables) {
    LoadedRun run(kTwoPops);
    run.counted();
    LoadedRun same(kTwoPops);
    EXPECT_EQ(run->AddNewData(&*same), 0) << "no locus is new";
    EXPECT_EQ(run->AnzLoci, 2);
    EXPECT_TRUE(run->PopAllele.empty());
}

TEST(Run, AMergeOfNothingIsRefusedAndKeepsTheTables) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(run->AddNewData(nullptr), -1);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}
