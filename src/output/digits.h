// The digits of whole numbers, three at a time.
#ifndef KVA_OUTPUT_DIGITS_H
#define KVA_OUTPUT_DIGITS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kva {

constexpr uint64_t powerOfTen(int exponent) {
    return exponent == 0 ? 1 : 10 * powerOfTen(exponent - 1);
}

// "000" to "999", each with a zero byte behind.
constexpr auto kTriples = [] {
    std::array<char, 4000> triples{};
    for (std::size_t n = 0; n < 1000; ++n) {
        triples[4 * n] = static_cast<char>('0' + n / 100);
        triples[4 * n + 1] = static_cast<char>('0' + n / 10 % 10);
        triples[4 * n + 2] = static_cast<char>('0' + n % 10);
    }
    return triples;
}();

// The last `Count` digits (1 to 9) of a number, which has no more, with leading zeros. Result:
// the place behind them. Up to three bytes there are written, too.
template <int Count> char* writeDigits(char* out, uint32_t number) {
    constexpr std::size_t kStep = 4; // of a triple
    if constexpr (Count > 3) {
        out = writeDigits<Count - 3>(out, number / 1000);
        std::memcpy(out, &kTriples[kStep * (number % 1000)], kStep); // four bytes are one step
        return out + 3;
    } else {
        std::memcpy(out, &kTriples[kStep * number + (3 - Count)], Count);
        return out + Count;
    }
}

} // namespace kva

#endif
