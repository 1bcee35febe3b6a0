#include "data/numberformat.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

// The words of printf for what is not finite. The sign of a nan shows, too.
const char* nonFiniteWord(double value) {
    if (std::isnan(value)) {
        return std::signbit(value) ? "-nan" : "nan";
    }
    return value < 0 ? "-inf" : "inf";
}

__extension__ using Wide = unsigned __int128;

constexpr double kDirectLimit = 1e9; // below it, value x 10^9 still fits 64 bits
constexpr int kMantissaBits = 52;
constexpr int kMaxPrecision = 9;
constexpr std::array<uint64_t, kMaxPrecision + 1> kPowers = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

// |value| x 10^precision, rounded to an integer as printf rounds: exactly, halves to even. A
// double is mantissa / 2^shift, so the product is exact in 128 bits. |value| < kDirectLimit.
uint64_t scaledInteger(double value, int precision) {
    const auto bits = std::bit_cast<uint64_t>(value);
    const uint64_t biased = (bits >> kMantissaBits) & 0x7FFU;
    const uint64_t fraction = bits & ((uint64_t{1} << kMantissaBits) - 1);
    const uint64_t mantissa = biased == 0 ? fraction : fraction | (uint64_t{1} << kMantissaBits);
    const int shift = 1075 - static_cast<int>(biased == 0 ? 1 : biased);
    constexpr int kProductBits = 84; // of a mantissa of 53 bits times 10^9
    if (shift > kProductBits) {
        return 0; // below a half
    }
    const Wide product = Wide{mantissa} * kPowers[static_cast<std::size_t>(precision)];
    const auto whole = static_cast<uint64_t>(product >> shift);
    const Wide rest = product - (Wide{whole} << shift);
    const Wide half = Wide{1} << (shift - 1);
    const bool up = rest > half || (rest == half && whole % 2 == 1);
    return whole + (up ? 1 : 0);
}

// The digits of a value below kDirectLimit.
std::size_t writeDirect(char* buffer, double value, int precision) {
    const uint64_t scaled = scaledInteger(value, precision);
    const uint64_t power = kPowers[static_cast<std::size_t>(precision)];
    char* out = buffer;
    if (std::signbit(value)) {
        *out++ = '-';
    }
    out = std::to_chars(out, buffer + kFixedBufferSize, scaled / power).ptr;
    if (precision > 0) {
        *out++ = '.';
        uint64_t decimals = scaled % power;
        for (char* digit = out + precision; digit != out; decimals /= 10) {
            *--digit = static_cast<char>('0' + decimals % 10);
        }
        out += precision;
    }
    return static_cast<std::size_t>(out - buffer);
}

std::size_t writeDigits(char* buffer, double value, int precision) {
    if (std::abs(value) < kDirectLimit) {
        return writeDirect(buffer, value, precision);
    }
    if (!std::isfinite(value)) {
        const char* word = nonFiniteWord(value);
        const std::size_t length = std::strlen(word);
        std::memcpy(buffer, word, length);
        return length;
    }
    const std::to_chars_result end = std::to_chars(buffer, buffer + kFixedBufferSize, value,
                                                   std::chars_format::fixed, precision);
    return static_cast<std::size_t>(end.ptr - buffer);
}

} // namespace

std::size_t formatFixed(char* buffer, double value, int precision, int width) {
    const std::size_t length = writeDigits(buffer, value, precision);
    const auto wanted = static_cast<std::size_t>(std::max(width, 0));
    if (length >= wanted) {
        return length;
    }
    const std::size_t blanks = wanted - length;
    std::memmove(buffer + blanks, buffer, length);
    std::memset(buffer, ' ', blanks);
    return wanted;
}
