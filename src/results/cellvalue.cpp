#include "results/cellvalue.h"

#include <algorithm>

namespace kva {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Digits, or digits, a point and digits.
bool isUnsignedNumber(std::string_view text) {
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos) {
        return isWholeNumber(text);
    }
    return isWholeNumber(text.substr(0, point)) && isWholeNumber(text.substr(point + 1));
}

// Whether a value is this whole number, with or without decimals.
bool isExactly(std::string_view value, std::string_view whole) {
    return value.starts_with(whole) &&
           (value.size() == whole.size() || value[whole.size()] == '.') &&
           value.find_first_not_of(".0", whole.size()) == std::string_view::npos;
}

struct Word {
    std::string_view cell;
    std::string_view value;
};

constexpr Word kWords[] = {{"n.d.", ""},    {"n.s.", ""},   {"nan", "NaN"},
                           {"-nan", "NaN"}, {"inf", "Inf"}, {"-inf", "-Inf"}};

} // namespace

std::optional<std::string_view> cellValue(std::string_view cell) {
    cell.remove_prefix(std::min(cell.find_first_not_of(' '), cell.size()));
    for (const Word& word : kWords) {
        if (cell == word.cell) {
            return word.value;
        }
    }
    if (!isUnsignedNumber(cell.substr(cell.starts_with('-') ? 1 : 0))) {
        return std::nullopt;
    }
    return isExactly(cell, "-32767") ? std::string_view() : cell;
}

bool isWholeNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool isNegative(std::string_view value) {
    return value.starts_with('-') && value.find_first_not_of("-.0") != std::string_view::npos;
}

bool isUnreachedLimit(std::string_view value) {
    return isExactly(value, "100000") || isExactly(value, "-100000");
}

bool isUnreachedReference(std::string_view value) {
    return isExactly(value, "500000");
}

} // namespace kva
