#include "stats/NumberAllelesExp.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace kva;

namespace {

struct Expected {
    double smm = 0.0;
    double iam = 0.0;
    int result = 0;
};

Expected expected(int n, double h) {
    Expected e;
    e.result = CalcNumberAllelesExp(e.smm, e.iam, n, h);
    return e;
}

void expectBoth(const Expected& e, double value, int result) {
    EXPECT_EQ(e.smm, value);
    EXPECT_EQ(e.iam, value);
    EXPECT_EQ(e.result, result);
}

} // namespace

TEST(CalcNumberAllelesExp, OneCopyIsRefused) {
    expectBoth(expected(1, 0.5), -1.0, -1);
    expectBoth(expected(0, -1.0), -1.0, -1); // the size is looked at first
}

TEST(CalcNumberAllelesExp, NegativeHeterozygosityIsRefused) {
    expectBoth(expected(2, -1.0), -1.0, -2);
}

TEST(CalcNumberAllelesExp, AllDifferentGivesTheSampleSize) {
    expectBoth(expected(12, 0.99999), 12.0, 0);
    expectBoth(expected(12, 1.0), 12.0, 0);
}

TEST(CalcNumberAllelesExp, NoHeterozygosityGivesOneAllele) {
    expectBoth(expected(12, 0.0), 1.0, 0);
}

// h = 1/2, n = 2: q = 1/2, theta = (4 - 1)/2 = 3/2, b = (3/4 + 1/2 - 1)/(1/2) = 1/2.
// P = (3/2)/2 x (5/2)/3 = 5/8; smm = 2 x 3/8 / (1/2) = 3/2.
// t = 1; S = 1/2; iam = 3/2.
TEST(CalcNumberAllelesExp, TwoCopiesOfHalfHeterozygosity) {
    const Expected e = expected(2, 0.5);
    EXPECT_DOUBLE_EQ(e.smm, 1.5);
    EXPECT_DOUBLE_EQ(e.iam, 1.5);
    EXPECT_EQ(e.result, 0);
}

// h = 3/4, n = 3: q = 1/4, theta = 15/2, b = (15/8 + 1/4 - 1)/(3/4) = 3/2.
// P = 7.5/9 x 8.5/10 x 9.5/11 = 605.625/990; smm = 9 (1 - P)/1.5 = 6 x 384.375/990.
// t = 3; S = 3/4 + 3/5; iam = 2.35.
TEST(CalcNumberAllelesExp, ThreeCopiesOfThreeQuarters) {
    const Expected e = expected(3, 0.75);
    EXPECT_DOUBLE_EQ(e.smm, 6.0 * 384.375 / 990.0);
    EXPECT_DOUBLE_EQ(e.iam, 2.35);
}

// Just below the limit the formulas hold: with all copies different nearly for sure, both come
// close to n.
TEST(CalcNumberAllelesExp, JustBelowTheLimitIsComputed) {
    const Expected e = expected(4, 0.99998);
    EXPECT_LT(e.smm, 4.0);
    EXPECT_LT(e.iam, 4.0);
    EXPECT_NEAR(e.iam, 4.0, 1e-3); // 1 + 3 (1 - O(2e-5))
}

TEST(CalcNumberAllelesExp, NoNumberStaysNoNumber) {
    const Expected e = expected(5, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(e.smm));
    EXPECT_TRUE(std::isnan(e.iam));
}

// --- Theta ----------------------------------------------------------------------------

TEST(CalcThetaSMM, NegativeHeterozygosityHasNone) {
    EXPECT_EQ(CalcThetaSMM(-1.0, 8), -1.0);
}

// (1/(1/4)^2 - 1)/2 = 15/2; the sample size plays no part.
TEST(CalcThetaSMM, PlainFormulaBetweenTheLimits) {
    EXPECT_DOUBLE_EQ(CalcThetaSMM(0.75, 8), 7.5);
    EXPECT_DOUBLE_EQ(CalcThetaSMM(0.75, 3), 7.5);
}

// n = 4: q = 2/(4 x 5) = 1/10, theta = (100 - 1)/2.
TEST(CalcThetaSMM, AllDifferentTakesTheSampleSize) {
    EXPECT_DOUBLE_EQ(CalcThetaSMM(1.0, 4), 49.5);
    EXPECT_DOUBLE_EQ(CalcThetaSMM(0.9999991, 4), 49.5);
}

// h = 0.999999 is not above the limit: q = 1e-6, theta = (1e12 - 1)/2. The subtraction 1 - h
// has an error of 1e-16, a ten-thousand-millionth of q.
TEST(CalcThetaSMM, TheUpperLimitItselfIsPlain) {
    EXPECT_NEAR(CalcThetaSMM(0.999999, 4), 4.999999999995e11, 4.0 * 5e11 * 1e-10);
}

// n = 4: h' = 2/5, q = 3/5, theta = (25/9 - 1)/2 = 8/9.
TEST(CalcThetaSMM, MonomorphicTakesTheSampleSize) {
    EXPECT_NEAR(CalcThetaSMM(0.0, 4), 8.0 / 9.0, 1e-14); // six roundings
}

// n = 1: h' = 2/2, so q = 0.
TEST(CalcThetaSMM, MonomorphicSingleCopyIsInfinite) {
    EXPECT_EQ(CalcThetaSMM(0.0, 1), std::numeric_limits<double>::infinity());
}

TEST(CalcThetaSMM, NoNumberStaysNoNumber) {
    EXPECT_TRUE(std::isnan(CalcThetaSMM(std::numeric_limits<double>::quiet_NaN(), 4)));
}
