// Cells as values.
#include "results/cellvalue.h"

#include <gtest/gtest.h>
#include <string>

using namespace kva;

namespace {

// The value of a cell that has one.
std::string valueOf(std::string_view cell) {
    const auto value = cellValue(cell);
    EXPECT_TRUE(value.has_value()) << cell;
    return std::string(value.value_or("refused"));
}

} // namespace

TEST(CellValue, NumbersStayAsTheyAre) {
    for (const char* const cell : {"0", "12", "-3", "0.500000", "-0.013130", "-0.000000"}) {
        EXPECT_EQ(valueOf(cell), cell);
    }
}

TEST(CellValue, BlanksInFrontGo) {
    EXPECT_EQ(valueOf(" 0.39507"), "0.39507");
    EXPECT_EQ(valueOf("     nan"), "NaN");
}

TEST(CellValue, WhatCannotBeComputedIsEmpty) {
    for (const char* const cell : {"n.d.", "n.s.", "-32767", "-32767.00000", "-32767.000000"}) {
        EXPECT_EQ(valueOf(cell), "") << cell;
    }
}

TEST(CellValue, NeighboursOfTheSentinelAreNumbers) {
    for (const char* const cell : {"-32767.50000", "-327670", "32767.00000", "-32767.00001"}) {
        EXPECT_EQ(valueOf(cell), cell);
    }
}

TEST(CellValue, WhatIsNotFiniteReadsAsInR) {
    EXPECT_EQ(valueOf("nan"), "NaN");
    EXPECT_EQ(valueOf("-nan"), "NaN");
    EXPECT_EQ(valueOf("inf"), "Inf");
    EXPECT_EQ(valueOf("-inf"), "-Inf");
}

TEST(CellValue, AnythingElseIsRefused) {
    for (const char* const cell :
         {"", " ", "x", "1.", ".5", "1.2.3", "1e5", "--1", "+1", "-", "0x1F", "n.d", "1 2", "1 "}) {
        EXPECT_FALSE(cellValue(cell).has_value()) << "'" << cell << "'";
    }
}

TEST(CellValue, WholeNumbersHaveDigitsAlone) {
    EXPECT_TRUE(isWholeNumber("007"));
    EXPECT_FALSE(isWholeNumber(""));
    EXPECT_FALSE(isWholeNumber("-1"));
    EXPECT_FALSE(isWholeNumber("1.0"));
}

TEST(CellValue, NegativeZeroIsNotNegative) {
    EXPECT_TRUE(isNegative("-1.000000"));
    EXPECT_TRUE(isNegative("-0.062500"));
    EXPECT_FALSE(isNegative("-0.000000"));
    EXPECT_FALSE(isNegative("1.000000"));
    EXPECT_FALSE(isNegative(""));
}

TEST(CellValue, UnreachedLimitsHaveNoOtherDigits) {
    EXPECT_TRUE(isUnreachedLimit("100000.000000"));
    EXPECT_TRUE(isUnreachedLimit("-100000.000000"));
    EXPECT_FALSE(isUnreachedLimit("100000.500000"));
    EXPECT_FALSE(isUnreachedLimit("1000000.000000"));
    EXPECT_TRUE(isUnreachedReference("500000.000000"));
    EXPECT_FALSE(isUnreachedReference("50.000000"));
}
