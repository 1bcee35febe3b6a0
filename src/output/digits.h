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

// The digits of 0 to 999 in four bytes each, at these places; 0 in the fourth.
constexpr std::array<char, 4000> digitTable(std::size_t hundreds, std::size_t tens,
                                            std::size_t ones) {
    std::array<char, 4000> table{};
    for (std::size_t n = 0; n < 1000; ++n) {
        table[4 * n + hundreds] = static_cast<char>('0' + n / 100);
        table[4 * n + tens] = static_cast<char>('0' + n / 10 % 10);
        table[4 * n + ones] = static_cast<char>('0' + n % 10);
    }
    return table;
}

// "000" to "999", each with a zero byte behind.
constexpr auto kTriples = digitTable(0, 1, 2);

// "0.00" to "9.99".
constexpr auto kPointed = [] {
    std::array<char, 4000> table = digitTable(0, 2, 3);
    for (std::size_t n = 1; n < table.size(); n += 4) {
        table[n] = '.';
    }
    return table;
}();

// The last `Count` digits (1 to 9) of a number, which has no more, with leading zeros. Result:
// the place behind them. Up to three bytes there are written, too.
template <int Count> char* writeDigits(char* out, uint32_t number) {
    constexpr std::size_t kStep = 4; // of a triple
    if constexpr (Count > 3) {
        out = writeDigits<Count - 3>(out, number / 1000);
        return writeDigits<3>(out, number % 1000);
    } else if constexpr (Count == 3) {
        std::memcpy(out, &kTriples[kStep * number], kStep); // four bytes are one step
        return out + Count;
    } else {
        std::memcpy(out, &kTriples[kStep * number + (3 - Count)], Count);
        return out + Count;
    }
}

} // namespace kva

#endif
