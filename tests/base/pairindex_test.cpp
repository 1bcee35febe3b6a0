#include "base/pairindex.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

using namespace kva;

namespace {

// The place as it is defined: j - 1 in the first row; in row i, j - i - 1 behind the n - k - 1
// pairs of each row k above.
int placeByRows(int i, int j, int n) {
    int place = j - i - 1;
    for (int k = 0; k < i; ++k) {
        place += n - k - 1;
    }
    return place;
}

} // namespace

TEST(ConvertPoptoPoint, FourPopulationsByHand) {
    EXPECT_EQ(ConvertPoptoPoint(0, 1, 4), 0);
    EXPECT_EQ(ConvertPoptoPoint(0, 2, 4), 1);
    EXPECT_EQ(ConvertPoptoPoint(0, 3, 4), 2);
    EXPECT_EQ(ConvertPoptoPoint(1, 2, 4), 3);
    EXPECT_EQ(ConvertPoptoPoint(1, 3, 4), 4);
    EXPECT_EQ(ConvertPoptoPoint(2, 3, 4), 5);
}

TEST(ConvertPoptoPoint, NumbersAllPairsInTheOrderOfTheRows) {
    for (int n = 2; n <= 40; ++n) {
        int place = 0;
        for (int i = 0; i < n; ++i) {
            for (int j = i + 1; j < n; ++j) {
                ASSERT_EQ(ConvertPoptoPoint(i, j, n), place) << i << ' ' << j << ' ' << n;
                ASSERT_EQ(placeByRows(i, j, n), place);
                ++place;
            }
        }
    }
}

TEST(ConvertPoptoPoint, TheLastPairOfManyPopulationsFits32Bits) {
    constexpr int n = 65000; // n (n - 1) / 2 = 2112467500 pairs
    EXPECT_EQ(ConvertPoptoPoint(n - 2, n - 1, n), 2112467499);
}

TEST(SortFST, ComparesDoublesThreeWay) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double ascending[] = {-infinity, -32767.0, -1e-300, 0.0, 1e-300, 0.5, infinity};
    for (const double& a : ascending) {
        for (const double& b : ascending) {
            EXPECT_EQ(SortFST(&a, &b), a < b ? -1 : (a > b ? 1 : 0)) << a << ' ' << b;
        }
    }
}

TEST(SortFST, SortsAscending) {
    std::vector<double> values = {0.5, -0.25, 3.0, 0.0, -0.25};
    std::qsort(values.data(), values.size(), sizeof(double), &SortFST);
    EXPECT_EQ(values, (std::vector<double>{-0.25, -0.25, 0.0, 0.5, 3.0}));
}

TEST(SortLONG, ComparesWithoutOverflow) {
    const int32_t smallest = std::numeric_limits<int32_t>::min();
    const int32_t largest = std::numeric_limits<int32_t>::max();
    EXPECT_EQ(SortLONG(&smallest, &largest), -1);
    EXPECT_EQ(SortLONG(&largest, &smallest), 1);
    EXPECT_EQ(SortLONG(&largest, &largest), 0);
}

TEST(SortLONG, SortsAscending) {
    std::vector<int32_t> values = {7, -3, 7, 0, -2147483647};
    std::qsort(values.data(), values.size(), sizeof(int32_t), &SortLONG);
    EXPECT_EQ(values, (std::vector<int32_t>{-2147483647, -3, 0, 7, 7}));
}
