#include "fstat/wc84.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace kva;

namespace {

constexpr double kUndefined = -32767.0;
constexpr double kRounding = 1e-12; // of a handful of operations on values around 1

// Three terms of Weir and Cockerham (1984), equations 2 to 4, for two samples, written down
// straight; a, b, c summed over the alleles.
VarianceComponents textbook(double n1, double n2, double h, const std::vector<double>& p1,
                            const std::vector<double>& p2) {
    const double r = 2.0;
    const double nbar = (n1 + n2) / r;
    const double nc = (r * nbar - (n1 * n1 + n2 * n2) / (r * nbar)) / (r - 1.0);
    VarianceComponents v{0.0, 0.0, 0.0};
    for (std::size_t u = 0; u < p1.size(); ++u) {
        const double pbar = (n1 * p1[u] + n2 * p2[u]) / (r * nbar);
        const double s2 =
            (n1 * (p1[u] - pbar) * (p1[u] - pbar) + n2 * (p2[u] - pbar) * (p2[u] - pbar)) /
            ((r - 1.0) * nbar);
        const double hbar = 2.0 * h / static_cast<double>(p1.size()); // each allele its share
        const double spread = pbar * (1.0 - pbar) - (r - 1.0) / r * s2;
        v.a += nbar / nc * (s2 - (spread - hbar / 4.0) / (nbar - 1.0));
        v.b += nbar / (nbar - 1.0) * (spread - (2.0 * nbar - 1.0) / (4.0 * nbar) * hbar);
        v.c += hbar / 2.0;
    }
    return v;
}

} // namespace

TEST(HRule, ObservedWinsAndAutoIsWhatIsLeft) {
    EXPECT_EQ(hRule(0x1), HRule::Hobs);
    EXPECT_EQ(hRule(0x2), HRule::Hexp);
    EXPECT_EQ(hRule(0x3), HRule::Hobs);
    EXPECT_EQ(hRule(0x4), HRule::Auto);
    EXPECT_EQ(hRule(0x0), HRule::Auto) << "the bit of the automatic choice is not looked at";
    EXPECT_EQ(hRule(0x6), HRule::Hexp);
}

TEST(LocusFst, IsUndefinedOnlyWithAllThreeZero) {
    EXPECT_FALSE(locusFst({0.0, 0.0, 0.0}));
    EXPECT_EQ(locusFst({0.5, 0.0, 0.0}), 1.0);
    EXPECT_EQ(locusFst({0.25, 0.5, 0.25}), 0.25);
}

TEST(FSums, RatiosOfSums) {
    FSums sums;
    sums.add({0.25, 0.5, 0.5});
    sums.add({0.75, 0.25, 0.25}); // A 1, B 0.75, C 0.75, T 2.5
    const FValues f = sums.values(kUndefined);
    EXPECT_DOUBLE_EQ(f[0], 0.4);
    EXPECT_DOUBLE_EQ(f[1], 0.7);
    EXPECT_DOUBLE_EQ(f[2], 0.5);
}

TEST(FSums, ANonzeroAAloneIsUndefined) {
    FSums sums;
    EXPECT_EQ(sums.values(kUndefined)[0], kUndefined) << "no locus";
    sums.add({0.5, 0.0, 0.0});
    EXPECT_EQ(sums.values(kUndefined), (FValues{kUndefined, kUndefined, kUndefined}));
}

TEST(FSums, OtherDivisionsByZeroAreNotGuarded) {
    FSums sums;
    sums.add({0.0, 0.5, -0.5}); // T = 0, B + C = 0
    EXPECT_TRUE(std::isnan(sums.values(kUndefined)[0]));
    EXPECT_TRUE(std::isinf(sums.values(kUndefined)[1]));
    EXPECT_TRUE(std::isinf(sums.values(kUndefined)[2]));
}

TEST(PairComponents, NeedMoreThanTwoIndividualsAndBothSamples) {
    const std::vector<int32_t> counts{2, 1, 0, 0};
    EXPECT_TRUE(pairComponents({3, 2, 0.5, 0.5, counts, counts}));
    EXPECT_FALSE(pairComponents({2, 2, 0.5, 0.5, counts, counts})) << "S = 2";
    EXPECT_FALSE(pairComponents({-1, 9, 0.5, 0.5, counts, counts}));
    EXPECT_FALSE(pairComponents({9, 0, 0.5, 0.5, counts, counts}));
    EXPECT_FALSE(pairComponents({3, 3, -1.0, 0.5, counts, counts}));
    EXPECT_FALSE(pairComponents({3, 3, 0.5, -1.0, counts, counts}));
    EXPECT_FALSE(pairComponents({3, 3, 0.5, 0.5, {}, {}})) << "no alleles";
}

TEST(PairComponents, AgreeWithTheEquationsOfThePaper) {
    std::mt19937 stream(5);
    for (int round = 0; round < 200; ++round) {
        const std::size_t alleles = 1 + stream() % 9;
        std::vector<int32_t> counts[2];
        int32_t copies[2] = {0, 0};
        for (int s = 0; s < 2; ++s) {
            counts[s].assign((alleles + kAlleleStep - 1) / kAlleleStep * kAlleleStep, 0);
            for (std::size_t u = 0; u < alleles; ++u) {
                counts[s][u] = 1 + static_cast<int32_t>(stream() % 12);
                copies[s] += counts[s][u];
            }
        }
        std::vector<double> p[2];
        for (int s = 0; s < 2; ++s) {
            for (std::size_t u = 0; u < alleles; ++u) {
                p[s].push_back(double(counts[s][u]) / copies[s]);
            }
        }
        if (copies[0] + copies[1] <= 4) {
            continue;
        }
        const double H1 = 0.25;
        const double H2 = 0.75;
        const double n1 = copies[0] * 0.5;
        const double n2 = copies[1] * 0.5;
        const auto v = pairComponents({copies[0], copies[1], H1, H2, counts[0], counts[1]});
        const VarianceComponents paper =
            textbook(n1, n2, (n1 * H1 + n2 * H2) / (n1 + n2), p[0], p[1]);
        ASSERT_TRUE(v);
        EXPECT_NEAR(v->a, paper.a, kRounding * 10) << round;
        EXPECT_NEAR(v->b, paper.b, kRounding * 10) << round;
        EXPECT_NEAR(v->c, paper.c, kRounding) << round;
    }
}

// 3 (0.5 - 0.25)^2 + 2 (0 - 0.25)^2 = 3/16 + 2/16
TEST(GlobalSamples, DeviationsAreWeightedByIndividuals) {
    const std::vector<GlobalSample> samples = {{3.0, 0.0, 0.0}, {2.0, 0.0, 0.0}};
    const std::vector<double> p = {0.5, 0.0};
    EXPECT_EQ(sumOfDeviations(samples, p.data(), 0.25), 0.3125);
    EXPECT_EQ(sumOfDeviations({}, p.data(), 0.25), 0.0);
}

// Both samples fixed for the one allele that the pool has, too: nothing to part.
TEST(GlobalSums, ALocusThatDoesNotVaryHasNoValue) {
    const std::vector<GlobalSample> samples(2, {2.0, 0.0, 0.0});
    const std::vector<double> pbar = {1.0, 0.0};
    const std::vector<double> ss = {0.0, 0.0};
    CMatrix locus;
    locus.Resize(FRow::Anzahl, 1);
    GlobalSums sums;
    sums.add({0.0, samples, pbar, ss}, locus, 0, kUndefined);
    for (int32_t row = 0; row < FRow::Anzahl; ++row) {
        EXPECT_EQ(locus(row, 0), kUndefined) << row;
    }
    EXPECT_EQ(sums.values(kUndefined).gst, kUndefined);
}
