#include "stats/CFactorial.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using namespace kva;

TEST(CFactorialCalc, SmallFactorialsAreExact) {
    CFactorial table;
    const double expected[] = {1, 1, 2, 6, 24, 120, 720, 5040, 40320};
    for (int n = 0; n < 9; ++n) {
        EXPECT_EQ(table.calc(n), expected[n]) << n;
    }
}

// 125! is the product 1 x 2 x ... x 125, multiplied upwards.
TEST(CFactorialCalc, LargestIsFactorial125) {
    CFactorial table;
    double product = 1.0;
    for (int i = 2; i <= 125; ++i) {
        product = i * product;
    }
    EXPECT_EQ(table.calc(125), product);
    EXPECT_NEAR(std::log10(table.calc(125)), 209.2748, 1e-4); // 1.8827e209
}

TEST(CFactorialCalc, From126OnThereIsNone) {
    CFactorial table;
    EXPECT_EQ(table.calc(126), -2.0);
    EXPECT_EQ(table.calc(1000000), -2.0);
    EXPECT_TRUE(table.Tabelle.empty());
}

TEST(CFactorialCalc, NegativeNumberHasNone) {
    CFactorial table;
    EXPECT_EQ(table.calc(-1), -1.0);
}

TEST(CFactorialCalc, TableGrowsToTheNumberAndStays) {
    CFactorial table;
    table.calc(5);
    EXPECT_EQ(table.Tabelle, (std::vector<double>{1, 1, 2, 6, 24, 120}));
    table.calc(3);
    EXPECT_EQ(table.Tabelle.size(), 6U);
    table.calc(7);
    EXPECT_EQ(table.Tabelle.back(), 5040.0);
    EXPECT_EQ(table.Tabelle.size(), 8U);
}

TEST(CFactorialCalc, ZeroMakesTwoCells) {
    CFactorial table;
    EXPECT_EQ(table.calc(0), 1.0);
    EXPECT_EQ(table.Tabelle, (std::vector<double>{1, 1}));
}

TEST(CFactorialTable, ValueOfOneCutsTheTableToTwoCells) {
    CFactorial table;
    table.calc(9);
    table.calcValue(1);
    EXPECT_EQ(table.Tabelle, (std::vector<double>{1, 1}));
}

TEST(CFactorialTable, SetupFillsOnlyTheFirstTwoCells) {
    CFactorial table;
    table.setupTable(3);
    EXPECT_EQ(table.Tabelle, (std::vector<double>{1, 1, 0, 0}));
}

TEST(CFactorialTable, SetupOfOneCellStaysInside) {
    CFactorial table;
    table.setupTable(0);
    EXPECT_EQ(table.Tabelle, (std::vector<double>{1}));
}

TEST(CFactorialRange, MultipliesFromTheFirstToTheLast) {
    EXPECT_EQ(CFactorial::Range(3, 5), 60.0L);
    EXPECT_EQ(CFactorial::Range(1, 10), 3628800.0L);
}

TEST(CFactorialRange, EmptyRangeIsItsFirstNumber) {
    EXPECT_EQ(CFactorial::Range(5, 3), 5.0L);
    EXPECT_EQ(CFactorial::Range(5, 5), 5.0L);
}

TEST(CFactorialRange, ZeroMakesZero) {
    EXPECT_EQ(CFactorial::Range(0, 7), 0.0L);
}

// 25! = 15511210043330985984000000 is 2^22 times a number of 62 bits: it fits the 64 bits of the
// extended format, not the 53 of a double.
TEST(CFactorialRange, IsExtended) {
    const long double expected = 15511210043330985984.0L * 1000000.0L;
    EXPECT_EQ(CFactorial::Range(1, 25), expected);
    EXPECT_NE(static_cast<long double>(static_cast<double>(expected)), expected);
}

// 200! is about 7.9e374, beyond a double; 2000! about 3e5735, beyond the extended format.
TEST(CFactorialRange, HoldsWhatADoubleCannot) {
    EXPECT_TRUE(std::isfinite(CFactorial::Range(1, 200)));
    EXPECT_TRUE(std::isinf(static_cast<double>(CFactorial::Range(1, 200))));
    EXPECT_TRUE(std::isinf(CFactorial::Range(1, 2000)));
}
