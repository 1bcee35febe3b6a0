#include "output/resultfolder.h"

#include "output/passfolder.h"
#include "support/datasets.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

// An object with a data file name, in an entered folder of its own.
struct InitPath : testing::Test {
    // InitPath with its console output in `console`.
    int run(const std::string& name) {
        obj.DateiName = name;
        StdoutCapture capture;
        const int result = obj.InitPath();
        console = capture.text();
        return result;
    }

    TempFolder folder{TempFolder::Enter::yes};
    AnalyseDataObj obj;
    std::string console;
};

} // namespace

// --- Names and paths -------------------------------------------------------

TEST_F(InitPath, BareNameMakesTheFolderBesideTheFile) {
    EXPECT_EQ(run("data.txt"), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "data.txt_KVAresult00").string());
    EXPECT_EQ(obj.StartPfad, folder.path().string());
    EXPECT_EQ(obj.DateiKurzName, "data.txt");
    EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult00");
    EXPECT_FALSE(obj.FolderMissing);
    EXPECT_EQ(console, "");
}

TEST_F(InitPath, FurtherRunsTakeTheNextNumbers) {
    run("data.txt");
    EXPECT_EQ(obj.InitPath(), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "data.txt_KVAresult01").string());
    EXPECT_EQ(obj.InitPath(), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "data.txt_KVAresult02").string());
    EXPECT_EQ(obj.StartPfad, folder.path().string());
}

TEST_F(InitPath, AbsoluteNameStartsFromItsOwnFolder) {
    const TempFolder other;
    EXPECT_EQ(run((other / "data.txt").string()), 0);
    EXPECT_EQ(obj.ResultPfad, (other / "data.txt_KVAresult00").string());
    EXPECT_EQ(obj.StartPfad, other.path().string());
    EXPECT_EQ(obj.DateiKurzName, "data.txt");
}

TEST_F(InitPath, RelativeNameWithAFolderWorksInFurtherRunsToo) {
    fs::create_directory("sub");
    EXPECT_EQ(run("sub/data.txt"), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "sub/data.txt_KVAresult00").string());
    EXPECT_EQ(obj.StartPfad, (folder / "sub").string());
    EXPECT_EQ(obj.DateiKurzName, "data.txt");
    EXPECT_EQ(obj.DateiName, "sub/data.txt");

    fs::current_path(obj.StartPfad);
    EXPECT_EQ(obj.InitPath(), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "sub/data.txt_KVAresult01").string());
    EXPECT_EQ(obj.StartPfad, (folder / "sub").string());
}

TEST_F(InitPath, PassesOfARelativeNameWriteIntoTheResultFolder) {
    fs::create_directory("sub");
    LoadedRun loaded(kTwoPops, "data.txt");
    AnalyseDataObj& read = *loaded;
    const fs::path inside = read.ResultPfad;
    fs::current_path(inside.parent_path());
    fs::create_directory("sub");
    read.DateiName = "sub/data.txt";
    read.DataPath.clear();
    EXPECT_EQ(read.InitPath(), 0);
    loaded.counted();
    EXPECT_TRUE(fs::exists(inside.parent_path() / "sub/data.txt_KVAresult00/Allelecount"));
}

TEST_F(InitPath, NameThroughTheParentFolderIsTakenAsItIs) {
    fs::create_directory("sub");
    fs::current_path("sub");
    EXPECT_EQ(run("../data.txt"), 0);
    EXPECT_TRUE(fs::is_directory(folder / "data.txt_KVAresult00"));
    EXPECT_EQ(obj.StartPfad, (folder / "sub/..").string());
}

TEST(FolderOf, IsThePartBeforeTheLastSlash) {
    EXPECT_EQ(folderOf("/abs/path/data.txt"), "/abs/path");
    EXPECT_EQ(folderOf("/data.txt"), "/");
}

// --- Numbers ---------------------------------------------------------------

TEST_F(InitPath, NumberGoesOnWithThreeDigitsBehind99) {
    for (int n = 0; n < 100; ++n) {
        fs::create_directory("data.txt_KVAresult" + std::string(n < 10 ? "0" : "") +
                             std::to_string(n));
    }
    EXPECT_EQ(run("data.txt"), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "data.txt_KVAresult100").string());
}

TEST_F(InitPath, GapOfADeletedFolderIsFilled) {
    fs::create_directory("data.txt_KVAresult00");
    fs::create_directory("data.txt_KVAresult02");
    run("data.txt");
    EXPECT_EQ(obj.ResultPfad, (folder / "data.txt_KVAresult01").string());
}

TEST_F(InitPath, FileOfThatNameTakesTheNumberToo) {
    writeFile("data.txt_KVAresult00", "");
    EXPECT_EQ(run("data.txt"), 0);
    EXPECT_EQ(obj.ResultPfad, (folder / "data.txt_KVAresult01").string());
}

TEST_F(InitPath, FolderIsOpenToAllThatTheUmaskLeaves) {
    const mode_t before = umask(0);
    run("data.txt");
    umask(before);
    EXPECT_EQ(fs::status(folder / "data.txt_KVAresult00").permissions(), fs::perms(0777));
}

// --- Log -------------------------------------------------------------------

TEST_F(InitPath, OpensTheLogInTheNewFolder) {
    run("data.txt");
    EXPECT_TRUE(obj.LogDatei.isOpen());
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult00/KVA.log"), "");
}

TEST_F(InitPath, FurtherRunHasALogOfItsOwn) {
    run("data.txt");
    obj.LogDatei.text("first");
    obj.InitPath();
    obj.LogDatei.text("second");
    obj.LogDatei.flush();
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult00/KVA.log"), "first");
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult01/KVA.log"), "second");
}

TEST_F(InitPath, RunStandsOutsideAllFoldersOfPasses) {
    obj.CurrentFolder = "Group_data/";
    run("data.txt");
    EXPECT_EQ(obj.CurrentFolder, "");
}

TEST_F(InitPath, RefusedFileLeavesAFolderWithALog) {
    writeFile("data.txt", "no data\n");
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("data.txt", "rb"),
                                                               &std::fclose);
    obj.DateiName = "data.txt";
    const StdoutCapture swallowed;
    EXPECT_EQ(obj.CheckDataFile(file.get()), 4);
    EXPECT_EQ(obj.ReadDataFile(file.get()), 0);
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult00/KVA.log"), "");
}

// --- Failures --------------------------------------------------------------

// Message 14, and the line with the path and the system's reason.
static std::string failureText(const std::string& path, const std::string& reason) {
    return "\n!! ERROR Can't change into result folder ERROR !!\nCannot make result folder " +
           path + ": " + reason + "\n";
}

TEST_F(InitPath, FolderThatCannotBeMadeEndsTheSearch) {
    EXPECT_EQ(run("missing/data.txt"), 1);
    EXPECT_TRUE(obj.FolderMissing);
    EXPECT_EQ(console, failureText((folder / "missing/data.txt_KVAresult00").string(),
                                   "No such file or directory"));
    EXPECT_EQ(obj.StartPfad, "");
    EXPECT_EQ(obj.ResultPfad, "");
    EXPECT_FALSE(obj.LogDatei.isOpen());
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST_F(InitPath, TooLongAFolderNameEndsTheSearch) {
    const std::string name(250, 'x'); // 250 + "_KVAresult00" is more than 255
    EXPECT_EQ(run(name), 1);
    EXPECT_EQ(console,
              failureText((folder / (name + "_KVAresult00")).string(), "File name too long"));
}

TEST_F(InitPath, FailedFurtherRunLeavesPathsAndLogAsTheyWere) {
    fs::create_directory("sub");
    run("sub/data.txt");
    const std::string start = obj.StartPfad;
    const std::string result = obj.ResultPfad;
    fs::rename(folder / "sub", folder / "away");
    {
        const StdoutCapture swallowed;
        EXPECT_EQ(obj.InitPath(), 1);
    }
    EXPECT_TRUE(obj.FolderMissing);
    EXPECT_EQ(obj.StartPfad, start);
    EXPECT_EQ(obj.ResultPfad, result);
    EXPECT_TRUE(obj.LogDatei.isOpen());

    fs::rename(folder / "away", folder / "sub");
    EXPECT_EQ(obj.InitPath(), 0);
    EXPECT_FALSE(obj.FolderMissing);
}

TEST_F(InitPath, FolderThatCannotBeEnteredIsTold) {
    fs::permissions(folder.path(), fs::perms::all);
    const uid_t user = geteuid();
    if (user == 0) {
        ASSERT_EQ(seteuid(65534), 0); // the superuser enters every folder
    }
    const mode_t before = umask(0777);
    EXPECT_EQ(run("data.txt"), 1);
    umask(before);
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_TRUE(obj.FolderMissing);
    EXPECT_EQ(console,
              failureText((folder / "data.txt_KVAresult00").string(), "Permission denied"));
    fs::permissions(folder / "data.txt_KVAresult00", fs::perms::owner_all);
}

TEST_F(InitPath, WithoutACurrentFolderTheFailureNamesTheFile) {
    const TempFolder gone(TempFolder::Enter::yes);
    fs::remove(gone.path());
    EXPECT_EQ(run("data.txt"), 1);
    EXPECT_EQ(console, failureText("data.txt", "No such file or directory"));
}

// --- In memory --------------------------------------------------------------------------

TEST_F(InitPath, InMemoryTouchesNoFileAndNoFolder) {
    obj.KeepInMemory();
    EXPECT_EQ(run("some/data.txt"), 0);
    { const PassFolder pass(obj, Folder::GroupData); }
    EXPECT_TRUE(obj.Enter());
    EXPECT_TRUE(fs::is_empty(folder.path()));
    EXPECT_EQ(fs::current_path(), folder.path());
    EXPECT_EQ(obj.DateiKurzName, "data.txt");
    EXPECT_FALSE(obj.FolderMissing);
}

TEST_F(InitPath, InMemoryAFileIsATextByItsPath) {
    obj.KeepInMemory();
    run("data.txt");
    {
        PassFolder pass(obj, Folder::FormatsData);
        EXPECT_TRUE(pass.entered());
        EXPECT_EQ(pass.enterInner(Folder::IMFormat), 0);
        obj.OpenResult("a", "wb").text("1");
    }
    obj.OpenResult("b", "wb").text("2");
    obj.LogEntry("done");
    EXPECT_EQ(
        obj.texts(),
        (ResultTexts{{"Formats&Data/IM_Format/a", "1"}, {"KVA.log", "\ndone\n"}, {"b", "2"}}));
}

TEST_F(InitPath, InMemoryTheModeTellsWhetherATextBeginsAnew) {
    obj.KeepInMemory();
    run("data.txt");
    obj.OpenResult("a", "wb+").text("1");
    obj.OpenResult("a", "ab+").text("2");
    obj.OpenResult("a", "rb+").text("3");
    EXPECT_EQ(obj.texts().at("a"), "123");
    obj.OpenResult("a", "wb").text("4");
    EXPECT_EQ(obj.takeTexts().at("a"), "4");
}

TEST_F(InitPath, InMemoryANextFolderBeginsEmpty) {
    obj.KeepInMemory();
    run("data.txt");
    obj.OpenResult("a", "wb").text("1");
    run("data.txt");
    EXPECT_EQ(obj.texts(), (ResultTexts{{"KVA.log", ""}}));
}
