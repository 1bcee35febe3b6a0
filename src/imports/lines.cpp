#include "imports/lines.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::string_view kBlanks = " \t\v\f";
constexpr std::size_t kQuotedBytes = 30;

} // namespace

std::vector<Line> linesOf(std::string_view text) {
    if (text.starts_with("\xef\xbb\xbf")) {
        text.remove_prefix(3);
    }
    std::vector<Line> lines;
    std::size_t number = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        ++number;
        if (!trimmed(text.substr(0, end)).empty()) {
            lines.push_back({number, text.substr(0, end)});
        }
        const std::size_t lineEnd = text.substr(end).starts_with("\r\n") ? 2 : 1;
        text.remove_prefix(std::min(end + lineEnd, text.size()));
    }
    return lines;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t at = line.find_first_not_of(kBlanks);
    while (at != std::string_view::npos) {
        const std::size_t end = std::min(line.find_first_of(kBlanks, at), line.size());
        words.push_back(line.substr(at, end - at));
        at = line.find_first_not_of(kBlanks, end);
    }
    return words;
}

std::vector<std::string> cellsOf(std::string_view line, char separator) {
    std::vector<std::string> cells(1);
    bool quotes = false; // inside quotes
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quotes && c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
            cells.back() += c;
            ++i;
        } else if (c == '"' && (quotes || trimmed(cells.back()).empty())) {
            quotes = !quotes;
        } else if (c == separator && !quotes) {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    for (std::string& cell : cells) {
        cell = std::string(trimmed(cell));
    }
    return cells;
}

char separatorOf(std::string_view line) {
    for (const char separator : {'\t', ';', ','}) {
        if (line.find(separator) != std::string_view::npos) {
            return separator;
        }
    }
    return '\0';
}

std::optional<int32_t> wholeNumber(std::string_view text, int32_t most) {
    if (text.empty()) {
        return std::nullopt;
    }
    int64_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + (c - '0');
        if (value > most) {
            return std::nullopt;
        }
    }
    return static_cast<int32_t>(value);
}

std::string smallLettersOf(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return small;
}

std::string quotedText(std::string_view text) {
    std::string shown(text.substr(0, kQuotedBytes));
    std::replace_if(
        shown.begin(), shown.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '?');
    return "'" + shown + (text.size() > kQuotedBytes ? "...'" : "'");
}

} // namespace kva
