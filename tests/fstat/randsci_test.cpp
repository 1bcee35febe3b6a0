#include "fstat/randsci.h"

#include "support/draws.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace kva;

namespace {

constexpr int kFirst = 1000;  // draws of each seed in the reference
constexpr int kLast = 100000; // and the number of one more
constexpr long kModulus = 2147483647;

std::vector<float> firstDraws(int count) {
    std::vector<float> draws(static_cast<std::size_t>(count));
    std::generate(draws.begin(), draws.end(), &rand2);
    return draws;
}

// The reference's line for a seed: the first 1000 draws and the 100000th.
std::vector<float> referenceDraws(long seed) {
    const std::string command =
        std::string("'" KVA_PYTHON "' '" KVA_RAND2_REFERENCE "' ") + std::to_string(seed);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"),
                                                               &pclose);
    std::string line;
    char block[4096];
    while (pipe != nullptr && std::fgets(block, sizeof block, pipe.get()) != nullptr) {
        line += block;
    }
    std::istringstream words(line);
    long named = -1;
    words >> named >> std::hex;
    EXPECT_EQ(named, seed);
    std::vector<float> draws;
    for (uint32_t bits = 0; words >> bits;) {
        draws.push_back(std::bit_cast<float>(bits));
    }
    return draws;
}

class Rand2Reference : public testing::TestWithParam<long> {};

} // namespace

// --- The stream ------------------------------------------------------------------------

// The reference works with exact integers and rounds to single precision by itself.
TEST_P(Rand2Reference, DrawsAreTheReferencesBitForBit) {
    const std::vector<float> expected = referenceDraws(GetParam());
    ASSERT_EQ(expected.size(), kFirst + 1U);
    srand2(GetParam());
    for (int draw = 1; draw <= kLast; ++draw) {
        const float value = rand2();
        if (draw <= kFirst) {
            ASSERT_EQ(value, expected[static_cast<std::size_t>(draw - 1)]) << "draw " << draw;
        } else if (draw == kLast) {
            EXPECT_EQ(value, expected[kFirst]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Rand2Reference,
                         testing::Values(0, 1, -5, 42, kModulus, 1704164645, 1198190221));

// As many values at once as a random length says, single ones between them.
TEST(Rand2Fill, GivesTheValuesOfSingleDraws) {
    for (const long seed : {0L, 1L, -5L, 1704164645L, kModulus}) {
        std::mt19937 random(3);
        std::vector<float> filled;
        srand2(seed);
        while (filled.size() < 20000) {
            const std::size_t begin = filled.size();
            filled.resize(begin + random() % 600);
            rand2Fill(std::span(filled).subspan(begin));
            filled.push_back(rand2());
        }
        srand2(seed);
        ASSERT_EQ(filled, firstDraws(static_cast<int>(filled.size()))) << "seed " << seed;
    }
}

TEST(Rand2Fill, TakesLengthsAboutThoseOfABlock) {
    for (const int length : {0, 1, 3, 4, 7, 8, 9, 12, 511, 512, 513, 1023, 1024, 1025}) {
        std::vector<float> filled(static_cast<std::size_t>(length));
        srand2(42);
        rand2Fill(filled);
        const float next = rand2();
        srand2(42);
        ASSERT_EQ(filled, firstDraws(length)) << "length " << length;
        ASSERT_EQ(next, rand2()) << "length " << length;
    }
}

// From this seed the 100th state is 2147483646, which rounds to 1 in single precision.
TEST(Rand2Fill, LargestValueIsCut) {
    std::vector<float> filled(200);
    srand2(81707672);
    rand2Fill(filled);
    EXPECT_EQ(std::ranges::count(filled, 0.99999988F), 1);
    srand2(81707672);
    EXPECT_EQ(filled, firstDraws(200));
}

TEST(Rand2, DrawsLieBetweenZeroAndOne) {
    srand2(987654321);
    double sum = 0.0;
    for (int i = 0; i < 200000; ++i) {
        const float value = rand2();
        ASSERT_GT(value, 0.0F);
        ASSERT_LE(value, 0.99999988F);
        sum += value;
    }
    // Standard error of the mean of 200000 uniform values: sqrt(1/12 / 200000) = 0.00065.
    EXPECT_NEAR(sum / 200000, 0.5, 0.004);
}

// These seeds are worked out backwards: their first draw is the table's 2147483646, 2147483636 and
// 2147483401, which over 2147483647 round to 1 and, the last, to 0.99999988 in single precision.
TEST(Rand2, TheLargestDrawIsTheUpperLimit) {
    for (const long seed : {1198190221L, 646202679L, 1503604379L}) {
        srand2(seed);
        EXPECT_EQ(rand2(), 0.99999988F) << seed;
    }
}

TEST(Rand2, ASeedThatBeginsWithOneHalf) {
    srand2(kva_test::kSeedOfOneHalf);
    EXPECT_EQ(rand2(), 0.5F);
}

TEST(Rand2, SeedZeroActsAsOne) {
    srand2(0);
    const std::vector<float> draws = firstDraws(100);
    srand2(1);
    EXPECT_EQ(firstDraws(100), draws);
}

TEST(Rand2, ANegativeSeedActsAsItsNegation) {
    srand2(-5);
    const std::vector<float> draws = firstDraws(100);
    srand2(5);
    EXPECT_EQ(firstDraws(100), draws);
}

TEST(Rand2, SeedingAgainRepeatsTheStream) {
    for (const long seed : {1L, 77L, -3L}) {
        srand2(seed);
        const std::vector<float> draws = firstDraws(100);
        srand2(seed);
        EXPECT_EQ(firstDraws(100), draws) << seed;
    }
}

TEST(Rand2, TheModulusAsSeedGivesAZeroAndThenTheStreamOfOne) {
    for (const long seed : {kModulus, -kModulus}) {
        srand2(seed);
        EXPECT_EQ(rand2(), 0.0F);
        const std::vector<float> draws = firstDraws(100);
        srand2(1);
        EXPECT_EQ(firstDraws(100), draws) << seed;
    }
}

TEST(Rand2, SeedsAreCutTo32Bits) {
    srand2((1L << 32) + 42);
    const std::vector<float> draws = firstDraws(10);
    srand2(42);
    EXPECT_EQ(firstDraws(10), draws);
}

TEST(Rand2, TheSmallestSeedHasNoNegationAndIsTakenAsTheModulus) {
    srand2(std::numeric_limits<int32_t>::min());
    const std::vector<float> draws = firstDraws(10);
    srand2(kModulus);
    EXPECT_EQ(firstDraws(10), draws);
}

// In a process of its own, in which nothing was drawn before.
TEST(Rand2DeathTest, WithoutASeedTheStreamIsThatOfOne) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            const std::vector<float> unseeded = firstDraws(50);
            srand2(1);
            _exit(unseeded == firstDraws(50) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(Rand2, AllFormsDrawFromTheOneStream) {
    srand2(42);
    const std::vector<float> draws = firstDraws(4);
    srand2(42);
    EXPECT_EQ(InternRand(), draws[0]);
    EXPECT_EQ(random2(1000.0F), draws[1] * 1000.0F);
    EXPECT_EQ(drawIndex(1000), static_cast<int32_t>(draws[2] * 1000.0F));
    EXPECT_EQ(rand2(), draws[3]);
}

TEST(Rand2, TheClockSeedsInSeconds) {
    const std::time_t before = std::time(nullptr);
    InternStartRDGen();
    const std::time_t after = std::time(nullptr);
    const std::vector<float> draws = firstDraws(20);
    bool found = false;
    for (std::time_t second = before; second <= after; ++second) {
        srand2(static_cast<long>(second));
        found = found || firstDraws(20) == draws;
    }
    EXPECT_TRUE(found);
}

// --- Places --------------------------------------------------------------------------------

TEST(DrawIndex, IsTheTruncatedProductBelowItsBound) {
    for (const int32_t n : {1, 2, 3, 7, 100, 8388607, 16777217, 2147483647}) {
        srand2(n);
        for (int i = 0; i < 5000; ++i) {
            const int32_t place = drawIndex(n);
            ASSERT_GE(place, 0);
            ASSERT_LT(place, n);
        }
    }
}

TEST(DrawIndex, ReachesEveryPlace) {
    srand2(3);
    std::vector<int> hits(10);
    for (int i = 0; i < 10000; ++i) {
        ++hits[static_cast<std::size_t>(drawIndex(10))];
    }
    for (const int count : hits) {
        EXPECT_NEAR(count, 1000, 150); // five standard deviations of sqrt(10000 x 0.1 x 0.9) = 30
    }
}

TEST(DrawIndex, OnePlaceStillDraws) {
    srand2(42);
    const std::vector<float> draws = firstDraws(2);
    srand2(42);
    EXPECT_EQ(drawIndex(1), 0);
    EXPECT_EQ(rand2(), draws[1]);
}

// --- Many at once --------------------------------------------------------------------------

namespace {

// Numbers of draws: none, whole and broken steps of four, the edges of a block of 256.
const std::vector<std::size_t> kCounts = {0,  1,   2,   3,   4,   5,   6,   7,    8,
                                          12, 188, 255, 256, 257, 511, 513, 1409, 5000};

// Draws `count` values one by one from `seed`, after `before` others, and one more.
std::vector<float> oneByOne(long seed, std::size_t before, std::size_t count) {
    srand2(seed);
    std::vector<float> draws = firstDraws(static_cast<int>(before + count + 1));
    draws.erase(draws.begin(), draws.begin() + static_cast<std::ptrdiff_t>(before));
    return draws;
}

} // namespace

TEST(Rand2Fill, GivesTheDrawsOfSoManyCalls) {
    for (const long seed : {0L, 1L, -5L, kModulus, 1704164645L, 1198190221L}) {
        for (const std::size_t before : {0U, 1U, 2U, 3U}) {
            for (const std::size_t count : kCounts) {
                const std::vector<float> expected = oneByOne(seed, before, count);
                srand2(seed);
                firstDraws(static_cast<int>(before));
                std::vector<float> draws(count);
                rand2Fill(draws);
                draws.push_back(rand2());
                EXPECT_EQ(draws, expected) << seed << ": " << count << " after " << before;
            }
        }
    }
}

TEST(DrawIndices, ArePlacesAmongFewerAndFewer) {
    // Above 2^24 the number of places is no longer exact in single precision.
    constexpr int32_t exact = 1 << 24;
    for (const long seed : {1L, kModulus, 1198190221L}) {
        for (const std::size_t count : kCounts) {
            for (const int32_t n : {static_cast<int32_t>(count), 5000, exact - 1, exact + 300,
                                    1000000007, std::numeric_limits<int32_t>::max()}) {
                const std::vector<float> draws = oneByOne(seed, 0, count);
                std::vector<int32_t> expected;
                for (std::size_t k = 0; k < count; ++k) {
                    expected.push_back(indexOf(draws[k], n - static_cast<int32_t>(k)));
                }
                srand2(seed);
                std::vector<int32_t> places(count);
                drawIndices(n, places);
                EXPECT_EQ(places, expected) << seed << ": " << count << " from " << n;
                EXPECT_EQ(rand2(), draws.back());
            }
        }
    }
}

// The largest values round to the number of places or just below it: the first draw of each seed
// is 0.99999988.
TEST(DrawIndices, TheLargestDrawIsTheLastPlace) {
    for (const long seed : {1198190221L, 646202679L, 1503604379L}) {
        for (int32_t n = 1; n <= (1 << 23); n = n < 1000 ? n + 1 : 2 * n - 1) {
            srand2(seed);
            std::vector<int32_t> place(1);
            drawIndices(n, place);
            EXPECT_EQ(place[0], n - 1);
        }
    }
}

// --- Flat numbers to groups --------------------------------------------------------------------

namespace {

struct Place {
    int Result;
    int32_t Group;
    int32_t Rest;
    bool operator==(const Place&) const = default;
};

Place placeOf(const std::vector<int32_t>& sizes, int32_t number) {
    Place place{77, 77, 77};
    place.Result = ConvertNum(sizes, number, place.Group, place.Rest);
    return place;
}

} // namespace

TEST(ConvertNum, TurnsAFlatNumberIntoGroupAndOffset) {
    const std::vector<int32_t> sizes = {2, 3, 4};
    const Place expected[] = {{0, 0, 0}, {0, 0, 1}, {0, 1, 0}, {0, 1, 1}, {0, 1, 2},
                              {0, 2, 0}, {0, 2, 1}, {0, 2, 2}, {0, 2, 3}};
    for (int32_t number = 0; number < 9; ++number) {
        EXPECT_EQ(placeOf(sizes, number), expected[number]) << number;
    }
}

TEST(ConvertNum, ANumberBehindTheLastHasNoPlace) {
    EXPECT_EQ(placeOf({2, 3, 4}, 9), (Place{1, -1, -1}));
    EXPECT_EQ(placeOf({2, 3, 4}, 2147483647), (Place{1, -1, -1}));
}

TEST(ConvertNum, WithoutGroupsThereIsNoPlace) {
    EXPECT_EQ(placeOf({}, 0), (Place{1, -1, -1}));
}

TEST(ConvertNum, EmptyGroupsAreSteppedOver) {
    EXPECT_EQ(placeOf({0, 0, 1, 0, 2}, 0), (Place{0, 2, 0}));
    EXPECT_EQ(placeOf({0, 0, 1, 0, 2}, 1), (Place{0, 4, 0}));
    EXPECT_EQ(placeOf({0, 0}, 0), (Place{1, -1, -1}));
}

// --- Streams of units --------------------------------------------------------------------

namespace {

// The first values of a unit.
std::vector<float> unitDraws(uint64_t seed, UnitId unit) {
    startUnit(seed, unit);
    std::vector<float> draws = firstDraws(600);
    srand2(1);
    return draws;
}

constexpr UnitId kUnit = {UnitKind::PairTest, 4, 2};

} // namespace

// The first number of the known answers, 0x6627e8d5, is in step 0x6627e8d5 >> 9 of 2^23.
TEST(UnitStream, FirstValuesAreThoseOfPhilox) {
    const std::vector<float> draws = unitDraws(0, {UnitKind::Pass, 0, 0});
    EXPECT_EQ(draws[0], (float(0x6627e8d5U >> 9U) + 0.5F) / 8388608.0F);
    EXPECT_EQ(draws[3], (float(0x9b00dbd8U >> 9U) + 0.5F) / 8388608.0F);
}

TEST(UnitStream, RepeatsAndIsItsOwn) {
    const std::vector<float> draws = unitDraws(7, kUnit);
    EXPECT_EQ(unitDraws(7, kUnit), draws);
    EXPECT_NE(unitDraws(8, kUnit), draws);
    EXPECT_NE(unitDraws(7 + (uint64_t{1} << 32U), kUnit), draws) << "all bits of a seed count";
    EXPECT_NE(unitDraws(7, {UnitKind::GlobalTest, 4, 2}), draws);
    EXPECT_NE(unitDraws(7, {UnitKind::PairTest, 5, 2}), draws);
    EXPECT_NE(unitDraws(7, {UnitKind::PairTest, 4, 3}), draws);
}

TEST(UnitStream, ClockDoesNotSeedIt) {
    startUnit(7, kUnit);
    std::vector<float> draws = firstDraws(300);
    InternStartRDGen();
    const std::vector<float> more = firstDraws(300);
    draws.insert(draws.end(), more.begin(), more.end());
    EXPECT_EQ(draws, unitDraws(7, kUnit));
}

TEST(UnitStream, ValuesAreInsideAndEven) {
    startUnit(3, kUnit);
    std::array<int, 10> tenths = {};
    for (int k = 0; k < 100000; ++k) {
        const float value = rand2();
        ASSERT_GT(value, 0.0F);
        ASSERT_LT(value, 1.0F);
        ++tenths[static_cast<std::size_t>(value * 10.0F)];
    }
    srand2(1);
    for (const int count : tenths) {
        EXPECT_NEAR(count, 10000, 5 * 95); // sd of the binomial: 95
    }
}

// The largest value, (2^23 - 1/2) / 2^23, never gives a place behind the last.
TEST(UnitStream, LargestValueGivesTheLastPlace) {
    constexpr float largest = (8388607.0F + 0.5F) / 8388608.0F;
    for (int32_t n = 1; n < 1 << 24; n += 1 + n / 50) {
        ASSERT_EQ(static_cast<int32_t>(largest * static_cast<float>(n)), n - 1) << n;
    }
}

TEST(UnitStream, IsOfItsThread) {
    srand2(4);
    const float expected = rand2();
    srand2(4);
    std::thread([] {
        startUnit(1, kUnit);
        rand2();
    }).join();
    EXPECT_EQ(rand2(), expected);
}
