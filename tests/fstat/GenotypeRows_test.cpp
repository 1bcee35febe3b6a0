#include "fstat/GenotypeRows.h"

#include "data/lociclass.h"

#include <gtest/gtest.h>
#include <numeric>

using namespace kva;

namespace {

constexpr int kAllele = 100;

// One locus, one population; all individuals have the genotype `first`, `second`.
CodedData oneGenotype(int individuals, int first, int second) {
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("P", 2 * individuals);
    for (int tier = 0; tier < individuals; ++tier) {
        daten.AddTier(1, 1, first, second, 0);
    }
    return CodedData(daten);
}

std::vector<int32_t> upTo(int32_t n) {
    std::vector<int32_t> places(static_cast<std::size_t>(n));
    std::iota(places.begin(), places.end(), 0);
    return places;
}

} // namespace

// 63 individuals of weight 4 add up to 252, 64 to 256, which no byte holds.
TEST(GenotypeRows, SumsGoOnWhereAByteIsFull) {
    for (const int n : {0, 1, 62, 63, 64, 65, 126, 127, 128, 1000}) {
        SCOPED_TRACE(n);
        const GenotypeRows rows(oneGenotype(n, kAllele, kAllele));
        std::vector<int32_t> sums(rows.columns(), -1);
        rows.sum(upTo(n), rows.allLoci(), sums.data());
        const Tally t = rows.tally(sums.data(), 0);
        EXPECT_EQ(t.Copies, 2 * n);
        EXPECT_EQ(t.Weight, 4 * n);
        EXPECT_EQ(t.Typed, 2 * n);
        EXPECT_EQ(t.Hetero, 0);
        if (n > 0) {
            EXPECT_EQ(sums[rows.firstColumn(0)], 2 * n);
            EXPECT_EQ(rows.whole(0)[rows.firstColumn(0)], 2 * n);
        }
    }
}

// Individuals 100/101, 101/100: the first allele of each stands first, whatever its code.
TEST(GenotypeRows, TheFirstAlleleOfAnIndividualComesFirst) {
    for (const bool descending : {false, true}) {
        const GenotypeRows rows(
            oneGenotype(1, kAllele + (descending ? 1 : 0), kAllele + (descending ? 0 : 1)));
        std::vector<uint64_t> open(rows.words());
        std::vector<FreshAlleles> notes(rows.alleleNumber() + 1);
        rows.setAll(rows.allLoci(), open.data());
        const FreshAlleles* const end =
            rows.findFirst(upTo(1), rows.allLoci(), open.data(), notes.data());
        ASSERT_EQ(end - notes.data(), 1);
        EXPECT_EQ(notes[0].Firsts, descending ? 2U : 1U);
        EXPECT_EQ(notes[0].Seconds, descending ? 1U : 2U);
        EXPECT_EQ(open[0], 0U) << "both are found";
    }
}

// Seventy individuals have the alleles 0 to 69 twice each, which are two words; the last
// individual has allele 69 first and allele 0 second. Allele 69 is noted before allele 0.
TEST(GenotypeRows, TheFirstAlleleComesFirstAlsoFromALaterWord) {
    constexpr int kAlleles = 70;
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("P", 2 * kAlleles + 2);
    for (int allele = 0; allele < kAlleles; ++allele) {
        daten.AddTier(1, 1, kAllele + allele, kAllele + allele, 0);
    }
    daten.AddTier(1, 1, kAllele + kAlleles - 1, kAllele, 0);
    const GenotypeRows rows{CodedData(daten)};
    std::vector<uint64_t> open(rows.words());
    std::vector<FreshAlleles> notes(rows.alleleNumber() + 1);
    rows.setAll(rows.allLoci(), open.data());
    const std::vector<int32_t> last = {kAlleles};
    const FreshAlleles* const end = rows.findFirst(last, rows.allLoci(), open.data(), notes.data());
    std::vector<uint32_t> found;
    forEachFresh(rows, {notes.data(), end}, [&](const GenotypeRows::Allele& allele) {
        found.push_back(allele.Column - rows.firstColumn(0));
    });
    EXPECT_EQ(found, (std::vector<uint32_t>{kAlleles - 1, 0}));
}

TEST(GenotypeRows, BitsOfOneLocusAreThoseOfItsAllelesAlone) {
    Datensatz daten;
    daten.init(3);
    daten.AddPopulation("P", 140);
    for (int tier = 0; tier < 70; ++tier) {
        daten.AddTier(1, 1, kAllele, kAllele + 1, 0);         // bits 0 and 1
        daten.AddTier(2, 1, kAllele + tier, kAllele + 69, 0); // bits 2 to 71
        daten.AddTier(3, 1, -1, -1, 0);                       // none
    }
    const GenotypeRows rows{CodedData(daten)};
    EXPECT_EQ(rows.alleleNumber(), 72U);
    std::vector<uint64_t> bits(2);
    rows.setAll({1, 2}, bits.data());
    EXPECT_EQ(bits[0], ~uint64_t{3});
    EXPECT_EQ(bits[1], 0xFFU);
    rows.setAll({2, 3}, bits.data());
    EXPECT_EQ(bits[1], 0U);
}
