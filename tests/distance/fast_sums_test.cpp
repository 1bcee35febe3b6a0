// The fast ways of the sums against the plain one, bit by bit, for random samples.
#include "distance/genotypetables.h"
#include "distance/keptterms.h"
#include "distance/random_samples.h"
#include "distance/rowsummer.h"

#include <bit>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

constexpr std::size_t kPlenty = std::size_t{1} << 30U;

QuantitySet allQuantities() {
    QuantitySet all;
    for (const Quantity quantity : kAllQuantities) {
        all.add(quantity);
    }
    return all;
}

// A few of them, others with each seed.
QuantitySet someQuantities(uint32_t seed) {
    QuantitySet some;
    for (const Quantity quantity : kAllQuantities) {
        if (seed * 2654435761U >> (placeOf(quantity) + 8) & 1U) {
            some.add(quantity);
        }
    }
    return some;
}

// Bit by bit, so that a nan is like itself and 0 is not -0.
::testing::AssertionResult sameSums(const Samples& samples, QuantitySet asked, std::size_t i,
                                    const RowSums& fast, const RowSums& plain) {
    for (const Quantity quantity : kAllQuantities) {
        for (std::size_t j = i + 1; j < samples.Count && asked.has(quantity); ++j) {
            const double a = fast.of(quantity)[j];
            const double b = plain.of(quantity)[j];
            if (std::bit_cast<uint64_t>(a) != std::bit_cast<uint64_t>(b)) {
                return ::testing::AssertionFailure() << "quantity " << placeOf(quantity) << " of "
                                                     << i << " and " << j << ": " << a << " " << b;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

// All rows, those of few samples twice: what is kept of a row serves again.
template <class Sum>
void expectPlainSums(const Samples& samples, QuantitySet asked,
                     const std::vector<std::size_t>& loci, uint32_t seed, Sum sum) {
    RowSummer plain(samples, asked, {});
    RowSums fast(samples.Count);
    const int turns = samples.Count < 40 ? 2 : 1;
    for (int turn = 0; turn < turns; ++turn) {
        for (std::size_t i = 0; i < samples.Count; ++i) {
            sum(i, fast);
            ASSERT_TRUE(sameSums(samples, asked, i, fast, plain.sum(i, loci, asked)))
                << "seed " << seed;
        }
    }
}

void expectKeptTerms(const Samples& samples, QuantitySet asked,
                     const std::vector<std::size_t>& loci, uint32_t seed) {
    const KeptTerms kept(samples, asked);
    expectPlainSums(samples, asked, loci, seed,
                    [&](std::size_t i, RowSums& sums) { kept.sum(i, loci, sums); });
}

// Result: whether there were tables.
bool expectGenotypes(const RandomSamples& random, QuantitySet asked, std::size_t keepBytes,
                     uint32_t seed) {
    std::optional<GenotypeTables> tables =
        GenotypeTables::make(random.Individuals, asked, keepBytes, 100);
    if (tables) {
        expectPlainSums(random.Individuals, asked, random.Loci, seed,
                        [&](std::size_t i, RowSums& sums) { tables->sum(i, random.Loci, sums); });
    }
    return tables.has_value();
}

} // namespace

TEST(FastSums, KeptTermsOfPopulations) {
    for (uint32_t seed = 1; seed <= 1000; ++seed) {
        const RandomSamples random = randomSamples(seed);
        expectKeptTerms(random.Populations, allQuantities(), random.Loci, seed);
        expectKeptTerms(random.Populations, someQuantities(seed), random.Loci, seed);
    }
}

TEST(FastSums, KeptTermsOfIndividuals) {
    for (uint32_t seed = 1; seed <= 150; ++seed) {
        const RandomSamples random = randomSamples(seed);
        expectKeptTerms(random.Individuals, allQuantities(), random.Loci, seed);
    }
}

// With one byte to keep, the row of a genotype is computed again and again, where it pays.
TEST(FastSums, GenotypeTables) {
    int whole = 0;
    int rows = 0;
    for (uint32_t seed = 1; seed <= 1000; ++seed) {
        const RandomSamples random = randomSamples(seed);
        const QuantitySet asked = seed % 2 == 0 ? allQuantities() : someQuantities(seed);
        whole += expectGenotypes(random, asked, kPlenty, seed) ? 1 : 0;
        rows += expectGenotypes(random, asked, 1, seed) ? 1 : 0;
    }
    EXPECT_GT(whole, 800);
    EXPECT_GT(rows, 50);
}

// --- What takes a fast way ---------------------------------------------------------------

namespace {

// Individuals at one locus, each with two copies of an allele: of the alleles 0 to `alleles` - 1
// in turn.
Samples homozygotes(std::size_t count, std::size_t alleles) {
    LocusSamples locus;
    locus.Pool = alleles;
    locus.First.push_back(0);
    for (std::size_t s = 0; s < count; ++s) {
        locus.Shares.push_back({1.0, s % alleles});
        locus.First.push_back(s + 1);
        locus.Mean.push_back(static_cast<double>(100 + s % alleles));
    }
    locus.Typed = locus.Alleles = locus.HasMean = locus.InNei = locus.Identity =
        std::vector<double>(count, 1.0);
    locus.Variance = std::vector<double>(count, 0.0);
    return {count, {locus}};
}

bool hasTables(const Samples& samples, std::size_t keepBytes = kPlenty,
               std::size_t replicates = 1000) {
    return GenotypeTables::make(samples, allQuantities(), keepBytes, replicates).has_value();
}

} // namespace

// Places of 16 bits count steps of 8 bytes, six of which make an entry: 65535 / 6 = 10922 entries.
TEST(GenotypeTables, AsManyGenotypesAsPlacesReach) {
    EXPECT_TRUE(hasTables(homozygotes(45000, 10922), 1));
    EXPECT_FALSE(hasTables(homozygotes(45000, 10923), 1));
}

// Whole tables have the square of the genotypes as entries, and 100 x 100 / 2 pairs look them up
// in a replicate: 70 x 70 = 4900 pay, 71 x 71 = 5041 pay with two replicates.
TEST(GenotypeTables, WholeTablesPayWhereEntriesAreFewerThanPairs) {
    EXPECT_TRUE(hasTables(homozygotes(100, 70), kPlenty, 1));
    EXPECT_FALSE(hasTables(homozygotes(100, 71), kPlenty, 1));
    EXPECT_TRUE(hasTables(homozygotes(100, 71), kPlenty, 2));
}

// A row is computed for every individual, and half of 100 look it up on average.
TEST(GenotypeTables, SingleRowsPayWhereGenotypesAreFew) {
    EXPECT_TRUE(hasTables(homozygotes(100, 25), 1));
    EXPECT_FALSE(hasTables(homozygotes(100, 26), 1));
}

TEST(GenotypeTables, OtherSamplesThanIndividualsAreRefused) {
    const Samples fine = homozygotes(10, 2);
    EXPECT_TRUE(hasTables(fine));
    Samples samples = fine;
    samples.Loci[0].Shares[9].Share = 0.75;
    EXPECT_FALSE(hasTables(samples));
    samples = fine;
    samples.Loci[0].First[10] = 11; // two alleles of frequency 1
    samples.Loci[0].Shares.push_back({1.0, 0});
    EXPECT_FALSE(hasTables(samples));
    samples = fine;
    samples.Loci[0].Variance[9] = -1.0;
    EXPECT_FALSE(hasTables(samples));
    samples = fine;
    samples.Loci[0].Identity[9] = 0.5;
    EXPECT_FALSE(hasTables(samples));
    samples = fine;
    samples.Loci[0].Repeat = 2.0;
    EXPECT_FALSE(hasTables(samples));
    samples = fine;
    samples.Loci[0].First[10] = 12; // three alleles
    samples.Loci[0].Shares.resize(12);
    EXPECT_FALSE(hasTables(samples));
}

// Four quantities at once are two groups, and one by allele is a third. 3 samples with one allele
// each have rows of 2 and of 1 pairs, each filled up to 8, and none for the last sample. A block
// has room for three quantities.
TEST(KeptTerms, BytesOfTheTerms) {
    QuantitySet five;
    for (const Quantity quantity :
         {Quantity::Typed, Quantity::InNei, Quantity::Chord, Quantity::Cosine, Quantity::Smaller}) {
        five.add(quantity);
    }
    EXPECT_EQ(KeptTerms::bytes(homozygotes(3, 3), five), 3U * 2 * 8 * 3 * sizeof(double));
}
