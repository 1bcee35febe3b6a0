// Whole numbers at the end of a line of text, byte for byte as printf writes them.
#ifndef KVA_FORMATS_DIGITS_H
#define KVA_FORMATS_DIGITS_H

#include <array>
#include <charconv>
#include <string>

namespace kva {

// Appends "%d".
inline void appendNumber(std::string& line, int number) {
    std::array<char, 12> digits;
    const std::to_chars_result end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number);
    line.append(digits.data(), end.ptr);
}

// Appends "%.{width}d" of a number of 0 or more: zeros in front, so that it has at least `width` (1
// to 9) digits.
inline void appendPadded(std::string& line, int number, int width) {
    int bound = 10; // numbers below it lack a digit
    for (int digits = 1; digits < width; ++digits, bound *= 10) {
        if (number < bound) {
            line += '0';
        }
    }
    appendNumber(line, number);
}

} // namespace kva

#endif
