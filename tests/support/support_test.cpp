#include "support/support.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace kva_test;

TEST(TempFolder, GoesWithItsContent) {
    fs::path folder;
    {
        const TempFolder temp;
        folder = temp.path();
        fs::create_directory(temp / "inner");
        writeFile(temp / "inner/file.txt", "x");
        EXPECT_TRUE(fs::exists(folder));
    }
    EXPECT_FALSE(fs::exists(folder));
}

TEST(TempFolder, EnteredFolderIsLeftAtTheEnd) {
    const fs::path before = fs::current_path();
    {
        const TempFolder temp(TempFolder::Enter::yes);
        EXPECT_EQ(fs::current_path(), temp.path());
    }
    EXPECT_EQ(fs::current_path(), before);
}

TEST(WithoutNanSign, LeavesAllButTheSign) {
    EXPECT_EQ(withoutNanSign("-nan\t-1\tnan -nan"), "nan\t-1\tnan nan");
    EXPECT_EQ(withoutNanSign("plain"), "plain");
}

TEST(Files, BytesComeBackAsWritten) {
    const TempFolder temp;
    const std::string bytes("a\r\nb\0c\xff", 7);
    writeFile(temp / "bytes", bytes);
    EXPECT_EQ(readFile(temp / "bytes"), bytes);
}

TEST(Files, ReadingAnAbsentFileThrows) {
    const TempFolder temp;
    EXPECT_THROW(readFile(temp / "absent"), std::runtime_error);
}

TEST(StdoutCapture, TakesBothStreamsInOrder) {
    StdoutCapture capture;
    std::cout << "one " << std::flush;
    std::printf("two ");
    std::fflush(stdout);
    EXPECT_EQ(write(STDOUT_FILENO, "three", 5), 5);
    EXPECT_EQ(capture.text(), "one two three");
    EXPECT_EQ(capture.text(), "one two three");
}

TEST(StdoutCapture, CapturesNest) {
    StdoutCapture outer;
    std::cout << "a";
    {
        StdoutCapture inner;
        std::cout << "b";
        EXPECT_EQ(inner.text(), "b");
    }
    std::cout << "c";
    EXPECT_EQ(outer.text(), "ac");
}
