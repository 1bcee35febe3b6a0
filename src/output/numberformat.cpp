// Most values take a direct way, through one whole number. For the others std::to_chars writes
// the same bytes.
#include "output/numberformat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>

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

// The digits before the point. Result: the place behind them.
char* writeWhole(char* out, uint64_t whole) {
    if (whole < 10) {
        *out = static_cast<char>('0' + whole);
        return out + 1;
    }
    if (whole < 100) {
        return writeDigits<2>(out, static_cast<uint32_t>(whole));
    }
    constexpr std::ptrdiff_t kMostDigits = 16;
    return std::to_chars(out, out + kMostDigits, whole).ptr;
}

// The whole text with `Precision` decimals (1 to 9), value x 10^Precision below kFixedPointLimit.
// Result: the place behind it.
template <int Precision> char* writeDirect(char* out, double value) {
    constexpr uint64_t kPower = powerOfTen(Precision);
    const uint64_t units = roundFixed(std::abs(value), static_cast<double>(kPower));
    *out = '-';
    out += std::signbit(value) ? 1 : 0;
    out = writeWhole(out, units / kPower);
    *out = '.';
    return writeDigits<Precision>(out + 1, static_cast<uint32_t>(units % kPower));
}

// A precision that has a direct way.
struct DirectWay {
    double Power; // 10^precision
    char* (*Write)(char* out, double value);
};

template <std::size_t... Less>
constexpr auto directWays(std::index_sequence<Less...> /*precisions less 1*/) {
    return std::array{DirectWay{static_cast<double>(powerOfTen(static_cast<int>(Less) + 1)),
                                writeDirect<static_cast<int>(Less) + 1>}...};
}
constexpr std::size_t kMaxPrecision = 9;
constexpr auto kDirectWays = directWays(std::make_index_sequence<kMaxPrecision>());

// --- All values --------------------------------------------------------------------

// Result: the place behind the text.
char* writeText(char* buffer, double value, int precision) {
    if (precision > 0) {
        const DirectWay& direct = kDirectWays[precision - 1];
        if (std::abs(value) * direct.Power < kFixedPointLimit) {
            return direct.Write(buffer, value);
        }
    }
    if (!std::isfinite(value)) {
        const char* word = nonFiniteWord(value);
        const std::size_t length = std::strlen(word);
        std::memcpy(buffer, word, length);
        return buffer + length;
    }
    return std::to_chars(buffer, buffer + kFixedBufferSize, value, std::chars_format::fixed,
                         precision)
        .ptr;
}

} // namespace

std::size_t formatFixed(char* buffer, double value, int precision, int width) {
    const auto length = static_cast<std::size_t>(writeText(buffer, value, precision) - buffer);
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
