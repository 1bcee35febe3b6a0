#include "fstat/TailList.h"

#include "base/pairindex.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace kva;

TEST(TailList, LimitsAreFillersWithoutValues) {
    const TailList list(2);
    EXPECT_EQ(list.lower(), 100000.0);
    EXPECT_EQ(list.upper(), -100000.0);
}

TEST(TailList, OfTwoTheLimitsAreTheExtremes) {
    // Length 2: entry 0 of the smallest, entry 1 of the largest.
    TailList list(2);
    for (const double v : {0.3, 0.1, 0.5, 0.2}) {
        list.add(v);
    }
    EXPECT_EQ(list.lower(), 0.1);
    EXPECT_EQ(list.upper(), 0.5);
}

TEST(TailList, OfTwentySixTheLimitsAreThe25thFromEachEnd) {
    TailList list(26);
    for (int v = 0; v < 1000; ++v) {
        list.add(v * 7 % 1000); // each of 0..999 once
    }
    EXPECT_EQ(list.lower(), 24.0);
    EXPECT_EQ(list.upper(), 975.0);
}

TEST(TailList, FewerValuesThanTheLimitShowTheFiller) {
    TailList list(4); // the limit is the third value
    list.add(0.1);
    list.add(0.2);
    EXPECT_EQ(list.lower(), 100000.0);
    EXPECT_EQ(list.upper(), -100000.0);
    list.add(0.3);
    EXPECT_EQ(list.lower(), 0.3);
    EXPECT_EQ(list.upper(), 0.1);
}

TEST(TailList, ValuesBeyondTheFillersAndNoNumbersAreLeftOut) {
    TailList list(2);
    for (const double v : {100000.0, std::nan("")}) {
        list.add(v);
    }
    EXPECT_EQ(list.lower(), 100000.0) << "not below the filler";
    EXPECT_EQ(list.upper(), 100000.0) << "but above that of the largest";
    list.add(-100000.0);
    EXPECT_EQ(list.lower(), -100000.0);
}

TEST(TailList, GivesWhatWholeSortedListsGive) {
    std::mt19937 stream(11);
    for (std::size_t k = 2; k < 9; ++k) {
        TailList list(k);
        std::vector<double> lower(k, 100000.0);
        std::vector<double> upper(k, -100000.0);
        for (int i = 0; i < 200; ++i) {
            const auto v = static_cast<double>(stream() % 40);
            list.add(v);
            if (v < lower.back()) {
                lower.back() = v;
                std::qsort(lower.data(), k, sizeof(double), &SortFST);
            }
            if (v > upper.front()) {
                upper.front() = v;
                std::qsort(upper.data(), k, sizeof(double), &SortFST);
            }
            ASSERT_EQ(list.lower(), lower[k - 2]) << k;
            ASSERT_EQ(list.upper(), upper[1]) << k;
        }
    }
}
