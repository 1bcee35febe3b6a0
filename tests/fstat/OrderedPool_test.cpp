// The pool against a list whose gaps close one by one.
#include "fstat/OrderedPool.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

using namespace kva;

namespace {

constexpr auto kLeaf = static_cast<int32_t>(OrderedPool<int32_t>::kLeaf);
constexpr auto kLow = static_cast<int32_t>(OrderedPool<int32_t>::kLow);
constexpr auto kMiddle = static_cast<int32_t>(OrderedPool<int32_t>::kMiddle);
constexpr auto kHigh = static_cast<int32_t>(OrderedPool<int32_t>::kHigh);

// Items 1000, 1003, 1006 and so on; as bytes they come again and again.
template <class Item> std::vector<Item> numbered(int32_t n) {
    std::vector<Item> items(static_cast<std::size_t>(n));
    int32_t next = 1000;
    for (Item& item : items) {
        item = static_cast<Item>(next);
        next += 3;
    }
    return items;
}

// Where a deal takes from next: anywhere, always the first, always the last.
enum class Where { Anywhere, First, Last };

// A place among `left` items for each of n takes.
std::vector<int32_t> placesOf(int32_t n, Where where, std::mt19937& stream) {
    std::vector<int32_t> places;
    for (int32_t left = n; left > 0; --left) {
        const auto any = static_cast<int32_t>(stream() % static_cast<uint32_t>(left));
        places.push_back(where == Where::Anywhere ? any : where == Where::First ? 0 : left - 1);
    }
    return places;
}

template <class Item> std::vector<Item> plainDeal(int32_t n, const std::vector<int32_t>& places) {
    std::vector<Item> list = numbered<Item>(n);
    std::vector<Item> dealt;
    for (const int32_t place : places) {
        dealt.push_back(list[static_cast<std::size_t>(place)]);
        list.erase(list.begin() + place);
    }
    return dealt;
}

template <class Item>
void expectSameAsList(OrderedPool<Item>& pool, int32_t n, const std::vector<int32_t>& places) {
    std::vector<Item> dealt(places.size());
    pool.fill(numbered<Item>(n));
    pool.deal(places, dealt);
    EXPECT_EQ(dealt, plainDeal<Item>(n, places)) << n << " items";
}

} // namespace

TEST(OrderedPool, TakesTheRemainingInOrder) {
    const std::vector<int32_t> items = {10, 11, 12, 13, 14};
    OrderedPool<int32_t> pool;
    pool.fill(items);            // 10 11 12 13 14
    EXPECT_EQ(pool.take(1), 11); // 10 12 13 14
    EXPECT_EQ(pool.take(1), 12); // 10 13 14
    EXPECT_EQ(pool.take(2), 14); // 10 13
    EXPECT_EQ(pool.take(0), 10);
    EXPECT_EQ(pool.take(0), 13);
}

TEST(OrderedPool, ADealCanGoOnInParts) {
    OrderedPool<int32_t> pool;
    pool.fill(numbered<int32_t>(40));
    std::mt19937 stream(8);
    const std::vector<int32_t> places = placesOf(40, Where::Anywhere, stream);
    std::vector<int32_t> dealt(40);
    pool.deal(std::span(places).first(15), std::span(dealt).first(15));
    pool.deal(std::span(places).subspan(15), std::span(dealt).subspan(15));
    EXPECT_EQ(dealt, plainDeal<int32_t>(40, places));
}

TEST(OrderedPool, EverySmallSizeGivesTheDealOfAPlainList) {
    std::mt19937 stream(3);
    OrderedPool<uint8_t> bytes;
    OrderedPool<int32_t> numbers;
    for (int32_t n = 0; n < 300; ++n) {
        const std::vector<int32_t> places = placesOf(n, Where::Anywhere, stream);
        expectSameAsList(bytes, n, places);
        expectSameAsList(numbers, n, places);
    }
}

TEST(OrderedPool, TheEdgesOfItsLevelsGiveTheDealOfAPlainList) {
    std::mt19937 stream(4);
    OrderedPool<uint8_t> bytes;
    OrderedPool<int32_t> numbers;
    for (const int32_t edge : {kLeaf, kLow, 2 * kLow, kMiddle, 2 * kMiddle}) {
        for (const int32_t n : {edge - 1, edge, edge + 1}) {
            for (const Where where : {Where::Anywhere, Where::First, Where::Last}) {
                const std::vector<int32_t> places = placesOf(n, where, stream);
                expectSameAsList(bytes, n, places);
                expectSameAsList(numbers, n, places);
            }
        }
    }
}

// The first takes of pools with so many nodes that they are halved several times.
TEST(OrderedPool, ManyHighNodesGiveTheDealOfAPlainList) {
    constexpr std::size_t kTakes = 2000;
    std::mt19937 stream(9);
    OrderedPool<int32_t> pool;
    for (const int32_t n : {3 * kHigh, 3 * kHigh + 1, 4 * kHigh + 1, 5 * kHigh - 1, 9 * kHigh}) {
        for (const Where where : {Where::Anywhere, Where::First, Where::Last}) {
            std::vector<int32_t> places = placesOf(n, where, stream);
            places.resize(kTakes);
            expectSameAsList(pool, n, places);
        }
    }
}

TEST(OrderedPool, AFewHighNodesGiveTheDealOfAPlainList) {
    std::mt19937 stream(5);
    OrderedPool<int32_t> pool;
    for (const int32_t n : {kHigh - 1, kHigh, kHigh + 1, 2 * kHigh + 1}) {
        expectSameAsList(pool, n, placesOf(n, Where::Anywhere, stream));
    }
}

TEST(OrderedPool, ASmallPoolAfterALargeOneForgetsIt) {
    std::mt19937 stream(6);
    OrderedPool<uint8_t> pool;
    for (const int32_t n : {kMiddle + 1, 3, kLow, kLeaf + 1, 0, kLeaf}) {
        expectSameAsList(pool, n, placesOf(n, Where::Anywhere, stream));
    }
}

TEST(OrderedPool, TwoRowsAreFilledOneBehindTheOther) {
    std::mt19937 stream(7);
    OrderedPool<int32_t> pool;
    for (const int32_t n : {7, kLeaf, 40, 300}) {
        const std::vector<int32_t> items = numbered<int32_t>(n);
        const std::vector<int32_t> places = placesOf(n, Where::Anywhere, stream);
        for (std::size_t first = 0; first <= items.size(); ++first) {
            pool.fill(std::span(items).first(first), std::span(items).subspan(first));
            std::vector<int32_t> dealt(items.size());
            pool.deal(places, dealt);
            ASSERT_EQ(dealt, plainDeal<int32_t>(n, places)) << first << " of " << n;
        }
    }
}

TEST(OrderedPool, AHugePoolIsDealtInNoTime) {
    // With a list this would move 4 x 10^10 items.
    constexpr int32_t n = 400000;
    std::vector<int32_t> items(n);
    std::iota(items.begin(), items.end(), 0);
    OrderedPool<int32_t> pool;
    pool.fill(items);
    int64_t sum = 0;
    for (int32_t rest = n; rest > 0; --rest) {
        sum += pool.take(rest / 2);
    }
    EXPECT_EQ(sum, int64_t{n} * (n - 1) / 2);
}
