#include "hetrange/HetReplika.h"

#include "fstat/randsci.h"
#include "hetrange/plain_count.h"
#include "support/datasets.h"
#include "support/draws.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using namespace kva;

namespace {

using kva_test::LoadedRun;

// One population of two individuals at one locus: entries 100 102 100 -.
constexpr const char* kFourEntries = "2 . . 2 .\n"
                                     ". . . 50 .\n"
                                     ". . . L1 L1b\n"
                                     "A d 0 100 102\n"
                                     "A d 0 100 .\n";

HetTable loadedTable(LoadedRun& run, int pop = 1) {
    HetTable table;
    table.Load(run->Daten->Loci[0], pop, run->PopAllele[static_cast<std::size_t>(pop)][0]);
    return table;
}

TEST(CorrectHeterozygosity, ZeroBecomesTheSmallestPolymorphism) {
    // n = 10: 10 x ((1 - 1/121 - 100/121) / 9) = 10 x (20/121) / 9 = 200/1089
    EXPECT_DOUBLE_EQ(correctHeterozygosity(0.0, 10), 200.0 / 1089.0);
}

TEST(CorrectHeterozygosity, OneBecomesTheLargestValueBelowOne) {
    EXPECT_DOUBLE_EQ(correctHeterozygosity(1.0, 10), 1.0 - 2.0 / 110.0);
}

TEST(CorrectHeterozygosity, SingleCopyHasNone) {
    EXPECT_EQ(correctHeterozygosity(0.0, 1), -1.0);
    EXPECT_EQ(correctHeterozygosity(1.0, 1), -1.0);
}

TEST(CorrectHeterozygosity, ValuesBetweenAndMissingOnesStand) {
    EXPECT_EQ(correctHeterozygosity(0.5, 10), 0.5);
    EXPECT_EQ(correctHeterozygosity(0.999999, 10), 0.999999);
    EXPECT_EQ(correctHeterozygosity(-1.0, 0), -1.0);
}

TEST(HetBereich, FirstHeterozygosityOfZeroIsNotCounted) {
    HetBereich bereich;
    bereich.Add(0, {0.0, 0.0, 1.0, 4});
    EXPECT_EQ(bereich.Anzahl, 0);
    EXPECT_EQ(bereich.H.Min, 1.0);
    EXPECT_EQ(bereich.H.Max, 0.0);
    // A later valid value lowers the minimum and raises the maximum as usual.
    bereich.Add(1, {0.25, 0.5, 2.0, 4});
    EXPECT_EQ(bereich.Anzahl, 1);
    EXPECT_EQ(bereich.H.Min, 0.25);
    EXPECT_EQ(bereich.H.Max, 0.25);
}

TEST(HetBereich, LaterHeterozygosityOfZeroIsCounted) {
    HetBereich bereich;
    bereich.Add(0, {0.5, 1.0, 2.0, 4});
    bereich.Add(1, {0.0, 0.0, 1.0, 4});
    EXPECT_EQ(bereich.Anzahl, 2);
    EXPECT_EQ(bereich.H.Min, 0.0);
    EXPECT_EQ(bereich.H.Summe, 0.5);
}

TEST(HetBereich, VarianceThatIsNeverValidShowsItsStart) {
    HetBereich bereich;
    bereich.Add(0, {0.5, -1.0, 2.0, 4});
    bereich.Add(1, {0.5, -1.0, 2.0, 4});
    EXPECT_EQ(bereich.V.Min, 100.0);
    EXPECT_EQ(bereich.V.Summe, 0.0);
    EXPECT_EQ(bereich.V.Max, 0.0);
}

TEST(HetBereich, LaterVarianceOfZeroIsCounted) {
    HetBereich bereich;
    bereich.Add(0, {0.5, 1.0, 2.0, 4});
    bereich.Add(1, {0.5, 0.0, 2.0, 4});
    EXPECT_EQ(bereich.V.Min, 0.0);
    EXPECT_EQ(bereich.V.Summe, 1.0);
    EXPECT_EQ(bereich.V.Max, 1.0);
}

TEST(HetBereich, AllelesKeepTheValueOfTheFirstReplicate) {
    HetBereich bereich;
    bereich.Add(0, {0.5, 1.0, 3.0, 4});
    bereich.Add(1, {0.5, 1.0, 7.0, 4});
    bereich.Add(2, {0.5, 1.0, 1.0, 4});
    EXPECT_EQ(bereich.A.Min, 3.0);
    EXPECT_EQ(bereich.A.Summe, 3.0);
    EXPECT_EQ(bereich.A.Max, 3.0);
}

TEST(HetBereich, ReplicateWithoutAlleleIsAssignedNotSummed) {
    HetBereich bereich;
    bereich.Add(0, {0.5, 1.0, 3.0, 4});
    bereich.Add(1, {-1.0, -1.0, -1.0, 0});
    EXPECT_EQ(bereich.A.Min, -1.0);
    EXPECT_EQ(bereich.A.Summe, -1.0);
    EXPECT_EQ(bereich.A.Max, 3.0);
    EXPECT_EQ(bereich.Anzahl, 1); // the missing H did not count
}

TEST(HetTable, CountsTheDrawnEntries) {
    LoadedRun run(kFourEntries);
    run.counted();
    HetTable table = loadedTable(run);
    const std::vector<int32_t> row = {0, 1, 1, 2}; // 100 102 102 100: p = 1/2, 1/2, C = 8
    table.Add(row, false);
    const HetStatistics wert = table.Statistics();
    EXPECT_DOUBLE_EQ(wert.H, 8.0 / 6.0 * 0.5);
    EXPECT_DOUBLE_EQ(wert.V, 8.0 / 6.0 * 1.0); // all four lie 1 from the mean 101
    EXPECT_EQ(wert.A, 2.0);
    EXPECT_EQ(wert.n, 4);
}

TEST(HetTable, IndexBehindTheLastReadsAsMissing) {
    LoadedRun run(kFourEntries);
    run.counted();
    HetTable table = loadedTable(run);
    table.Add(std::vector<int32_t>{0, 4}, false); // 100 and nothing: C = 2, too small for H
    EXPECT_EQ(table.Statistics().H, -1.0);
    EXPECT_EQ(table.Statistics().A, 1.0);
    EXPECT_EQ(table.Statistics().n, 1);
}

TEST(HetTable, SampleOfMissingEntriesHasNoValue) {
    LoadedRun run(kFourEntries);
    run.counted();
    HetTable table = loadedTable(run);
    table.Add(std::vector<int32_t>{3, 3}, false);
    const HetStatistics wert = table.Statistics();
    EXPECT_EQ(wert.H, -1.0);
    EXPECT_EQ(wert.V, -1.0);
    EXPECT_EQ(wert.A, -1.0);
    EXPECT_EQ(wert.n, 0);
}

// Flagged pair 102/104 and 104/104 of kInbredPop, population B.
TEST(HetTable, RandomDiscardDrawsForEveryFlaggedPair) {
    LoadedRun run(kva_test::kInbredPop);
    run.counted();
    HetTable table = loadedTable(run, 2);
    srand2(1); // gives 0.416 and 0.092, both below 0.5: the second allele is kept
    table.Add(std::vector<int32_t>{0, 1, 2, 3}, true);
    const HetStatistics wert = table.Statistics(); // 104 104 104 104, weight 1 each: C = 4
    EXPECT_EQ(wert.A, 1.0);
    EXPECT_EQ(wert.n, 2);
    EXPECT_NEAR(rand2(), 0.756411, 1e-6); // two numbers were drawn before
}

TEST(HetTable, RandomDiscardKeepsTheFirstAlleleFromOneHalfOn) {
    LoadedRun run(kva_test::kInbredPop);
    run.counted();
    HetTable table = loadedTable(run, 2);
    srand2(1);
    (void)rand2();
    (void)rand2();                                     // the next ones are 0.756 and 0.530
    table.Add(std::vector<int32_t>{0, 1, 2, 3}, true); // 102 102 104 104
    EXPECT_EQ(table.Statistics().A, 2.0);
    EXPECT_DOUBLE_EQ(table.Statistics().H, 1.0); // 4/2 x 1/2
}

// Of 102/104 the first is kept, so that one allele is left.
TEST(HetTable, RandomDiscardKeepsTheFirstAlleleAtOneHalfItself) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nB h 0 102 104\nB h 0 102 102\n");
    run.counted();
    HetTable table = loadedTable(run);
    srand2(kva_test::kSeedOfOneHalf);
    table.Add(std::vector<int32_t>{0, 1, 2, 3}, true);
    EXPECT_EQ(table.Statistics().A, 1.0);
}

// The same entries fed into an AllelCount give the same bits.
TEST(HetTable, EqualsAnAllelCountOfTheSameEntries) {
    std::string text = "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n";
    std::mt19937 random(7);
    for (int row = 0; row < 60; ++row) {
        text += random() % 3 == 0 ? "A h 0" : "A d 0";
        for (int cell = 0; cell < 2; ++cell) {
            const auto kind = random() % 12;
            text += ' ';
            text += kind == 0 ? "." : std::to_string(100 + 2 * kind);
        }
        text += '\n';
    }
    LoadedRun run(text);
    run.counted();
    HetTable table = loadedTable(run);
    const LociObj& locus = run->Daten->Loci[0];
    for (int sample = 0; sample < 200; ++sample) {
        std::vector<int32_t> row(2 * (1 + random() % 60));
        AllelCount plain;
        for (int32_t& place : row) {
            place = static_cast<int32_t>(random() % 121); // 120 is behind the last
            plain.AddAllel(place == 120 ? -1 : locus.GetDataChromosom(1, place),
                           place == 120 ? 0 : locus.isHaploid(1, place));
        }
        table.Clr();
        table.Add(row, false);
        const HetStatistics wert = table.Statistics();
        ASSERT_EQ(wert.H, plain.CalcHet()) << "sample " << sample;
        ASSERT_EQ(wert.V, plain.CalcVar(plain.CalcMean())) << "sample " << sample;
        ASSERT_EQ(wert.A, plain.AnzAllele < 1 ? -1.0 : plain.AnzAllele) << "sample " << sample;
        ASSERT_EQ(wert.n, plain.AnzChromosomen / 2) << "sample " << sample;
    }
}

// --- Against an AllelCount, entry by entry ---------------------------------------------------

constexpr std::size_t kManyEntries = 300;

// A population at one locus: entries with flags, some of them missing.
Datensatz randomPopulation(std::mt19937& random) {
    const auto individuals = random() % 50 == 0 ? kManyEntries / 2 : random() % 13;
    const auto alleles = random() % 50 == 0 ? 300 : 1 + random() % 70;
    const auto missing = 2 + random() % 20; // one in so many
    const auto haploid = random() % 3;      // none, all, some
    const auto allele = [&] {
        return random() % missing == 0 ? -1 : static_cast<int>(50 + 2 * (random() % alleles));
    };
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("A", static_cast<int32_t>(2 * individuals));
    for (std::size_t tier = 0; tier < individuals; ++tier) {
        const int first = allele();
        const bool flagged = haploid == 1 || (haploid == 2 && random() % 2 == 0);
        daten.AddTier(1, 1, first, allele(), flagged ? 1 : 0);
    }
    return daten;
}

// Doubles are compared as they are, not nearly.
TEST(HetTable, EqualsThePlainCountOnManyPopulations) {
    std::mt19937 random(11);
    ResultFile none;
    for (int population = 0; population < 1500; ++population) {
        const Datensatz daten = randomPopulation(random);
        const LociObj& locus = daten.Loci[0];
        const std::size_t entries = locus.DataSlots(1).size();
        AllelCount alleles;
        locus.AllelCountP(alleles, 1, 0);
        alleles.SortAllele();
        HetTable table;
        table.Load(locus, 1, alleles);
        for (int replicate = 0; replicate < 3; ++replicate) {
            std::vector<int32_t> row(random() % 4 == 0 ? random() % kManyEntries : entries);
            std::ranges::generate(row,
                                  [&] { return static_cast<int32_t>(random() % (entries + 1)); });
            const bool randomDiscard = random() % 2 == 0;
            table.Clr();
            const long seed = population + 1;
            ASSERT_EQ(kva_test::countDifference(table, locus, 1, row, randomDiscard, seed), "")
                << "population " << population;
        }
    }
}

// --- The places ------------------------------------------------------------------------------

TEST(HetStichprobe, PlacesStartAtEntryZero) {
    const HetStichprobe sample(2, 3);
    for (int row = 0; row < 2; ++row) {
        EXPECT_EQ(std::accumulate(sample.Row(row).begin(), sample.Row(row).end(), 0), 0);
    }
}

TEST(HetStichprobe, MarksThePlacesThatNoDrawReaches) {
    HetStichprobe sample(2, 4);
    sample.MarkPast(3, 9);
    for (int row = 0; row < 2; ++row) {
        EXPECT_EQ(sample.Row(row)[2], 0);
        EXPECT_EQ(sample.Row(row)[3], 9);
    }
}

// Row by row where places are left out, all at once where none is.
TEST(HetStichprobe, StretchesCoverTheFirstPlacesOfEachRow) {
    HetStichprobe sample(3, 4);
    const auto parts = sample.Stretches(3);
    ASSERT_EQ(parts.size(), 3U);
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(parts[static_cast<std::size_t>(row)].data(), sample.Row(row).data());
        EXPECT_EQ(parts[static_cast<std::size_t>(row)].size(), 3U);
    }
    const auto whole = sample.Stretches(4);
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_EQ(whole[0].data(), sample.Row(0).data());
    EXPECT_EQ(whole[0].size(), 12U);
}

} // namespace
