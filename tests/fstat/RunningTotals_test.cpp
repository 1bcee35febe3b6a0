#include "fstat/RunningTotals.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

using namespace kva;

namespace {

// Takes all items at random places and compares each part and place with counts per part.
template <class Total, std::size_t Parts>
void expectAsCounted(std::size_t n, std::size_t partSize, std::mt19937& stream) {
    RunningTotals<Total, Parts> totals;
    totals.fill(n, partSize);
    std::vector<std::size_t> left(Parts, 0);
    for (std::size_t item = 0; item < n; ++item) {
        ++left[item / partSize];
    }
    for (std::size_t rest = n; rest > 0; --rest) {
        std::size_t r = stream() % rest;
        std::size_t place = r;
        std::size_t part = 0;
        for (; place >= left[part]; ++part) {
            place -= left[part];
        }
        --left[part];
        ASSERT_EQ(totals.take(r), part) << n << " items, " << rest << " left";
        ASSERT_EQ(r, place) << n << " items, " << rest << " left";
    }
}

} // namespace

TEST(RunningTotals, FindThePartOfEachPlace) {
    std::mt19937 stream(1);
    for (std::size_t n = 0; n <= 256; ++n) {
        expectAsCounted<uint8_t, 16>(n, 16, stream);
        expectAsCounted<uint16_t, 8>(8 * n, 256, stream);
    }
    for (const std::size_t n : {1U, 2048U, 2049U, 32767U, 32768U}) { // beyond the sign bit
        expectAsCounted<uint16_t, 16>(n, 2048, stream);
    }
}

TEST(HighBits, AreThoseOfEachByte) {
    std::mt19937 stream(2);
    for (int round = 0; round < 100; ++round) {
        Bytes bytes = {};
        uint32_t expected = 0;
        for (uint32_t k = 0; k < 16; ++k) {
            const auto byte = static_cast<uint8_t>(stream());
            bytes[k] = byte;
            expected += byte >= 128 ? 1U << k : 0U;
        }
        EXPECT_EQ(highBits(bytes), expected);
        EXPECT_EQ(lastBit(expected | 1U),
                  static_cast<std::size_t>(std::bit_width(expected | 1U) - 1));
    }
}
