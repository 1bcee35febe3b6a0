#include "output/resultfile.h"

#include "support/support.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utility>
#include <vector>

using namespace kva;

using kva_test::readFile;
using kva_test::SizeLimit;
using kva_test::TempFolder;
using kva_test::writeFile;

namespace fs = std::filesystem;

namespace {

// A folder to work in, and the failures that were told, as "name: reason".
class ResultFileTest : public testing::Test {
  protected:
    ResultFile open(const std::string& name, const char* mode = "wb") {
        return openAs(name, mode, "Folder/" + name);
    }
    ResultFile openAs(const std::string& name, const char* mode, const std::string& shown) {
        return {name, mode, shown, [this](const std::string& shownName, const std::string& reason) {
                    told.push_back(shownName + ": " + reason);
                }};
    }

    const TempFolder folder{TempFolder::Enter::yes};
    std::vector<std::string> told;
};

// A file on a disk that is full: each write fails.
class FullDisk : public ResultFileTest {
  protected:
    ResultFile openFull() { return openAs("/dev/full", "wb", "Folder/full.xls"); }

    const std::vector<std::string> noSpace = {"Folder/full.xls: No space left on device"};
};

} // namespace

// --- Writing ---------------------------------------------------------------------------

TEST_F(ResultFileTest, AFileThatWasNeverOpenedTakesEverythingAndDropsIt) {
    ResultFile file;
    EXPECT_FALSE(file.isOpen());
    file.text("lost");
    file.character('x');
    file.integer(1);
    file.fixed(1.0);
    file.print("%d", 1);
    file.flush();
    EXPECT_TRUE(file.close());
}

TEST_F(ResultFileTest, BytesStandInTheOrderOfTheWrites) {
    ResultFile file = open("sheet.xls");
    EXPECT_TRUE(file.isOpen());
    file.text("North");
    file.character('\t');
    file.integer(-12);
    file.print("\t%s %03d|", "F", 7);
    file.fixed(0.25);
    file.fixed(0.25, 5, 8);
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(readFile("sheet.xls"), "North\t-12\tF 007|0.250000 0.25000");
}

TEST_F(ResultFileTest, ZeroBytesAreBytesLikeOthers) {
    const std::string bytes("a\0b", 3);
    ResultFile file = open("sheet.xls");
    file.text(bytes);
    file.character('\0');
    file.close();
    EXPECT_EQ(readFile("sheet.xls"), bytes + std::string(1, '\0'));
}

TEST_F(ResultFileTest, IntegersOfAllSizes) {
    using Limits = std::numeric_limits<long long>;
    ResultFile file = open("sheet.xls");
    for (const long long value : {Limits::min(), -1LL, 0LL, Limits::max()}) {
        file.integer(value);
        file.character('|');
    }
    file.close();
    EXPECT_EQ(readFile("sheet.xls"), "-9223372036854775808|-1|0|9223372036854775807|");
}

// The long forms fill the buffer to its last byte many times over.
TEST_F(ResultFileTest, RealsGoThroughTheBufferLikeFormattedWrites) {
    std::string expected;
    ResultFile file = open("sheet.xls");
    double value = -1e300;
    for (int i = 0; i < 3000; ++i) {
        char words[1200]; // three numbers of up to 320 bytes
        const int length =
            std::snprintf(words, sizeof words, "\t%f%8.5f%32.9f", value, value / 7, value);
        expected.append(words, static_cast<std::size_t>(length));
        file.tabFixed(value);
        file.fixed(value / 7, 5, 8);
        file.fixed(value, 9, 32);
        value *= i % 2 == 0 ? -0.37 : 0.41;
    }
    file.close();
    EXPECT_TRUE(readFile("sheet.xls") == expected); // too long to be shown
}

TEST_F(ResultFileTest, FormattedWritesOfAnyLength) {
    for (const int length : {0, 1, 254, 255, 256, 257, 1000, 65535, 65536, 200000}) {
        const std::string words(static_cast<std::size_t>(length), 'x');
        ResultFile file = open("sheet.xls");
        file.print("<%s>", words.c_str());
        file.close();
        EXPECT_EQ(readFile("sheet.xls"), "<" + words + ">") << length;
    }
}

TEST_F(ResultFileTest, MoreThanTheBufferHoldsComesInOrder) {
    std::string expected;
    ResultFile file = open("sheet.xls");
    for (int i = 0; i < 50000; ++i) {
        file.integer(i);
        file.character('\n');
        expected += std::to_string(i) + '\n';
    }
    const std::string block(100000, 'b'); // alone above the buffer's size
    file.text(block);
    file.text("end");
    file.close();
    EXPECT_EQ(readFile("sheet.xls"), expected + block + "end");
}

TEST_F(ResultFileTest, FlushHandsTheBytesOver) {
    ResultFile file = open("sheet.xls");
    file.text("one");
    EXPECT_EQ(readFile("sheet.xls"), "");
    file.flush();
    EXPECT_EQ(readFile("sheet.xls"), "one");
    file.text("two");
    file.close();
    EXPECT_EQ(readFile("sheet.xls"), "onetwo");
}

TEST_F(ResultFileTest, TheEndOfTheScopeWritesAndCloses) {
    {
        ResultFile file = open("sheet.xls");
        file.text("rest");
    }
    EXPECT_EQ(readFile("sheet.xls"), "rest");
}

TEST_F(ResultFileTest, WritesAfterClosingAreDropped) {
    ResultFile file = open("sheet.xls");
    file.text("kept");
    file.close();
    file.text("lost");
    EXPECT_TRUE(file.close());
    EXPECT_EQ(readFile("sheet.xls"), "kept");
}

// --- Modes -------------------------------------------------------------------------------

TEST_F(ResultFileTest, WriteModesReplaceWhatWasThere) {
    for (const char* mode : {"wb", "wb+"}) {
        writeFile("sheet.xls", "a long text of before");
        ResultFile file = open("sheet.xls", mode);
        file.text("new");
        file.close();
        EXPECT_EQ(readFile("sheet.xls"), "new") << mode;
    }
}

TEST_F(ResultFileTest, OtherModesGoOnBehindWhatWasThere) {
    for (const char* mode : {"ab", "ab+", "rb+"}) {
        writeFile("sheet.xls", "before,");
        ResultFile file = open("sheet.xls", mode);
        file.text("after");
        file.close();
        EXPECT_EQ(readFile("sheet.xls"), "before,after") << mode;
    }
}

TEST_F(ResultFileTest, OnlyTheModeRbPlusNeedsTheFile) {
    EXPECT_TRUE(open("new1", "ab").isOpen());
    EXPECT_TRUE(open("new2", "ab+").isOpen());
    EXPECT_FALSE(open("new3", "rb+").isOpen());
    EXPECT_EQ(told, (std::vector<std::string>{"Folder/new3: No such file or directory"}));
}

TEST_F(ResultFileTest, APipeHasNoEndToGoOnBehind) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    const ResultFile file = open("pipe", "rb+");
    EXPECT_EQ(told, (std::vector<std::string>{"Folder/pipe: Illegal seek"}));
}

// --- Moving ------------------------------------------------------------------------------

TEST_F(ResultFileTest, AMovedFileGoesOnWithItsBuffer) {
    ResultFile first = open("sheet.xls");
    first.text("one,");
    ResultFile second = std::move(first);
    EXPECT_TRUE(second.isOpen());
    second.text("two");
    second.close();
    EXPECT_EQ(readFile("sheet.xls"), "one,two");
}

TEST_F(ResultFileTest, AnAssignedFileClosesItsEarlierOne) {
    ResultFile file = open("old.xls");
    file.text("old");
    file = open("new.xls");
    EXPECT_EQ(readFile("old.xls"), "old");
    file.text("new");
    file = ResultFile();
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(readFile("new.xls"), "new");
}

TEST_F(ResultFileTest, AnAssignedFileGoesOnWithItsBuffer) {
    ResultFile first = open("sheet.xls");
    first.text("one,");
    ResultFile second;
    second = std::move(first);
    second.text("two");
    second.close();
    EXPECT_EQ(readFile("sheet.xls"), "one,two");
}

TEST_F(ResultFileTest, AFileAssignedToItselfStays) {
    ResultFile file = open("sheet.xls");
    file.text("one,");
    ResultFile& same = file;
    file = std::move(same);
    file.text("two");
    file.close();
    EXPECT_EQ(readFile("sheet.xls"), "one,two");
}

TEST_F(ResultFileTest, AFailureIsTakenAlong) {
    fs::create_directory("sheet.xls");
    ResultFile file;
    file = open("sheet.xls");
    EXPECT_FALSE(file.close());
    EXPECT_EQ(told.size(), 1U);
}

// --- Failures ------------------------------------------------------------------------------

TEST_F(ResultFileTest, AFolderInItsPlaceIsTold) {
    fs::create_directory("sheet.xls");
    ResultFile file = open("sheet.xls");
    EXPECT_FALSE(file.isOpen());
    file.text("lost");
    file.print("%d", 7);
    file.flush();
    EXPECT_FALSE(file.close());
    EXPECT_EQ(told, (std::vector<std::string>{"Folder/sheet.xls: Is a directory"}));
}

TEST_F(ResultFileTest, ANameThatIsTooLongIsTold) {
    const std::string name(300, 'n');
    EXPECT_FALSE(open(name).isOpen());
    EXPECT_EQ(told, (std::vector<std::string>{"Folder/" + name + ": File name too long"}));
}

TEST_F(ResultFileTest, NobodyNeedsToListen) {
    fs::create_directory("sheet.xls");
    ResultFile file("sheet.xls", "wb", "sheet.xls", nullptr);
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(file.close());
}

TEST_F(FullDisk, AFailedFlushIsToldOnce) {
    ResultFile file = openFull();
    EXPECT_TRUE(file.isOpen());
    file.text("one");
    EXPECT_TRUE(told.empty());
    file.flush();
    EXPECT_EQ(told, noSpace);
    file.text("two");
    file.flush();
    EXPECT_FALSE(file.close());
    EXPECT_EQ(told, noSpace);
}

TEST_F(FullDisk, AFewBytesFailWhenTheFileIsClosed) {
    ResultFile file = openFull();
    file.text("x");
    EXPECT_FALSE(file.close());
    EXPECT_EQ(told, noSpace);
}

TEST_F(FullDisk, TheEndOfTheScopeTellsToo) {
    { openFull().text("x"); }
    EXPECT_EQ(told, noSpace);
}

TEST_F(FullDisk, AFullBufferFailsOnTheWay) {
    ResultFile file = openFull();
    for (int i = 0; i < 100000; ++i) {
        file.text("row\n");
    }
    EXPECT_EQ(told, noSpace);
    EXPECT_FALSE(file.close());
}

TEST_F(FullDisk, NothingWrittenNothingFails) {
    EXPECT_TRUE(openFull().close());
    EXPECT_TRUE(told.empty());
}

TEST_F(FullDisk, TheListenerMayWriteToTheVeryFile) {
    ResultFile file;
    int calls = 0;
    file = ResultFile("/dev/full", "wb", "full.xls", [&](const std::string&, const std::string&) {
        ++calls;
        file.text("failed\n");
        file.flush();
    });
    file.text("x");
    file.flush();
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(file.close());
}

TEST_F(ResultFileTest, AFileBeyondTheSizeLimitIsToldAndTheProcessLives) {
    ResultFile file = open("sheet.xls");
    {
        const SizeLimit limit(100);
        file.text(std::string(150, 'x'));
        file.flush();
    }
    EXPECT_EQ(told, (std::vector<std::string>{"Folder/sheet.xls: File too large"}));
    file.text("a row behind the gap"); // dropped, though there would be room again
    EXPECT_FALSE(file.close());
    EXPECT_EQ(readFile("sheet.xls"), std::string(100, 'x')); // what fitted
}

// --- Into a text -------------------------------------------------------------------------

TEST(ResultText, TakesWhatIsWritten) {
    std::string text = "before ";
    {
        ResultFile file = ResultFile::toText(text);
        EXPECT_TRUE(file.isOpen());
        file.text("words");
        file.tabFixed(0.5);
        file.integer(7);
        file.print("%s", "!");
        file.flush();
        EXPECT_EQ(text, "before words\t0.5000007!");
        file.character('\n');
    }
    EXPECT_EQ(text, "before words\t0.5000007!\n");
}

TEST(ResultText, HoldsMoreThanABuffer) {
    std::string text;
    ResultFile file = ResultFile::toText(text);
    const std::string line(1000, 'x');
    for (int k = 0; k < 300; ++k) {
        file.text(line);
    }
    file.text(std::string(200000, 'y'));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(text, std::string(300000, 'x') + std::string(200000, 'y'));
}

TEST(ResultText, ClosedOrMovedFromItTakesNothing) {
    std::string text;
    ResultFile file = ResultFile::toText(text);
    file.text("a");
    ResultFile other = std::move(file);
    file.text("lost"); // NOLINT(bugprone-use-after-move)
    other.text("b");
    other.close();
    other.text("lost");
    EXPECT_FALSE(other.isOpen());
    EXPECT_EQ(text, "ab");
}
