// Lines and cells of a sheet.
#include "results/sheetlines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

using namespace kva;
using testing::ElementsAre;

TEST(SheetLines, LinesComeWithTheirNumbers) {
    std::istringstream in("a\n\nb\n");
    SheetLines lines(in, false);
    for (const char* const line : {"a", "", "b"}) {
        ASSERT_TRUE(lines.next());
        EXPECT_EQ(lines.line(), line);
    }
    EXPECT_EQ(lines.number(), 3U);
    EXPECT_FALSE(lines.next());
    EXPECT_TRUE(lines.sound());
}

TEST(SheetLines, EmptySheetHasNoLine) {
    std::istringstream in("");
    SheetLines lines(in, false);
    EXPECT_FALSE(lines.next());
    EXPECT_TRUE(lines.sound());
}

TEST(SheetLines, LineWithoutItsEndIsCutOff) {
    std::istringstream in("a\nb");
    SheetLines lines(in, false);
    EXPECT_TRUE(lines.next());
    EXPECT_FALSE(lines.next());
    EXPECT_EQ(lines.faultText(), "line 2: the sheet is cut off here");
}

TEST(SheetLines, OpenEndIsALineWhereItMayBe) {
    std::istringstream in("a\nb");
    SheetLines lines(in, true);
    EXPECT_TRUE(lines.next());
    ASSERT_TRUE(lines.next());
    EXPECT_EQ(lines.line(), "b");
    EXPECT_FALSE(lines.next());
    EXPECT_TRUE(lines.sound());
}

// The buffer takes 65536 bytes: lines around it and over several of them.
TEST(SheetLines, LinesOfAnyLengthAreWhole) {
    for (const std::size_t size : {65534, 65535, 65536, 65537, 200000}) {
        const std::string first(size, 'x');
        std::istringstream in(first + "\ny\n");
        SheetLines lines(in, false);
        ASSERT_TRUE(lines.next());
        EXPECT_EQ(lines.line(), first) << size;
        ASSERT_TRUE(lines.next());
        EXPECT_EQ(lines.line(), "y") << size;
    }
}

TEST(SheetLines, LineBeyondTheLimitIsAFault) {
    std::istringstream in("a\n" + std::string(300000, 'x') + "\n");
    SheetLines lines(in, false, 100000);
    EXPECT_TRUE(lines.next());
    EXPECT_FALSE(lines.next());
    EXPECT_EQ(lines.faultText(), "line 2: the line is too long");
}

namespace {

// Bytes that end with a failure of the disk.
struct FailingBytes : std::streambuf {
    explicit FailingBytes(std::string bytes) : Bytes(std::move(bytes)) {
        setg(Bytes.data(), Bytes.data(), Bytes.data() + Bytes.size());
    }
    int underflow() override { throw std::runtime_error("disk"); }

    std::string Bytes;
};

} // namespace

TEST(SheetLines, FailureOfTheDiskIsAFault) {
    FailingBytes bytes("a\nb");
    std::istream in(&bytes);
    SheetLines lines(in, true);
    while (lines.next()) {
    }
    EXPECT_NE(lines.faultText().find("cannot be read any further"), std::string::npos);
}

TEST(SheetLines, CellsAreBetweenTheTabs) {
    std::istringstream in("a\t\tb\t\n\n");
    SheetLines lines(in, false);
    ASSERT_TRUE(lines.next());
    EXPECT_THAT(lines.cells(), ElementsAre("a", "", "b", ""));
    EXPECT_THAT(lines.closedCells(), ElementsAre("a", "", "b"));
    ASSERT_TRUE(lines.next());
    EXPECT_THAT(lines.cells(), ElementsAre(""));
}

TEST(SheetLines, ClosedCellsEndWithTheirTab) {
    std::istringstream in("name\na\tb\n");
    SheetLines lines(in, false);
    ASSERT_TRUE(lines.next());
    EXPECT_THAT(lines.closedCells(), ElementsAre("name"));
    EXPECT_TRUE(lines.sound());
    ASSERT_TRUE(lines.next());
    (void)lines.closedCells();
    EXPECT_EQ(lines.faultText(), "line 2: the last cell does not end");
}

TEST(SheetLines, FirstFaultStaysAndEndsTheSheet) {
    std::istringstream in("a\nb\n");
    SheetLines lines(in, false);
    ASSERT_TRUE(lines.next());
    lines.fault("one");
    lines.fault("two");
    EXPECT_EQ(lines.faultText(), "line 1: one");
    EXPECT_FALSE(lines.next());
    EXPECT_EQ(lines.line(), "a");
}
