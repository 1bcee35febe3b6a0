// Allelic richness, against exact fractions and against a plain reading of its formulas.
#include "data/allelcount.h"
#include "stats/CFactorial.h"
#include "stats/statsupport.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using namespace kva;

using kva_test::tableOf;

namespace {

__extension__ using Wide = __int128;

// An exact fraction, always reduced. The cases below stay far inside 127 bits.
class Fraction {
  public:
    Fraction(Wide numerator, Wide denominator) : Num(numerator), Den(denominator) { reduce(); }

    Fraction operator+(const Fraction& b) const { return {Num * b.Den + b.Num * Den, Den * b.Den}; }
    Fraction operator-(const Fraction& b) const { return {Num * b.Den - b.Num * Den, Den * b.Den}; }
    Fraction operator*(const Fraction& b) const { return {Num * b.Num, Den * b.Den}; }
    double value() const {
        return static_cast<double>(static_cast<long double>(Num) / static_cast<long double>(Den));
    }

  private:
    void reduce() {
        Wide a = Num < 0 ? -Num : Num;
        Wide b = Den;
        while (b != 0) {
            const Wide rest = a % b;
            a = b;
            b = rest;
        }
        Num /= a;
        Den /= a;
    }

    Wide Num;
    Wide Den;
};

// The chance that k of N copies miss c given ones, in the form that needs no large number:
// (N-k)/N x (N-k-1)/(N-1) x ..., c factors.
Fraction missChance(int N, int k, int c) {
    Fraction q(1, 1);
    for (int t = 0; t < c; ++t) {
        q = q * Fraction(N - k - t > 0 ? N - k - t : 0, N - t);
    }
    return q;
}

struct Exact {
    Fraction R = {0, 1};
    Fraction var = {0, 1};
};

// Richness and variance of a table with `rare` alleles of few copies and one that no sub-sample
// can miss (it adds 1 and nothing to the variance).
Exact exactRichness(int N, int k, const std::vector<int>& rare) {
    Exact exact;
    exact.R = Fraction(1, 1);
    for (std::size_t i = 0; i < rare.size(); ++i) {
        const Fraction qi = missChance(N, k, rare[i]);
        exact.R = exact.R + (Fraction(1, 1) - qi);
        exact.var = exact.var + (Fraction(1, 1) - qi) * qi;
        for (std::size_t j = i + 1; j < rare.size(); ++j) {
            const Fraction qij = missChance(N, k, rare[i] + rare[j]);
            const Fraction qj = missChance(N, k, rare[j]);
            exact.var = exact.var + Fraction(2, 1) * (qij - qi * qj);
        }
    }
    return exact;
}

AllelCount tableOfCounts(const std::vector<int>& copies) {
    std::vector<AllelEintrag> rows;
    for (std::size_t i = 0; i < copies.size(); ++i) {
        rows.push_back({100 + 2 * static_cast<int32_t>(i), copies[i]});
    }
    return tableOf(rows);
}

struct Richness {
    double R = 0.0;
    double var = 0.0;
};

Richness richness(const AllelCount& table, int k) {
    Richness r;
    r.R = table.CalcRarefraction(k, r.var);
    return r;
}

// --- A plain reading: every term anew for every pair ---------------------------------------

double F(int n) {
    return Factorial.calc(n);
}

double plainSingle(int N, int k, int c) {
    if (N <= 122) {
        return (F(N - c) / F(N - c - k)) * F(N - k) / F(N);
    }
    const auto A = static_cast<double>(CFactorial::Range(N - c - k + 1, N - c));
    const long double B = CFactorial::Range(N - k + 1, N);
    return static_cast<double>(A / B);
}

double plainPairByFactorials(int N, int k, int ci, int cj) {
    double term = 0.0;
    if (N - ci - cj >= k) {
        term += (F(N - ci - cj) / F(N)) * F(N - k) / F(N - ci - cj - k);
    }
    if (N - cj >= k) {
        term -= (((((F(N - cj) / F(N)) * F(N - ci)) / F(N)) * F(N - k)) / F(N - ci - k)) *
                F(N - k) / F(N - cj - k);
    }
    return term;
}

long double plainPairByRange(int N, int k, int ci, int cj) {
    const auto B = static_cast<double>(CFactorial::Range(N - k + 1, N));
    long double term = 0.0L;
    if (N - ci - cj - k + 1 >= 0) {
        term += CFactorial::Range(N - ci - cj - k + 1, N - ci - cj) / B;
    }
    if (N - cj - k + 1 >= 0) {
        const double qi = static_cast<double>(CFactorial::Range(N - ci - k + 1, N - ci)) / B;
        const double qj = static_cast<double>(CFactorial::Range(N - cj - k + 1, N - cj)) / B;
        term -= qi * qj;
    }
    return term;
}

double plainPairSum(int N, int k, const std::vector<int>& c) {
    double D = 0.0;
    for (std::size_t i = 0; i < c.size(); ++i) {
        if (N <= 121 ? N - c[i] < k : N - c[i] - k + 1 < 0) {
            continue;
        }
        for (std::size_t j = i + 1; j < c.size(); ++j) {
            D = N <= 121 ? D + plainPairByFactorials(N, k, c[i], c[j])
                         : static_cast<double>(D + plainPairByRange(N, k, c[i], c[j]));
        }
    }
    return D;
}

Richness plainRichness(int k, const std::vector<int>& c) {
    const int N = std::accumulate(c.begin(), c.end(), 0);
    if (N == k) {
        return {static_cast<double>(c.size()), 0.0};
    }
    double R = 0.0;
    double V = 0.0;
    for (const int copies : c) {
        if (N - copies < k) {
            R += 1.0;
        } else {
            const double q = plainSingle(N, k, copies);
            R += 1.0 - q;
            V += (1.0 - q) * q;
        }
    }
    return {R, V + 2.0 * plainPairSum(N, k, c)};
}

void expectSameBits(double a, double b, const std::string& what) {
    EXPECT_EQ(std::bit_cast<uint64_t>(a), std::bit_cast<uint64_t>(b)) << what << a << " " << b;
}

void expectPlain(int k, const std::vector<int>& c, const std::string& what) {
    const Richness fast = richness(tableOfCounts(c), k);
    const Richness plain = plainRichness(k, c);
    expectSameBits(fast.R, plain.R, what + ", R: ");
    expectSameBits(fast.var, plain.var, what + ", variance: ");
}

// N copies dealt to `alleles` alleles, each of which gets one at least.
std::vector<int> dealtCopies(std::mt19937& stream, int N, int alleles) {
    std::vector<int> copies(static_cast<std::size_t>(alleles), 1);
    for (int rest = N - alleles; rest > 0; --rest) {
        ++copies[stream() % copies.size()];
    }
    return copies;
}

} // namespace

// --- Refusals and edges ------------------------------------------------------------------

TEST(CalcRarefraction, EmptyTableHasNone) {
    const Richness r = richness(AllelCount(), 2);
    EXPECT_EQ(r.R, -1.0);
    EXPECT_EQ(r.var, -1.0);
}

// One diploid copy and two haploid ones: C = 2 both times.
TEST(CalcRarefraction, NeedsThreeWeights) {
    EXPECT_EQ(richness(tableOf({{100, 1}}), 2).R, -1.0);
    EXPECT_EQ(richness(tableOf({{100, 1}, {102, 1}}, 1), 2).R, -1.0);
    EXPECT_EQ(richness(tableOf({{100, 2}, {102, 1}}, 1), 3).R, 2.0);
}

TEST(CalcRarefraction, SampleBelowTheReferenceHasNone) {
    const Richness r = richness(tableOf({{100, 3}, {102, 2}}), 6);
    EXPECT_EQ(r.R, -2.0);
    EXPECT_EQ(r.var, -1.0);
}

TEST(CalcRarefraction, ReferenceBelowTwoHasNone) {
    const AllelCount table = tableOf({{100, 3}, {102, 2}});
    for (const int k : {1, 0, -2}) {
        const Richness r = richness(table, k);
        EXPECT_EQ(r.R, -2.0) << k;
        EXPECT_EQ(r.var, -1.0) << k;
    }
}

TEST(CalcRarefraction, WholeSampleHoldsAllAlleles) {
    const Richness r = richness(tableOf({{100, 3}, {102, 2}}), 5);
    EXPECT_EQ(r.R, 2.0);
    EXPECT_EQ(r.var, 0.0);
}

TEST(CalcRarefraction, SingleAlleleIsAlwaysThere) {
    for (const int N : {10, 122, 300}) {
        const Richness r = richness(tableOf({{100, N}}), 4);
        EXPECT_EQ(r.R, 1.0) << N;
        EXPECT_EQ(r.var, 0.0) << N;
    }
}

// --- Exact values --------------------------------------------------------------------------

// Copies 3, 2, 1; N = 6, k = 2, C(6, 2) = 15. q = C(3,2)/15 = 1/5, C(4,2)/15 = 2/5, C(5,2)/15 =
// 2/3; R = 4/5 + 3/5 + 1/3 = 26/15.
// V = 4/25 + 6/25 + 2/9 = 28/45. Pairs: 0 - 2/25 (one copy is left), 1/15 - 2/15,
// 1/5 - 4/15; D = -2/25 - 2/15 = -16/75. Variance 28/45 - 32/75 = 44/225.
TEST(CalcRarefraction, SixCopiesByHand) {
    const Richness r = richness(tableOfCounts({3, 2, 1}), 2);
    EXPECT_DOUBLE_EQ(r.R, 26.0 / 15.0);
    EXPECT_NEAR(r.var, 44.0 / 225.0, 1e-15); // some ten roundings of numbers below 1
}

struct RouteCase {
    int N;
    int k;
};

class RichnessRoutes : public testing::TestWithParam<RouteCase> {};

// Each factorial carries up to N roundings, and q(i) q(j) takes eight of them: 8 x 122 x 1.1e-16
// is about 1e-13 of a chance below 1, and there are 6 pairs, counted twice. By products of the
// extended format one rounding to double is left in each quotient, 1e-15 is ample.
TEST_P(RichnessRoutes, AgreesWithExactFractions) {
    const auto [N, k] = GetParam();
    const std::vector<int> rare = {1, 2, 3, 2};
    const Exact exact = exactRichness(N, k, rare);
    const Richness r = richness(tableOfCounts({1, 2, 3, N - 8, 2}), k);
    EXPECT_NEAR(r.R, exact.R.value(), N <= 122 ? 2e-13 : 2e-15);
    EXPECT_NEAR(r.var, exact.var.value(), N <= 121 ? 2e-12 : (N == 122 ? 2e-13 : 1e-14));
}

// k leaves no more than the common allele's copies out, so that no sub-sample misses it.
INSTANTIATE_TEST_SUITE_P(BothRoutes, RichnessRoutes,
                         testing::Values(RouteCase{20, 9}, RouteCase{100, 9}, RouteCase{100, 50},
                                         RouteCase{100, 95}, RouteCase{121, 9}, RouteCase{121, 60},
                                         RouteCase{121, 118}, RouteCase{122, 9}, RouteCase{122, 60},
                                         RouteCase{122, 119}, RouteCase{123, 9}, RouteCase{123, 60},
                                         RouteCase{123, 120}, RouteCase{150, 9}, RouteCase{150, 75},
                                         RouteCase{1000, 9}, RouteCase{1000, 80}));

// --- The fast form is the plain one ----------------------------------------------------------

TEST(CalcRarefraction, BytesOfThePlainFormula) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 stream(seed);
        const int N = 3 + static_cast<int>(stream() % 180);
        const int alleles = 1 + static_cast<int>(stream() % static_cast<unsigned>(std::min(N, 12)));
        const int k = 2 + static_cast<int>(stream() % static_cast<unsigned>(N - 1));
        expectPlain(k, dealtCopies(stream, N, alleles), "seed " + std::to_string(seed));
    }
}

TEST(CalcRarefraction, BytesOfThePlainFormulaWhereTheRoutesMeet) {
    for (const int N : {121, 122, 123}) {
        for (int k = 2; k <= N; k += 7) {
            std::mt19937 stream(static_cast<unsigned>(N * 1000 + k));
            expectPlain(k, dealtCopies(stream, N, 9),
                        "N " + std::to_string(N) + " k " + std::to_string(k));
        }
    }
}

// The factorials of N = 122 are used for the chances, not for the pairs: both routes agree to
// the error of the factorials, and not beyond.
TEST(CalcRarefraction, At122TheChancesAreFactorials) {
    const std::vector<int> c = {1, 2, 119};
    const Richness r = richness(tableOfCounts(c), 60);
    double R = 0.0;
    for (const int copies : {1, 2}) {
        R += 1.0 - (F(122 - copies) / F(62 - copies)) * F(62) / F(122);
    }
    EXPECT_EQ(r.R, R + 1.0);
}

// --- Overflow ------------------------------------------------------------------------------------

// N = 200, k = 150: A(1) = 199!/49! and A(2) = 198!/48! lie near 1e309 and 1e309, beyond a
// double. The chances become infinite, R negative.
TEST(CalcRarefraction, ProductBeyondADoubleMakesRichnessNegative) {
    const Richness r = richness(tableOfCounts({1, 2, 197}), 150);
    EXPECT_EQ(r.R, -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(r.var)); // the pair step divides infinite by infinite
    expectPlain(150, {1, 2, 197}, "overflow");
}

// N = 200, k = 149: B = 200!/51! = 5.1e308 is beyond a double, A(1) = 199!/50! = 1.3e308 is not.
// R is right, q = 51/200; B is infinite in the pair step, which adds nothing.
TEST(CalcRarefraction, DivisorBeyondADoubleSilencesThePairs) {
    const Richness r = richness(tableOfCounts({1, 1, 198}), 149);
    EXPECT_DOUBLE_EQ(r.R, 1.0 + 2.0 * 149.0 / 200.0);
    EXPECT_DOUBLE_EQ(r.var, 2.0 * (149.0 / 200.0) * (51.0 / 200.0));
    expectPlain(149, {1, 1, 198}, "infinite divisor");
}

// 2000!/300! is near 1e5121, beyond the extended format as well.
TEST(CalcRarefraction, ProductBeyondTheExtendedFormatIsNoNumber) {
    const Richness r = richness(tableOfCounts({1, 1, 1998}), 1700);
    EXPECT_TRUE(std::isnan(r.R));
    expectPlain(1700, {1, 1, 1998}, "extended overflow");
}
