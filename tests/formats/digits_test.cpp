#include "formats/digits.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <limits>

using namespace kva;

namespace {

std::string padded(int number, int width) {
    std::string line = "x";
    appendPadded(line, number, width);
    return line;
}

} // namespace

TEST(Digits, NumbersOfAllSizesFit) {
    std::string line;
    appendNumber(line, std::numeric_limits<int>::min());
    line += ' ';
    appendNumber(line, std::numeric_limits<int>::max());
    EXPECT_EQ(line, "-2147483648 2147483647");
}

TEST(Digits, ZerosStandInFrontUpToTheWidth) {
    EXPECT_EQ(padded(0, 3), "x000");
    EXPECT_EQ(padded(7, 4), "x0007");
    EXPECT_EQ(padded(99, 2), "x99");
    EXPECT_EQ(padded(5, 1), "x5");
}

TEST(Digits, LongNumberIsNotCut) {
    EXPECT_EQ(padded(100, 2), "x100");
    EXPECT_EQ(padded(std::numeric_limits<int>::max(), 9), "x2147483647");
}

TEST(Digits, SameBytesAsPrintf) {
    for (int width = 1; width <= 9; ++width) {
        for (const int number : {0, 1, 9, 10, 99, 100, 999, 1000, 99999, 123456789, 1000000000}) {
            char expected[32];
            (void)std::snprintf(expected, sizeof expected, "x%.*d", width, number);
            EXPECT_EQ(padded(number, width), expected);
        }
    }
}
