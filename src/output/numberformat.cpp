// Most values take a direct way that needs whole numbers of 128 bits. Where the compiler has none,
// and for large values, std::to_chars writes the same bytes.
#include "output/numberformat.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace kva {

namespace {

// The words of printf for what is not finite. The sign of a nan shows, too.
const char* nonFiniteWord(double value) {
    if (std::isnan(value)) {
        return std::signbit(value) ? "-nan" : "nan";
    }
    return value < 0 ? "-inf" : "inf";
}

// --- The direct way ----------------------------------------------------------------

#if defined(__SIZEOF_INT128__) && !defined(KVA_WITHOUT_INT128)
#define KVA_DIRECT_WAY

__extension__ using Wide = unsigned __int128;

constexpr double kDirectLimit = 1e9; // below it values take the direct way
constexpr int kMantissaBits = 52;
constexpr int kMaxPrecision = 9;
constexpr std::array<uint64_t, kMaxPrecision + 1> kPowers = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

constexpr int kExponentOffset = 1075; // of the mantissa read as a whole number
constexpr int kWordBits = 64;

// A value cut into its whole part and its decimals, rounded as printf rounds: exactly, halves to
// even.
struct Digits {
    uint64_t Whole;
    uint64_t Decimals; // value's fraction x 10^precision
};

// A double is mantissa / 2^shift, so its fraction is a fixed-point number of 64 bits, and the
// fraction times the power of ten is exact in 128.
Digits roundFraction(uint64_t mantissa, int shift, uint64_t power) {
    const uint64_t fraction = mantissa << static_cast<unsigned>(kWordBits - shift);
    const Wide product = Wide{fraction} * power;
    const auto rest = static_cast<uint64_t>(product);
    constexpr uint64_t half = uint64_t{1} << (kWordBits - 1);
    Digits digits{mantissa >> static_cast<unsigned>(shift),
                  static_cast<uint64_t>(product >> kWordBits)};
    if (rest > half || (rest == half && digits.Decimals % 2 == 1)) {
        ++digits.Decimals;
    }
    return digits;
}

// The same for a value too small for a fraction of 64 bits.
Digits roundSmall(uint64_t mantissa, int shift, uint64_t power) {
    constexpr int kProductBits = 84; // of a mantissa of 53 bits times 10^9
    if (shift > kProductBits) {
        return {0, 0}; // below a half
    }
    const Wide product = Wide{mantissa} * power;
    const auto whole = static_cast<uint64_t>(product >> shift);
    const Wide rest = product - (Wide{whole} << shift);
    const Wide half = Wide{1} << (shift - 1);
    const bool up = rest > half || (rest == half && whole % 2 == 1);
    return {0, whole + (up ? 1 : 0)};
}

// |value| below kDirectLimit.
Digits cutAndRound(double value, int precision) {
    const uint64_t power = kPowers[static_cast<std::size_t>(precision)];
    const auto bits = std::bit_cast<uint64_t>(value);
    const auto biased = static_cast<int>((bits >> kMantissaBits) & 0x7FFU);
    const uint64_t fraction = bits & ((uint64_t{1} << kMantissaBits) - 1);
    const uint64_t mantissa = biased == 0 ? fraction : fraction | (uint64_t{1} << kMantissaBits);
    const int shift = kExponentOffset - (biased == 0 ? 1 : biased);
    Digits digits = shift < kWordBits ? roundFraction(mantissa, shift, power)
                                      : roundSmall(mantissa, shift, power);
    if (digits.Decimals == power) {
        return {digits.Whole + 1, 0};
    }
    return digits;
}

constexpr auto kPairs = [] { // "00" to "99"
    std::array<char, 200> pairs{};
    for (std::size_t n = 0; n < 100; ++n) {
        pairs[2 * n] = static_cast<char>('0' + n / 10);
        pairs[2 * n + 1] = static_cast<char>('0' + n % 10);
    }
    return pairs;
}();

// The last `count` digits of `number` (at most 9), with leading zeros. Result: the place behind
// them.
char* writeDecimals(char* out, uint32_t number, int count) {
    char* const end = out + count;
    if (number == 0) { // whole numbers are common in the sheets
        std::memcpy(out, "000000000", kMaxPrecision);
        return end;
    }
    char* digit = end;
    for (; count >= 2; count -= 2, number /= 100) {
        digit -= 2;
        std::memcpy(digit, &kPairs[std::size_t{2} * (number % 100)], 2);
    }
    if (count == 1) {
        *out = static_cast<char>('0' + number % 10);
    }
    return end;
}

// The digits of a value below kDirectLimit, with at least one decimal.
std::size_t writeDirect(char* buffer, double value, int precision) {
    const Digits digits = cutAndRound(value, precision);
    char* out = buffer;
    if (std::signbit(value)) {
        *out++ = '-';
    }
    if (digits.Whole < 10) {
        *out++ = static_cast<char>('0' + digits.Whole);
    } else if (digits.Whole < 100) {
        out = writeDecimals(out, static_cast<uint32_t>(digits.Whole), 2);
    } else {
        out = std::to_chars(out, buffer + kFixedBufferSize, digits.Whole).ptr;
    }
    *out++ = '.';
    out = writeDecimals(out, static_cast<uint32_t>(digits.Decimals), precision);
    return static_cast<std::size_t>(out - buffer);
}

#endif

// --- All values --------------------------------------------------------------------

std::size_t writeDigits(char* buffer, double value, int precision) {
#ifdef KVA_DIRECT_WAY
    if (precision > 0 && std::abs(value) < kDirectLimit) {
        return writeDirect(buffer, value, precision);
    }
#endif
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

} // namespace kva
