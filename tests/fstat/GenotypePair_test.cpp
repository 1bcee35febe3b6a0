// The fast count of a deal of two populations against AllelCount and the equations.
#include "fstat/GenotypePair.h"

#include "fstat/genotypes.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using namespace kva;

using kva_test::addSlots;
using kva_test::expectSameBits;
using kva_test::plainComponents;
using kva_test::randomGenotypes;
using kva_test::slotsAt;

namespace {

constexpr uint32_t kSeeds = 1000;

// A random deal of two populations, from 0.
struct Deal {
    Deal(const CodedData& data, std::array<std::size_t, 2> pops, std::mt19937& stream) {
        for (const std::size_t pop : pops) {
            const std::size_t before = Places.size();
            Places.resize(before + static_cast<std::size_t>(data.slots(pop) / 2));
            std::iota(Places.begin() + static_cast<std::ptrdiff_t>(before), Places.end(),
                      data.pairPlace(pop));
        }
        std::shuffle(Places.begin(), Places.end(), stream);
        const auto first = static_cast<std::size_t>(data.slots(pops[0]) / 2);
        Sample1 = std::span(Places).first(first);
        Sample2 = std::span(Places).subspan(first);
    }

    std::vector<int32_t> Places;
    std::span<const int32_t> Sample1;
    std::span<const int32_t> Sample2;
};

void expectAsCounted(const Datensatz& daten, const CodedData& data, const Deal& deal,
                     GenotypePair& pair, std::size_t l) {
    AllelCount pool;
    AllelCount t1;
    AllelCount t2;
    const std::array<AllelCount*, 2> first = {&pool, &t1};
    const std::array<AllelCount*, 2> second = {&pool, &t2};
    addSlots(daten, l, slotsAt(data, deal.Sample1), first);
    addSlots(daten, l, slotsAt(data, deal.Sample2), second);
    expectSameBits(pair.components(l), plainComponents(pool, t1, t2));
}

// Rounding apart, which grows with the size of what is summed: 2000 gene copies at most.
void expectNear(const std::optional<VarianceComponents>& near,
                const std::optional<VarianceComponents>& exact) {
    constexpr double tolerance = 1e-10;
    ASSERT_EQ(near.has_value(), exact.has_value());
    if (exact) {
        EXPECT_NEAR(near->a, exact->a, tolerance);
        EXPECT_NEAR(near->b, exact->b, tolerance);
        EXPECT_NEAR(near->c, exact->c, tolerance);
    }
}

} // namespace

TEST(GenotypePair, ADealOfAllLociIsAsCountedSlotBySlot) {
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        const Datensatz daten = randomGenotypes(seed);
        const CodedData data(daten);
        const GenotypeRows rows(data);
        GenotypePair pair(rows);
        std::mt19937 stream(seed);
        for (std::size_t j = 1; j < data.populations(); ++j) {
            const Deal deal(data, {0, j}, stream);
            pair.count(rows, {0, j}, deal.Sample1, deal.Sample2, rows.allLoci());
            for (std::size_t l = 0; l < data.loci(); ++l) {
                expectAsCounted(daten, data, deal, pair, l);
            }
        }
    }
}

TEST(GenotypePair, ADealOfOneLocusLeavesTheOthersAlone) {
    for (uint32_t seed = 0; seed < kSeeds / 4; ++seed) {
        SCOPED_TRACE(seed);
        const Datensatz daten = randomGenotypes(seed);
        const CodedData data(daten);
        const GenotypeRows rows(data);
        GenotypePair pair(rows);
        std::mt19937 stream(seed);
        for (std::size_t l = 0; l < data.loci(); ++l) {
            const Deal deal(data, {1, 0}, stream);
            pair.count(rows, {1, 0}, deal.Sample1, deal.Sample2, {l, l + 1});
            expectAsCounted(daten, data, deal, pair, l);
        }
    }
}

TEST(GenotypePair, RowsReadAnewReplaceThoseBefore) {
    const Datensatz daten = randomGenotypes(3);
    const CodedData data(daten);
    CodedData thinned(data);
    SlotSheet sheet(data.loci());
    for (std::vector<std::vector<long>>& ofLocus : sheet) {
        for (std::size_t pop = 0; pop < data.populations(); ++pop) {
            ofLocus.emplace_back(static_cast<std::size_t>(data.slots(pop)), -1);
        }
    }
    data.readThrough(sheet, thinned);
    GenotypeRows rows(data);
    GenotypePair pair(rows);
    std::mt19937 stream(1);
    const Deal deal(data, {0, 1}, stream);
    ASSERT_FALSE(deal.Places.empty());
    rows.read(thinned); // nothing but missing data
    pair.count(rows, {0, 1}, deal.Sample1, deal.Sample2, rows.allLoci());
    EXPECT_FALSE(pair.components(0));
    rows.read(data);
    pair.count(rows, {0, 1}, deal.Sample1, deal.Sample2, rows.allLoci());
    expectAsCounted(daten, data, deal, pair, 0);
}

TEST(GenotypePair, NearComponentsAreTheExactOnesButForRounding) {
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        const CodedData data(randomGenotypes(seed));
        const GenotypeRows rows(data);
        GenotypePair pair(rows);
        std::mt19937 stream(seed);
        for (std::size_t j = 1; j < data.populations(); ++j) {
            const Deal deal(data, {0, j}, stream);
            pair.draw(rows, {0, j}, deal.Sample1, rows.allLoci());
            std::vector<std::optional<VarianceComponents>> near;
            for (std::size_t l = 0; l < data.loci(); ++l) {
                near.push_back(pair.nearComponents(l));
            }
            pair.count(rows, {0, j}, deal.Sample1, deal.Sample2, rows.allLoci());
            for (std::size_t l = 0; l < data.loci(); ++l) {
                expectNear(near[l], pair.components(l));
            }
        }
    }
}
