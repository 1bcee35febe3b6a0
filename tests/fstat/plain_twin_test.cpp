// The fast permutation tests against plain ones on random data: the same p-values, means and
// limits to the last bit, and the random stream left at the same place. A failure names the seed
// of the data and the flags.
#include "fstat/fstatsupport.h"
#include "fstat/plain_tests.h"
#include "fstat/randsci.h"

#include <bit>
#include <gtest/gtest.h>

using namespace kva;

using kva_test::FrozenClock;
using kva_test::GlobalP;
using kva_test::LoadedRun;
using kva_test::plainDiscardTest;
using kva_test::plainGlobalTest;
using kva_test::plainPairTest;
using kva_test::quietly;
using kva_test::randomFstData;

namespace {

constexpr uint32_t kSeeds = 60;
constexpr int kPermutations = 53; // beyond the second seeding

// All states of the flags that a shuffle or the estimator follows.
std::vector<uint32_t> shuffleMasks() {
    std::vector<uint32_t> masks;
    for (const uint32_t hetero : {0x1U, 0x2U, 0x4U}) {
        for (uint32_t bits = 0; bits < 8; ++bits) { // genotypes, linked, permutation
            masks.push_back(hetero | bits << 3);
        }
    }
    return masks;
}

// Bits of all cells, so that not-a-numbers compare, too.
std::vector<uint64_t> bitsOf(const CMatrix& matrix) {
    std::vector<uint64_t> bits;
    for (const double cell : matrix.Daten) {
        bits.push_back(std::bit_cast<uint64_t>(cell));
    }
    return bits;
}

void expectSame(const FTriple& fast, const FTriple& plain, const char* what) {
    for (std::size_t s = 0; s < fast.size(); ++s) {
        EXPECT_EQ(bitsOf(fast[s]), bitsOf(plain[s])) << what << ' ' << s;
    }
}

// A data set with the observed F-statistics and room for the results.
struct Case {
    explicit Case(uint32_t seed) : run(randomFstData(seed)) {
        run.counted();
        run->Permutationen = kPermutations;
    }

    void observe(uint32_t mask) {
        run->FstMask = mask;
        const int pairs = run->AnzPop * (run->AnzPop - 1) / 2;
        locusTable.Resize(run->AnzLoci, std::max(pairs, 1));
        f = newFTriple(run->AnzPop);
        run->FST_PAIR_WC84(f, run->PopAllele, locusTable);
    }

    LoadedRun run;
    FTriple f;
    CMatrix locusTable;
};

void comparePairTest(Case& c) {
    FTriple fast = newFTriple(c.run->AnzPop);
    FTriple plain = fast;
    CMatrix plainTable = c.locusTable;
    quietly([&] { c.run->FST_P_WC84(fast, c.f, c.run->PopAllele, c.locusTable); });
    const float next = rand2();
    plainPairTest(*c.run, plain, c.f, plainTable);
    EXPECT_EQ(next, rand2()) << "another place in the random stream";
    expectSame(fast, plain, "p-values");
    EXPECT_EQ(bitsOf(c.locusTable), bitsOf(plainTable));
}

void compareDiscardTest(Case& c) {
    FTriple fast = newFTriple(c.run->AnzPop);
    FTriple plain = fast;
    FTriple plainF = c.f;
    CMatrix limits[4];
    for (CMatrix& limit : limits) {
        limit.Resize(c.run->AnzPop, c.run->AnzPop);
    }
    CMatrix plainTable = c.locusTable;
    quietly([&] {
        c.run->FST_RD_WC84(fast, c.f, c.run->PopAllele, limits[0], limits[1], c.locusTable);
    });
    const float next = rand2();
    plainDiscardTest(*c.run, plain, plainF, limits[2], limits[3], plainTable);
    EXPECT_EQ(next, rand2()) << "another place in the random stream";
    expectSame(fast, plain, "p-values");
    expectSame(c.f, plainF, "means");
    EXPECT_EQ(bitsOf(limits[0]), bitsOf(limits[2])) << "lower limits";
    EXPECT_EQ(bitsOf(limits[1]), bitsOf(limits[3])) << "upper limits";
    EXPECT_EQ(bitsOf(c.locusTable), bitsOf(plainTable));
}

void compareGlobalTest(Case& c) {
    double fst = 0.0;
    double fit = 0.0;
    double fis = 0.0;
    double gst = 0.0;
    double gstStrich = 0.0;
    CMatrix locus;
    locus.Resize(5, c.run->AnzLoci);
    locus.Fill(c.run->DistFehlerwert);
    c.run->FST_GLOBAL_WC84(fst, fit, fis, gst, gstStrich, locus, c.run->PopAllele, c.run->AnzLoci,
                           c.run->AnzPop);
    GlobalP fast;
    fast.locus.Resize(3, c.run->AnzLoci);
    quietly([&] {
        c.run->FST_GLOBAL_P_WC84(fst, gst, gstStrich, locus, fast.fst, fast.gst, fast.gstStrich,
                                 fast.locus);
    });
    const float next = rand2();
    const GlobalP plain = plainGlobalTest(*c.run, {fst, gst, gstStrich}, locus);
    EXPECT_EQ(next, rand2()) << "another place in the random stream";
    EXPECT_EQ(std::bit_cast<uint64_t>(fast.fst), std::bit_cast<uint64_t>(plain.fst));
    EXPECT_EQ(std::bit_cast<uint64_t>(fast.gst), std::bit_cast<uint64_t>(plain.gst));
    EXPECT_EQ(std::bit_cast<uint64_t>(fast.gstStrich), std::bit_cast<uint64_t>(plain.gstStrich));
    EXPECT_EQ(bitsOf(fast.locus), bitsOf(plain.locus));
}

class PlainTwin : public testing::TestWithParam<uint32_t> {
  protected:
    FrozenClock clock{1000 + static_cast<long>(GetParam())};
    Case data{GetParam()};
};

} // namespace

TEST_P(PlainTwin, PairTestIsBitIdentical) {
    for (const uint32_t mask : shuffleMasks()) {
        SCOPED_TRACE("flags " + std::to_string(mask));
        data.observe(mask | 0x2000U);
        comparePairTest(data);
    }
}

TEST_P(PlainTwin, PairTestCalledUnderJackknifeIsBitIdentical) {
    for (const uint32_t mask : shuffleMasks()) {
        SCOPED_TRACE("flags " + std::to_string(mask));
        data.observe(mask | 0x100U);
        comparePairTest(data);
    }
}

TEST_P(PlainTwin, DiscardTestIsBitIdentical) {
    uint32_t extra = GetParam(); // spreads the remaining flags over masks and data sets
    for (const uint32_t mask : shuffleMasks()) {
        const uint32_t thinning = 0x80U + 0x80U * (extra % 3); // discard, jackknife, both
        const uint32_t limits = 0x200U * (extra / 3 % 4);      // of the test, of the permuted
        SCOPED_TRACE("flags " + std::to_string(mask | thinning | limits));
        data.observe(mask | thinning | limits | 0x4000U);
        compareDiscardTest(data);
        ++extra;
    }
}

TEST_P(PlainTwin, GlobalTestIsBitIdentical) {
    for (const uint32_t mask : shuffleMasks()) {
        SCOPED_TRACE("flags " + std::to_string(mask));
        data.observe(mask);
        if (data.run->AnzPop >= 2) { // with one, the p-values are settled otherwise
            compareGlobalTest(data);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlainTwin, testing::Range(0U, kSeeds));
