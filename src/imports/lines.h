// A text as lines, words and cells.
#ifndef KVA_IMPORTS_LINES_H
#define KVA_IMPORTS_LINES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

struct Line {
    std::size_t number = 0; // from 1
    std::string_view text;  // without its line end
};

// The lines of a text, which must outlive them, without those that are empty or blank. LF, CR LF
// and CR end a line; a byte-order mark in front of the text is skipped.
std::vector<Line> linesOf(std::string_view text);

// Without blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);

// The words of a line between blanks and tabs.
std::vector<std::string_view> wordsOf(std::string_view line);

// The cells of a line between separators, trimmed; a cell in double quotes may hold the separator,
// and two quotes for one.
std::vector<std::string> cellsOf(std::string_view line, char separator);

// The separator of a table: a tab, else a semicolon, else a comma, whichever the line holds first
// of these; 0 if none.
char separatorOf(std::string_view line);

// The number that the text is, digits alone of at most `most`; nothing otherwise.
std::optional<int32_t> wholeNumber(std::string_view text, int32_t most = 2147483647);

// Small letters (ASCII).
std::string smallLettersOf(std::string_view text);

// Text of a file in a message: cut, without control characters, in single quotes.
std::string quotedText(std::string_view text);

} // namespace kva

#endif
