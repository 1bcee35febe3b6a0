#include "distance/rowsummer.h"

#include "base/settings.h"
#include "distance/measures.h"
#include "support/datasets.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace kva;

using namespace kva_test;

namespace {

Samples prepared(LoadedRun& run) {
    run.counted();
    return prepareSamples(run->PopAllele, 1, 2, run->PopAllele[0],
                          std::vector<double>(run->Daten->Loci.size(), 2.0), kPopulationRules);
}

const Measure& measure(uint32_t bit) {
    for (const Measure& row : allMeasures()) {
        if (row.Bit == bit) {
            return row;
        }
    }
    throw std::runtime_error("no measure");
}

// The sums of the first pair over `loci`, from 0.
PairSums firstPair(const Samples& samples, uint32_t bit, const std::vector<std::size_t>& loci) {
    const QuantitySet asked = quantitiesOf({&measure(bit), 1});
    RowSummer sums(samples, asked, {});
    return pairSums(measure(bit), sums.sum(0, loci, asked), 1);
}

} // namespace

// Means at L1: A 100.5, B 103.5; repeat length 2 for all loci here. With all that may be kept, and
// without.
TEST(RowSummer, EachCallStartsFromZero) {
    LoadedRun run(kTwoPops);
    const Samples samples = prepared(run);
    const Measure& ada = measure(DistBit::Dad);
    const QuantitySet asked = quantitiesOf({&ada, 1});
    for (const std::size_t keepBytes : {std::size_t{0}, std::size_t{1} << 20U}) {
        RowSummer sums(samples, asked, {2, keepBytes});
        const std::vector<std::size_t> loci = {0};
        EXPECT_EQ(pairSums(ada, sums.sum(0, loci, asked), 1).Summe, 1.5);
        EXPECT_EQ(pairSums(ada, sums.sum(0, loci, asked), 1).Summe, 1.5);
        EXPECT_EQ(pairSums(ada, sums.sum(0, {}, asked), 1).Summe, 0.0);
    }
}

TEST(RowSummer, ALocusDrawnTwiceCountsTwice) {
    LoadedRun run(kTwoPops);
    const PairSums pair = firstPair(prepared(run), DistBit::Dad, {0, 0});
    EXPECT_EQ(pair.Summe, 3.0); // 1.5 + 1.5
    EXPECT_EQ(pair.Nenner, 2.0);
}

// The sum runs on from locus to locus, allele by allele: a share of 0.1 at the first locus, of
// 0.2 and 0.3 at the second. In doubles (0.1 + 0.2) + 0.3 is not 0.1 + (0.2 + 0.3).
TEST(RowSummer, AllelesAddUpOneByOne) {
    LocusSamples first;
    first.Pool = 2;
    first.First = {0, 1, 2};
    first.Shares = {{0.1, 0}, {0.5, 0}};
    first.Typed = {1.0, 1.0};
    LocusSamples second = first;
    second.First = {0, 2, 4};
    second.Shares = {{0.2, 0}, {0.3, 1}, {0.5, 0}, {0.5, 1}};
    const Samples samples{2, {first, second}};
    EXPECT_EQ(firstPair(samples, DistBit::Dps, {0, 1}).Summe, (0.1 + 0.2) + 0.3);
    EXPECT_NE((0.1 + 0.2) + 0.3, 0.1 + (0.2 + 0.3));
}

// (mi - mj)^2 / r^2 with a difference of 1 and r = 5: 1 / 25, not (1 / 5)^2.
TEST(RowSummer, TheSquareIsDividedByTheSquare) {
    LocusSamples locus;
    locus.Pool = 2;
    locus.First = {0, 1, 2};
    locus.Shares = {{1.0, 0}, {1.0, 1}};
    locus.Typed = locus.HasMean = {1.0, 1.0};
    locus.Mean = {100.0, 101.0};
    locus.Repeat = 5.0;
    const Samples samples{2, {locus}};
    EXPECT_EQ(firstPair(samples, DistBit::Dmu, {0}).Summe, 1.0 / 25.0);
    EXPECT_NE(1.0 / 25.0, (1.0 / 5.0) * (1.0 / 5.0));
}
