#include "data/datarows.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

using namespace kva;

namespace {

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream fileOf(const std::string& bytes) {
    Stream stream(std::tmpfile(), &std::fclose);
    std::fwrite(bytes.data(), 1, bytes.size(), stream.get());
    return stream;
}

// The rows of a file that begin behind byte 0, its first line end.
std::vector<std::string> rowsOf(const std::string& bytes, CrLf crLf = CrLf::LineEnd) {
    const Stream stream = fileOf(bytes);
    DataWindow window(stream.get());
    RowWalk walk(window, 0, crLf);
    std::vector<std::string> rows;
    while (walk.next()) {
        rows.emplace_back(walk.row().text);
    }
    return rows;
}

using Rows = std::vector<std::string>;

} // namespace

// --- DataWindow ------------------------------------------------------------

TEST(DataWindow, BlockHolds200000BytesOrTheRestOfTheFile) {
    const Stream stream = fileOf(std::string(200'100, 'x'));
    DataWindow window(stream.get());
    EXPECT_EQ(window.block(0).size(), 200'000U);
    EXPECT_EQ(window.block(100).size(), 200'000U);
    EXPECT_EQ(window.block(101).size(), 199'999U);
    EXPECT_EQ(window.block(200'099).size(), 1U);
    EXPECT_EQ(window.block(200'100).size(), 0U);
}

TEST(DataWindow, SlidingBlocksHoldTheBytesOfTheirPlaces) {
    std::string bytes; // 3 MB, several times the buffer
    for (int i = 0; bytes.size() < 3'000'000; ++i) {
        bytes += std::to_string(i) + ' ';
    }
    const Stream stream = fileOf(bytes);
    DataWindow window(stream.get());
    for (std::size_t offset = 0; offset < bytes.size(); offset += 137'001) {
        EXPECT_EQ(window.block(static_cast<int64_t>(offset)), bytes.substr(offset, 200'000))
            << offset;
    }
}

TEST(DataWindow, TwoBytesBehindABlockCanBeAsked) {
    const std::string tail = "\n\t";
    const Stream stream = fileOf(std::string(200'000, 'x') + tail);
    DataWindow window(stream.get());
    EXPECT_EQ(window.block(0).size(), 200'000U);
    EXPECT_EQ(window.byteAt(200'000), '\n');
    EXPECT_EQ(window.byteAt(200'001), '\t');
    EXPECT_EQ(window.byteAt(200'002), '\0');
}

TEST(DataWindow, BytesThatWereLeftBehindReadAsNul) {
    const Stream stream = fileOf(std::string(1'000'000, 'x'));
    DataWindow window(stream.get());
    for (int64_t offset = 0; offset <= 600'000; offset += 200'000) {
        (void)window.block(offset);
    }
    EXPECT_EQ(window.byteAt(0), '\0');
    EXPECT_EQ(window.byteAt(600'000), 'x');
}

TEST(DataWindow, BytesBehindABlockAreThereAtTheEndOfTheBufferToo) {
    std::string bytes;
    for (int i = 0; i < 700'000; ++i) {
        bytes += static_cast<char>('0' + i % 7);
    }
    const Stream stream = fileOf(bytes);
    DataWindow window(stream.get());
    // The buffer holds 524288 bytes: the blocks from about 324288 on end where it ends.
    for (int64_t offset : {0, 200'000, 324'286, 324'287, 324'288, 324'289}) {
        (void)window.block(offset);
        const auto behind = static_cast<std::size_t>(offset) + 200'000;
        EXPECT_EQ(window.byteAt(offset + 200'000), bytes[behind]) << offset;
        EXPECT_EQ(window.byteAt(offset + 200'001), bytes[behind + 1]) << offset;
    }
}

TEST(DataWindow, ContentEndsBehindTheLastByteThatIsNoBlankAndNoLineEnd) {
    const auto contentEnd = [](const std::string& bytes) {
        const Stream stream = fileOf(bytes);
        return DataWindow(stream.get()).contentEnd();
    };
    EXPECT_EQ(contentEnd("ab\n\r \n"), 2);
    EXPECT_EQ(contentEnd("ab\t\n"), 3); // a tab makes a row
    EXPECT_EQ(contentEnd(" \n"), 0);
    EXPECT_EQ(contentEnd("ab" + std::string(300'000, '\n')), 2);
}

TEST(DataWindow, EmptyFileHasAnEmptyBlock) {
    const Stream stream = fileOf("");
    DataWindow window(stream.get());
    EXPECT_TRUE(window.hasBuffer());
    EXPECT_EQ(window.block(0), "");
}

TEST(DataWindow, StreamThatCannotBeSoughtIsEmpty) {
    const Stream pipe(popen("echo 1", "r"), &pclose);
    DataWindow window(pipe.get());
    EXPECT_EQ(window.block(0), "");
}

TEST(DataWindow, FolderIsEmpty) {
    const Stream stream(std::fopen(".", "rb"), &std::fclose);
    DataWindow window(stream.get());
    EXPECT_EQ(window.block(0), "");
}

// --- RowWalk ---------------------------------------------------------------

TEST(RowWalk, EveryKindOfLineEndEndsARow) {
    const Rows rows{"a\t1", "b\t2", "c\t3", "d"};
    EXPECT_EQ(rowsOf("\na\t1\nb\t2\r\nc\t3\rd\n"), rows);
}

TEST(RowWalk, LastRowNeedsNoLineEnd) {
    EXPECT_EQ(rowsOf("\na\r\nb"), (Rows{"a", "b"}));
}

TEST(RowWalk, EmptyLinesAtTheEndAreNoRows) {
    for (const char* const end : {"\n", "\n\n\n", "\r\n\r\n", "\r\r", "\n   ", "\n  \n \n"}) {
        EXPECT_EQ(rowsOf(std::string("\na\nb") + end), (Rows{"a", "b"}));
    }
}

TEST(RowWalk, EmptyLineInTheMiddleIsARow) {
    EXPECT_EQ(rowsOf("\na\n\n \nb\n"), (Rows{"a", "", " ", "b"}));
}

TEST(RowWalk, RowOfTabsAtTheEndIsARow) {
    EXPECT_EQ(rowsOf("\na\n\t\t\n"), (Rows{"a", "\t\t"}));
}

TEST(RowWalk, NulEndsTheWalkBehindTheTextBeforeIt) {
    EXPECT_EQ(rowsOf(std::string("\na\nb\0b\nc\n", 9)), (Rows{"a", "b"}));
    EXPECT_EQ(rowsOf(std::string("\na\n \0\0\n", 7)), (Rows{"a"})); // blanks alone: no row
}

TEST(RowWalk, AWalkThatEndedStaysEnded) {
    const Stream stream = fileOf(std::string("\na\0b\nc\n", 7));
    DataWindow window(stream.get());
    RowWalk walk(window, 0, CrLf::LineEnd);
    EXPECT_TRUE(walk.next());
    EXPECT_EQ(walk.row().text, "a");
    EXPECT_FALSE(walk.next());
    EXPECT_FALSE(walk.next()); // not the row behind the NUL
}

TEST(RowWalk, AFileThatBecameShorterHasNoRows) {
    const Stream stream = fileOf("\n" + std::string(300'000, 'x') + "\n");
    DataWindow window(stream.get());
    ASSERT_EQ(ftruncate(fileno(stream.get()), 1), 0);
    RowWalk walk(window, 0, CrLf::LineEnd);
    EXPECT_FALSE(walk.next());
}

TEST(RowWalk, FileOfALineEndHasNoRows) {
    EXPECT_EQ(rowsOf("\n"), Rows{});
    EXPECT_EQ(rowsOf("\n\n  "), Rows{});
}

TEST(RowWalk, CrAloneLeavesTheLfInFrontOfTheNextRow) {
    EXPECT_EQ(rowsOf("\r\na\r\nb\r\n", CrLf::CrOnly), (Rows{"\na", "\nb"}));
}

TEST(RowWalk, RowFitsIfItsLineEndLiesInItsBlock) {
    // The block: the line end before the row, then 199998 bytes of row, then its line end.
    const std::string row(199'998, 'x');
    EXPECT_EQ(rowsOf("\n" + row + "\nb\n"), (Rows{row, "b"}));
    EXPECT_EQ(rowsOf("\n" + row + "\r\nb\n"), (Rows{row, "b"}));
}

TEST(RowWalk, LongerRowIsCutAndEndsTheWalk) {
    const std::string row(199'999, 'x');
    EXPECT_EQ(rowsOf("\n" + row + "y\nb\n"), Rows{row});
}

TEST(RowWalk, TellsOfALineEndInTheLastPlaceOfItsBlock) {
    const std::string first(199'997, 'x');
    const std::string second(199'998, 'x');
    const Stream stream = fileOf("\n" + first + "\n" + second + "\nb\n");
    DataWindow window(stream.get());
    RowWalk walk(window, 0, CrLf::LineEnd);
    ASSERT_TRUE(walk.next());
    EXPECT_FALSE(walk.endsBlock());
    ASSERT_TRUE(walk.next());
    EXPECT_TRUE(walk.endsBlock());
}

// The search for a row's end goes by pieces of 512 bytes.
TEST(RowWalk, RowsOfAnyLengthEndAtTheirLineEnd) {
    for (const std::size_t length : {0U, 1U, 510U, 511U, 512U, 513U, 1023U, 1024U, 1025U, 5000U}) {
        for (const char* end : {"\n", "\r", "\r\n"}) {
            const std::string row(length, 'x');
            const std::string bytes = "\n" + row + end + "next" + end + "last";
            EXPECT_EQ(rowsOf(bytes).size(), 3U) << length;
            EXPECT_EQ(rowsOf(bytes).front(), row) << length;
        }
    }
}

// Whichever comes first ends the row, also where the others stand in the same piece.
TEST(RowWalk, TheFirstOfLineEndsAndNulEndsTheRow) {
    EXPECT_EQ(rowsOf("\nab\rcd\nef").front(), "ab");
    EXPECT_EQ(rowsOf("\nab\ncd\ref").front(), "ab");
    EXPECT_EQ(rowsOf(std::string("\nab\0cd\nef", 9)).front(), "ab");
}
