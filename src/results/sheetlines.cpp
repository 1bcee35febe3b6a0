#include "results/sheetlines.h"

#include <algorithm>
#include <cstring>

namespace kva {

namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 16U;

} // namespace

void splitCells(std::string_view text, std::vector<std::string_view>& cells) {
    cells.clear();
    std::size_t begin = 0;
    for (;;) {
        const std::size_t tab = text.find('\t', begin);
        if (tab == std::string_view::npos) {
            cells.push_back(text.substr(begin));
            return;
        }
        cells.push_back(text.substr(begin, tab - begin));
        begin = tab + 1;
    }
}

SheetLines::SheetLines(std::istream& in, bool openEnd, std::size_t longest)
    : In(in), OpenEnd(openEnd), Longest(longest), Buffer(kBufferBytes) {}

bool SheetLines::next() {
    if (!sound() || Ended) {
        return false;
    }
    Line.clear();
    ++Number;
    while (At < End || fill()) {
        if (takePiece()) {
            return true;
        }
        if (Line.size() > Longest) {
            fault("the line is too long");
            return false;
        }
    }
    Ended = true;
    if (In.bad()) {
        fault("cannot be read any further");
        return false;
    }
    if (!Line.empty() && !OpenEnd) {
        fault("the sheet is cut off here");
    }
    return sound() && !Line.empty();
}

std::span<const std::string_view> SheetLines::cells() {
    splitCells(Line, Cells);
    return Cells;
}

std::span<const std::string_view> SheetLines::closedCells() {
    splitCells(Line, Cells);
    if (Cells.size() > 1) {
        if (!Cells.back().empty()) {
            fault("the last cell does not end");
        }
        Cells.pop_back();
    }
    return Cells;
}

void SheetLines::fault(const std::string& what) {
    if (Fault.empty()) {
        Fault = "line " + std::to_string(Number) + ": " + what;
    }
}

bool SheetLines::fill() {
    if (!In.good()) {
        return false;
    }
    In.read(Buffer.data(), static_cast<std::streamsize>(Buffer.size()));
    At = 0;
    End = static_cast<std::size_t>(In.gcount());
    return End > 0;
}

// Adds what the buffer has of the line; whether that is all of it.
bool SheetLines::takePiece() {
    const char* const begin = Buffer.data() + At;
    const void* const found = std::memchr(begin, '\n', End - At);
    const char* const end =
        found != nullptr ? static_cast<const char*>(found) : Buffer.data() + End;
    Line.append(begin, end);
    At = static_cast<std::size_t>(end - Buffer.data()) + (found != nullptr ? 1 : 0);
    return found != nullptr;
}

} // namespace kva
