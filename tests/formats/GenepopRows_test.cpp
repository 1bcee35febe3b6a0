// The rows of the export against the plain reading of one individual, on random data.
#include "formats/GenepopRows.h"

#include "data/lociclass.h"
#include "formats/plain_rows.h"
#include "output/resultfile.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

using namespace kva;

namespace {

// Random data sets with all that the rows look at: inbred individuals, whose mark may differ from
// locus to locus, missing alleles of several numbers, single last slots, and numbers of all kinds.
class Source {
  public:
    explicit Source(uint32_t seed) : Engine(seed) {}

    Datensatz data() {
        Datensatz data;
        data.init(1 + below(5));
        const int alleles = below(20) == 0 ? 130 : 1 + below(12);
        const int kind = below(4);
        const int populations = 1 + below(4);
        for (int pop = 1; pop <= populations; ++pop) {
            const int slots = alleles > 99 ? 100 : below(13);
            data.AddPopulation(std::string(static_cast<std::size_t>(below(20)), 'n'), slots);
            const int group = below(3) == 0 ? std::numeric_limits<int32_t>::min() : below(12);
            for (int slot = 0; slot < slots; ++slot) {
                for (int locus = 1; locus <= data.AnzLoci; ++locus) {
                    data.AddTier(locus, pop, allele(kind, below(alleles)),
                                 infoValue(group, below(3) == 0));
                }
            }
        }
        return data;
    }

  private:
    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(Engine); }

    // Neighbours, steps of 64 (which share a place on the shelf), the largest, or small ones; now
    // and then a missing one.
    int allele(int kind, int place) {
        constexpr int kLargest = std::numeric_limits<int32_t>::max();
        if (below(8) == 0) {
            return below(4) == 0 ? -1 - 64 * below(3) : -1;
        }
        return kind == 0   ? 95 + place
               : kind == 1 ? 64 * place
               : kind == 2 ? kLargest - place
                           : place;
    }

    std::mt19937 Engine;
};

LocusTables poolOf(const Datensatz& data) {
    ResultFile closed;
    return data.AllelCountLT(closed, closed);
}

void expectPlainRows(const Datensatz& data, long seed) {
    EXPECT_EQ(kva_test::rowDifference(data, poolOf(data), seed), "");
}

} // namespace

TEST(GenepopRows, SameBytesAndDrawsAsThePlainReading) {
    for (uint32_t seed = 1; seed <= 1500 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        expectPlainRows(Source(seed).data(), static_cast<long>(seed));
    }
}

TEST(GenepopRows, LongNamesAndManyLociFit) {
    constexpr int kLargest = std::numeric_limits<int32_t>::max();
    Datensatz data;
    data.init(3000);
    data.AddPopulation(std::string(5000, 'n'), 4);
    for (int locus = 1; locus <= data.AnzLoci; ++locus) {
        data.AddTier(locus, 1, kLargest, kLargest - 1, infoValue(1 << 29, locus % 2 == 0));
        data.AddTier(locus, 1, std::numeric_limits<int32_t>::min(), -1, 0);
    }
    expectPlainRows(data, 1);
}

TEST(TextShelf, NumbersOfOnePlaceDriveEachOtherOut) {
    AllelCount pool;
    for (const int number : {5, 69, 133}) {
        pool.AddAllel(number, 0);
    }
    pool.SortAllele();
    TextShelf shelf;
    for (const int number : {5, 69, 5, 133, -1, 63}) {
        const AlleleText& text = shelf.of(number, pool);
        EXPECT_EQ(text.Number, number);
        EXPECT_EQ(text.Present, number == 5 || number == 69 || number == 133);
    }
}

TEST(TextShelf, AnEmptyPlaceHoldsNoNumber) {
    const AllelCount none;
    TextShelf shelf;
    for (int number = -70; number <= 70; ++number) {
        std::array<char, 16> cell{};
        char* const end = shelf.of(number, none).Cell.put(cell.data());
        EXPECT_EQ(std::string(cell.data(), end), "\t" + std::to_string(number));
    }
}
