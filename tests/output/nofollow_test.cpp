#include "output/nofollow.h"

#include "support/support.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

namespace {

namespace fs = std::filesystem;

using kva_test::readFile;
using kva_test::writeFile;

// Writes three letters through `mode` into a file that holds "old"; what it holds then.
std::string written(const char* mode) {
    const kva_test::TempFolder folder(kva_test::TempFolder::Enter::yes);
    writeFile("file", "old");
    std::FILE* const stream = openFile("file", mode);
    if (stream == nullptr) {
        return "not opened";
    }
    std::fputs("new", stream);
    std::fclose(stream);
    return readFile("file");
}

} // namespace

TEST(OpenFile, ModesAreThoseOfFopen) {
    EXPECT_EQ(written("wb"), "new");
    EXPECT_EQ(written("wb+"), "new");
    EXPECT_EQ(written("ab"), "oldnew");
    EXPECT_EQ(written("ab+"), "oldnew");
    EXPECT_EQ(written("rb+"), "new"); // over the old bytes, from the first
}

TEST(OpenFile, AFileThatIsNotThereIsMadeWhereTheModeMakesOne) {
    const kva_test::TempFolder folder(kva_test::TempFolder::Enter::yes);
    EXPECT_EQ(openFile("file", "rb+"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    for (const char* mode : {"wb", "ab"}) {
        std::FILE* const stream = openFile(mode, mode);
        ASSERT_NE(stream, nullptr);
        std::fclose(stream);
        EXPECT_TRUE(fs::exists(mode));
    }
}

TEST(OpenFile, ALinkIsRefusedAndNotFollowed) {
    const kva_test::TempFolder folder(kva_test::TempFolder::Enter::yes);
    writeFile("precious", "old");
    fs::create_symlink("precious", "link");
    for (const char* mode : {"wb", "wb+", "ab", "ab+", "rb+"}) {
        errno = 0;
        EXPECT_EQ(openFile("link", mode), nullptr) << mode;
        EXPECT_EQ(errno, ELOOP) << mode;
    }
    EXPECT_EQ(readFile("precious"), "old");
}

TEST(EnterFolder, GoesInsideAndRefusesLinksAndFiles) {
    const kva_test::TempFolder folder(kva_test::TempFolder::Enter::yes);
    fs::create_directory("inside");
    fs::create_symlink("inside", "link");
    writeFile("file", "");
    const fs::path before = fs::current_path();
    EXPECT_FALSE(enterFolder("link"));
    EXPECT_FALSE(enterFolder("file"));
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(enterFolder("nothing"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(enterFolder(""));
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_TRUE(enterFolder("inside"));
    EXPECT_EQ(fs::current_path(), before / "inside");
}

TEST(FolderMark, LeadsBack) {
    const kva_test::TempFolder folder(kva_test::TempFolder::Enter::yes);
    fs::create_directory("inside");
    const fs::path before = fs::current_path();
    const FolderMark mark;
    ASSERT_TRUE(enterFolder("inside"));
    mark.enter();
    EXPECT_EQ(fs::current_path(), before);
}
