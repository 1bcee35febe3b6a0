#include "output/passfolder.h"

#include "control/AnalyseDataObj.h"
#include "support/support.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace kva;

using kva_test::StdoutCapture;
using kva_test::TempFolder;
using kva_test::writeFile;

namespace fs = std::filesystem;

namespace {

constexpr FolderRule kInner{"IM_Format", Message::FormatsNotMade, Message::FormatsNotEntered};

// A pass's folder and what the console says of it.
struct FolderRow {
    FolderRule Rule;
    const char* Name;
    const char* CannotCreate;
    const char* CannotEnter;
};

void PrintTo(const FolderRow& row, std::ostream* out) {
    *out << row.Name;
}

const FolderRow kRows[] = {
    {Folder::Allelecount, "Allelecount", "\n!! ERROR Can't create Subfolder Allelcount! ERROR !!\n",
     "\n!! ERROR Can't change into Subfolder Allelcount! ERROR !!\n"},
    {Folder::GroupData, "Group_data",
     "\n!! ERROR Can't create Subfolder Group_data! ERROR !!\nErrorcode: 3-2\n",
     "\n!! ERROR Can't change into Subfolder Group_data! ERROR !!\nErrorcode: 3-1\n"},
    {Folder::FormatsData, "Formats&Data", "\n", "\n"}, // their messages have no words
    {Folder::DistanceData, "Distance_data",
     "\n!! ERROR Can't create Subfolder Distance_data! ERROR !!\nErrorcode: 4-2\n",
     "\n!! ERROR Can't change into Subfolder Distance_data! ERROR !!\nErrorcode: 4-1\n"},
    {Folder::FStatistic, "F-Statistic", // tells of "Distance_data", too
     "\n!! ERROR Can't create Subfolder Distance_data! ERROR !!\nErrorcode: 4-2\n",
     "\n!! ERROR Can't change into Subfolder Distance_data! ERROR !!\nErrorcode: 4-1\n"},
    {Folder::ResamplingData, "Resampling_data",
     "\n!! ERROR Can't create Subfolder Resampling_data! ERROR !!\nErrorcode: 7-2\n",
     "\n!! ERROR Can't change into Subfolder Resampling_data! ERROR !!\nErrorcode: 7-1\n"},
};

const std::string kSingleCreate =
    "\n!! ERROR Can't create Subfolder Single_data! ERROR !!\nErrorcode: 2-1\n";
const std::string kSingleEnter =
    "\n!! ERROR Can't change into Subfolder Single_data! ERROR !!\nErrorcode: 2-2\n";

// An object whose result folder is a fresh one, in which the process stands.
class PassFolderTest : public testing::Test {
  protected:
    PassFolderTest() { run.ResultPfad = folder.path().string(); }

    fs::path inResult(const std::string& name) const { return folder / name; }

    const TempFolder folder{TempFolder::Enter::yes};
    AnalyseDataObj run;
};

class PassFolderRows : public PassFolderTest, public testing::WithParamInterface<FolderRow> {};

// The status of a stay in a new folder that may not be entered, for a process without the rights
// of root, which it gives up for good. 100: the console does not say `words`.
int statusWithoutRights(AnalyseDataObj& run, const FolderRule& rule, const std::string& words) {
    constexpr uid_t kNobody = 65534;
    constexpr int kOtherWords = 100;
    if (geteuid() == 0 && setuid(kNobody) != 0) {
        return kOtherWords;
    }
    umask(0777);
    StdoutCapture console;
    const PassFolder pass(run, rule);
    return console.text() == words ? pass.status() : kOtherWords;
}

} // namespace

TEST_P(PassFolderRows, NewFolderIsMadeAndEnteredSilently) {
    StdoutCapture console;
    const PassFolder pass(run, GetParam().Rule);
    EXPECT_EQ(pass.status(), 0);
    EXPECT_TRUE(pass.entered());
    EXPECT_EQ(fs::current_path(), inResult(GetParam().Name));
    EXPECT_EQ(console.text(), "");
}

TEST_P(PassFolderRows, ExistingFolderIsEnteredSilently) {
    fs::create_directory(GetParam().Name);
    StdoutCapture console;
    const PassFolder pass(run, GetParam().Rule);
    EXPECT_EQ(pass.status(), 0);
    EXPECT_EQ(fs::current_path(), inResult(GetParam().Name));
    EXPECT_EQ(console.text(), "");
}

TEST_P(PassFolderRows, AFileInItsPlaceIsToldAsNotMade) {
    writeFile(GetParam().Name, "");
    StdoutCapture console;
    const PassFolder pass(run, GetParam().Rule);
    EXPECT_EQ(pass.status(), 2);
    EXPECT_FALSE(pass.entered());
    EXPECT_EQ(fs::current_path(), folder.path());
    EXPECT_EQ(console.text(), GetParam().CannotCreate);
}

TEST_P(PassFolderRows, TheLogTellsWhyAFolderCannotBeEntered) {
    writeFile(GetParam().Name, "");
    run.LogDatei = run.OpenResult("KVA.log", "wb");
    const StdoutCapture swallowed;
    const PassFolder pass(run, GetParam().Rule);
    EXPECT_EQ(kva_test::readFile("KVA.log"),
              std::string("Cannot enter folder ") + GetParam().Name + ": Not a directory\n");
}

TEST_P(PassFolderRows, ANewFolderThatMayNotBeEnteredIsTold) {
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EXIT(_exit(statusWithoutRights(run, GetParam().Rule, GetParam().CannotEnter)),
                testing::ExitedWithCode(1), "");
}

TEST_P(PassFolderRows, WithoutAResultFolderNothingIsMade) {
    run.ResultPfad.clear();
    StdoutCapture console;
    const PassFolder pass(run, GetParam().Rule);
    EXPECT_EQ(pass.status(), 2);
    EXPECT_EQ(console.text(), GetParam().CannotCreate);
    EXPECT_EQ(fs::current_path(), folder.path());
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

INSTANTIATE_TEST_SUITE_P(Folders, PassFolderRows, testing::ValuesIn(kRows),
                         [](const auto& row) { return "Row" + std::to_string(row.index); });

// --- "Single_data" tells of every failure of mkdir and goes on ------------------------------

TEST_F(PassFolderTest, SingleDataIsMadeSilently) {
    StdoutCapture console;
    const PassFolder pass(run, Folder::SingleData);
    EXPECT_EQ(pass.status(), 0);
    EXPECT_EQ(fs::current_path(), inResult("Single_data"));
    EXPECT_EQ(console.text(), "");
}

TEST_F(PassFolderTest, ExistingSingleDataIsToldAndEntered) {
    fs::create_directory("Single_data");
    StdoutCapture console;
    const PassFolder pass(run, Folder::SingleData);
    EXPECT_EQ(pass.status(), 0);
    EXPECT_EQ(fs::current_path(), inResult("Single_data"));
    EXPECT_EQ(console.text(), kSingleCreate);
}

TEST_F(PassFolderTest, AFileInPlaceOfSingleDataIsToldTwice) {
    writeFile("Single_data", "");
    StdoutCapture console;
    const PassFolder pass(run, Folder::SingleData);
    EXPECT_EQ(pass.status(), 1);
    EXPECT_EQ(console.text(), kSingleCreate + kSingleEnter);
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST_F(PassFolderTest, SingleDataThatMayNotBeEnteredIsTold) {
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EXIT(_exit(statusWithoutRights(run, Folder::SingleData, kSingleEnter)),
                testing::ExitedWithCode(1), "");
}

// --- The stay -------------------------------------------------------------------------------

TEST_F(PassFolderTest, APassStartsFromTheResultFolder) {
    const TempFolder elsewhere(TempFolder::Enter::yes);
    const PassFolder pass(run, Folder::GroupData);
    EXPECT_EQ(fs::current_path(), inResult("Group_data"));
    EXPECT_TRUE(fs::is_empty(elsewhere.path()));
    fs::current_path(elsewhere.path());
}

TEST_F(PassFolderTest, TheEndOfTheStayLeadsToTheResultFolder) {
    {
        const PassFolder pass(run, Folder::GroupData);
        fs::create_directory("deeper");
        fs::current_path("deeper");
    }
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST_F(PassFolderTest, APassThatStaysLeavesTheProcessInTheFolder) {
    {
        PassFolder pass(run, Folder::GroupData);
        pass.stay();
    }
    EXPECT_EQ(fs::current_path(), inResult("Group_data"));
    EXPECT_EQ(run.CurrentFolder, "");
    const PassFolder next(run, Folder::DistanceData); // starts from the result folder all the same
    EXPECT_EQ(fs::current_path(), inResult("Distance_data"));
}

TEST_F(PassFolderTest, FailuresOfFilesAreShownWithTheFolder) {
    StdoutCapture console;
    {
        const PassFolder pass(run, Folder::GroupData);
        EXPECT_EQ(run.CurrentFolder, "Group_data/");
        fs::create_directory("Vargroup.xls");
        EXPECT_FALSE(run.OpenResult("Vargroup.xls", "wb").isOpen());
    }
    EXPECT_EQ(run.CurrentFolder, "");
    EXPECT_EQ(console.text(),
              "\nCannot write result file Group_data/Vargroup.xls: Is a directory\n");
}

// --- A folder inside ----------------------------------------------------------------------------

TEST_F(PassFolderTest, AnInnerFolderIsMadeInsideAndLeftWithTheOuterOne) {
    {
        PassFolder pass(run, Folder::FormatsData);
        EXPECT_EQ(pass.enterInner(kInner), 0);
        EXPECT_EQ(fs::current_path(), inResult("Formats&Data/IM_Format"));
        EXPECT_EQ(run.CurrentFolder, "Formats&Data/IM_Format/");
    }
    EXPECT_EQ(fs::current_path(), folder.path());
    EXPECT_EQ(run.CurrentFolder, "");
}

TEST_F(PassFolderTest, AnInnerFolderThatIsThereIsEntered) {
    fs::create_directories(inResult("Formats&Data/IM_Format"));
    StdoutCapture console;
    PassFolder pass(run, Folder::FormatsData);
    EXPECT_EQ(pass.enterInner(kInner), 0);
    EXPECT_EQ(fs::current_path(), inResult("Formats&Data/IM_Format"));
    EXPECT_EQ(console.text(), "");
}

TEST_F(PassFolderTest, AFileInPlaceOfTheInnerFolderIsTold) {
    fs::create_directory("Formats&Data");
    writeFile("Formats&Data/IM_Format", "");
    StdoutCapture console;
    PassFolder pass(run, Folder::FormatsData);
    EXPECT_EQ(pass.enterInner(kInner), 2);
    EXPECT_EQ(fs::current_path(), inResult("Formats&Data"));
    EXPECT_EQ(run.CurrentFolder, "Formats&Data/");
    EXPECT_EQ(console.text(), "\n");
}
