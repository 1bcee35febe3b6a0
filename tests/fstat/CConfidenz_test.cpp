#include "fstat/CConfidenz.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>

using namespace kva;

namespace {

// Gives the values 1..n in a scattered order: 7 i mod (n + 1), which has no divisor in common
// with 7.
void giveScattered(CConfidenz& c, int n) {
    for (int i = 1; i <= n; ++i) {
        c.DatenUebergabe(7 * i % (n + 1));
    }
}

// The arrays as they are kept with a whole sort after every value.
struct PlainTails {
    std::vector<double> upper;
    std::vector<double> lower;
    std::size_t fill = 0;

    explicit PlainTails(std::size_t kept)
        : upper(kept, std::numeric_limits<double>::lowest()),
          lower(kept, std::numeric_limits<double>::max()) {}

    void add(double x) {
        upper[upper.size() - 1 - fill] = x;
        lower[fill] = x;
        if (fill + 1 < upper.size()) {
            ++fill;
            return;
        }
        std::qsort(upper.data(), upper.size(), sizeof(double), &SortDaten);
        std::qsort(lower.data(), lower.size(), sizeof(double), &SortDaten);
    }
};

} // namespace

TEST(CConfidenz, InitTellsWhatItDid) {
    CConfidenz c;
    EXPECT_EQ(c.Init(0), -10) << "nothing was there to drop";
    EXPECT_EQ(c.Init(200), 10);
    EXPECT_EQ(c.Init(-5), 0) << "dropped";
    EXPECT_EQ(c.AnzBehalten, 0);
    EXPECT_EQ(c.Init(0), -10);
}

TEST(CConfidenz, KeepsTruncatedShareAndOne) {
    CConfidenz c;
    c.Init(200); // 200 x 0.025 + 1 = 6
    EXPECT_EQ(c.AnzBehalten, 6);
    EXPECT_EQ(c.LetzterIndex, 5);
    EXPECT_EQ(c.AnzErwartet, 200);
    c.Init(1000);
    EXPECT_EQ(c.AnzBehalten, 26);
    c.Init(39); // 0.975 + 1, truncated
    EXPECT_EQ(c.AnzBehalten, 1);
}

TEST(CConfidenz, ArraysStartWithTheExtremesOfADouble) {
    CConfidenz c;
    c.Init(200);
    EXPECT_EQ(c.ObereDaten, std::vector<double>(6, -std::numeric_limits<double>::max()));
    EXPECT_EQ(c.UntereDaten, std::vector<double>(6, std::numeric_limits<double>::max()));
}

TEST(CConfidenz, TakesNoMoreThanAnnounced) {
    CConfidenz c;
    EXPECT_EQ(c.DatenUebergabe(1.0), -1) << "nothing announced";
    c.Init(1);
    EXPECT_EQ(c.DatenUebergabe(1.0), 0);
    EXPECT_EQ(c.DatenUebergabe(2.0), -2);
    EXPECT_EQ(c.Summe, 1.0);
}

TEST(CConfidenz, FortyValuesAreTheFewestWithLimits) {
    // 40 x 0.025 + 1 = 2 are kept: the limits are the extremes of 1..40.
    CConfidenz c;
    double upper = 0.0;
    double lower = 0.0;
    c.Init(40);
    giveScattered(c, 40);
    EXPECT_EQ(c.GetIntervall95(upper, lower), 0);
    EXPECT_EQ(upper, 40.0);
    EXPECT_EQ(lower, 1.0);
    c.Init(39);
    giveScattered(c, 39);
    EXPECT_EQ(c.GetIntervall95(upper, lower), -1);
}

TEST(CConfidenz, TwoHundredValuesGiveFifthAndSecondFromEachEnd) {
    // Of 1..210 the 95 % limits are the trunc(0.025 x 210) = 5th from each end, the 99 % limits
    // the (trunc(0.005 x 210) + 1) = 2nd.
    CConfidenz c;
    c.Init(210); // 211 is prime
    giveScattered(c, 210);
    double oben = 0.0;
    double unten = 0.0;
    EXPECT_EQ(c.GetIntervall95(oben, unten), 0);
    EXPECT_EQ(oben, 206.0);
    EXPECT_EQ(unten, 5.0);
    EXPECT_EQ(c.GetIntervall99(oben, unten), 0);
    EXPECT_EQ(oben, 209.0);
    EXPECT_EQ(unten, 2.0);
}

TEST(CConfidenz, AThousandValuesGive25thAnd6th) {
    CConfidenz c;
    c.Init(1000);
    for (int i = 1; i <= 1000; ++i) {
        c.DatenUebergabe(3 * i % 1001); // each of 1..1000 once
    }
    double oben = 0.0;
    double unten = 0.0;
    c.GetIntervall95(oben, unten);
    EXPECT_EQ(oben, 976.0); // 25th of 1000 downwards
    EXPECT_EQ(unten, 25.0);
    c.GetIntervall99(oben, unten);
    EXPECT_EQ(oben, 995.0);
    EXPECT_EQ(unten, 6.0);
    EXPECT_EQ(c.GetMittel(), 500.5);
}

TEST(CConfidenz, LimitsOf95NeedAllValues) {
    CConfidenz c;
    c.Init(200);
    for (int i = 0; i < 199; ++i) {
        c.DatenUebergabe(i);
    }
    double oben = 7.0;
    double unten = 8.0;
    EXPECT_EQ(c.GetIntervall95(oben, unten), -1);
    EXPECT_EQ(oben, 7.0);
    EXPECT_EQ(unten, 8.0);
    EXPECT_EQ(c.GetMittel(), -1.0);
}

TEST(CConfidenz, FewerThan40ValuesHaveNoLimitsOf95) {
    CConfidenz c;
    c.Init(20);
    for (int i = 0; i < 20; ++i) {
        c.DatenUebergabe(i);
    }
    double oben = 7.0;
    double unten = 8.0;
    EXPECT_EQ(c.GetIntervall95(oben, unten), -1);
    EXPECT_EQ(oben, 7.0);
    EXPECT_EQ(c.GetIntervall99(oben, unten), 0);
    EXPECT_EQ(oben, 19.0) << "the only entry is the scratch place: the last value";
    EXPECT_EQ(unten, 19.0);
}

TEST(CConfidenz, LimitsOf99WithoutInitLeaveValues) {
    const CConfidenz c;
    double oben = 7.0;
    double unten = 8.0;
    EXPECT_EQ(c.GetIntervall99(oben, unten), 0);
    EXPECT_EQ(oben, 7.0);
    EXPECT_EQ(unten, 8.0);
}

TEST(CConfidenz, ArraysHoldValuesInOrderOfArrivalUntilFull) {
    CConfidenz c;
    c.Init(120); // keeps 4
    for (const double x : {5.0, 9.0, 1.0}) {
        c.DatenUebergabe(x);
    }
    const double none = -std::numeric_limits<double>::max();
    EXPECT_EQ(c.ObereDaten, (std::vector<double>{none, 1.0, 9.0, 5.0}));
    EXPECT_EQ(c.UntereDaten, (std::vector<double>{5.0, 9.0, 1.0, -none}));
    c.DatenUebergabe(4.0);
    EXPECT_EQ(c.ObereDaten, (std::vector<double>{1.0, 4.0, 5.0, 9.0}));
    EXPECT_EQ(c.UntereDaten, (std::vector<double>{1.0, 4.0, 5.0, 9.0}));
    c.DatenUebergabe(7.0); // over the smallest of the upper and the largest of the lower
    EXPECT_EQ(c.ObereDaten, (std::vector<double>{4.0, 5.0, 7.0, 9.0}));
    EXPECT_EQ(c.UntereDaten, (std::vector<double>{1.0, 4.0, 5.0, 7.0}));
}

TEST(CConfidenz, ArraysAreThoseOfAWholeSortAfterEachValue) {
    std::mt19937 stream(7);
    CConfidenz c;
    c.Init(400); // keeps 11
    PlainTails plain(11);
    for (int i = 0; i < 400; ++i) {
        double x = static_cast<double>(stream() % 50) - 25.0; // many ties
        x = i == 300 ? std::nan("") : i == 200 ? std::numeric_limits<double>::infinity() : x;
        c.DatenUebergabe(x);
        plain.add(x);
        for (std::size_t k = 0; k < 11; ++k) {
            ASSERT_TRUE(c.ObereDaten[k] == plain.upper[k] || std::isnan(plain.upper[k])) << i;
            ASSERT_TRUE(c.UntereDaten[k] == plain.lower[k] || std::isnan(plain.lower[k])) << i;
            ASSERT_EQ(std::isnan(c.ObereDaten[k]), std::isnan(plain.upper[k])) << i;
        }
    }
}

TEST(SortDaten, OrdersDoublesAscending) {
    const double one = 1.0;
    const double two = 2.0;
    EXPECT_EQ(SortDaten(&one, &two), -1);
    EXPECT_EQ(SortDaten(&two, &one), 1);
    EXPECT_EQ(SortDaten(&two, &two), 0);
}
