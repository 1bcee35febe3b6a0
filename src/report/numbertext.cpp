#include "report/numbertext.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kva {

namespace {

// to_chars takes no locale: the point stays a point.
std::string textOf(double value, std::chars_format format, int digits) {
    if (std::isnan(value)) {
        return {};
    }
    std::array<char, 400> text{}; // the longest double has 309 digits before the point
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, format, digits);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

} // namespace

std::string fixedText(double value, int digits) {
    return textOf(value, std::chars_format::fixed, digits);
}

std::string shortText(double value, int digits) {
    return textOf(value, std::chars_format::general, digits);
}

} // namespace kva
