#include "data/allelcount.h"

#include "data/lociclass.h"
#include "fstat/randsci.h"
#include "support/draws.h"
#include "support/support.h"
#include "support/written.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace kva;

using kva_test::StdoutCapture;
using kva_test::written;

namespace {

constexpr int kDiploid = 0;
constexpr int kInbred = 1;
constexpr int kMissing = -1;

// A table fed with the entries of individuals, two entries each.
AllelCount counted(std::initializer_list<int> entries, int haploid = kDiploid) {
    AllelCount table;
    for (const int entry : entries) {
        table.AddAllel(entry, haploid);
    }
    return table;
}

// Three individuals, 100/102 100/100 104/104: the alleles 100, 102, 104 with 3, 1, 2 of 6 copies,
// sum p^2 = (9 + 1 + 4) / 36 = 14/36.
AllelCount threeIndividuals(int haploid) {
    return counted({100, 102, 100, 100, 104, 104}, haploid);
}

std::vector<std::pair<int, int>> rowsOf(const AllelCount& table) {
    std::vector<std::pair<int, int>> rows;
    for (int i = 0; i < table.AnzAllele; ++i) {
        const AllelEintrag& row = table.Allele[static_cast<std::size_t>(i)];
        rows.emplace_back(row.Nummer, row.Anzahl);
    }
    return rows;
}

using Rows = std::vector<std::pair<int, int>>;

void expectEmptyTallies(const AllelCount& table) {
    EXPECT_EQ(table.AnzAllele, 0);
    EXPECT_EQ(table.AnzGesamt, -1);
    EXPECT_EQ(table.AnzChromosomen, -1);
    EXPECT_EQ(table.AnzHetero, 0);
    EXPECT_EQ(table.AnzTypisiert, 0);
    EXPECT_EQ(table.OffenesAllel, -1);
    EXPECT_EQ(table.MaxAllel, -1);
    EXPECT_EQ(table.MinAllel, -1);
    EXPECT_EQ(table.RDReplikate, 0);
    EXPECT_EQ(table.RDDurchlauf, 0);
    EXPECT_TRUE(table.RDAktuell.empty() && table.RDMin.empty() && table.RDMax.empty());
    EXPECT_EQ(table.RDHet, -1.0);
    EXPECT_EQ(table.RDVar, -1.0);
    EXPECT_EQ(table.RDMean, -1.0);
    EXPECT_EQ(table.RDAlleleSumme, -1.0);
}

void expectNoStatistics(const AllelCount& table) {
    EXPECT_EQ(table.CalcHetuk(), -1.0);
    EXPECT_EQ(table.CalcHet(), -1.0);
    EXPECT_EQ(table.CalcHetobs(), -1.0);
    EXPECT_EQ(table.CalcHsk(0), -1.0);
    EXPECT_EQ(table.CalcHsk(1), -1.0);
    EXPECT_EQ(table.CalcMean(), -1.0);
    EXPECT_EQ(table.CalcVar(0.0), -1.0);
    EXPECT_EQ(table.CalcShannon(), -1.0);
}

} // namespace

// --- Empty tables --------------------------------------------------------------------

TEST(AllelCountEmpty, NewTableHasFortyRowsAndNoTally) {
    const AllelCount table;
    EXPECT_EQ(table.Kapazitaet, 40);
    expectEmptyTallies(table);
}

TEST(AllelCountEmpty, HasNoValueOfAnyKind) {
    const AllelCount table;
    expectNoStatistics(table);
    for (const int i : {-5, 0, 1, 40}) {
        EXPECT_EQ(table.GetFrequenz(i), -1.0) << i;
        EXPECT_EQ(table.GetAllelCount(i), -1) << i;
    }
    EXPECT_EQ(table.GetAllelNummer(7), 0);
    EXPECT_FALSE(table.isHaploid());
}

TEST(AllelCountEmpty, OnlyMissingIndividualsLeaveNoTrace) {
    AllelCount table;
    for (int individual = 0; individual < 3; ++individual) {
        table.AddAllel(kMissing, kInbred);
        EXPECT_EQ(table.AnzTypisiert, 1); // the individual is open
        table.AddAllel(-7, kInbred);
        EXPECT_EQ(table.AnzTypisiert, 0);
    }
    expectEmptyTallies(table);
    expectNoStatistics(table);
    EXPECT_EQ(table.GetFrequenz(3), -1.0);
    EXPECT_FALSE(table.isHaploid());
}

TEST(AllelCountEmpty, SortingAnEmptyTableLeavesItUsable) {
    AllelCount table;
    table.SortAllele();
    expectEmptyTallies(table);
    EXPECT_EQ(table.GetAllelNummer(3), 0);
    table.AddAllel(3, kDiploid);
    EXPECT_EQ(table.GetAllelNummer(3), 1);
}

// --- Counting --------------------------------------------------------------------------

TEST(AllelCountCounting, RowsStandInOrderOfFirstAppearance) {
    const AllelCount table = counted({9, 4, 4, 7, 9, 9});
    EXPECT_EQ(rowsOf(table), (Rows{{9, 3}, {4, 2}, {7, 1}}));
    EXPECT_EQ(table.AnzGesamt, 6);
    EXPECT_EQ(table.MinAllel, 4);
    EXPECT_EQ(table.MaxAllel, 9);
}

TEST(AllelCountCounting, TwoDifferentAllelesMakeAHeterozygote) {
    const AllelCount table = counted({4, 7, 7, 7, 7, 4});
    EXPECT_EQ(table.AnzHetero, 2);
    EXPECT_EQ(table.AnzTypisiert, 6);
    EXPECT_EQ(table.OffenesAllel, -1);
}

TEST(AllelCountCounting, AnOpenIndividualKeepsItsFirstAllele) {
    AllelCount table = counted({4, 4, 7});
    EXPECT_EQ(table.AnzTypisiert, 3);
    EXPECT_EQ(table.OffenesAllel, 7);
    table.AddAllel(kMissing, kDiploid);
    EXPECT_EQ(table.AnzTypisiert, 4);
    EXPECT_EQ(table.OffenesAllel, -1);
}

TEST(AllelCountCounting, HalfMissingIndividualCountsAsTypedHomozygote) {
    for (const auto& entries : {std::pair{7, -1}, std::pair{-1, 7}}) {
        const AllelCount table = counted({5, 6, entries.first, entries.second});
        EXPECT_EQ(table.AnzTypisiert, 4); // 2 for each individual
        EXPECT_EQ(table.AnzHetero, 1);
        EXPECT_EQ(table.AnzGesamt, 3);
        EXPECT_EQ(table.AnzChromosomen, 6);
    }
}

TEST(AllelCountCounting, MissingIndividualBetweenOthersLeavesNoTrace) {
    const AllelCount table = counted({5, 6, -1, -3, 6, 6});
    EXPECT_EQ(rowsOf(table), (Rows{{5, 1}, {6, 3}}));
    EXPECT_EQ(table.AnzTypisiert, 4);
    EXPECT_EQ(table.AnzHetero, 1);
}

TEST(AllelCountCounting, ZeroAndTheLargestNumberAreAlleles) {
    const AllelCount table = counted({0, 2147483647, 0, 0});
    EXPECT_EQ(rowsOf(table), (Rows{{0, 3}, {2147483647, 1}}));
    EXPECT_EQ(table.MinAllel, 0);
    EXPECT_EQ(table.MaxAllel, 2147483647);
    EXPECT_EQ(table.AnzHetero, 1);
}

TEST(AllelCountCounting, WeightIsTwoForADiploidAndOneForAnInbredEntry) {
    EXPECT_EQ(threeIndividuals(kDiploid).AnzChromosomen, 12); // 4n
    EXPECT_EQ(threeIndividuals(kInbred).AnzChromosomen, 6);   // 2n
    AllelCount mixed = counted({5, 5});
    mixed.AddAllel(5, kInbred);
    mixed.AddAllel(6, 17); // any flag but 0
    EXPECT_EQ(mixed.AnzChromosomen, 2 + 2 + 1 + 1);
}

TEST(AllelCountCounting, OneFlaggedEntryMakesTheSampleHaploid) {
    AllelCount table = counted({5, 5, 6, 6});
    EXPECT_FALSE(table.isHaploid());
    table.AddAllel(5, kInbred);
    EXPECT_TRUE(table.isHaploid()); // 9 < 2 x 5
}

TEST(AllelCountCounting, SortingOrdersByNumberAndKeepsCounts) {
    AllelCount table = counted({9, 4, 4, 7, 9, 9});
    table.SortAllele();
    EXPECT_EQ(rowsOf(table), (Rows{{4, 2}, {7, 1}, {9, 3}}));
    EXPECT_EQ(table.GetAllelNummer(9), 3);
}

TEST(AllelCountCounting, ASortedTableGoesOnCounting) {
    AllelCount table = counted({9, 4});
    table.SortAllele();
    table.AddAllel(9, kDiploid);
    table.AddAllel(6, kDiploid);
    EXPECT_EQ(rowsOf(table), (Rows{{4, 1}, {9, 2}, {6, 1}}));
    EXPECT_EQ(table.GetAllelNummer(6), 3);
}

TEST(AllelCountCounting, ComparisonOfRowsIsThreeWay) {
    const AllelEintrag small{-2147483647, 9};
    const AllelEintrag large{2147483647, 1};
    EXPECT_EQ(SortAllel(&small, &large), -1);
    EXPECT_EQ(SortAllel(&large, &small), 1);
    EXPECT_EQ(SortAllel(&small, &small), 0);
}

// --- Size of the table --------------------------------------------------------------------

TEST(AllelCountRows, TheFortiethAlleleBringsFortyMoreRows) {
    AllelCount table;
    for (int allele = 1; allele <= 39; ++allele) {
        table.AddAllel(allele, kDiploid);
    }
    EXPECT_EQ(table.Kapazitaet, 40);
    table.AddAllel(40, kDiploid);
    EXPECT_EQ(table.Kapazitaet, 80);
    table.AddAllel(1, kDiploid);
    EXPECT_EQ(table.AnzAllele, 40);
    EXPECT_EQ(table.GetAllelCount(0), 2); // allele 1, twice
    for (int i = 1; i < 40; ++i) {
        EXPECT_EQ(table.GetAllelCount(i), 1) << i;
    }
    EXPECT_EQ(table.GetAllelCount(40), 0); // the free row
    EXPECT_EQ(table.MaxAllel, 40);
}

TEST(AllelCountRows, EightyAllelesNeedAHundredAndTwentyRows) {
    AllelCount table;
    for (int allele = 0; allele < 80; ++allele) {
        table.AddAllel(allele, kDiploid);
    }
    EXPECT_EQ(table.Kapazitaet, 120);
    EXPECT_EQ(table.AnzGesamt, 80);
}

TEST(AllelCountRows, InitTakesTheWantedRowsAndEmptiesTheTable) {
    AllelCount table = threeIndividuals(kInbred);
    table.StartRD(3);
    table.init(2);
    EXPECT_EQ(table.Kapazitaet, 2);
    EXPECT_EQ(table.Allele.size(), 2U);
    expectEmptyTallies(table);
    table.AddAllel(5, kDiploid);
    EXPECT_EQ(table.GetAllelCount(1), 0); // nothing of before in the free row
    table.AddAllel(6, kDiploid);          // full: 40 rows more
    EXPECT_EQ(table.Kapazitaet, 42);
    EXPECT_EQ(rowsOf(table), (Rows{{5, 1}, {6, 1}}));
}

TEST(AllelCountRows, InitWithoutRowsStillTakesAnAllele) {
    AllelCount table;
    table.init(0);
    table.AddAllel(5, kDiploid);
    EXPECT_EQ(rowsOf(table), (Rows{{5, 1}}));
    EXPECT_EQ(table.GetAllelCount(1), 0); // a free row behind
}

TEST(AllelCountRows, ClrKeepsAGrownCapacityAndZeroesTheRows) {
    AllelCount table;
    for (int allele = 0; allele < 100; ++allele) {
        table.AddAllel(allele, kInbred);
    }
    table.StartRD(2);
    table.Clr();
    EXPECT_EQ(table.Kapazitaet, 120);
    expectEmptyTallies(table);
    EXPECT_TRUE(std::all_of(table.Allele.begin(), table.Allele.end(), [](const AllelEintrag& row) {
        return row.Nummer == 0 && row.Anzahl == 0;
    }));
    EXPECT_EQ(table.GetAllelNummer(50), 0);
}

TEST(AllelCountRows, ATableCountsAnewAfterClr) {
    AllelCount table = counted({9, 4, 4, 7});
    table.SortAllele();
    table.Clr();
    table.AddAllel(8, kDiploid);
    table.AddAllel(3, kDiploid);
    EXPECT_EQ(rowsOf(table), (Rows{{8, 1}, {3, 1}}));
    EXPECT_EQ(table.GetAllelNummer(3), 2);
}

// --- Reading -----------------------------------------------------------------------------

TEST(AllelCountReading, FrequencyIsCopiesOverAllCopies) {
    const AllelCount table = counted({4, 4, 4, 9});
    EXPECT_EQ(table.GetFrequenz(0), 0.75);
    EXPECT_EQ(table.GetFrequenz(1), 0.25);
    EXPECT_EQ(table.GetFrequenz(-1), -3.0);
    EXPECT_EQ(table.GetFrequenz(2), -2.0); // AnzAllele
}

TEST(AllelCountReading, TheRowBehindTheLastIsLetThrough) {
    const AllelCount table = counted({4, 4, 4, 9});
    EXPECT_EQ(table.GetAllelCount(0), 3);
    EXPECT_EQ(table.GetAllelCount(1), 1);
    EXPECT_EQ(table.GetAllelCount(-1), -3);
    EXPECT_EQ(table.GetAllelCount(2), 0); // AnzAllele: no sentinel
    EXPECT_EQ(table.GetAllelCount(3), -2);
}

TEST(AllelCountReading, TheRowBehindTheLastReadsZeroAfterClr) {
    AllelCount table = counted({4, 4, 4, 9, 11, 12});
    table.Clr();
    table.AddAllel(4, kDiploid);
    EXPECT_EQ(table.GetAllelCount(1), 0);
}

TEST(AllelCountReading, NumberOfAnAlleleIsItsPlaceFromOne) {
    const AllelCount table = counted({9, 4, 4, 0});
    EXPECT_EQ(table.GetAllelNummer(9), 1);
    EXPECT_EQ(table.GetAllelNummer(4), 2);
    EXPECT_EQ(table.GetAllelNummer(0), 3);
    EXPECT_EQ(table.GetAllelNummer(5), 0);
    EXPECT_EQ(table.GetAllelNummer(-1), 0);
}

TEST(AllelCountReading, CountCellsHoldNumberAndCopies) {
    const AllelCount table = counted({120, 120, 120, 98});
    EXPECT_EQ(written([&](ResultFile& f) {
                  for (const int i : {0, 1, 2, -1}) {
                      table.AllelZahl(f, i);
                      f.character('|');
                  }
              }),
              "120\t3\t|98\t1\t|\t\t|\t\t|");
}

TEST(AllelCountReading, FrequencyCellsHaveSixDecimals) {
    const AllelCount table = counted({120, 120, 98, -1});
    EXPECT_EQ(written([&](ResultFile& f) {
                  for (const int i : {0, 1, 2, -1}) {
                      table.AllelFreq(f, i);
                      f.character('|');
                  }
              }),
              "120\t0.666667\t|98\t0.333333\t|\t\t|\t\t|");
}

// --- Statistics ----------------------------------------------------------------------------
// EXPECT_DOUBLE_EQ: within 4 units in the last place, for the roundings of the worked-out quotient.

TEST(AllelCountStatistics, DiploidSampleByHand) {
    const AllelCount table = threeIndividuals(kDiploid); // C = 12, factor 12/10
    EXPECT_DOUBLE_EQ(table.CalcHetuk(), 22.0 / 36.0);    // 1 - 14/36
    EXPECT_DOUBLE_EQ(table.CalcHet(), 264.0 / 360.0);
    EXPECT_DOUBLE_EQ(table.CalcHetobs(), 1.0 / 3.0);
    EXPECT_DOUBLE_EQ(table.CalcHsk(0), 21.0 / 36.0); // 22/36 - (1/3)/12
    EXPECT_DOUBLE_EQ(table.CalcHsk(1), 0.7);         // 12/10 x 21/36
    EXPECT_DOUBLE_EQ(table.CalcMean(), 610.0 / 6.0); // (300 + 102 + 208) / 6
    EXPECT_DOUBLE_EQ(table.CalcHsk(17), table.CalcHsk(1));
}

TEST(AllelCountStatistics, VarianceByHand) {
    // Deviations from the mean 305/3: -5/3, 1/3, 7/3; sum of squares (75 + 1 + 98) / 9 = 174/9;
    // over 6 copies 29/9. Times 12/10 and 6/4.
    const AllelCount diploid = threeIndividuals(kDiploid);
    const AllelCount inbred = threeIndividuals(kInbred);
    EXPECT_NEAR(diploid.CalcVar(diploid.CalcMean()), 58.0 / 15.0, 1e-13); // numbers near 100
    EXPECT_NEAR(inbred.CalcVar(inbred.CalcMean()), 29.0 / 6.0, 1e-13);
    EXPECT_DOUBLE_EQ(diploid.CalcVar(100.0), 1.2 * (1 * 4 + 2 * 16) / 6.0); // around any mean
}

TEST(AllelCountStatistics, InbredSampleByHand) {
    const AllelCount table = threeIndividuals(kInbred); // C = 6, factor 6/4
    EXPECT_DOUBLE_EQ(table.CalcHetuk(), 22.0 / 36.0);
    EXPECT_DOUBLE_EQ(table.CalcHet(), 33.0 / 36.0);
    EXPECT_DOUBLE_EQ(table.CalcHetobs(), 1.0 / 3.0);
    EXPECT_DOUBLE_EQ(table.CalcHsk(0), 20.0 / 36.0); // 22/36 - (1/3)/6
    EXPECT_DOUBLE_EQ(table.CalcHsk(1), 30.0 / 36.0);
}

TEST(AllelCountStatistics, ShannonByHand) {
    // ln 2 / 2 + ln 6 / 6 + ln 3 / 3
    EXPECT_DOUBLE_EQ(threeIndividuals(kDiploid).CalcShannon(),
                     0.34657359027997264 + 0.29862657820467584 + 0.36620409622270322);
}

TEST(AllelCountStatistics, MonomorphicShannonIsPlainZero) {
    const double index = counted({5, 5, 5, 5}).CalcShannon();
    EXPECT_EQ(index, 0.0);
    EXPECT_FALSE(std::signbit(index));
}

TEST(AllelCountStatistics, SingleDiploidHomozygote) {
    const AllelCount table = counted({8, 8});
    EXPECT_EQ(table.AnzChromosomen, 4);
    EXPECT_EQ(table.AnzGesamt, 2);
    EXPECT_EQ(table.CalcHet(), 0.0);
    EXPECT_EQ(table.CalcHetobs(), 0.0);
}

TEST(AllelCountStatistics, SingleDiploidHeterozygote) {
    const AllelCount table = counted({8, 9});
    EXPECT_EQ(table.CalcHet(), 1.0); // 4/2 x 1/2
    EXPECT_EQ(table.CalcHetobs(), 1.0);
    EXPECT_EQ(table.CalcHsk(0), 0.25); // 1/2 - 1/4
    EXPECT_EQ(table.CalcHsk(1), 0.5);
}

TEST(AllelCountStatistics, SingleInbredIndividualHasOnlyMeanAndHobs) {
    const AllelCount table = counted({3, 5}, kInbred); // C = 2
    EXPECT_EQ(table.CalcHet(), -1.0);
    EXPECT_EQ(table.CalcVar(4.0), -1.0);
    EXPECT_EQ(table.CalcHsk(0), -1.0);
    EXPECT_EQ(table.CalcHsk(1), -1.0);
    EXPECT_EQ(table.CalcShannon(), -1.0);
    EXPECT_EQ(table.CalcHetuk(), 0.5);
    EXPECT_EQ(table.CalcHetobs(), 1.0);
    EXPECT_EQ(table.CalcMean(), 4.0);
}

TEST(AllelCountStatistics, SingleHalfMissingDiploidIsAHomozygote) {
    const AllelCount table = counted({7, -1}); // C = 2
    EXPECT_EQ(table.CalcHet(), -1.0);
    EXPECT_EQ(table.CalcHetuk(), 0.0);
    EXPECT_EQ(table.CalcHetobs(), 0.0);
    EXPECT_EQ(table.CalcMean(), 7.0);
}

TEST(AllelCountStatistics, SingleHalfMissingInbredIndividualHasNothing) {
    const AllelCount table = counted({7, -1}, kInbred); // C = 1
    EXPECT_EQ(table.CalcHetobs(), -1.0);
    EXPECT_EQ(table.CalcMean(), -1.0);
    EXPECT_EQ(table.CalcHetuk(), 0.0);
}

TEST(AllelCountStatistics, ASingleOpenEntryHasNoHobs) {
    const AllelCount table = counted({7}); // C = 2, but one entry typed
    EXPECT_EQ(table.CalcHetobs(), -1.0);
    EXPECT_EQ(table.CalcMean(), 7.0);
}

TEST(AllelCountStatistics, FourAllelesInTwoDiploidsGiveOneExactly) {
    EXPECT_EQ(counted({1, 2, 3, 4}).CalcHet(), 1.0); // 8/6 x 3/4
}

TEST(AllelCountStatistics, CorrectedValuesAreCappedAtOne) {
    EXPECT_EQ(counted({1, 2, 3, 4}, kInbred).CalcHet(), 1.0); // 4/2 x 3/4 = 1.5
    const AllelCount halves = counted({1, -1, 2, -1, 3, -1}, kInbred);
    EXPECT_EQ(halves.CalcHsk(1), 1.0); // C = 3: 3/1 x 2/3 = 2
    EXPECT_DOUBLE_EQ(halves.CalcHsk(0), 2.0 / 3.0);
}

// --- Random discard ---------------------------------------------------------------------------

namespace {

// Inbred homozygotes 10/10 10/10 12/12 14/14: each replicate is 10, 10, 12, 14.
AllelCount homozygotes() {
    return counted({10, 10, 10, 10, 12, 12, 14, 14}, kInbred);
}

void drawHomozygotes(AllelCount& table) {
    for (const int allele : {10, 10, 12, 14}) {
        table.AddHaploidSet(allele, allele);
    }
}

Rows rowsOf(const std::vector<AllelEintrag>& entries) {
    Rows rows;
    for (const AllelEintrag& row : entries) {
        rows.emplace_back(row.Nummer, row.Anzahl);
    }
    return rows;
}

// How many numbers `draw` takes from the stream: 0, 1 or -1 for anything else.
int numbersDrawn(const std::function<void()>& draw) {
    srand2(42);
    const float first = rand2();
    const float second = rand2();
    srand2(42);
    draw();
    const float next = rand2();
    if (next == first) {
        return 0;
    }
    return next == second ? 1 : -1;
}

} // namespace

TEST(AllelCountRD, StartMakesRowsInTheOrderOfTheTable) {
    AllelCount table = counted({9, 4, 4, 4}, kInbred);
    table.StartRD(7);
    EXPECT_EQ(rowsOf(table.RDAktuell), (Rows{{9, 0}, {4, 0}}));
    EXPECT_EQ(rowsOf(table.RDMin), (Rows{{9, 100000}, {4, 100000}}));
    EXPECT_EQ(rowsOf(table.RDMax), (Rows{{9, 0}, {4, 0}}));
    EXPECT_EQ(table.RDReplikate, 7);
    EXPECT_EQ(table.RDDurchlauf, 0);
    EXPECT_EQ(table.RDGroesse, 0);
    EXPECT_EQ(table.RDHet + table.RDVar + table.RDMean + table.RDAlleleSumme, 0.0);
}

TEST(AllelCountRD, UpToOneHalfChoosesTheFirstAllele) {
    AllelCount table = counted({3, 5, 3, 5}, kInbred);
    for (long seed = 1; seed <= 20; ++seed) {
        srand2(seed);
        const bool first = rand2() <= 0.5F;
        srand2(seed);
        table.StartRD(1);
        table.AddHaploidSet(3, 5);
        EXPECT_EQ(rowsOf(table.RDAktuell), first ? (Rows{{3, 1}, {5, 0}}) : (Rows{{3, 0}, {5, 1}}))
            << "seed " << seed;
    }
}

TEST(AllelCountRD, OneHalfItselfChoosesTheFirstAllele) {
    AllelCount table = counted({3, 5, 3, 5}, kInbred);
    table.StartRD(1);
    srand2(kva_test::kSeedOfOneHalf);
    table.AddHaploidSet(3, 5);
    EXPECT_EQ(rowsOf(table.RDAktuell), (Rows{{3, 1}, {5, 0}}));
}

TEST(AllelCountRD, AHomozygoteUsesUpARandomNumber) {
    AllelCount table = homozygotes();
    table.StartRD(1);
    EXPECT_EQ(numbersDrawn([&] { table.AddHaploidSet(10, 10); }), 1);
    EXPECT_EQ(table.RDGroesse, 1);
}

TEST(AllelCountRD, AHalfMissingIndividualGivesItsAlleleWithoutADraw) {
    AllelCount table = homozygotes();
    table.StartRD(1);
    EXPECT_EQ(numbersDrawn([&] {
                  table.AddHaploidSet(-1, 12);
                  table.AddHaploidSet(14, -1);
              }),
              0);
    EXPECT_EQ(rowsOf(table.RDAktuell), (Rows{{10, 0}, {12, 1}, {14, 1}}));
    EXPECT_EQ(table.RDGroesse, 2);
}

TEST(AllelCountRD, AMissingIndividualDoesNothing) {
    AllelCount table = homozygotes();
    table.StartRD(1);
    EXPECT_EQ(numbersDrawn([&] { table.AddHaploidSet(-1, -2); }), 0);
    EXPECT_EQ(table.RDGroesse, 0);
}

TEST(AllelCountRD, AnEmptyTableDrawsButCountsNothing) {
    AllelCount table;
    table.StartRD(1);
    EXPECT_EQ(numbersDrawn([&] { table.AddHaploidSet(3, 3); }), 1);
    EXPECT_EQ(table.RDGroesse, 0);
}

TEST(AllelCountRD, AnAlleleOutsideTheTableCountsAsAnIndividualOnly) {
    AllelCount table = homozygotes();
    table.StartRD(1);
    table.AddHaploidSet(99, -1);
    EXPECT_EQ(table.RDGroesse, 1);
    EXPECT_EQ(rowsOf(table.RDAktuell), (Rows{{10, 0}, {12, 0}, {14, 0}}));
}

TEST(AllelCountRD, ReplicateSumsByHand) {
    AllelCount table = homozygotes(); // AnzGesamt 8, n = 4, counts 2, 1, 1
    table.StartRD(5);
    drawHomozygotes(table);
    EXPECT_EQ(table.CalcRDF(), 1);
    EXPECT_DOUBLE_EQ(table.RDHet, 5.0 / 6.0); // 4/3 x (1 - (4 + 1 + 1)/16) = 4/3 x 10/16
    EXPECT_EQ(table.RDMean, 11.5);            // (20 + 12 + 14) / 4
    EXPECT_EQ(table.RDAlleleSumme, 3.0);
    EXPECT_DOUBLE_EQ(table.RDVar, 11.0 / 3.0); // 2/(8 - 2) x (2 x 2.25 + 0.25 + 6.25)
}

TEST(AllelCountRD, VarianceTakesTheCopiesOfTheFullTable) {
    // 10/10, 14/- : AnzGesamt 3, n = 2, so 2/(3 - 2) and not 1/(n - 1) = 1. Deviations -2, 2.
    AllelCount table = counted({10, 10, 14, -1}, kInbred);
    table.StartRD(5);
    table.AddHaploidSet(10, 10);
    table.AddHaploidSet(14, -1);
    EXPECT_EQ(table.CalcRDF(), 1);
    EXPECT_EQ(table.RDVar, 16.0);
    EXPECT_EQ(table.RDHet, 1.0); // 2/1 x (1 - 1/2)
}

TEST(AllelCountRD, SumsRunOverTheReplicates) {
    AllelCount table = homozygotes();
    table.StartRD(3);
    const StdoutCapture console;
    for (int replicate = 1; replicate <= 3; ++replicate) {
        drawHomozygotes(table);
        EXPECT_EQ(table.RDEnd(), replicate < 3 ? 1 : 0);
        EXPECT_EQ(table.RDDurchlauf, replicate);
        EXPECT_EQ(table.RDGroesse, 0);
    }
    EXPECT_EQ(table.RDMean, 3 * 11.5);
    EXPECT_EQ(table.RDAlleleSumme, 9.0);
}

TEST(AllelCountRD, TheLastReplicateIsMarkedOnTheConsole) {
    AllelCount table = homozygotes();
    table.StartRD(2);
    StdoutCapture console;
    drawHomozygotes(table);
    EXPECT_EQ(table.RDEnd(), 1);
    drawHomozygotes(table);
    EXPECT_EQ(table.RDEnd(), 0);
    EXPECT_EQ(console.text(), "3#");
}

TEST(AllelCountRD, AMonomorphicTableStopsAfterOneReplicate) {
    AllelCount table = counted({7, 7, 7, 7}, kInbred);
    table.StartRD(200);
    table.AddHaploidSet(7, 7);
    table.AddHaploidSet(7, 7);
    StdoutCapture console;
    EXPECT_EQ(table.RDEnd(), 0);
    EXPECT_EQ(console.text(), "2#");
    EXPECT_EQ(table.RDDurchlauf, 1);
    EXPECT_EQ(table.RDHet, 0.0); // 2/1 x (1 - 1)
    EXPECT_EQ(table.RDMean, 7.0);
}

TEST(AllelCountRD, FewerThanThreeCopiesStopSilently) {
    AllelCount table = counted({7, 9}, kInbred);
    table.StartRD(200);
    table.AddHaploidSet(7, 9);
    StdoutCapture console;
    EXPECT_EQ(table.RDEnd(), 0);
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(table.RDHet, -1.0);
    EXPECT_EQ(table.RDVar, -1.0);
    EXPECT_EQ(table.RDMean, -1.0);
    EXPECT_EQ(table.RDAlleleSumme, -1.0);
    EXPECT_EQ(table.RDDurchlauf, 1);
    EXPECT_EQ(table.RDGroesse, 0);
}

TEST(AllelCountRD, SmallestAndLargestCountsAreKept) {
    AllelCount table = homozygotes();
    table.StartRD(2);
    for (const int allele : {10, 10, 12}) {
        table.AddHaploidSet(allele, allele);
    }
    table.DataTestRD();
    table.AddHaploidSet(12, 12);
    table.DataTestRD();
    EXPECT_EQ(rowsOf(table.RDMin), (Rows{{10, 0}, {12, 1}, {14, 0}}));
    EXPECT_EQ(rowsOf(table.RDMax), (Rows{{10, 2}, {12, 1}, {14, 0}}));
    EXPECT_EQ(rowsOf(table.RDAktuell), (Rows{{10, 0}, {12, 0}, {14, 0}}));
}

TEST(AllelCountRD, ExtremesReadAsCountAndAsShareOfAReplicate) {
    AllelCount table = homozygotes();
    table.StartRD(2);
    drawHomozygotes(table);
    table.DataTestRD();
    table.AddHaploidSet(12, 12);
    table.DataTestRD();
    EXPECT_EQ(table.GetRDMinAllelCount(0), 0);
    EXPECT_EQ(table.GetRDMaxAllelCount(0), 2);
    EXPECT_EQ(table.GetRDMinFrequenz(1), 0.25); // 2 x 1 / 8
    EXPECT_EQ(table.GetRDMaxFrequenz(0), 0.5);  // 2 x 2 / 8
}

TEST(AllelCountRD, ExtremesOfADiploidTableAreRefused) {
    AllelCount table = threeIndividuals(kDiploid);
    table.StartRD(2);
    EXPECT_EQ(table.GetRDMinAllelCount(0), -3);
    EXPECT_EQ(table.GetRDMaxAllelCount(0), -3);
    EXPECT_EQ(table.GetRDMinFrequenz(0), -3.0);
    EXPECT_EQ(table.GetRDMaxFrequenz(0), -3.0);
    EXPECT_EQ(AllelCount().GetRDMinAllelCount(0), -3); // nor is an empty table haploid
}

TEST(AllelCountRD, ExtremesAboveTheNumberOfAllelesAreRefused) {
    AllelCount table = homozygotes();
    EXPECT_EQ(table.GetRDMinAllelCount(table.AnzAllele + 1), -2);
    table.StartRD(2);
    EXPECT_EQ(table.GetRDMinAllelCount(table.AnzAllele + 1), -2);
    EXPECT_EQ(table.GetRDMaxFrequenz(table.AnzAllele + 1), -2.0);
}

TEST(AllelCountRD, ExtremesWithoutARowReadZero) {
    AllelCount table = homozygotes();
    EXPECT_EQ(table.GetRDMinAllelCount(0), 0); // StartRD was not called
    table.StartRD(2);
    EXPECT_EQ(table.GetRDMinAllelCount(table.AnzAllele), 0); // behind the last row
    EXPECT_EQ(table.GetRDMaxFrequenz(table.AnzAllele), 0.0);
    EXPECT_EQ(table.GetRDMaxAllelCount(-1), 0);
}

TEST(AllelCountRD, AnotherStartBeginsTheSumsAnew) {
    AllelCount table = homozygotes();
    const StdoutCapture console;
    table.StartRD(1);
    drawHomozygotes(table);
    EXPECT_EQ(table.RDEnd(), 0);
    table.StartRD(2);
    EXPECT_EQ(table.RDHet, 0.0);
    EXPECT_EQ(table.RDDurchlauf, 0);
    EXPECT_EQ(table.RDMin[0].Anzahl, 100000);
    drawHomozygotes(table);
    EXPECT_EQ(table.RDEnd(), 1);
}

TEST(AllelCountRD, BeforeAStartAnAlleleCountsAsAnIndividualOnly) {
    AllelCount table = homozygotes();
    table.AddHaploidSet(10, 10);
    EXPECT_EQ(table.RDGroesse, 1);
    EXPECT_TRUE(table.RDAktuell.empty());
}

TEST(AllelCountRD, ClrForgetsTheReplicates) {
    AllelCount table = homozygotes();
    const StdoutCapture console;
    table.StartRD(2);
    drawHomozygotes(table);
    EXPECT_EQ(table.RDEnd(), 1);
    table.Clr();
    expectEmptyTallies(table);
}

// --- Properties over random data --------------------------------------------------------------

namespace {

// The plain table: a scan of all rows for each entry.
struct PlainTable {
    Rows rows;

    void add(int allele) {
        for (auto& [number, copies] : rows) {
            if (number == allele) {
                ++copies;
                return;
            }
        }
        rows.emplace_back(allele, 1);
    }

    int place(int allele) const {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].first == allele) {
                return static_cast<int>(i) + 1;
            }
        }
        return 0;
    }
};

} // namespace

// Tables of up to 300 alleles, sorted now and then while they grow.
TEST(AllelCountProperty, IndexAndBisectionEqualAPlainScan) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        std::uniform_int_distribution<int> allele(0, static_cast<int>(seed) * 8);
        std::uniform_int_distribution<int> once(0, 299);
        AllelCount table;
        PlainTable plain;
        for (int entry = 0; entry < 600; ++entry) {
            const int number = allele(random);
            table.AddAllel(number, kDiploid);
            plain.add(number);
            if (once(random) == 0) {
                table.SortAllele();
                std::sort(plain.rows.begin(), plain.rows.end());
            }
            const int wanted = allele(random);
            ASSERT_EQ(table.GetAllelNummer(wanted), plain.place(wanted)) << "seed " << seed;
        }
        ASSERT_EQ(rowsOf(table), plain.rows) << "seed " << seed;
    }
}

namespace {

// A table's rows and all that counting sets.
auto countedFields(const AllelCount& table) {
    return std::tuple(rowsOf(table), table.AnzGesamt, table.AnzChromosomen, table.AnzHetero,
                      table.AnzTypisiert, table.OffenesAllel, table.MinAllel, table.MaxAllel,
                      table.isSorted());
}

// Entries of one call, with numbers that often have the last six bits in common.
struct Entries {
    Entries(std::mt19937& random, int numbers) {
        const auto below = [&random](int bound) {
            return std::uniform_int_distribution<int>(0, bound - 1)(random);
        };
        const int step = below(2) == 0 ? 1 : 16;
        for (int count = below(40); count > 0; --count) {
            alleles.push_back(below(6) == 0 ? -1 - below(3) : step * below(numbers));
            infos.push_back(infoValue(below(5) - 2, below(3) == 0));
        }
    }

    std::vector<int32_t> alleles;
    std::vector<int32_t> infos;
};

} // namespace

// Calls with odd and even numbers of entries into a table that is sorted now and then.
TEST(AllelCountProperty, ManyEntriesCountLikeOneAfterTheOther) {
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        std::mt19937 random(seed);
        const int numbers = seed % 10 == 0 ? 300 : 1 + static_cast<int>(seed % 9);
        AllelCount together;
        AllelCount single;
        for (int call = 0; call < 6; ++call) {
            const Entries entries(random, numbers);
            together.AddAllele(entries.alleles, entries.infos);
            for (std::size_t i = 0; i < entries.alleles.size(); ++i) {
                single.AddAllel(entries.alleles[i], infoHaploid(entries.infos[i]));
            }
            ASSERT_EQ(countedFields(together), countedFields(single)) << "seed " << seed;
            if (call == 3) {
                together.SortAllele();
                single.SortAllele();
            }
        }
    }
}

TEST(AllelCountProperty, FrequenciesSumToOneAndOrderDoesNotMatter) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        std::mt19937 random(seed);
        std::uniform_int_distribution<int> allele(-2, 12);
        std::vector<std::pair<int, int>> individuals(20);
        for (auto& [first, second] : individuals) {
            first = allele(random);
            second = allele(random);
        }
        AllelCount tables[2];
        for (AllelCount& table : tables) {
            for (const auto& [first, second] : individuals) {
                table.AddAllel(first, kInbred);
                table.AddAllel(second, kInbred);
            }
            table.SortAllele();
            std::shuffle(individuals.begin(), individuals.end(), random);
        }
        double sum = 0.0;
        for (int i = 0; i < tables[0].AnzAllele; ++i) {
            sum += tables[0].GetFrequenz(i);
        }
        EXPECT_NEAR(sum, 1.0, 1e-14) << "seed " << seed; // some 13 roundings of at most 1e-16
        EXPECT_EQ(rowsOf(tables[0]), rowsOf(tables[1])) << "seed " << seed;
        EXPECT_EQ(tables[0].CalcHetobs(), tables[1].CalcHetobs()) << "seed " << seed;
        EXPECT_EQ(tables[0].CalcHsk(1), tables[1].CalcHsk(1)) << "seed " << seed;
    }
}
