#include "data/numberformat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

// The words of printf for what is not finite. The sign of a nan shows, too.
const char* nonFiniteWord(double value) {
    if (std::isnan(value)) {
        return std::signbit(value) ? "-nan" : "nan";
    }
    return value < 0 ? "-inf" : "inf";
}

std::size_t writeDigits(char* buffer, double value, int precision) {
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
