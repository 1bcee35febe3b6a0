// The fast permutation tests against plain ones on random data: the same p-values, means and
// limits to the last bit, and the random stream left at the same place. A failure names the seed
// of the data and the flags.
#include "fstat/fstatsupport.h"
#include "fstat/plain_tests.h"

#include <gtest/gtest.h>
#include <string>

using namespace kva;

using kva_test::discardTestDifference;
using kva_test::FrozenClock;
using kva_test::globalTestDifference;
using kva_test::LoadedRun;
using kva_test::pairTestDifference;
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

// A data set whose tables are counted.
struct Case {
    explicit Case(uint32_t seed) : run(randomFstData(seed)) {
        run.counted();
        run->Permutationen = kPermutations;
    }

    // Holds a test to its plain twin.
    void compare(std::string (*difference)(AnalyseDataObj&), uint32_t mask) {
        SCOPED_TRACE("flags " + std::to_string(mask));
        run->FstMask = mask;
        std::string found;
        quietly([&] { found = difference(*run); });
        EXPECT_EQ(found, "");
    }

    LoadedRun run;
};

class PlainTwin : public testing::TestWithParam<uint32_t> {
  protected:
    FrozenClock clock{1000 + static_cast<long>(GetParam())};
    Case data{GetParam()};
};

} // namespace

TEST_P(PlainTwin, PairTestIsBitIdentical) {
    for (const uint32_t mask : shuffleMasks()) {
        data.compare(pairTestDifference, mask | 0x2000U);
    }
}

TEST_P(PlainTwin, PairTestCalledUnderJackknifeIsBitIdentical) {
    for (const uint32_t mask : shuffleMasks()) {
        data.compare(pairTestDifference, mask | 0x100U);
    }
}

TEST_P(PlainTwin, DiscardTestIsBitIdentical) {
    uint32_t extra = GetParam(); // spreads the remaining flags over masks and data sets
    for (const uint32_t mask : shuffleMasks()) {
        const uint32_t thinning = 0x80U + 0x80U * (extra % 3); // discard, jackknife, both
        const uint32_t limits = 0x200U * (extra / 3 % 4);      // of the test, of the permuted
        data.compare(discardTestDifference, mask | thinning | limits | 0x4000U);
        ++extra;
    }
}

TEST_P(PlainTwin, GlobalTestIsBitIdentical) {
    for (const uint32_t mask : shuffleMasks()) {
        if (data.run->AnzPop >= 2) { // with one, the p-values are settled otherwise
            data.compare(globalTestDifference, mask);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlainTwin, testing::Range(0U, kSeeds));
