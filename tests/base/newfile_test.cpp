#include "base/newfile.h"

#include "support/support.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/stat.h>

using namespace kva;
using namespace kva_test;

namespace {

long filesIn(const TempFolder& folder) {
    return std::distance(std::filesystem::directory_iterator(folder.path()), {});
}

constexpr const char* kExists = "it is there already; --force replaces it";

} // namespace

TEST(WriteWholeFile, NewFilesAreWrittenWithTheUsualRights) {
    const TempFolder folder;
    const std::string file = folder / "a";
    EXPECT_EQ(writeWholeFile(file, "text", false), "");
    EXPECT_EQ(readFile(file), "text");
    struct stat state {};
    ASSERT_EQ(stat(file.c_str(), &state), 0);
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(state.st_mode & 0777U, 0666U & ~mask);
    EXPECT_EQ(filesIn(folder), 1);
}

TEST(WriteWholeFile, FilesThatAreThereAreReplacedOnlyWhereWanted) {
    const TempFolder folder;
    const std::string file = folder / "a";
    writeFile(file, "old");
    EXPECT_EQ(writeWholeFile(file, "new", false), kExists);
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(writeWholeFile(file, "new", true), "");
    EXPECT_EQ(readFile(file), "new");
    EXPECT_EQ(filesIn(folder), 1);
}

TEST(WriteWholeFile, FailuresLeaveNothing) {
    const TempFolder folder;
    EXPECT_EQ(writeWholeFile(folder / "none/a", "x", false), "No such file or directory");
    EXPECT_EQ(writeWholeFile(folder.path(), "x", true), "it is a folder");
    {
        const SizeLimit limit(10);
        (void)signal(SIGXFSZ, SIG_IGN);
        EXPECT_EQ(writeWholeFile(folder / "a", std::string(100, 'x'), true), "File too large");
    }
    EXPECT_EQ(filesIn(folder), 0);
}

TEST(NewFile, HasItsNameOnlyWhenItIsFinished) {
    const TempFolder folder;
    const std::string name = folder / "a";
    const std::string text(100000, 'x'); // more than a buffer holds
    {
        NewFile file(name, true);
        file.out() << text;
        EXPECT_FALSE(std::filesystem::exists(name));
        EXPECT_EQ(file.finish(), "");
        EXPECT_EQ(readFile(name), text);
    }
    EXPECT_EQ(readFile(name), text);
    { NewFile(name, true).out() << "never finished"; }
    EXPECT_EQ(readFile(name), text);
    EXPECT_EQ(filesIn(folder), 1);
}

TEST(NewFile, DevicesAndPipesAreWrittenToAsTheyAre) {
    NewFile device("/dev/null", false);
    device.out() << "text";
    EXPECT_EQ(device.finish(), "");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    NewFile full("/dev/full", false);
    full.out() << "text";
    EXPECT_EQ(full.finish(), "No space left on device");
}

TEST(NewFile, LinksAreReplacedButNotThoseToFolders) {
    const TempFolder folder;
    writeFile(folder / "old", "old");
    std::filesystem::create_symlink("old", folder / "link");
    EXPECT_EQ(writeWholeFile(folder / "link", "new", false), kExists);
    EXPECT_EQ(writeWholeFile(folder / "link", "new", true), "");
    EXPECT_EQ(readFile(folder / "link"), "new");
    EXPECT_EQ(readFile(folder / "old"), "old");
    std::filesystem::create_symlink(".", folder / "here");
    EXPECT_EQ(writeWholeFile(folder / "here", "new", true), "it is a folder");
}

TEST(ReadWholeFile, GivesAllBytesOrWhyNot) {
    const TempFolder folder;
    writeFile(folder / "a", std::string("x\0y", 3));
    std::string bytes = "before";
    EXPECT_EQ(readWholeFile(folder / "a", bytes, 3), "");
    EXPECT_EQ(bytes, std::string("x\0y", 3));
    EXPECT_EQ(readWholeFile(folder / "a", bytes, 2), "it is larger than 2 bytes");
    EXPECT_EQ(readWholeFile(folder / "none", bytes, 2), "No such file or directory");
    EXPECT_EQ(readWholeFile(folder.path(), bytes, 2), "it is a folder");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readWholeFile(folder / "pipe", bytes, 2), "it is no file on a disk");
}
