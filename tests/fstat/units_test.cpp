// The tests of pairs and of all populations in units of work, each on a stream of its own.
#include "fstat/fstatsupport.h"
#include "fstat/randsci.h"
#include "run/spread.h"
#include "run/testrecord.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace kva;

using kva_test::globalEstimate;
using kva_test::GlobalEstimate;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::quietly;
using kva_test::randomFstData;

namespace {

constexpr uint32_t kDefault = 0x39; // Hobs, genotypes, linked, permutation

// Individual 5/5 in A, 5/6 and 6/6 in B: Fst and Fit are reached where either of the homozygotes
// is alone, two of the three deals, Fis in all of them.
const char* const kTiny = "2 . . 2 .\n"
                          ". . . 0 .\n"
                          ". . . L1 L1b\n"
                          "A d 0 5 5\n"
                          "B d 0 5 6\n"
                          "B d 0 6 6\n";

// How a data set is tested.
struct Way {
    int Permutations;
    uint32_t Mask = kDefault;
    int32_t Sequential = 0;
};

// Both tests, and what they counted.
struct Tested {
    Tested(const std::string& text, const Way& way, const Spread* spread) : run(text) {
        run.counted();
        run->FstMask = way.Mask;
        run->Permutationen = way.Permutations;
        run->Spreading = spread;
        run->SequentialHits = way.Sequential;
        run->Tests = &record;
        f = newFTriple(run->AnzPop);
        p = newFTriple(run->AnzPop);
        run->FST_PAIR_WC84(f, run->PopAllele, locusTable);
    }
    void testPairs() {
        quietly([&] { run->FST_P_WC84(p, f, run->PopAllele, locusTable); });
    }
    void testAll() {
        const GlobalEstimate all = globalEstimate(*run);
        CMatrix pLocus;
        pLocus.Resize(3, run->AnzLoci);
        double pValues[3];
        quietly([&] {
            run->FST_GLOBAL_P_WC84(all.fst, all.gst, all.gstStrich, all.locus, pValues[0],
                                   pValues[1], pValues[2], pLocus);
        });
    }

    LoadedRun run;
    TestRecord record;
    FTriple f;
    FTriple p;
    CMatrix locusTable;
};

void expectEqual(const TestCounts& counts, const TestCounts& others) {
    for (std::size_t s = 0; s < counts.size(); ++s) {
        EXPECT_EQ(counts[s].Hits, others[s].Hits);
        EXPECT_EQ(counts[s].Permutations, others[s].Permutations);
    }
}

void expectEqual(const TestRecord& record, const TestRecord& other) {
    ASSERT_EQ(record.Pairs.size(), other.Pairs.size());
    for (std::size_t k = 0; k < record.Pairs.size(); ++k) {
        expectEqual(record.Pairs[k].Of, other.Pairs[k].Of);
    }
    expectEqual(record.AllLoci, other.AllLoci);
    ASSERT_EQ(record.Loci.size(), other.Loci.size());
    for (std::size_t l = 0; l < record.Loci.size(); ++l) {
        expectEqual(record.Loci[l], other.Loci[l]);
    }
}

} // namespace

TEST(TestsInUnits, ExactShareWithinItsError) {
    const Spread spread(1, 2);
    Tested t(kTiny, {20000}, &spread);
    t.testPairs();
    EXPECT_NEAR(t.p[0](0, 1), 2.0 / 3.0, 4 * std::sqrt(2.0 / 9.0 / 20000));
    EXPECT_NEAR(t.p[1](0, 1), 2.0 / 3.0, 4 * std::sqrt(2.0 / 9.0 / 20000));
    EXPECT_EQ(t.p[2](0, 1), 1.0);
    ASSERT_EQ(t.record.Pairs.size(), 1U);
    EXPECT_EQ(t.record.Pairs[0].Of[0].Permutations, 20000);
    EXPECT_EQ(double(t.record.Pairs[0].Of[0].Hits) / 20000, t.p[0](0, 1));
}

TEST(TestsInUnits, SameForAnyNumberOfThreads) {
    for (const uint32_t data : {3U, 8U, 21U}) {
        for (const uint32_t mask : {0x39U, 0x29U, 0x31U, 0x3AU, 0x19U}) {
            const Spread one(17, 1);
            Tested alone(randomFstData(data), {1100, mask}, &one);
            alone.testPairs();
            alone.testAll();
            for (const unsigned threads : {2U, 3U}) {
                const Spread spread(17, threads);
                Tested t(randomFstData(data), {1100, mask}, &spread);
                t.testPairs();
                t.testAll();
                expectEqual(t.record, alone.record);
            }
        }
    }
}

// The first block of the first pair, and of all populations, is what the way in order gives on the
// stream of that unit.
TEST(TestsInUnits, FirstBlockIsThatOfItsStream) {
    const Spread spread(5, 2);
    Tested units(kTwoPops, {90}, &spread);
    units.testPairs();
    units.testAll();
    Tested inOrder(kTwoPops, {90}, nullptr);
    startUnit(5, {UnitKind::PairTest, 0});
    inOrder.testPairs();
    startUnit(5, {UnitKind::GlobalTest, 0});
    inOrder.testAll();
    srand2(1);
    expectEqual(units.record, inOrder.record);
    for (std::size_t s = 0; s < 3; ++s) {
        EXPECT_EQ(units.p[s](0, 1), inOrder.p[s](0, 1));
        EXPECT_EQ(units.p[s](1, 0), inOrder.p[s](1, 0));
    }
}

TEST(TestsInUnits, SeedsGiveOtherShuffles) {
    const Spread first(1, 1);
    const Spread second(2, 1);
    Tested a(kTiny, {1000}, &first);
    Tested b(kTiny, {1000}, &second);
    a.testPairs();
    b.testPairs();
    EXPECT_NE(a.record.Pairs[0].Of[0].Hits, b.record.Pairs[0].Of[0].Hits);
}

TEST(TestsInUnits, SequentialTestEndsAtItsHits) {
    const Spread spread(9, 2);
    Tested t(kTiny, {20000, kDefault, 30}, &spread);
    t.testPairs();
    const TestCounts& of = t.record.Pairs[0].Of;
    EXPECT_EQ(of[0].Hits, 30);
    EXPECT_TRUE(of[0].Ended);
    EXPECT_GT(of[0].Permutations, 30);
    EXPECT_LT(of[0].Permutations, 90); // 45 are expected
    EXPECT_EQ(t.p[0](0, 1), 30.0 / double(of[0].Permutations));
    EXPECT_EQ(of[2].Permutations, 30) << "all are hits";
    // Up to there they are those of the whole test.
    Tested whole(kTiny, {static_cast<int>(of[0].Permutations)}, &spread);
    whole.testPairs();
    EXPECT_EQ(whole.record.Pairs[0].Of[0].Hits, 30);
}

TEST(TestsInUnits, SequentialTestMakesAllPermutationsWithoutHits) {
    const Spread spread(9, 2);
    Tested t(kTiny, {40, kDefault, 1000}, &spread);
    t.testPairs();
    EXPECT_EQ(t.record.Pairs[0].Of[0].Permutations, 40);
    EXPECT_FALSE(t.record.Pairs[0].Of[0].Ended);
}

TEST(TestsInUnits, PairWithoutValueIsMarked) {
    const char* const fixed = "2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 5 5\nB d 0 5 5\n";
    const Spread spread(9, 1);
    for (const Spread* way : {&spread, static_cast<const Spread*>(nullptr)}) {
        Tested t(fixed, {10}, way);
        t.testPairs();
        EXPECT_FALSE(t.record.Pairs[0].Of[0].Defined);
        EXPECT_FALSE(t.record.Pairs[0].Of[0].Ended);
        EXPECT_EQ(t.record.Pairs[0].Of[0].Permutations, 10);
    }
}

TEST(TestsInUnits, StreamOfTheCallerStays) {
    const Spread spread(9, 1);
    Tested t(kTiny, {10}, &spread);
    srand2(3);
    const float expected = rand2();
    srand2(3);
    t.testPairs();
    EXPECT_EQ(rand2(), expected);
}
