// The fast count of a deal of all populations against AllelCount.
#include "fstat/GenotypePool.h"

#include "fstat/genotypes.h"
#include "fstat/randsci.h"

#include <gtest/gtest.h>

using namespace kva;

using kva_test::addSlots;
using kva_test::randomGenotypes;
using kva_test::slotsAt;

namespace {

constexpr uint32_t kSeeds = 1000;

// The tables of a deal at one locus, counted slot by slot: the pool and each population.
struct PlainLocus {
    PlainLocus(const Datensatz& daten, const CodedData& data, const GlobalShuffle& shuffle,
               std::size_t l)
        : Samples(data.populations()) {
        for (std::size_t pop = 0; pop < Samples.size(); ++pop) {
            const std::array<AllelCount*, 2> tables = {&Pool, &Samples[pop]};
            addSlots(daten, l, slotsAt(data, shuffle.places(pop)), tables);
        }
    }
    AllelCount Pool;
    std::vector<AllelCount> Samples;
};

// Sum over the populations with an individual of n (p - pbar)^2, for a row of the pool.
double deviations(const PlainLocus& plain, int32_t row) {
    const int32_t allel = plain.Pool.Allele[static_cast<std::size_t>(row)].Nummer;
    double sum = 0.0;
    for (const AllelCount& t : plain.Samples) {
        if (t.AnzGesamt >= 2) {
            const double p = std::max(t.GetFrequenz(t.GetAllelNummer(allel) - 1), 0.0);
            const double d = p - plain.Pool.GetFrequenz(row);
            sum += t.AnzGesamt * 0.5 * (d * d);
        }
    }
    return sum;
}

void expectAsCounted(const std::optional<GlobalLocus>& fast, const PlainLocus& plain, HRule rule) {
    ASSERT_EQ(fast.has_value(), plain.Pool.AnzAllele >= 2);
    if (!fast) {
        return;
    }
    EXPECT_EQ(fast->Ht, plain.Pool.CalcHetuk());
    std::size_t sample = 0;
    for (const AllelCount& t : plain.Samples) {
        if (t.AnzGesamt >= 2) {
            ASSERT_LT(sample, fast->samples.size());
            EXPECT_EQ(fast->samples[sample].n, t.AnzGesamt * 0.5);
            EXPECT_EQ(fast->samples[sample].hetuk, t.CalcHetuk());
            EXPECT_EQ(fast->samples[sample].hetero, sampleH(rule, t));
            ++sample;
        }
    }
    EXPECT_EQ(fast->samples.size(), sample);
    ASSERT_EQ(fast->pbar.size(), static_cast<std::size_t>(plain.Pool.AnzAllele));
    for (int32_t row = 0; row < plain.Pool.AnzAllele; ++row) {
        const auto place = static_cast<std::size_t>(row);
        EXPECT_EQ(fast->pbar[place], plain.Pool.GetFrequenz(row)) << row;
        EXPECT_EQ(fast->ss[place], deviations(plain, row)) << row;
    }
}

// The near values of a locus beside the exact ones: rounding apart, of which the small divisors
// that the near values bear, 0.01 and more, make at most a hundredfold.
bool expectNear(GenotypePool& pool, const GlobalShuffle& shuffle, std::size_t l) {
    constexpr double tolerance = 1e-9;
    const std::optional<double> Ht = pool.nearHt(l);
    const std::optional<TestedValues> near =
        Ht ? NearGlobalSums().add(pool.nearLocus(l), *Ht) : std::nullopt;
    pool.count(shuffle, {l, l + 1});
    const std::optional<GlobalLocus> exact = pool.locus(l);
    EXPECT_EQ(Ht.has_value(), exact.has_value());
    if (!near || !exact) {
        return false;
    }
    EXPECT_NEAR(*Ht, exact->Ht, tolerance);
    CMatrix table;
    table.Resize(FRow::Anzahl, 1);
    GlobalSums().add(*exact, table, 0, -1.0);
    const std::array<int32_t, 3> rows = {FRow::Fst, FRow::Gst, FRow::GstStrich};
    for (std::size_t k = 0; k < rows.size(); ++k) {
        EXPECT_NEAR((*near)[k], table(rows[k], 0), tolerance) << k;
    }
    return true;
}

} // namespace

TEST(GenotypePool, DealsAreAsCountedSlotBySlot) {
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        const Datensatz daten = randomGenotypes(seed);
        const CodedData data(daten);
        const HRule rule = std::array{HRule::Hobs, HRule::Hexp, HRule::Auto}[seed % 3];
        GenotypePool pool(data, rule);
        GlobalShuffle shuffle(data, true);
        srand2(1 + static_cast<long>(seed));
        shuffle.deal();
        pool.count(shuffle, {0, data.loci()});
        for (std::size_t l = 0; l < data.loci(); ++l) {
            expectAsCounted(pool.locus(l), PlainLocus(daten, data, shuffle, l), rule);
        }
        const std::size_t last = data.loci() - 1; // a deal for it alone
        shuffle.deal();
        pool.count(shuffle, {last, last + 1});
        expectAsCounted(pool.locus(last), PlainLocus(daten, data, shuffle, last), rule);
    }
}

TEST(GenotypePool, NearValuesAreTheExactOnesButForRounding) {
    int32_t told = 0;
    for (uint32_t seed = 0; seed < kSeeds; ++seed) {
        SCOPED_TRACE(seed);
        const CodedData data(randomGenotypes(seed));
        const HRule rule = std::array{HRule::Hobs, HRule::Hexp, HRule::Auto}[seed % 3];
        GenotypePool pool(data, rule);
        GlobalShuffle shuffle(data, true);
        srand2(1 + static_cast<long>(seed));
        shuffle.deal();
        if (!pool.canBeNear() || !pool.countNear(shuffle)) {
            continue;
        }
        for (std::size_t l = 0; l < data.loci(); ++l) {
            told += expectNear(pool, shuffle, l) ? 1 : 0;
        }
    }
    EXPECT_GT(told, 500) << "too few loci to mean anything";
}
