#include "fstat/OrderedPool.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

using namespace kva;

namespace {

// Takes all items at random places and compares each with a list whose gaps close one by one.
void expectSameAsList(OrderedPool& pool, int32_t n, std::mt19937& stream) {
    std::vector<int32_t> list(static_cast<std::size_t>(n));
    std::iota(list.begin(), list.end(), 0);
    pool.fill(n);
    while (!list.empty()) {
        const auto r = static_cast<std::ptrdiff_t>(stream() % list.size());
        ASSERT_EQ(pool.take(static_cast<int32_t>(r)), list[static_cast<std::size_t>(r)])
            << n << " items";
        list.erase(list.begin() + r);
    }
}

} // namespace

TEST(OrderedPool, TakesTheRemainingInOrder) {
    OrderedPool pool;
    pool.fill(5);               // 0 1 2 3 4
    EXPECT_EQ(pool.take(1), 1); // 0 2 3 4
    EXPECT_EQ(pool.take(1), 2); // 0 3 4
    EXPECT_EQ(pool.take(2), 4); // 0 3
    EXPECT_EQ(pool.take(0), 0);
    EXPECT_EQ(pool.take(0), 3);
}

TEST(OrderedPool, EverySizeGivesTheDealOfAPlainList) {
    std::mt19937 stream(3);
    OrderedPool pool;
    for (int32_t n = 0; n < 90; ++n) {
        expectSameAsList(pool, n, stream);
    }
    const int32_t edge = OrderedPool::kTreeFrom;
    for (const int32_t n : {255, edge - 1, edge, edge + 1, 2 * edge - 1, 2 * edge, 5000}) {
        expectSameAsList(pool, n, stream);
    }
}

TEST(OrderedPool, AHugePoolIsDealtInNoTime) {
    // With a list this would move 4 x 10^10 items.
    constexpr int32_t n = 400000;
    OrderedPool pool;
    pool.fill(n);
    int64_t sum = 0;
    for (int32_t rest = n; rest > 0; --rest) {
        sum += pool.take(rest / 2);
    }
    EXPECT_EQ(sum, int64_t{n} * (n - 1) / 2);
}
