// The rows of a data file, in the blocks in which the file is read.
//
// A file is seen through blocks of at most 200000 bytes. The block of the header rows
// begins at byte 0; each data row has a block of its own, which begins with the last
// byte of the line end before the row:
//
//     North\td\t1\t104\r\nSouth\td\t2\t88\r\n
//                      ^ first byte of the block of the row "South"
//
// A block is text that ends at its first NUL byte. The row it was made for ends at its
// first CR or LF, and with the block's text if it has none: what lies behind is not read.
#ifndef KVA_DATA_DATAROWS_H
#define KVA_DATA_DATAROWS_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>

namespace kva {

constexpr int64_t kBlockSize = 200000; // bytes of the largest block

// True if a row may not fit in a block: 4 bytes for each allele, and 211 for the rest.
// `columns`: columns per locus, 1 or 2.
constexpr bool rowTooLong(int64_t loci, int64_t columns) {
    return (loci * 4 + 4) * columns + 211 > kBlockSize;
}

// Takes the text up to the next tab, or to the end, off the front of `rest`, and the tab too.
std::string_view takeCell(std::string_view& rest);

// A file as blocks, through one buffer that slides along it: each byte is read once, and no
// more than the buffer is held, whatever the size of the file.
class DataWindow {
  public:
    // Clears the stream's error state and stands at its start. The stream stays the
    // caller's, who must not move it meanwhile.
    explicit DataWindow(std::FILE* stream);

    // False if there was no memory for the buffer; then every block is empty.
    bool hasBuffer() const { return Buffer != nullptr; }

    // The block that begins at byte `offset`, empty behind the end of the file. It is valid
    // until the next call. Offsets never fall, and rise by a block at most.
    std::string_view block(int64_t offset);

    // The byte at `offset` of the file: one of the last block or of the two behind it; NUL behind
    // the end of the file, and for what is not held.
    char byteAt(int64_t offset) const;

    // Bytes of the file when the window was made; 0 if it cannot be sought.
    int64_t size() const { return Size; }

    // The system's error number of the first read or seek that failed so far; 0: none did.
    int failure() const { return Failure; }

    // Offset behind the last byte that is no blank, CR or LF: from here on the file holds
    // empty lines at most.
    int64_t contentEnd() const { return ContentEnd; }

  private:
    // Bytes of the file; 0 for a stream that cannot be sought. Leaves the stream at its end.
    int64_t fileSize();

    // contentEnd() of a file of `size` bytes, searched from its end through the buffer; `size` if
    // it cannot be read. Leaves the stream anywhere.
    int64_t findContentEnd(int64_t size);

    // Keeps the system's error number, if it is the first.
    void fail();

    // Drops the bytes in front of `offset` and fills the buffer up from the stream.
    void slide(int64_t offset);

    std::FILE* Stream;              // NOT OWNED
    std::unique_ptr<char[]> Buffer; // null if there was no memory
    int Failure = 0;                // see failure()
    int64_t Size;                   // see size()
    int64_t Start = 0;              // offset in the file of the buffer's first byte
    int64_t Held = 0;               // bytes in the buffer
    int64_t ContentEnd = 0;         // see contentEnd(); 0 if there is nothing to read
    bool Ended;                     // nothing is left to read behind the buffer
};

// A row inside its block, valid as long as the block. Offsets count the file's bytes, from 0.
struct DataRow {
    std::string_view text;   // the row without its line end
    std::string_view behind; // from the row's first byte to the end of the block
    int64_t begin = 0;       // offset of its first byte
    int64_t lineEnd = 0;     // offset of the first byte of its line end
    int64_t lastByte = 0;    // offset of the last byte of its line end: the LF of CR LF
    bool hasLineEnd = false; // false: the block's text ends before the row does, and lineEnd and
                             // lastByte lie behind the text
};

// The row that begins at byte `from` of `block`, which begins at offset `blockStart` of the file
// and is the last one of `window`. Its line end is looked for from byte `searchFrom` of the block
// on. Both places are cut to the end of the block.
DataRow findRow(const DataWindow& window, std::string_view block, int64_t blockStart,
                std::size_t from, std::size_t searchFrom);

// What a CR LF behind a row counts as: one line end, or a CR that ends the row and an LF in
// front of the next one.
enum class CrLf { LineEnd, CrOnly };

// Walks over the data rows of a file. The walk ends with the file, with empty lines at its end
// (also a last line of blanks), and behind a row that has no line end in its block.
class RowWalk {
  public:
    // `window` stays the caller's and must outlive the walk. `before`: offset of the last byte of
    // the line end in front of the first row.
    RowWalk(DataWindow& window, int64_t before, CrLf crLf);

    // Goes to the next row, first to the first, reading on in the file. False if there is none.
    bool next();

    // The row on which the walk stands, valid until the next next().
    const DataRow& row() const { return Row; }

    // True if the row's line end is the last byte of its block.
    bool endsBlock() const;

  private:
    DataWindow& Window;    // NOT OWNED
    CrLf LineEnds;         // what CR LF counts as
    int64_t Before;        // as in the constructor, for the row that comes next
    int64_t BlockLast = 0; // offset of the last byte of the row's block
    DataRow Row;           // empty before the first next()
    bool Ended = false;    // no row comes after this one
};

} // namespace kva

#endif
