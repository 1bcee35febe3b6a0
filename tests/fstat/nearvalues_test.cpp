// Sums of squares and the comparison of near values, by hand.
#include "fstat/nearvalues.h"

#include <gtest/gtest.h>
#include <limits>

using namespace kva;

namespace {

// a = 1, b = 2, c = 5 of one locus: Fst = 1/8, Fit = 1 - 5/8 = 3/8, Fis = 1 - 5/7 = 2/7.
NearSums oneLocus() {
    NearSums sums;
    sums.add({1.0, 2.0, 5.0});
    return sums;
}

constexpr FValues kFOfOneLocus = {0.125, 0.375, 2.0 / 7.0};

} // namespace

TEST(NearValues, FourAllelesAreMultipliedAndSummed) {
    PairSquares sum;
    sum.add(FourCounts{1, 0, 3, 4}, FourCounts{5, 6, 3, 4});
    sum.add(FourCounts{2, 0, 0, 4000}, FourCounts{2, 0, 0, 4000});
    // c1^2: 1 + 9 + 16 + 4 + 16e6; c1 c: 5 + 9 + 16 + 4 + 16e6; c^2: 25 + 36 + 9 + 16 + 4 + 16e6
    EXPECT_EQ(sum.drawnAndMixed()[0], 16000030.0);
    EXPECT_EQ(sum.drawnAndMixed()[1], 16000034.0);
    EXPECT_EQ(sum.all(), 16000090.0);
}

TEST(NearValues, AMaskKeepsTheFirstCounts) {
    const FourCounts four = {1, 2, 3, 4};
    for (std::size_t n = 0; n <= 4; ++n) {
        const FourCounts kept = four & firstCounts(n);
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_EQ(kept[k], k < n ? four[k] : 0);
        }
    }
}

TEST(NearValues, ATieCountsAndWhatIsNotANumberDoesNot) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(reachedBy({0.5, 0.5, 0.5}, {0.5, 0.4, 0.6}), (Reached{true, true, false}));
    EXPECT_EQ(reachedBy({nan, 0.5, nan}, {0.5, nan, nan}), (Reached{false, false, false}));
}

TEST(NearValues, FarValuesAreTold) {
    EXPECT_EQ(oneLocus().reached({0.126, 0.374, 0.28}), (Reached{false, true, true}));
    EXPECT_EQ(oneLocus().reached({-32767.0, 9.0, 9.0}), (Reached{true, false, false}));
}

TEST(NearValues, OneValueWithinTheMarginIsNotTold) {
    for (std::size_t s = 0; s < kFOfOneLocus.size(); ++s) {
        for (const double off : {-1e-8, 0.0, 1e-8}) {
            FValues observed = {9.0, 9.0, 9.0};
            observed[s] = kFOfOneLocus[s] + off;
            EXPECT_FALSE(oneLocus().reached(observed));
        }
    }
}

TEST(NearValues, NothingIsToldOfWhatIsNotANumber) {
    EXPECT_FALSE(oneLocus().reached({std::numeric_limits<double>::quiet_NaN(), 9.0, 9.0}));
}

TEST(NearValues, SmallDivisorsDoNotTell) {
    const FValues observed = {9.0, 9.0, 9.0};
    EXPECT_FALSE(NearSums().reached(observed));
    NearSums smallT;
    smallT.add({-6.995, 2.0, 5.0}); // T = 0.005
    EXPECT_FALSE(smallT.reached(observed));
    NearSums smallWithin;
    smallWithin.add({1.0, -0.495, 0.5}); // B + C = 0.005
    EXPECT_FALSE(smallWithin.reached(observed));
    NearSums twoLoci;
    twoLoci.add({1.0, 0.0, 0.015}); // B + C = 0.015, less than 0.01 for each of two loci
    twoLoci.add({1.0, 0.0, 0.0});
    EXPECT_FALSE(twoLoci.reached(observed));
}

// --- All populations -------------------------------------------------------------------

namespace {

// Two samples of two individuals with 3 and 1 copies of an allele and 1 and 3 of another, one of
// two individuals heterozygous in each: Hs = 1 - (9 + 1)/16 = 0.375, squares 2 (9 + 1)/4.
//     sum of n (p - pbar)^2 = 4 x 2/16 = 0.5; s2 = 0.5/2 = 0.25; x = 0.5 - 0.25/2 = 0.375; nc = 2
//     a = 2 (0.25 - 0.375)/2 + 2 x 0.5/(4) = 0.125; b = 2 x 0.375 - 0.5 (4/2 + 1)/2 = 0; c = 0.5
//     Fst = 0.125/0.625; Gst = 1 - 0.375/0.5; largest Ht = (1 + 0.375)/2 = 0.6875
//     Gst' = 0.25/(1 - 0.375/0.6875) = 0.55
constexpr NearLocus kTwoSamples = {2.0, 4.0, 8.0, 0.75, 2.0, 5.0};
constexpr double kHtOfTwoSamples = 0.5;

} // namespace

TEST(NearGlobalSums, TwoSamplesByHand) {
    NearGlobalSums sums;
    const std::optional<TestedValues> locus = sums.add(kTwoSamples, kHtOfTwoSamples);
    (void)sums.add(kTwoSamples, kHtOfTwoSamples);
    const std::optional<TestedValues> all = sums.values(); // of two like loci: the same
    ASSERT_TRUE(locus && all);
    for (const TestedValues& values : {*locus, *all}) {
        EXPECT_DOUBLE_EQ(values[0], 0.2);
        EXPECT_DOUBLE_EQ(values[1], 0.25);
        EXPECT_DOUBLE_EQ(values[2], 0.55);
    }
}

TEST(NearGlobalSums, SmallDivisorsGiveNothing) {
    NearLocus single = kTwoSamples;
    single.s = 1.0;
    NearLocus oneEach = kTwoSamples;
    oneEach.sumN = 2.0;
    for (const NearLocus& locus : {single, oneEach}) {
        NearGlobalSums sums;
        EXPECT_TRUE(sums.add(kTwoSamples, kHtOfTwoSamples));
        EXPECT_FALSE(sums.add(locus, kHtOfTwoSamples));
        EXPECT_FALSE(sums.values()) << "a locus is left out";
    }
    NearGlobalSums flat;
    EXPECT_FALSE(flat.add(kTwoSamples, 0.005));
    NearGlobalSums apart; // Hs above the largest Ht that it allows: 1 - 0.995 is small
    NearLocus diverse = kTwoSamples;
    diverse.sumHs = 1.99;
    EXPECT_FALSE(apart.add(diverse, kHtOfTwoSamples));
}

TEST(NearGlobalSums, WithoutLociThereIsNothing) {
    EXPECT_FALSE(NearGlobalSums().values());
}

TEST(NearGlobalSums, SquaresAreThoseOfTheCountsGivenAlone) {
    const std::array<int32_t, 9> counts = {9, 1, 2, 3, 4, 5, 9, 9, 9}; // 1 + 4 + 9 + 16 + 25
    EXPECT_EQ(sumOfSquares(counts.data(), 1, 1), 0);
    EXPECT_EQ(sumOfSquares(counts.data(), 1, 3), 5);
    EXPECT_EQ(sumOfSquares(counts.data(), 1, 5), 30);
    EXPECT_EQ(sumOfSquares(counts.data(), 1, 6), 55);
}
