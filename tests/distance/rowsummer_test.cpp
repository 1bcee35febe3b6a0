#include "distance/rowsummer.h"

#include "distance/random_data.h"
#include "support/datasets.h"

#include <bit>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

Samples prepared(LoadedRun& run) {
    run.counted();
    return prepareSamples(run->PopAllele, 1, run->AnzPop, run->PopAllele[0],
                          std::vector<double>(run->Daten->Loci.size(), 2.0), kPopulationRules);
}

// Bit by bit, so that a nan is like itself and 0 is not -0.
bool sameBits(double a, double b) {
    return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}
bool sameBits(const PairSums& a, const PairSums& b) {
    return sameBits(a.Summe, b.Summe) && sameBits(a.Summe2, b.Summe2) &&
           sameBits(a.Nenner, b.Nenner) && sameBits(a.Nenner2, b.Nenner2);
}

constexpr std::size_t kPlenty = std::size_t{1} << 20U;

} // namespace

// Loci drawn several times and in any order.
TEST(RowSummer, KeptValuesGiveTheSameSums) {
    for (uint32_t seed = 1; seed <= 40; ++seed) {
        LoadedRun run(randomData(seed));
        const Samples samples = prepared(run);
        const auto number = static_cast<int32_t>(samples.Loci.size());
        const std::vector<int32_t> loci = {0, 5 % number, 1 % number, 5 % number, 7 % number};
        for (const Measure& measure : allMeasures()) {
            RowSummer computed(samples, measure, 0);
            RowSummer kept(samples, measure, kPlenty);
            for (int32_t i = 0; i < samples.Count; ++i) {
                computed.sum(i, loci);
                kept.sum(i, loci);
                for (int32_t j = i + 1; j < samples.Count; ++j) {
                    EXPECT_TRUE(sameBits(computed.pair(j), kept.pair(j)))
                        << "seed " << seed << ", " << measure.Stem << " " << i << " " << j;
                }
            }
        }
    }
}

TEST(RowSummer, EachCallStartsFromZero) {
    LoadedRun run(kTwoPops);
    const Samples samples = prepared(run);
    RowSummer sums(samples, selectedMeasures(0x8)[0], 0);
    const std::vector<int32_t> loci = {0, 1};
    sums.sum(0, loci);
    const PairSums first = sums.pair(1);
    sums.sum(0, loci);
    EXPECT_TRUE(sameBits(first, sums.pair(1)));
    sums.sum(0, {});
    EXPECT_TRUE(sameBits(PairSums(), sums.pair(1)));
}

// Means at L1: A 100.5, B 103.5; repeat length 2 for all loci here.
TEST(RowSummer, ALocusDrawnTwiceCountsTwice) {
    LoadedRun run(kTwoPops);
    const Samples samples = prepared(run);
    RowSummer sums(samples, selectedMeasures(0x8)[0], 0);
    const std::vector<int32_t> loci = {0, 0};
    sums.sum(0, loci);
    EXPECT_EQ(sums.pair(1).Summe, 3.0); // 1.5 + 1.5
    EXPECT_EQ(sums.pair(1).Nenner, 2.0);
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
    RowSummer sums(samples, selectedMeasures(0x2)[0], 0);
    const std::vector<int32_t> loci = {0, 1};
    sums.sum(0, loci);
    EXPECT_EQ(sums.pair(1).Summe, (0.1 + 0.2) + 0.3);
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
    RowSummer sums(samples, selectedMeasures(0x20)[0], 0);
    const std::vector<int32_t> loci = {0};
    sums.sum(0, loci);
    EXPECT_EQ(sums.pair(1).Summe, 1.0 / 25.0);
    EXPECT_NE(1.0 / 25.0, (1.0 / 5.0) * (1.0 / 5.0));
}
