#include "output/sheet.h"

#include "data/lociclass.h"
#include "output/resultfile.h"
#include "support/written.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace kva;

using kva_test::written;

namespace {

Datensatz twoLoci() {
    Datensatz daten;
    daten.init(2);
    daten.AddPopulation("North", 2);
    daten.AddPopulation("South", 2);
    daten.SetLociName(1, "A");
    daten.SetLociName2(1, "A2");
    daten.SetLociName(2, "B");
    daten.SetLociName2(2, "B2");
    return daten;
}

} // namespace

TEST(Sheet, ANegativeRealIsNotDetermined) {
    EXPECT_EQ(written([](ResultFile& f) {
                  writeRealOrNd(f, 0.5);
                  writeRealOrNd(f, 0.0);
                  writeRealOrNd(f, -1.0);
                  writeRealOrNd(f, -1e-300);
                  writeRealOrNd(f, -std::numeric_limits<double>::infinity());
              }),
              "0.500000\t0.000000\tn.d.\tn.d.\tn.d.\t");
}

TEST(Sheet, NotANumberAndNegativeZeroArePrinted) {
    EXPECT_EQ(written([](ResultFile& f) {
                  writeRealOrNd(f, std::copysign(std::nan(""), -1.0));
                  writeRealOrNd(f, std::numeric_limits<double>::infinity());
                  writeRealOrNd(f, -0.0);
              }),
              "-nan\tinf\t-0.000000\t");
}

TEST(Sheet, ACountBelowTheMinimumIsNotDetermined) {
    EXPECT_EQ(written([](ResultFile& f) {
                  writeCountOrNd(f, 2, 1);
                  writeCountOrNd(f, 1, 1);
                  writeCountOrNd(f, 0, 1);
                  writeCountOrNd(f, 0, 0);
                  writeCountOrNd(f, -1, 0);
              }),
              "2\t1\tn.d.\t0\tn.d.\t");
}

TEST(Sheet, PlainCellsTakeAnyValue) {
    EXPECT_EQ(written([](ResultFile& f) {
                  writeReal(f, -32767.0);
                  writeCount(f, -1);
                  writeLabel(f, "Total");
              }),
              "-32767.000000\t-1\tTotal\t");
}

TEST(Sheet, CellsNotDeterminedComeInRows) {
    EXPECT_EQ(written([](ResultFile& f) {
                  writeNd(f);
                  f.character('|');
                  writeNd(f, 3);
                  f.character('|');
                  writeNd(f, 0);
              }),
              "n.d.\t|n.d.\tn.d.\tn.d.\t|");
}

TEST(Sheet, TabFormsBeginWithTheTab) {
    EXPECT_EQ(written([](ResultFile& f) {
                  writeTabReal(f, -0.25);
                  writeTabNd(f);
              }),
              "\t-0.250000\tn.d.");
}

TEST(Sheet, HeadHasALineOfNamesForEachColumnOfALocus) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(written([&](ResultFile& f) { writeLociHead(f, daten, 2); }),
              "\tA\tB\t\n\tA2\tB2\t\n");
    EXPECT_EQ(written([&](ResultFile& f) { writeLociHead(f, daten, 1); }), "\tA\tB\t\n");
}

TEST(Sheet, SampleZeroIsTheTotal) {
    const Datensatz daten = twoLoci();
    EXPECT_EQ(sampleLabel(daten, 0), "Total");
    EXPECT_EQ(sampleLabel(daten, 1), "North");
    EXPECT_EQ(sampleLabel(daten, 2), "South");
}

TEST(PopulationLabel, IsCutAfterTenCharacters) {
    EXPECT_EQ(populationLabel("ABCDEFGHIJKL"), "ABCDEFGHIJ");
}

TEST(PopulationLabel, ShortNameIsFilledUpOnTheLeft) {
    EXPECT_EQ(populationLabel("ABC"), "       ABC");
    EXPECT_EQ(populationLabel(""), "          ");
}
