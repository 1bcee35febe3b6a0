#include "check/cellreading.h"

#include "data/dataread.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>

namespace kva {

namespace {

constexpr std::string_view kBlanks = " \v\f";
constexpr std::string_view kDigits = "0123456789";
constexpr std::size_t kLongestAllele = 5; // digits of an allele that is believed to be one

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::size_t digitsInFront(std::string_view text) {
    return std::min(text.find_first_not_of(kDigits), text.size());
}

bool isMissingWord(std::string_view text) {
    constexpr std::string_view kWords[] = {"na",   "n/a",     "nan", "nd", "n.d.", "null",
                                           "none", "missing", "?",   "??", "???",  "-",
                                           "--",   ".",       "*",   "x"};
    std::string small(text.substr(0, kLongestAllele * 2));
    std::transform(small.begin(), small.end(), small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return std::find(std::begin(kWords), std::end(kWords), small) != std::end(kWords);
}

// Digits alone. Six digits, or four that begin with 0, are two alleles written together.
CellContent kindOfDigits(std::string_view digits) {
    const std::size_t zeros = std::min(digits.find_first_not_of('0'), digits.size() - 1);
    if (digits.size() == 6 || (digits.size() == 4 && digits.front() == '0')) {
        return CellContent::TwoAlleles;
    }
    if (digits.size() - zeros > 10 ||
        (digits.size() - zeros == 10 && digits.substr(zeros) > "2147483647")) {
        return CellContent::TooLarge;
    }
    return zeros > 0 ? CellContent::LeadingZeros : CellContent::Number;
}

// A number with something behind it; `number`: its digits, `behind` begins with no digit.
CellContent kindOfNumberAnd(std::string_view number, std::string_view behind) {
    std::string_view second = trimmed(behind.substr(1));
    const std::size_t digits = digitsInFront(second);
    const bool wholeSecond = digits > 0 && digits == second.size();
    const char separator = behind.front();
    if (separator == '.' || separator == ',') {
        const std::string_view decimals = behind.substr(1);
        const bool zeros = decimals.find_first_not_of('0') == std::string_view::npos;
        if (zeros) {
            return CellContent::Number; // 104.0 is 104
        }
        const bool pair =
            separator == ',' && number.size() >= 2 && digits == number.size() && digits >= 3;
        return !wholeSecond ? CellContent::Letters
               : pair       ? CellContent::TwoAlleles
                            : CellContent::Decimal;
    }
    constexpr std::string_view kSeparators = "/|:;-_ +\\";
    const bool divided = kSeparators.find(separator) != std::string_view::npos;
    if (!divided) {
        return CellContent::Letters;
    }
    // Also "104 / 106".
    if (!second.empty() && kSeparators.find(second.front()) != std::string_view::npos) {
        second = trimmed(second.substr(1));
    }
    return !second.empty() && digitsInFront(second) == second.size() ? CellContent::TwoAlleles
                                                                     : CellContent::Letters;
}

CellContent kindOfText(std::string_view text, std::string_view cell, int32_t value) {
    if (text.empty()) {
        return CellContent::Empty;
    }
    if (text.front() == '"' || text.front() == '\'') {
        return CellContent::Quoted;
    }
    const bool sign = text.size() > 1 && (text.front() == '-' || text.front() == '+');
    const std::string_view number = text.substr(sign ? 1 : 0);
    const std::size_t digits = digitsInFront(number);
    if (digits == 0) {
        return isMissingWord(text) ? CellContent::Word : CellContent::Text;
    }
    if (sign && text.front() == '-' && value < 0 && value != -1) {
        return CellContent::Negative;
    }
    if (digits < number.size()) {
        return kindOfNumberAnd(number.substr(0, digits), number.substr(digits));
    }
    if (number.find_first_not_of('0') == std::string_view::npos && cell.front() != '0') {
        return CellContent::ZeroMissing;
    }
    return sign && text.front() == '-' ? CellContent::Negative : kindOfDigits(number);
}

} // namespace

CellReading readCell(std::string_view cell) {
    const char* place = cell.data();
    const int32_t value = takeNumber(place, cell.data() + cell.size());
    return {kindOfText(trimmed(cell), cell, value), value};
}

} // namespace kva
