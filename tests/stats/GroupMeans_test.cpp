// Means over the populations of a group.
#include "stats/GroupMeans.h"

#include "stats/statsupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace kva;

using kva_test::LoadedRun;
using kva_test::tableOf;

namespace {

// Populations in the groups 1, 1, 2, 0 and 1, for which the tests make their tables by hand. The
// second individual of A is in group 9, which is not looked at.
const char* const kGroups = "2 . . 2 .\n"
                            ". . . 50 .\n"
                            ". . . L1 L1b\n"
                            "A d 1 100 100\n"
                            "A d 9 100 100\n"
                            "B d 1 100 100\n"
                            "C d 2 100 100\n"
                            "D d 0 100 100\n"
                            "E d 1 100 100\n";

// Tables in the order of the populations, behind an empty pool.
SampleTables tablesOf(const std::vector<AllelCount>& populations) {
    SampleTables tables(1, LocusTables(1));
    for (const AllelCount& table : populations) {
        tables.push_back({table});
    }
    return tables;
}

// Group 1 holds A (100, 100, 100, 102), B (104 four times) and E (empty); C is 90, 96.
SampleTables handmade() {
    return tablesOf({tableOf({{100, 3}, {102, 1}}), tableOf({{104, 4}}),
                     tableOf({{90, 2}, {96, 2}}), tableOf({{80, 2}}), AllelCount()});
}

// A table that only holds what CalcHetobs and CalcHsk read: `hetero` of `individuals` with two
// alleles at 1/2 each.
AllelCount halves(int individuals, int hetero) {
    AllelCount table;
    for (int i = 0; i < individuals; ++i) {
        const bool differ = i < hetero;
        table.AddAllel(differ || i % 2 == 0 ? 100 : 102, 0);
        table.AddAllel(differ || i % 2 != 0 ? 102 : 100, 0);
    }
    return table;
}

class GroupMeans : public testing::Test {
  protected:
    LoadedRun run{kGroups};
    Datensatz& daten = *run->Daten;
};

} // namespace

// A: C = 8, H = 8/6 x (1 - 10/16) = 1/2. B: 0. E has none: (1/2 + 0)/2.
TEST_F(GroupMeans, HetOverThePopulationsWithData) {
    EXPECT_DOUBLE_EQ(daten.CalcHet(handmade(), 1, 1), 0.25);
    EXPECT_DOUBLE_EQ(daten.CalcHet(handmade(), 1, 2), 8.0 / 6.0 * 0.5);
}

// A: 8/6 x 3/4 = 1, B: 0.
TEST_F(GroupMeans, VarAroundEachPopulationsOwnMean) {
    EXPECT_DOUBLE_EQ(daten.CalcVar(handmade(), 1, 1), 0.5);
}

TEST_F(GroupMeans, MeanOfTheMeans) {
    EXPECT_DOUBLE_EQ(daten.CalcMean(handmade(), 1, 1), (100.5 + 104.0) / 2.0);
}

// Tables fed copy by copy hold homozygotes alone but one: A 100/100 100/102, Hobs = 1/2;
// Hs = 8/6 (3/8 - 1/16) = 5/12, uncorrected 5/16. B: 0.
TEST_F(GroupMeans, HskWithAndWithoutItsCorrection) {
    EXPECT_DOUBLE_EQ(daten.CalcHsk(handmade(), 1, 1, 1), 5.0 / 24.0);
    EXPECT_DOUBLE_EQ(daten.CalcHsk(handmade(), 1, 1, 0), 5.0 / 32.0);
}

TEST_F(GroupMeans, ExtremesOfTheGroup) {
    EXPECT_EQ(daten.CalcMin(handmade(), 1, 1), 100);
    EXPECT_EQ(daten.CalcMax(handmade(), 1, 1), 104);
    EXPECT_EQ(daten.CalcMin(handmade(), 1, 2), 90);
    EXPECT_EQ(daten.CalcMax(handmade(), 1, 2), 96);
}

// The search for the smallest starts at 100000, which stays below larger numbers.
TEST_F(GroupMeans, SmallestIsNeverAbove100000) {
    const SampleTables tables =
        tablesOf({tableOf({{200000, 2}}), AllelCount(), AllelCount(), AllelCount(), AllelCount()});
    EXPECT_EQ(daten.CalcMin(tables, 1, 1), 100000);
    EXPECT_EQ(daten.CalcMax(tables, 1, 1), 200000);
}

TEST_F(GroupMeans, AlleleZeroCounts) {
    const SampleTables tables =
        tablesOf({tableOf({{0, 2}}), AllelCount(), AllelCount(), AllelCount(), AllelCount()});
    EXPECT_EQ(daten.CalcMin(tables, 1, 1), 0);
    EXPECT_EQ(daten.CalcMax(tables, 1, 1), 0);
    EXPECT_EQ(daten.CalcMean(tables, 1, 1), 0.0);
}

TEST_F(GroupMeans, GroupWithoutAllelesHasNone) {
    const SampleTables tables(6, LocusTables(1));
    EXPECT_EQ(daten.CalcHet(tables, 1, 1), -1.0);
    EXPECT_EQ(daten.CalcVar(tables, 1, 1), -1.0);
    EXPECT_EQ(daten.CalcMean(tables, 1, 1), -1.0);
    EXPECT_EQ(daten.CalcHsk(tables, 1, 1, 1), -1.0);
    EXPECT_EQ(daten.CalcMax(tables, 1, 1), -1);
    EXPECT_EQ(daten.CalcMin(tables, 1, 1), -1);
}

TEST_F(GroupMeans, GroupWithoutPopulationsHasNone) {
    EXPECT_EQ(daten.CalcHet(handmade(), 1, 7), -1.0);
    EXPECT_EQ(daten.CalcFisk(handmade(), 1, 7), -1.0);
    EXPECT_EQ(daten.CalcRDHetG(handmade(), 1, 7), -1.0);
    EXPECT_EQ(daten.CalcRDMeanG(handmade(), 1, 7), -1.0);
    EXPECT_EQ(daten.CalcRDVarG(handmade(), 1, 7), -1.0);
    EXPECT_EQ(daten.CalcRDAlleleG(handmade(), 1, 7), -1.0);
    EXPECT_EQ(daten.CalcMin(handmade(), 1, 7), -1);
}

TEST_F(GroupMeans, FirstIndividualDecidesForItsPopulation) {
    EXPECT_EQ(daten.CalcMin(handmade(), 1, 9), -1); // only the second of A
}

TEST_F(GroupMeans, BadLocusIsToldApart) {
    const SampleTables tables = handmade();
    for (const int locus : {0, 2}) {
        EXPECT_EQ(daten.CalcHet(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcVar(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcMean(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcHsk(tables, locus, 1, 1), -2.0);
        EXPECT_EQ(daten.CalcFisk(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcRDHetG(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcRDMeanG(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcRDVarG(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcRDAlleleG(tables, locus, 1), -2.0);
        EXPECT_EQ(daten.CalcMax(tables, locus, 1), -3);
        EXPECT_EQ(daten.CalcMin(tables, locus, 1), -3);
    }
}

TEST(GroupMeansWithoutPopulations, LocusIsToldApart) {
    const LociObj locus;
    const SampleTables tables(1, LocusTables(1));
    EXPECT_EQ(locus.CalcHet(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcVar(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcMean(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcHsk(tables, 1, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcFisk(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcRDHet(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcRDMean(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcRDVar(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcRDAllele(tables, 1, 1), -1.5);
    EXPECT_EQ(locus.CalcMax(tables, 1, 1), -2);
    EXPECT_EQ(locus.CalcMin(tables, 1, 1), -2);
}

// --- F(IS) -----------------------------------------------------------------------------------

// Four individuals with both alleles at 1/2 and h heterozygotes: C = 16, Hs = 16/14 (1/2 - h/64),
// F = 1 - (h/4)/Hs. h = 2: Hs = 15/28, F = 1/15. h = 4: Hs = 1/2, F = -1.
TEST_F(GroupMeans, NegativeFiskIsDropped) {
    const SampleTables tables =
        tablesOf({halves(4, 2), halves(4, 4), halves(4, 4), AllelCount(), halves(4, 2)});
    EXPECT_NEAR(daten.CalcFisk(tables, 1, 1), 1.0 / 15.0, 1e-15);
}

TEST_F(GroupMeans, OnlyNegativeFiskGivesNone) {
    const SampleTables tables =
        tablesOf({halves(4, 4), halves(4, 4), halves(4, 2), AllelCount(), halves(4, 4)});
    EXPECT_EQ(daten.CalcFisk(tables, 1, 1), -1.0);
}

// Monomorphic: 0/0 is no number.
TEST_F(GroupMeans, FiskWithoutDiversityIsDropped) {
    const SampleTables tables =
        tablesOf({tableOf({{100, 4}}), halves(4, 2), AllelCount(), AllelCount(), halves(4, 2)});
    EXPECT_NEAR(daten.CalcFisk(tables, 1, 1), 1.0 / 15.0, 1e-15);
}

// The formula has no guard: 1 - (-1)/(-1) is 0 and enters the mean.
TEST_F(GroupMeans, FiskOfAnEmptySampleIsZero) {
    const SampleTables tables =
        tablesOf({halves(4, 2), AllelCount(), AllelCount(), AllelCount(), halves(4, 2)});
    EXPECT_NEAR(daten.CalcFisk(tables, 1, 1), 2.0 / 45.0, 1e-15); // (1/15 + 0 + 1/15)/3
}

// --- Random-discard means ---------------------------------------------------------------------

namespace {

// A table with haploid entries whose replicates ran.
AllelCount replicated() {
    AllelCount table = tableOf({{100, 2}, {102, 2}}, 1);
    table.RDDurchlauf = 2;
    table.RDHet = 1.5;
    table.RDMean = 201.0;
    table.RDVar = 3.0;
    table.RDAlleleSumme = 3.0;
    return table;
}

} // namespace

// A ran its replicates (means 3/4, 100.5, 3/2, 3/2), B is diploid (1/2, 100.5, 1, 2), E is empty.
TEST_F(GroupMeans, RandomDiscardWhereItRanElsePlain) {
    const SampleTables tables = tablesOf(
        {replicated(), tableOf({{100, 3}, {102, 1}}), AllelCount(), AllelCount(), AllelCount()});
    EXPECT_DOUBLE_EQ(daten.CalcRDHetG(tables, 1, 1), (0.75 + 0.5) / 2.0);
    EXPECT_DOUBLE_EQ(daten.CalcRDMeanG(tables, 1, 1), 100.5);
    EXPECT_DOUBLE_EQ(daten.CalcRDVarG(tables, 1, 1), (1.5 + 1.0) / 2.0);
    EXPECT_DOUBLE_EQ(daten.CalcRDAlleleG(tables, 1, 1), (1.5 + 2.0) / 2.0);
}

// Inbred without replicates: C = 4, H = 2 x 1/2 = 1, variance 2 x 1 = 2.
TEST_F(GroupMeans, RandomDiscardStartsNoReplicates) {
    const SampleTables tables = tablesOf(
        {tableOf({{100, 2}, {102, 2}}, 1), AllelCount(), AllelCount(), AllelCount(), AllelCount()});
    EXPECT_DOUBLE_EQ(daten.CalcRDHetG(tables, 1, 1), 1.0);
    EXPECT_DOUBLE_EQ(daten.CalcRDVarG(tables, 1, 1), 2.0);
    EXPECT_EQ(tables[1][0].RDDurchlauf, 0);
}

// --- All groups at once ----------------------------------------------------------------

namespace {

// A locus of 0 to 12 populations in groups from -1 to 4, some of them without individuals, and
// tables of them.
SampleTables randomLocus(std::mt19937& random, LociObj& locus) {
    SampleTables tables(1, LocusTables(1));
    const auto populations = static_cast<int>(random() % 13);
    for (int pop = 1; pop <= populations; ++pop) {
        const auto individuals = static_cast<int>(random() % 4);
        const auto group = static_cast<int32_t>(random() % 6) - 1;
        locus.AddPopulation("P", 2 * individuals);
        for (int tier = 0; tier < individuals; ++tier) {
            const auto allele = [&] { return static_cast<int>(100 + 2 * (random() % 5)) - 2; };
            const int first = allele();
            locus.AddTier(pop, first, allele(), infoValue(group, random() % 3 == 0));
        }
        AllelCount table;
        locus.AllelCountP(table, pop, 0);
        table.SortAllele();
        tables.push_back({table});
    }
    return tables;
}

// The populations of a group, found by asking each.
std::vector<int32_t> scanned(const LociObj& locus, int group) {
    std::vector<int32_t> populations;
    for (int pop = 1; pop <= locus.AnzPop; ++pop) {
        if (locus.GetGroupNummer(pop, 0) == group) {
            populations.push_back(pop);
        }
    }
    return populations;
}

} // namespace

TEST(GroupIndex, HoldsThePopulationsOfEachGroupInOrder) {
    std::mt19937 random(5);
    for (int set = 0; set < 1000; ++set) {
        LociObj locus;
        randomLocus(random, locus);
        const GroupIndex index(locus);
        for (int group = -2; group <= 6; ++group) {
            const auto populations = index.populations(group);
            ASSERT_EQ(std::vector<int32_t>(populations.begin(), populations.end()),
                      scanned(locus, group))
                << "set " << set << ", group " << group;
        }
    }
}

// Bit for bit what the operations for a single group give.
TEST(GroupIndex, StatisticsEqualThoseOfEachGroupAlone) {
    std::mt19937 random(6);
    for (int set = 0; set < 1000; ++set) {
        LociObj locus;
        const SampleTables tables = randomLocus(random, locus);
        const GroupIndex index(locus);
        for (int group = -1; locus.AnzPop > 0 && group <= 5; ++group) {
            const GroupStatistics all = groupStatistics(tables, 1, index.populations(group));
            ASSERT_EQ(all.het, locus.CalcHet(tables, 1, group)) << "set " << set;
            ASSERT_EQ(all.hetRD, locus.CalcRDHet(tables, 1, group)) << "set " << set;
            ASSERT_EQ(all.var, locus.CalcVar(tables, 1, group)) << "set " << set;
            ASSERT_EQ(all.varRD, locus.CalcRDVar(tables, 1, group)) << "set " << set;
            ASSERT_EQ(all.min, locus.CalcMin(tables, 1, group)) << "set " << set;
            ASSERT_EQ(all.mean, locus.CalcMean(tables, 1, group)) << "set " << set;
            ASSERT_EQ(all.max, locus.CalcMax(tables, 1, group)) << "set " << set;
        }
    }
}

TEST(GroupIndex, LociDifferOnlyByTheirGroups) {
    Datensatz daten;
    daten.init(2);
    for (const char* name : {"A", "B"}) {
        const int pop = daten.AddPopulation(name, 2);
        daten.AddTier(1, pop, 100, 102, infoValue(1, false));
        daten.AddTier(2, pop, 104, 104, infoValue(1, false));
    }
    EXPECT_TRUE(GroupIndex(daten.Loci[0]) == GroupIndex(daten.Loci[1]));
    daten.Loci[1].SetInfoChromosom(2, 0, infoValue(2, false));
    EXPECT_FALSE(GroupIndex(daten.Loci[0]) == GroupIndex(daten.Loci[1]));
}
