#include "control/CMenuEingabe.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <string_view>

namespace kva {

namespace {

constexpr auto kEndOfInput = std::char_traits<char>::eof();
constexpr std::string_view kDigits = "0123456789";

// Moves the next character to the end of `text` if it is one of `wanted`.
bool takeOneOf(std::string_view wanted, std::string& text) {
    const int next = std::cin.peek();
    if (next == kEndOfInput || wanted.find(static_cast<char>(next)) == std::string_view::npos) {
        return false;
    }
    text += static_cast<char>(std::cin.get());
    return true;
}

bool takeDigits(std::string& text) {
    const std::size_t before = text.size();
    while (takeOneOf(kDigits, text)) {
    }
    return text.size() > before;
}

// [+-] digits [. digits] [e [+-] digits], where the digits may lack on one side of the point.
// The conversion judges whether that is a number.
std::string takeDecimal() {
    std::string text;
    takeOneOf("+-", text);
    bool mantissa = takeDigits(text);
    if (takeOneOf(".", text)) {
        mantissa = takeDigits(text) || mantissa;
    }
    if (mantissa && takeOneOf("eE", text)) {
        takeOneOf("+-", text);
        takeDigits(text);
    }
    return text;
}

std::string takeWord() {
    std::string word;
    std::cin >> word;
    return word;
}

// The word that begins with `begun`. The rest of the line goes.
std::string dropLine(std::string begun) {
    const int next = std::cin.peek();
    if (next != kEndOfInput && std::isspace(next) == 0) {
        begun += takeWord();
    }
    std::cin.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    return begun;
}

// The number that is all of `text`, or the word that stands there instead. `convert` is strtol
// or strtod in form.
template <class Number, class Conversion>
NumberInput<Number> toNumber(const std::string& text, Conversion convert) {
    char* end = nullptr;
    const Number value = convert(text.c_str(), &end);
    if (!text.empty() && end == text.c_str() + text.size()) {
        return {value, {}};
    }
    return {std::nullopt, dropLine(text)};
}

// What fits of a name; a NUL byte ends it, as it does for the system.
std::string bounded(const std::string& name) {
    return name.substr(0, std::min(name.find('\0'), kInputLimit));
}

// The words behind the first one of a name in quotes, each behind a blank.
std::string takeQuoted(char quote) {
    std::string name;
    for (std::string word = takeWord(); !word.empty(); word = takeWord()) {
        const std::size_t end = word.find(quote);
        name.append(" ").append(word, 0, end);
        if (end != std::string::npos) {
            break;
        }
    }
    return name;
}

} // namespace

NumberInput<long> ReadWholeNumber() {
    std::string text;
    std::cin >> std::ws;
    takeOneOf("+-", text);
    takeDigits(text);
    return toNumber<long>(text, [](const char* begin, char** end) {
        return std::strtol(begin, end, 10); // out of range: the largest or smallest long
    });
}

NumberInput<double> ReadDecimal() {
    std::cin >> std::ws;
    return toNumber<double>(takeDecimal(), [](const char* begin, char** end) {
        return std::strtod(begin, end); // out of range: an infinity
    });
}

std::string ReadWord() {
    return bounded(takeWord());
}

std::string ReadFileName() {
    std::string name = takeWord();
    for (const char quote : {'"', '\''}) {
        if (name.find(quote) != std::string::npos) {
            name.erase(0, 1);
            name += takeQuoted(quote);
            break;
        }
    }
    return bounded(name);
}

} // namespace kva
