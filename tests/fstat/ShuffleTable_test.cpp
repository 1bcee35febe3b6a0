// The fast tables against AllelCount.
#include "fstat/ShuffleTable.h"

#include "data/lociclass.h"
#include "fstat/fstatsupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using namespace kva;

using kva_test::kInbredPop;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::randomFstData;

namespace {

// Feeds the slots at `places` of one population into a table, as the counting passes do.
AllelCount plainTable(const LociObj& locus, int pop, const std::vector<int32_t>& slots) {
    AllelCount table;
    for (const int32_t slot : slots) {
        table.AddAllel(locus.GetDataChromosom(pop, slot), locus.isHaploid(pop, slot));
    }
    return table;
}

void expectTwins(const ShuffleTable& fast, const AllelCount& plain) {
    EXPECT_EQ(fast.tally().Copies, std::max(plain.AnzGesamt, 0));
    EXPECT_EQ(fast.tally().Weight, std::max(plain.AnzChromosomen, 0));
    EXPECT_EQ(fast.tally().Typed, plain.AnzTypisiert);
    EXPECT_EQ(fast.tally().Hetero, plain.AnzHetero);
    EXPECT_EQ(fast.CalcHetobs(), plain.CalcHetobs());
    EXPECT_EQ(fast.CalcHet(), plain.CalcHet());
    EXPECT_EQ(fast.CalcHetuk(), plain.CalcHetuk());
    EXPECT_EQ(fast.isHaploid(), plain.isHaploid());
    ASSERT_EQ(fast.alleles().size(), static_cast<std::size_t>(plain.AnzAllele));
    for (int row = 0; row < plain.AnzAllele; ++row) {
        const uint32_t code = fast.alleles()[static_cast<std::size_t>(row)];
        EXPECT_EQ(fast.count(code), plain.GetAllelCount(row)) << "row " << row;
        EXPECT_EQ(fast.frequency(code), plain.GetFrequenz(row));
    }
}

std::vector<int32_t> range(int32_t first, int32_t n) {
    std::vector<int32_t> places(static_cast<std::size_t>(n));
    std::iota(places.begin(), places.end(), first);
    return places;
}

} // namespace

TEST(ShuffleTable, EmptyTableHasNoStatistics) {
    ShuffleTable table;
    table.resize(3);
    expectTwins(table, AllelCount());
}

TEST(ShuffleTable, AMissingPairLeavesNoTrace) {
    LoadedRun run("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 . .\nA d 0 7 .\nA d 0 7 8\n");
    const CodedData data(*run->Daten);
    ShuffleTable table;
    table.resize(2);
    table.addPairs(data.locus(0), range(0, 3));
    EXPECT_EQ(table.tally().Copies, 3);
    EXPECT_EQ(table.tally().Typed, 4);
    EXPECT_EQ(table.tally().Hetero, 1);
    expectTwins(table, plainTable(run->Daten->Loci[0], 1, range(0, 6)));
}

TEST(ShuffleTable, AnOddLastEntryStaysOpen) {
    LoadedRun run("1 . . 2\n. . . 0\n. . . L1\nA d 0 7\nA d 0 8\nA d 0 .\n");
    const CodedData data(*run->Daten);
    ShuffleTable table;
    table.resize(2);
    table.addSlots(data.locus(0), range(0, 3));
    EXPECT_EQ(table.tally().Typed, 3);
    expectTwins(table, plainTable(run->Daten->Loci[0], 1, range(0, 3)));
}

TEST(ShuffleTable, SlotsInAnyOrderCountAsInAllelCount) {
    for (uint32_t seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        LoadedRun run(randomFstData(seed));
        std::mt19937 stream(seed);
        const CodedData data(*run->Daten);
        ShuffleTable table;
        table.resize(data.mostAlleles());
        for (std::size_t l = 0; l < data.loci(); ++l) {
            std::vector<int32_t> slots = range(0, data.slots(0));
            std::shuffle(slots.begin(), slots.end(), stream);
            table.clear(); // what the locus before left
            table.addSlots(data.locus(l), slots);
            expectTwins(table, plainTable(run->Daten->Loci[l], 1, slots));
        }
    }
}

TEST(ShuffleTable, CopiesOfSeveralTablesKeepTheOrderOfAppearance) {
    LoadedRun run(kTwoPops);
    const CodedData data(*run->Daten);
    ShuffleTable sample;
    ShuffleTable pool;
    sample.resize(3);
    pool.resize(3);
    sample.addPairs(data.locus(0), range(2, 2)); // B: 102 104
    pool.addCopies(sample);
    sample.clear();
    sample.addPairs(data.locus(0), range(0, 2)); // A: 100 102
    pool.addCopies(sample);
    const std::vector<uint32_t> order(pool.alleles().begin(), pool.alleles().end());
    EXPECT_EQ(order, (std::vector<uint32_t>{2, 3, 1}));
    EXPECT_EQ(pool.count(2), 2);
    EXPECT_EQ(pool.tally().Copies, 8);
    EXPECT_EQ(pool.CalcHetuk(), 42.0 / 64.0);
}
