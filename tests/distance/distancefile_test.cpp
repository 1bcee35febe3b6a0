#include "distance/distancefile.h"

#include "base/settings.h"
#include "distance/rowsummer.h"
#include "support/datasets.h"
#include "support/written.h"

#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

// --- Labels ----------------------------------------------------------------------------

TEST(DistanceLabel, IndividualHasFiveCharactersAndThreeDigits) {
    EXPECT_EQ(individualLabel("ABCDEFG", 7), "ABCDE007");
    EXPECT_EQ(individualLabel("AB", 12), "   AB012");
}

TEST(DistanceLabel, NumberGrowsBeyondThreeDigits) {
    EXPECT_EQ(individualLabel("ABCDEFG", 1234), "ABCDE1234");
}

TEST(DistanceLabel, EveryPopulationCountsItsOwnIndividuals) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(individualLabels(*run->Daten, 4),
              (std::vector<std::string>{"    A001", "    A002", "    B001", "    B002"}));
}

// One row in one column is half an individual, so that X has none: it takes a label all the
// same, and the labels of Y are one behind its individuals.
TEST(DistanceLabel, PopulationWithoutIndividualsTakesALabel) {
    LoadedRun run("1 . . 1\n. . . 0\n. . . L\nX d 0 1\n"
                  "Y d 0 1\nY d 0 1\nY d 0 2\nY d 0 2\n");
    EXPECT_EQ(individualLabels(*run->Daten, 2), (std::vector<std::string>{"    X001", "    Y001"}));
}

TEST(DistanceLabel, RowsBehindTheLastPopulationHaveNoName) {
    LoadedRun run("1 . . 1\n. . . 0\n. . . L\nX d 0 1\nX d 0 1\n");
    EXPECT_EQ(individualLabels(*run->Daten, 3),
              (std::vector<std::string>{"    X001", "     001", "     001"}));
}

// --- NEXUS -----------------------------------------------------------------------------

TEST(StartNexus, SixLines) {
    const std::string head = "#NEXUS\n[!user defined distances]\nBegin distances;\n"
                             "Dimensions ntax=12;\nformat triangle = both;\nmatrix\n";
    EXPECT_EQ(written([](ResultFile& file) { EXPECT_TRUE(StartNexus(file, 0x2, 12, 0)); }), head);
    // The bit and the index of the output do not show.
    EXPECT_EQ(written([](ResultFile& file) { EXPECT_TRUE(StartNexus(file, 0x80, 12, 1)); }), head);
}

TEST(StartNexus, ClosedFileIsRefused) {
    ResultFile closed;
    EXPECT_FALSE(StartNexus(closed, 0x2, 12, 0));
}

TEST(EndNexus, ARowBeforeTheLastEndsInALineEnd) {
    EXPECT_EQ(written([](ResultFile& file) { EndNexus(file, 1, 3); }), "\n");
}

TEST(EndNexus, TheLastRowEndsTheBlockAndAsksForTheTree) {
    EXPECT_EQ(written([](ResultFile& file) { EndNexus(file, 2, 3); }),
              ";\nend;\n[! nj with user defined distances]\nBegin paup;\n"
              "dset distance=user;\nnj;\nend;\n\n");
}

// --- Matrices ----------------------------------------------------------------------------

namespace {

// Two samples at one locus whose means differ by `difference`.
Samples twoSamples(double difference) {
    LocusSamples locus;
    locus.Pool = 1;
    locus.First = {0, 1, 2};
    locus.Shares = {{1.0, 0}, {1.0, 0}};
    locus.Typed = locus.Alleles = locus.HasMean = locus.InNei = locus.Identity = {1.0, 1.0};
    locus.Mean = {100.0, 100.0 + difference};
    locus.Variance = {0.0, 0.0};
    return {2, {locus}};
}

std::string matrixOf(const Samples& samples, MatrixWriter::Form form, int times = 1) {
    const std::vector<std::string> labels = {"one", "two"};
    MatrixWriter writer(labels, CellRules(), form);
    const std::vector<Measure> ada = selectedMeasures(DistBit::Dad);
    RowSummer sums(samples, quantitiesOf(ada), {});
    const std::vector<std::size_t> loci = {0};
    const TempFolder folder;
    for (int i = 0; i < times; ++i) {
        writer.begin(ResultFile(folder / "matrix", "ab", "matrix", nullptr), ada[0]);
        writer.writeRow(0, sums.sum(0, loci, quantitiesOf(ada)));
        writer.writeRow(1, sums.sum(1, loci, quantitiesOf(ada)));
        writer.end();
    }
    return readFile(folder / "matrix");
}

} // namespace

TEST(MatrixWriter, CountRowsAndEmptyLine) {
    EXPECT_EQ(matrixOf(twoSamples(2.5), MatrixWriter::Form::Plain), "2\n"
                                                                    "one  0.00000  2.50000\n"
                                                                    "two  2.50000  0.00000\n\n");
}

TEST(MatrixWriter, AWideCellGrows) {
    EXPECT_EQ(matrixOf(twoSamples(123456.0), MatrixWriter::Form::Plain),
              "2\n"
              "one  0.00000 123456.00000\n"
              "two 123456.00000  0.00000\n\n");
}

TEST(MatrixWriter, MatricesFollowEachOther) {
    const std::string once = matrixOf(twoSamples(2.5), MatrixWriter::Form::Plain);
    EXPECT_EQ(matrixOf(twoSamples(2.5), MatrixWriter::Form::Plain, 3), once + once + once);
}

TEST(MatrixWriter, NexusRowsWithoutCountAndEmptyLine) {
    EXPECT_EQ(matrixOf(twoSamples(2.5), MatrixWriter::Form::Nexus),
              "one  0.00000  2.50000\n"
              "two  2.50000  0.00000;\nend;\n[! nj with user defined distances]\nBegin paup;\n"
              "dset distance=user;\nnj;\nend;\n\n");
}
