#include "fstat/jackknife.h"

#include <gtest/gtest.h>

using namespace kva;

TEST(JackknifedSlots, LeavesOutATenthOfTheIndividuals) {
    EXPECT_EQ(jackknifedSlots(5), 5) << "five slots or fewer keep all";
    EXPECT_EQ(jackknifedSlots(0), 0);
    EXPECT_EQ(jackknifedSlots(6), 4) << "0.3 individuals: one";
    EXPECT_EQ(jackknifedSlots(18), 16) << "0.9 individuals: one";
    EXPECT_EQ(jackknifedSlots(40), 36) << "two of twenty";
    EXPECT_EQ(jackknifedSlots(59), 55) << "2.9 individuals: two";
    EXPECT_EQ(jackknifedSlots(2000), 1842) << "79 individuals at most";
    EXPECT_EQ(jackknifedSlots(1600), 1442) << "80.0 is not below 80";
}
