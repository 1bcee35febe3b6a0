#include "data/datarows.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/types.h>

namespace kva {

namespace {

// Large enough that the bytes moved to the front when the buffer slides are fewer than those
// read behind them.
constexpr int64_t kBufferSize = int64_t{1} << 19;
constexpr int64_t kBehind = 2; // bytes held behind a block: the LF of a CR in its last place,
                               // and the first byte of the row that follows
constexpr int64_t kScanSize = int64_t{1} << 16; // step of the search from the file's end
constexpr std::size_t kPiece = 512;             // bytes searched at once for the end of a row

bool isEmptyLineByte(char c) {
    return c == ' ' || c == '\r' || c == '\n';
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), isEmptyLineByte);
}

// Place of the first CR, LF or NUL from `from` on, or the end of the text. By pieces: where one of
// them never comes up, it is not sought far behind the others.
std::size_t findTextEnd(std::string_view text, std::size_t from) {
    for (; from < text.size(); from += kPiece) {
        const std::string_view piece = text.substr(from, kPiece);
        std::size_t end = piece.size();
        for (const char byte : {'\n', '\r', '\0'}) {
            end = std::min(end, piece.substr(0, end).find(byte));
        }
        if (end < piece.size()) {
            return from + end;
        }
    }
    return text.size();
}

} // namespace

// --- Cells ---------------------------------------------------------------------------

std::string_view takeCell(std::string_view& rest) {
    const std::string_view cell = rest.substr(0, rest.find('\t'));
    rest.remove_prefix(std::min(cell.size() + 1, rest.size()));
    return cell;
}

// --- DataWindow ------------------------------------------------------------

DataWindow::DataWindow(std::FILE* stream)
    : Stream(stream), Buffer(new (std::nothrow) char[kBufferSize]), Size(fileSize()),
      Ended(!Buffer || Size <= 0) {
    if (!Ended) {
        ContentEnd = findContentEnd(Size);
    }
    if (fseeko(Stream, 0, SEEK_SET) != 0) {
        fail();
        Ended = true;
    }
}

// 0 for a stream that cannot be sought: there is nothing to read then.
int64_t DataWindow::fileSize() {
    std::clearerr(Stream);
    if (fseeko(Stream, 0, SEEK_END) == 0) {
        return ftello(Stream);
    }
    fail();
    return 0;
}

void DataWindow::fail() {
    Failure = Failure != 0 ? Failure : errno;
}

int64_t DataWindow::findContentEnd(int64_t size) {
    int64_t end = size;
    while (end > 0) {
        const int64_t from = std::max<int64_t>(0, end - kScanSize);
        const auto bytes = static_cast<std::size_t>(end - from);
        if (fseeko(Stream, from, SEEK_SET) != 0 ||
            std::fread(Buffer.get(), 1, bytes, Stream) != bytes) {
            if (std::ferror(Stream) != 0) {
                fail();
            }
            return size; // what cannot be read here is left to the walk
        }
        while (end > from && isEmptyLineByte(Buffer[end - from - 1])) {
            --end;
        }
        if (end > from) {
            return end;
        }
    }
    return 0;
}

std::string_view DataWindow::block(int64_t offset) {
    if (!Ended && offset + kBlockSize + kBehind > Start + Held) {
        slide(offset);
    }
    const int64_t from = std::min(offset - Start, Held);
    return {Buffer.get() + from, static_cast<std::size_t>(std::min(kBlockSize, Held - from))};
}

void DataWindow::slide(int64_t offset) {
    const int64_t dropped = std::min(offset - Start, Held);
    Start += dropped;
    Held -= dropped;
    std::memmove(Buffer.get(), Buffer.get() + dropped, static_cast<std::size_t>(Held));
    const auto room = static_cast<std::size_t>(kBufferSize - Held);
    const std::size_t got = std::fread(Buffer.get() + Held, 1, room, Stream);
    Held += static_cast<int64_t>(got);
    Ended = got < room;
    if (std::ferror(Stream) != 0) {
        fail();
    } else if (Ended && Start + Held < Size) { // cut short meanwhile
        Failure = Failure != 0 ? Failure : EIO;
    }
}

char DataWindow::byteAt(int64_t offset) const {
    const int64_t place = offset - Start;
    return place >= 0 && place < Held ? Buffer[place] : '\0';
}

// --- Rows ------------------------------------------------------------------

DataRow findRow(const DataWindow& window, std::string_view block, int64_t blockStart,
                std::size_t from, std::size_t searchFrom) {
    from = std::min(from, block.size());
    const std::size_t end = findTextEnd(block, std::min(searchFrom, block.size()));
    DataRow row;
    row.text = block.substr(from, end - from);
    row.behind = block.substr(from);
    row.begin = blockStart + static_cast<int64_t>(from);
    row.lineEnd = blockStart + static_cast<int64_t>(end);
    row.hasLineEnd = end < block.size() && block[end] != '\0';
    const bool pair =
        row.hasLineEnd && block[end] == '\r' && window.byteAt(row.lineEnd + 1) == '\n';
    row.lastByte = row.lineEnd + (pair ? 1 : 0);
    return row;
}

RowWalk::RowWalk(DataWindow& window, int64_t before, CrLf crLf)
    : Window(window), LineEnds(crLf), Before(before) {}

bool RowWalk::next() {
    if (Ended || Before + 1 >= Window.contentEnd()) {
        Ended = true;
        return false;
    }
    const std::string_view block = Window.block(Before);
    if (block.size() < 2) { // the file became shorter meanwhile
        Ended = true;
        return false;
    }
    const bool behindCr = LineEnds == CrLf::CrOnly && block.substr(0, 2) == "\r\n";
    Row = findRow(Window, block, Before, 1, behindCr ? 2 : 1);
    BlockLast = Before + static_cast<int64_t>(block.size()) - 1;
    Before = LineEnds == CrLf::CrOnly ? Row.lineEnd : Row.lastByte;
    Ended = !Row.hasLineEnd;
    return !(Ended && isBlank(Row.text));
}

bool RowWalk::endsBlock() const {
    return Before >= BlockLast;
}

} // namespace kva
