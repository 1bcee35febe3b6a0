#include "distance/needs.h"

#include "data/allelcount.h"

#include <gtest/gtest.h>

using namespace kva;

namespace {

constexpr uint64_t kMB = 1000000;

} // namespace

// 20000 x 20000 cells of 9 bytes are 3600 MB for each matrix. Half the cells wait in 4 bytes each,
// of one matrix at a time: 800 MB. A sample takes 7 doubles, a place of 8 bytes and two shares of
// 16: 96 bytes a locus, 20000 x 10 of them 19.2 MB.
TEST(DistanceNeeds, OfManyIndividuals) {
    const DistanceNeeds needs = needsOf({20000, 10, 2, 3, false});
    EXPECT_EQ(needs.Memory, 800 * kMB + 19200000);
    EXPECT_EQ(needs.Disk, 3600 * kMB * 2 * 3);
}

TEST(DistanceNeeds, TablesThatAreCountedFirstAdd) {
    const uint64_t without = needsOf({1000, 10, 1, 1, false}).Memory;
    EXPECT_EQ(needsOf({1000, 10, 1, 1, true}).Memory, without + 10000 * sizeof(AllelCount));
}

// 160 x 2^20 = 167772160 bytes: matrices of 1000 rows, which take 2000000 each, are 83 at once.
TEST(MatricesAtOnce, AsManyAsFitAndOneAtLeast) {
    EXPECT_EQ(matricesAtOnce(1000, 9), 9U);
    EXPECT_EQ(matricesAtOnce(1000, 100), 83U);
    EXPECT_EQ(matricesAtOnce(20000, 9), 1U);
}

TEST(Refusal, NothingWhereAllFits) {
    EXPECT_EQ(refusal("Distances", {800 * kMB, 3600 * kMB}, {800 * kMB, 3600 * kMB}), "");
}

TEST(Refusal, TellsWhatItTakesAndWhatIsLeft) {
    const char* const line = "Distances are not computed: they take 800 MB of memory, where 799 MB "
                             "are left, and 3600 MB on the disk, where 3600 MB are left";
    EXPECT_EQ(refusal("Distances", {800 * kMB, 3600 * kMB}, {799 * kMB, 3600 * kMB}), line);
    EXPECT_NE(refusal("Distances", {800 * kMB, 3600 * kMB}, {800 * kMB, 3599 * kMB}), "");
}

// 2^28 bytes.
TEST(DistanceNeeds, AreLargeFromAQuarterOfAGigabyteOn) {
    EXPECT_FALSE(isLarge({268435455, 268435455}));
    EXPECT_TRUE(isLarge({268435456, 0}));
    EXPECT_TRUE(isLarge({0, 268435456}));
}
