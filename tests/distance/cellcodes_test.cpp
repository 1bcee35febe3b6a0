#include "distance/cellcodes.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <string>

using namespace kva;

namespace {

std::string printed(double value) {
    char buffer[CellCodes::kRoom + 1];
    return {buffer,
            static_cast<std::size_t>(std::snprintf(buffer, sizeof buffer, " %8.5f", value))};
}

std::string written(const CellCodes& codes, uint32_t code) {
    static char buffer[CellCodes::kRoom];
    return {buffer, codes.write(buffer, code)};
}

void expectAsPrintf(double value) {
    CellCodes codes;
    for (const double number : {value, -value}) {
        ASSERT_EQ(written(codes, codes.encode(number)), printed(number));
    }
}

} // namespace

TEST(CellCodes, UnitsOfTheFifthDecimal) {
    CellCodes codes;
    EXPECT_EQ(codes.encode(0.25), 25000U);
    EXPECT_EQ(codes.encode(10.0), 1000000U);
    EXPECT_EQ(written(codes, 25000), "  0.25000");
    EXPECT_EQ(written(codes, 999999), "  9.99999");
    EXPECT_EQ(written(codes, 1000000), " 10.00000");
    EXPECT_EQ(written(codes, 1234567), " 12.34567");
    EXPECT_EQ(codes.encode(100.0), 10000000U);
    EXPECT_EQ(codes.encode(1000.0), 100000000U);
    EXPECT_EQ(written(codes, 99999999), " 999.99999");
    EXPECT_EQ(written(codes, 123456789), " 1234.56789");
}

TEST(CellCodes, AMinusSignShows) {
    CellCodes codes;
    EXPECT_EQ(written(codes, codes.encode(-0.5)), " -0.50000");
    EXPECT_EQ(written(codes, codes.encode(-0.0)), " -0.00000");
    EXPECT_EQ(written(codes, codes.encode(-1e-300)), " -0.00000");
}

TEST(CellCodes, EdgesAsPrintf) {
    for (const double value :
         {0.0,         9.4999999, 9.5,         9.999994,    9.999995,     9.999996,
          10.0,        99.4,      99.5,        99.999994,   99.999995,    100.0,
          999.4,       999.5,     999.999994,  999.999995,  1000.0,       9999.4,
          9999.499999, 9999.5,    9999.999994, 9999.999995, 10000.0,      0.015625,
          0.046875,    32767.0,   DBL_MAX,     HUGE_VAL,    std::nan(""), DBL_TRUE_MIN}) {
        expectAsPrintf(value);
        expectAsPrintf(std::nextafter(value, 0.0));
        expectAsPrintf(std::nextafter(value, HUGE_VAL));
    }
}

TEST(CellCodes, RandomValuesAsPrintf) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 20000; ++i) {
        expectAsPrintf(std::bit_cast<double>(random()));
        expectAsPrintf(std::ldexp(static_cast<double>(random() >> 11U), -46 - int(random() % 20)));
        expectAsPrintf(static_cast<double>(random() % 6400) / 64.0); // true halves among them
        expectAsPrintf(static_cast<double>(random() % 640000) / 64.0);
    }
}

// Values that do not fit are kept; one that comes again at once is kept once.
TEST(CellCodes, KeptValuesStandBesideEachOther) {
    CellCodes codes;
    const uint32_t lost = codes.encode(-32767.0);
    EXPECT_EQ(codes.encode(-32767.0), lost);
    const uint32_t wide = codes.encode(123456.0);
    EXPECT_NE(wide, lost);
    EXPECT_EQ(written(codes, lost), " -32767.00000");
    EXPECT_EQ(written(codes, wide), " 123456.00000");
    codes.clear();
    EXPECT_EQ(codes.encode(20000.0), lost); // the first place again
    EXPECT_EQ(written(codes, lost), " 20000.00000");
}
