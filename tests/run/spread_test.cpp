// Units of work on threads: each once, taken in order.
#include "run/spread.h"

#include "base/plainlocale.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <mutex>
#include <numeric>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace kva;

namespace {

// The units in the order in which they were taken.
std::vector<std::size_t> takenUnits(std::size_t units, unsigned threads, std::size_t ahead) {
    std::vector<std::size_t> taken;
    Spread(1, threads).inOrder(units, ahead, [&]() -> Spread::Work {
        return [&taken](std::size_t unit) -> Spread::Take {
            // Early units last longer, so that later ones are done before them.
            std::this_thread::sleep_for(std::chrono::microseconds(unit % 7 == 0 ? 500 : 0));
            return [&taken, unit] { taken.push_back(unit); };
        };
    });
    return taken;
}

} // namespace

TEST(Spread, ThreadsTakeTheLocaleOfTheirCallerOver) {
    const PlainLocale plain;
    std::mutex mutex;
    std::set<locale_t> seen;
    Spread(1, 2).inOrder(20, 4, [&]() -> Spread::Work {
        return [&](std::size_t) -> Spread::Take {
            const std::lock_guard lock(mutex);
            seen.insert(localeOfThread());
            return nullptr;
        };
    });
    EXPECT_EQ(seen, std::set<locale_t>{localeOfThread()});
}

TEST(Spread, TakesAllUnitsInOrder) {
    for (const unsigned threads : {1U, 2U, 5U}) {
        for (const std::size_t ahead : {std::size_t{1}, std::size_t{100}}) {
            std::vector<std::size_t> all(200);
            std::iota(all.begin(), all.end(), 0);
            EXPECT_EQ(takenUnits(200, threads, ahead), all);
        }
    }
    EXPECT_TRUE(takenUnits(0, 3, 4).empty());
}

TEST(Spread, DoesFewUnitsAhead) {
    std::atomic<std::size_t> taken = 0;
    std::atomic<std::size_t> farthest = 0;
    Spread(1, 2).inOrder(300, 3, [&]() -> Spread::Work {
        return [&](std::size_t unit) -> Spread::Take {
            if (unit == 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(30));
            }
            farthest = std::max(farthest.load(), unit - taken);
            return [&] { ++taken; };
        };
    });
    EXPECT_EQ(taken, 300U);
    EXPECT_LE(farthest, 4U);
    EXPECT_GT(farthest, 0U);
}

// Each of three units waits until all three are begun.
TEST(Spread, EachThreadHasAUnitHoweverFewAreAhead) {
    std::atomic<int> begun = 0;
    Spread(1, 3).inOrder(3, 0, [&]() -> Spread::Work {
        return [&](std::size_t) -> Spread::Take {
            ++begun;
            const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (begun < 3 && std::chrono::steady_clock::now() < end) {
                std::this_thread::yield();
            }
            EXPECT_EQ(begun, 3);
            return nullptr;
        };
    });
}

TEST(Spread, EachThreadHasItsOwnWork) {
    std::atomic<int> works = 0;
    Spread(1, 3).inOrder(10, 1, [&]() -> Spread::Work {
        ++works;
        return [](std::size_t) -> Spread::Take { return nullptr; };
    });
    EXPECT_EQ(works, 3);
}

TEST(Spread, TellsTheProgress) {
    std::vector<std::size_t> told;
    const Spread spread(1, 2, [&told](std::size_t done, std::size_t all) {
        EXPECT_EQ(all, 4U);
        told.push_back(done);
    });
    spread.inOrder(
        4, 1, []() -> Spread::Work { return [](std::size_t) -> Spread::Take { return nullptr; }; });
    EXPECT_EQ(told, (std::vector<std::size_t>{1, 2, 3, 4}));
}

TEST(Spread, ThrowsOnWhatAUnitThrows) {
    for (const bool inTake : {false, true}) {
        int taken = 0;
        const auto run = [&] {
            Spread(1, 2).inOrder(50, 1, [&]() -> Spread::Work {
                return [&](std::size_t unit) -> Spread::Take {
                    if (unit == 7 && !inTake) {
                        throw std::runtime_error("seven");
                    }
                    return [&taken, unit] {
                        if (unit == 7) {
                            throw std::runtime_error("seven");
                        }
                        ++taken;
                    };
                };
            });
        };
        EXPECT_THROW(run(), std::runtime_error);
        EXPECT_LE(taken, 7);
    }
}
