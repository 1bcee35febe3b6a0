#include "data/diversity.h"

#include <gtest/gtest.h>

using namespace kva;

// Two alleles of 1/2 each: S = 1/2.
TEST(Diversity, ExpectedHeterozygosityIsCorrectedAndCapped) {
    EXPECT_EQ(uncorrectedHet(0.5), 0.5);
    EXPECT_EQ(expectedHet(6.0, 0.5), 0.75); // 6/4 x 1/2
    EXPECT_EQ(expectedHet(4.0, 0.25), 1.0); // 4/2 x 3/4 = 1.5
    EXPECT_EQ(sizeFactor(10.0), 1.25);
}

TEST(Diversity, ObservedHeterozygosityCountsIndividuals) {
    EXPECT_EQ(observedHet(8, 8, 1), 0.25); // one of four
    EXPECT_EQ(observedHet(2, 2, 1), 1.0);
    EXPECT_EQ(observedHet(1, 2, 0), kTooSmall);
    EXPECT_EQ(observedHet(2, 1, 0), kTooSmall);
}

TEST(Diversity, InbreedingIsTheLackOfHeterozygotes) {
    EXPECT_EQ(inbreeding(0.25, 0.5), 0.5);
    EXPECT_EQ(inbreeding(0.75, 0.5), -0.5);
}

// Hs = 1/2 in two populations allows Ht = (2 - 1 + 1/2)/2 = 3/4; with Ht = 5/8:
// Gst = 1 - 4/5 = 1/5, its largest value 1 - 2/3 = 1/3, and Gst' = 3/5.
TEST(Diversity, GstAndItsLargestValue) {
    EXPECT_EQ(largestHt(2.0, 0.5), 0.75);
    EXPECT_DOUBLE_EQ(gst(0.5 / 0.625), 0.2);
    EXPECT_DOUBLE_EQ(gstStrich(0.5 / 0.625, 0.5 / 0.75), 0.6);
}
