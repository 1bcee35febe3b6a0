#include "formats/StepWidth.h"

#include "data/lociclass.h"

#include <gtest/gtest.h>
#include <initializer_list>

using namespace kva;

namespace {

int32_t widthOf(std::initializer_list<int> alleles, int32_t repeat) {
    AllelCount pool;
    for (const int allele : alleles) {
        pool.AddAllel(allele, 0);
    }
    pool.SortAllele();
    return stepWidth(pool, repeat);
}

} // namespace

TEST(StepWidth, GapThatFitsNeitherRepeatNorStepFallsToADivisorOfItself) {
    // Gaps 2, 3. 3 is divisible by neither 2 nor 2: u = 1, so the gap gives 1.
    EXPECT_EQ(widthOf({100, 102, 105}, 2), 1);
    // Gaps 4, 6. 6 is divisible by neither 4 nor 4: u = 3 divides 6.
    EXPECT_EQ(widthOf({100, 104, 110}, 4), 3);
    // Gaps 5, 8, repeat 3. 5: first gap, 5. 8 is divisible by neither 3 nor 5: u from 2, divides.
    EXPECT_EQ(widthOf({100, 105, 113}, 3), 2);
}

TEST(StepWidth, EqualGapsWithoutRepeatLengthAreTheStep) {
    EXPECT_EQ(widthOf({100, 104, 108}, 0), 4);
    EXPECT_EQ(widthOf({100, 104, 108}, -1), 4);
}

TEST(StepWidth, SmallerGapReplacesTheStepAsItIs) {
    // Gaps 6, 3. 3 is not divisible by 6, but 6 < 3 fails: 3 stays.
    EXPECT_EQ(widthOf({100, 106, 109}, 0), 3);
    // Gaps 5, 3: the step 3 does not divide the gap 5 in front of it. Greedy, not a divisor of all.
    EXPECT_EQ(widthOf({100, 105, 108}, 0), 3);
}

TEST(StepWidth, LargerGapFallsToItsLargestSmallerDivisor) {
    // Gaps 4, 6: u = 3 divides 6. The greatest common divisor would be 2.
    EXPECT_EQ(widthOf({100, 104, 110}, 0), 3);
    // Gaps 4, 7: 3 and 2 do not divide 7, 1 does.
    EXPECT_EQ(widthOf({100, 104, 111}, 0), 1);
    // Gaps 2, 3: u = 1 is below 2.
    EXPECT_EQ(widthOf({100, 102, 105}, 0), 1);
}

TEST(StepWidth, GapDivisibleByTheStepLeavesIt) {
    EXPECT_EQ(widthOf({100, 103, 112}, 0), 3);
    EXPECT_EQ(widthOf({100, 104, 112}, 5), 4);
}

TEST(StepWidth, GapDivisibleByTheRepeatIsTakenWhole) {
    // Gaps 4, 6, repeat 6: 6 is divisible by the repeat, so it gives 6; the step stays 4.
    EXPECT_EQ(widthOf({100, 104, 110}, 6), 4);
    // Gaps 12, 8, repeat 4: 8 fits the repeat, so it is not divided down to 2.
    EXPECT_EQ(widthOf({100, 112, 120}, 4), 4);
    // Gaps 6, 4, repeat 3: 4 fits neither 3 nor 6, and u = 2 divides it.
    EXPECT_EQ(widthOf({100, 106, 110}, 3), 2);
}

TEST(StepWidth, NeverAboveTheRepeat) {
    EXPECT_EQ(widthOf({100, 106}, 2), 2);
    EXPECT_EQ(widthOf({100, 103}, 2), 2); // the first gap is never looked at for the repeat
}

TEST(StepWidth, StartsAtTenThousand) {
    EXPECT_EQ(widthOf({0, 20000}, 0), 10000);
    // The gap 20001 meets the start, not a step: it is not divided.
    EXPECT_EQ(widthOf({0, 20000, 40001}, 0), 10000);
    EXPECT_EQ(widthOf({0, 20000, 20003}, 0), 3);
    EXPECT_EQ(widthOf({0, 2147483647}, 0), 10000);
}

TEST(StepWidth, FewerThanTwoAllelesGiveOne) {
    EXPECT_EQ(widthOf({}, 4), 1);
    EXPECT_EQ(widthOf({}, 0), 1);
    EXPECT_EQ(widthOf({120}, 4), 1);
    EXPECT_EQ(widthOf({120, 120}, 0), 1);
}

TEST(StepWidth, OneWidthForEachLocusWithItsRepeat) {
    Datensatz data;
    data.init(2);
    data.SetLociRepeatMuster(1, 2);
    data.SetLociRepeatMuster(2, 0);
    LocusTables pool(2);
    for (AllelCount& table : pool) {
        table.AddAllel(100, 0);
        table.AddAllel(104, 0);
    }
    EXPECT_EQ(stepWidths(data, pool), (std::vector<int32_t>{2, 4}));
}

TEST(StepDivisor, RepeatLengthOnlyWhereAskedForAndKnown) {
    EXPECT_EQ(stepDivisor(false, 4, 2), 2);
    EXPECT_EQ(stepDivisor(true, 4, 2), 4);
    EXPECT_EQ(stepDivisor(true, 0, 2), 2);
    EXPECT_EQ(stepDivisor(true, -1, 2), 2);
}
