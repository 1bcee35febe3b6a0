// Decimal output of doubles, byte for byte what printf's "%*.*f" prints.
#ifndef KVA_OUTPUT_NUMBERFORMAT_H
#define KVA_OUTPUT_NUMBERFORMAT_H

#include "output/digits.h"
#include "output/fixedpoint.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace kva {

// Room for any double with up to 9 decimals and a width of at most 32.
constexpr std::size_t kFixedBufferSize = 352;

// Writes `value` with `precision` decimals (0 to 9), padded on the left with
// blanks to `width` (0 to 32), into `buffer` (at least kFixedBufferSize bytes).
// Not finite values come out as "inf", "-inf", "nan" and "-nan".
// Result: the number of bytes; no zero byte is added.
std::size_t formatFixed(char* buffer, double value, int precision, int width = 0);

// Whether 0.0 <= value < bound; false for -0.0 and for what is no number. One comparison, since
// positive doubles are in the order of their bits.
inline bool isPositiveBelow(double value, double bound) {
    return std::bit_cast<uint64_t>(value) < std::bit_cast<uint64_t>(bound);
}

// The same as formatFixed(buffer, value, Decimals), Decimals 1 to 8, the short way for values with
// one digit before the point.
template <int Decimals> std::size_t formatDecimals(char* buffer, double value) {
    constexpr double kSmall = 9.5; // below it the first digit is not rounded up to 10
    if (!isPositiveBelow(value, kSmall)) {
        return formatFixed(buffer, value, Decimals);
    }
    constexpr auto kPower = static_cast<uint32_t>(powerOfTen(Decimals));
    const auto units = static_cast<uint32_t>(roundFixed(value, double{kPower}));
    buffer[0] = static_cast<char>('0' + units / kPower);
    buffer[1] = '.';
    return static_cast<std::size_t>(writeDigits<Decimals>(buffer + 2, units % kPower) - buffer);
}

} // namespace kva

#endif
