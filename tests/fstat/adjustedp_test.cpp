// p-values of permutations, and of many tests, worked out by hand.
#include "fstat/adjustedp.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace kva;

namespace {

void expectNear(const std::vector<double>& values, const std::vector<double>& expected) {
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t k = 0; k < values.size(); ++k) {
        EXPECT_NEAR(values[k], expected[k], 1e-15) << k;
    }
}

} // namespace

TEST(PermutationP, ObservedDataAreOneOfTheArrangements) {
    EXPECT_DOUBLE_EQ(permutationP({0, 999}), 0.001);
    EXPECT_DOUBLE_EQ(permutationP({49, 999}), 0.05);
    EXPECT_DOUBLE_EQ(permutationP({999, 999}), 1.0);
    EXPECT_DOUBLE_EQ(permutationP({0, 0}), 1.0);
}

TEST(PermutationP, EndedByItsHits) {
    EXPECT_DOUBLE_EQ(permutationP({10, 25, true}), 0.4);
}

TEST(PermutationError, IsThatOfAShare) {
    EXPECT_DOUBLE_EQ(permutationError({49, 999}), std::sqrt(0.05 * 0.95 / 999));
    EXPECT_DOUBLE_EQ(permutationError({999, 999}), 0.0);
    EXPECT_TRUE(std::isnan(permutationError({0, 0})));
}

// Of .04 .01 .03 .5: ordered .01 .03 .04 .5.
//   Holm: 4 x .01 = .04, 3 x .03 = .09, 2 x .04 = .08 but not below .09, 1 x .5
//   Benjamini-Hochberg: from the last .5, 4/3 x .04 = .0533, 4/2 x .03 = .06 but not above .0533,
//   4/1 x .01 = .04
TEST(AdjustedP, WorkedOutByHand) {
    const std::vector<double> p = {0.04, 0.01, 0.03, 0.5};
    expectNear(holm(p), {0.09, 0.04, 0.09, 0.5});
    expectNear(benjaminiHochberg(p), {0.16 / 3, 0.04, 0.16 / 3, 0.5});
}

TEST(AdjustedP, IsAtMostOne) {
    expectNear(holm(std::vector{0.6, 0.9}), {1.0, 1.0});
    expectNear(benjaminiHochberg(std::vector{0.6, 1.0}), {1.0, 1.0});
}

TEST(AdjustedP, OfOneTestIsTheValueItself) {
    expectNear(holm(std::vector{0.3}), {0.3});
    expectNear(benjaminiHochberg(std::vector{0.3}), {0.3});
    EXPECT_TRUE(holm({}).empty());
    EXPECT_TRUE(benjaminiHochberg({}).empty());
}
