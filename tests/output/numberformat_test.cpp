#include "output/numberformat.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace kva;

namespace {

constexpr int kPrecisions = 10; // 0 to 9

std::string formatted(double value, int precision, int width = 0) {
    static std::vector<char> buffer(kFixedBufferSize); // on the heap: a byte too far is caught
    return {buffer.data(), formatFixed(buffer.data(), value, precision, width)};
}

std::string printed(double value, int precision, int width = 0) {
    char buffer[kFixedBufferSize + 1];
    const int length = std::snprintf(buffer, sizeof buffer, "%*.*f", width, precision, value);
    return {buffer, static_cast<std::size_t>(length)};
}

// The same bytes as printf's, for the value and its negation.
void expectAsPrintf(double value, int precision, int width = 0) {
    ASSERT_EQ(formatted(value, precision, width), printed(value, precision, width));
    ASSERT_EQ(formatted(-value, precision, width), printed(-value, precision, width));
}

void expectAsPrintfAtAllPrecisions(double value) {
    for (int precision = 0; precision < kPrecisions; ++precision) {
        expectAsPrintf(value, precision);
        expectAsPrintf(value, precision, 8);
    }
}

void expectNeighboursAsPrintf(double value, int precision) {
    expectAsPrintf(value, precision);
    expectAsPrintf(std::nextafter(value, 0.0), precision);
    expectAsPrintf(std::nextafter(value, HUGE_VAL), precision);
}

} // namespace

TEST(FormatFixed, PlainNumbers) {
    EXPECT_EQ(formatted(0.75, 6), "0.750000");
    EXPECT_EQ(formatted(-12.5, 1), "-12.5");
    EXPECT_EQ(formatted(1234.0, 0), "1234");
}

TEST(FormatFixed, WidthPadsOnTheLeft) {
    EXPECT_EQ(formatted(0.25, 5, 8), " 0.25000");
    EXPECT_EQ(formatted(-32767.0, 5, 8), "-32767.00000"); // grows where the field is too small
    EXPECT_EQ(formatted(1.0, 1, 32), std::string(29, ' ') + "1.0");
    EXPECT_EQ(formatted(1.0, 1, -5), "1.0"); // no field
}

TEST(FormatFixed, HalvesGoToTheEvenDigit) {
    EXPECT_EQ(formatted(0.5, 0), "0");
    EXPECT_EQ(formatted(1.5, 0), "2");
    EXPECT_EQ(formatted(2.5, 0), "2");
    EXPECT_EQ(formatted(0.125, 2), "0.12");
    EXPECT_EQ(formatted(0.375, 2), "0.38");
    EXPECT_EQ(formatted(0.0000015, 6), "0.000002"); // 1.50000000000000003...e-6, above the half
    EXPECT_EQ(formatted(0.0000035, 6), "0.000003"); // 3.49999999999999994...e-6, below it
}

TEST(FormatFixed, TheSignOfAZeroShows) {
    EXPECT_EQ(formatted(-0.0, 6), "-0.000000");
    EXPECT_EQ(formatted(-0.0, 0), "-0");
    EXPECT_EQ(formatted(-1e-20, 6), "-0.000000");
}

TEST(FormatFixed, ACarryRunsThroughAllDigits) {
    EXPECT_EQ(formatted(9.9999999, 6), "10.000000");
    EXPECT_EQ(formatted(0.9999996, 6), "1.000000");
    EXPECT_EQ(formatted(999999999.9999999, 6), "1000000000.000000");
}

TEST(FormatFixed, WhatIsNotFiniteIsAWord) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(formatted(infinity, 6), "inf");
    EXPECT_EQ(formatted(-infinity, 6), "-inf");
    EXPECT_EQ(formatted(std::copysign(nan, 1.0), 6), "nan");
    EXPECT_EQ(formatted(std::copysign(nan, -1.0), 6), "-nan");
    EXPECT_EQ(formatted(infinity, 5, 8), "     inf");
    expectAsPrintfAtAllPrecisions(infinity);
    expectAsPrintfAtAllPrecisions(nan);
}

TEST(FormatFixed, EdgesOfTheRangeAsPrintf) {
    for (const double value : {0.0, DBL_TRUE_MIN, DBL_MIN, DBL_EPSILON, 1e300, DBL_MAX, 0x1p62,
                               0x1p63, 0x1p64, 1e-9, 5e-10, 1e15, 1e16, 1e22, 1e23}) {
        expectAsPrintfAtAllPrecisions(value);
    }
}

// The direct way ends where value x 10^precision is 2^52.
TEST(FormatFixed, AroundTheLimitOfTheDirectWayAsPrintf) {
    for (int precision = 1; precision < kPrecisions; ++precision) {
        double below = 0x1p52 / std::pow(10.0, precision);
        double above = below;
        for (int step = 0; step < 200; ++step) {
            expectAsPrintf(below, precision);
            expectAsPrintf(above, precision);
            below = std::nextafter(below, 0.0);
            above = std::nextafter(above, HUGE_VAL);
        }
    }
}

// Halves of any size: most are no doubles, so that their neighbours on both sides lie close.
TEST(FormatFixed, RandomHalvesAsPrintf) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 40000; ++i) {
        const auto precision = static_cast<int>(random() % kPrecisions);
        const auto whole = static_cast<double>(random() >> (13 + random() % 50));
        expectNeighboursAsPrintf((whole + 0.5) / std::pow(10.0, precision), precision);
    }
}

// An odd multiple of 2^-(p + 1) has p + 1 decimals, the last a 5: a true half at precision p.
TEST(FormatFixed, TrueHalvesAndTheirNeighboursAsPrintf) {
    for (int precision = 0; precision < kPrecisions; ++precision) {
        const double step = std::ldexp(1.0, -(precision + 1));
        for (int odd = 1; odd < 4000; odd += 2) {
            expectNeighboursAsPrintf(odd * step, precision);
            expectNeighboursAsPrintf((odd + 0x1p28) * step, precision);
        }
    }
}

// Decimals that end in a 5 behind the last place shown: mostly no true halves.
TEST(FormatFixed, DecimalHalvesAsPrintf) {
    double scale = 1.0;
    for (int precision = 0; precision < kPrecisions; ++precision) {
        for (int last = 0; last < 1500; ++last) {
            expectNeighboursAsPrintf((last + 0.5) / scale, precision);
        }
        scale *= 10.0;
    }
}

TEST(FormatFixed, AllFrequenciesOfSmallSamplesAsPrintf) {
    for (int copies = 1; copies <= 300; ++copies) {
        for (int count = 0; count <= copies; ++count) {
            const double frequency = double(count) / copies;
            expectAsPrintf(frequency, 6);
            expectAsPrintf(-std::log(frequency), 5, 8);
        }
    }
}

TEST(FormatFixed, RandomBitPatternsAsPrintf) {
    std::mt19937_64 random(20240117);
    for (int i = 0; i < 60000; ++i) {
        const auto value = std::bit_cast<double>(random());
        const auto precision = static_cast<int>(random() % kPrecisions);
        const auto width = static_cast<int>(random() % 33);
        expectAsPrintf(value, precision, width);
    }
}

// Values as results are: any number of digits on both sides of the point.
TEST(FormatFixed, RandomValuesOfAllSizesAsPrintf) {
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> exponent(-40.0, 70.0);
    std::uniform_real_distribution<double> mantissa(1.0, 2.0);
    for (int i = 0; i < 60000; ++i) {
        const double value = mantissa(random) * std::exp2(exponent(random));
        expectAsPrintf(value, static_cast<int>(random() % kPrecisions), 8);
        expectAsPrintf(value, 6);
        expectAsPrintf(value, 5, 8);
    }
}

// --- The short way ---------------------------------------------------------------------

namespace {

template <int Decimals> std::string shortly(double value) {
    static std::vector<char> buffer(kFixedBufferSize);
    return {buffer.data(), formatDecimals<Decimals>(buffer.data(), value)};
}

void expectShortAsPrintf(double value) {
    for (const double number : {value, -value}) {
        ASSERT_EQ(shortly<1>(number), printed(number, 1));
        ASSERT_EQ(shortly<2>(number), printed(number, 2));
        ASSERT_EQ(shortly<3>(number), printed(number, 3));
        ASSERT_EQ(shortly<5>(number), printed(number, 5));
        ASSERT_EQ(shortly<6>(number), printed(number, 6));
        ASSERT_EQ(shortly<8>(number), printed(number, 8));
    }
}

} // namespace

TEST(FormatDecimals, AsPrintf) {
    for (const double value : {0.0, DBL_TRUE_MIN, 0.5, 1.0, 0.015625, 9.5, 9.95, 9.999995, 10.0,
                               100.5, DBL_MAX, HUGE_VAL, std::nan("")}) {
        expectShortAsPrintf(value);
        expectShortAsPrintf(std::nextafter(value, 0.0));
        expectShortAsPrintf(std::nextafter(value, HUGE_VAL));
    }
}

TEST(FormatDecimals, FrequenciesAsPrintf) {
    for (int copies = 1; copies <= 130; ++copies) {
        for (int count = 0; count <= 2 * copies; ++count) {
            expectShortAsPrintf(double(count) / copies);
        }
    }
}

TEST(IsPositiveBelow, BoundAndSignsAreOutside) {
    EXPECT_TRUE(isPositiveBelow(0.0, 2.0));
    EXPECT_TRUE(isPositiveBelow(1.0, 2.0));
    EXPECT_FALSE(isPositiveBelow(2.0, 2.0));
    EXPECT_FALSE(isPositiveBelow(-0.0, 2.0));
    EXPECT_FALSE(isPositiveBelow(-1.0, 2.0));
    EXPECT_FALSE(isPositiveBelow(HUGE_VAL, 2.0));
    EXPECT_FALSE(isPositiveBelow(std::nan(""), 2.0));
}
