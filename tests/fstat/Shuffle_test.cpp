// The fast shuffles against MakeMix2 and MakeMixGlobal: the same sources at the same places, the
// random stream left at the same place.
#include "fstat/Shuffle.h"

#include "data/lociclass.h"
#include "fstat/plain/MakeMix.h"
#include "fstat/randsci.h"

#include <gtest/gtest.h>

using namespace kva;

namespace {

// A data set of one locus in which every slot has an allele of its own: the slot's number in the
// first population, 100000 more in the second and so on.
Datensatz numbered(const std::vector<int32_t>& sizes) {
    Datensatz daten;
    daten.init(1);
    for (std::size_t p = 0; p < sizes.size(); ++p) {
        daten.AddPopulation("P", sizes[p] + 2);
        for (int32_t slot = 0; slot < sizes[p]; ++slot) {
            daten.AddTier(1, static_cast<int>(p) + 1, static_cast<int>(p) * 100000 + slot, 0);
        }
    }
    return daten;
}

// The alleles of a sample in the order in which a table first meets them, by number; a slot that
// reads as missing leaves no trace.
std::vector<int32_t> numbersOf(const ShuffleTable& table,
                               const std::vector<int32_t>& numberOfCode) {
    std::vector<int32_t> numbers;
    for (const uint32_t code : table.alleles()) {
        numbers.push_back(numberOfCode[code]);
    }
    return numbers;
}

// The numbers in ascending order, as the codes stand for them.
std::vector<int32_t> codeBook(const std::vector<int32_t>& sizes) {
    std::vector<int32_t> book{-1};
    for (std::size_t p = 0; p < sizes.size(); ++p) {
        for (int32_t slot = 0; slot < sizes[p]; ++slot) {
            book.push_back(static_cast<int32_t>(p) * 100000 + slot);
        }
    }
    return book;
}

// What a plain map reads, in the order in which a table first meets it.
std::vector<int32_t> numbersOf(const Datensatz& daten, const std::vector<int32_t>& slots,
                               const std::vector<int32_t>& pops) {
    AllelCount table;
    for (std::size_t c = 0; c < slots.size(); ++c) {
        table.AddAllel(daten.Loci[0].GetDataChromosom(pops[c] + 1, slots[c]), 0);
    }
    std::vector<int32_t> numbers;
    numbers.reserve(static_cast<std::size_t>(table.AnzAllele));
    for (int32_t row = 0; row < table.AnzAllele; ++row) {
        numbers.push_back(table.Allele[static_cast<std::size_t>(row)].Nummer);
    }
    return numbers;
}

// Slots of two populations: tiny, odd, and beyond the list of a pool.
const std::vector<std::vector<int32_t>> kSizes = {
    {2, 2}, {6, 4},   {3, 3},   {3, 4}, {4, 3},   {1, 1},       {0, 4},
    {5, 0}, {20, 30}, {61, 40}, {7, 7}, {40, 41}, {3000, 2500}, {2101, 2300}};

} // namespace

TEST(PairShuffle, DealsAsMakeMix2) {
    for (const std::vector<int32_t>& sizes : kSizes) {
        const Datensatz daten = numbered(sizes);
        const CodedData data(daten);
        const std::vector<int32_t> book = codeBook(sizes);
        ShuffleTable t1;
        ShuffleTable t2;
        t1.resize(data.mostAlleles());
        t2.resize(data.mostAlleles());
        for (unsigned flags = 0; flags < 4; ++flags) {
            const ShuffleMode art{(flags & 1U) != 0, true, true, (flags & 2U) != 0};
            PairShuffle shuffle(data, art);
            SampleMap map1;
            SampleMap map2;
            map1.fill(std::vector<int32_t>(static_cast<std::size_t>(sizes[0])));
            map2.fill(std::vector<int32_t>(static_cast<std::size_t>(sizes[1])));
            std::vector<int32_t> buffer;
            SCOPED_TRACE(testing::Message()
                         << sizes[0] << " and " << sizes[1] << " slots, flags " << flags);
            srand2(99);
            shuffle.deal(0, 1);
            shuffle.deal(0, 1); // nothing is left from the first
            shuffle.count(data.locus(0), t1, t2);
            const float next = rand2();
            srand2(99);
            for (int deal = 0; deal < 2; ++deal) {
                MakeMix2(1, art.Genotypes ? 1 : 0, 1, art.Jackknife ? 1 : 0, sizes[0], sizes[1], 0,
                         1, map1, map2, buffer);
            }
            EXPECT_EQ(next, rand2());
            EXPECT_EQ(numbersOf(t1, book), numbersOf(daten, map1[0], map1[1]));
            EXPECT_EQ(numbersOf(t2, book), numbersOf(daten, map2[0], map2[1]));
        }
    }
}

TEST(PairShuffle, TellsWhetherPairsStayTogether) {
    const Datensatz daten = numbered({4, 4, 3});
    const CodedData data(daten);
    PairShuffle pairs(data, {true, true, true, false});
    pairs.deal(0, 1);
    EXPECT_TRUE(pairs.paired());
    EXPECT_EQ(pairs.places(0).size(), 2U);
    pairs.deal(0, 2);
    EXPECT_FALSE(pairs.paired()) << "an odd population goes slot by slot";
    EXPECT_EQ(pairs.places(1).size(), 3U);
    PairShuffle alleles(data, {false, true, true, false});
    alleles.deal(0, 1);
    EXPECT_FALSE(alleles.paired());
}

TEST(PairShuffle, EntriesAreDealtAsTheirPlaces) {
    for (const std::vector<int32_t>& sizes : kSizes) {
        const Datensatz daten = numbered(sizes);
        const CodedData data(daten);
        CodedLocus locus = data.locus(0);
        locus.Entries.clear();
        for (std::size_t place = 0; place < locus.Code.size(); ++place) {
            locus.Entries.push_back(static_cast<uint8_t>(place * 7)); // whatever they stand for
        }
        for (unsigned flags = 0; flags < 4; ++flags) {
            SCOPED_TRACE(testing::Message()
                         << sizes[0] << " and " << sizes[1] << " slots, flags " << flags);
            PairShuffle shuffle(data, {false, true, (flags & 1U) != 0, (flags & 2U) != 0});
            srand2(17);
            shuffle.deal(0, 1);
            const float next = rand2();
            shuffle.readEntries(locus);
            std::array<std::vector<uint8_t>, 2> read;
            for (std::size_t s = 0; s < 2; ++s) {
                const auto entries = shuffle.entries(s);
                ASSERT_EQ(entries.size(), static_cast<std::size_t>(sizes[s]));
                read[s].assign(entries.begin(), entries.end());
                for (std::size_t k = 0; k < entries.size(); ++k) {
                    ASSERT_EQ(entries[k], static_cast<uint8_t>(shuffle.places(s)[k] * 7));
                }
            }
            shuffle.dealEntries(locus, 1, 0); // leaves nothing behind
            srand2(17);
            shuffle.dealEntries(locus, 0, 1);
            EXPECT_EQ(rand2(), next);
            for (std::size_t s = 0; s < 2; ++s) {
                const auto entries = shuffle.entries(s);
                EXPECT_EQ(std::vector<uint8_t>(entries.begin(), entries.end()), read[s]);
            }
        }
    }
}

TEST(GlobalShuffle, DealsAsMakeMixGlobal) {
    const std::vector<std::vector<int32_t>> sizesOf = {
        {2, 2}, {4, 2, 6},    {3, 3},           {1}, {2},    {1, 1, 1},         {0, 3},
        {5},    {3, 0, 4, 2}, {20, 31, 14, 18}, {7}, {6, 1}, {2100, 1500, 900}, {2101, 900, 1}};
    for (const std::vector<int32_t>& sizes : sizesOf) {
        const Datensatz daten = numbered(sizes);
        const CodedData data(daten);
        const std::vector<int32_t> book = codeBook(sizes);
        ShuffleTable table;
        table.resize(data.mostAlleles());
        for (const bool genotypes : {false, true}) {
            std::vector<std::vector<int32_t>> slot;
            int total = 0;
            for (const int32_t size : sizes) {
                slot.emplace_back(static_cast<std::size_t>(size), -1);
                total += size;
            }
            std::vector<std::vector<int32_t>> pop = slot;
            std::vector<int32_t> buffer;
            GlobalShuffle shuffle(data, genotypes);
            for (int deal = 0; deal < 3; ++deal) { // places keep what an earlier deal gave them
                srand2(7 + deal);
                shuffle.deal();
                const float next = rand2();
                srand2(7 + deal);
                MakeMixGlobal(static_cast<int>(sizes.size()), slot, pop, sizes, total, buffer,
                              genotypes ? 1 : 0);
                EXPECT_EQ(next, rand2());
                for (std::size_t p = 0; p < sizes.size(); ++p) {
                    shuffle.count(data.locus(0), p, table);
                    EXPECT_EQ(numbersOf(table, book), numbersOf(daten, slot[p], pop[p]))
                        << total << " slots, population " << p << ", deal " << deal
                        << (genotypes ? ", genotypes" : ", alleles");
                }
            }
        }
    }
}

TEST(ShuffleMode, ReadsTheFlags) {
    const ShuffleMode none = ShuffleMode::of(0);
    EXPECT_FALSE(none.Genotypes || none.Linked || none.Permutation || none.Jackknife);
    EXPECT_TRUE(ShuffleMode::of(0x8).Genotypes);
    EXPECT_TRUE(ShuffleMode::of(0x10).Linked);
    EXPECT_TRUE(ShuffleMode::of(0x20).Permutation);
    EXPECT_TRUE(ShuffleMode::of(0x100).Jackknife);
}
