#include "control/frontend.h"

#include "control/AnalyseDataObj.h"
#include "support/datasets.h"
#include "support/support.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <sys/stat.h>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

void reportOnConsole(const std::string& name) {
    std::printf("no side file %s\n", name.c_str());
}

// Works in a folder that holds "data.txt", and keeps what the load printed.
class FirstLoad : public testing::Test {
  protected:
    FirstLoad() { writeFile("data.txt", tabbed(kTwoPops)); }

    LoadResult load(const std::string& name, const std::string& sideFile = "") {
        StdoutCapture capture;
        const LoadResult outcome = LoadFirst(run, name, sideFile, reportOnConsole, data);
        console = capture.text();
        return outcome;
    }

    const TempFolder folder{TempFolder::Enter::yes};
    AnalyseDataObj run;
    InputFile data;
    std::string console;
};

// "./././data.txt" of so many bytes.
std::string nameOfLength(std::size_t bytes) {
    std::string name = bytes % 2 == 0 ? "data.txt" : ".//data.txt";
    while (name.size() < bytes) {
        name.insert(0, "./");
    }
    return name;
}

} // namespace

TEST_F(FirstLoad, ReadsTheDataAndStaysInTheResultFolder) {
    EXPECT_EQ(load("data.txt"), LoadResult::Done);
    EXPECT_EQ(run.DateiName, "data.txt");
    EXPECT_EQ(run.AnzPop, 2);
    EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult00");
    EXPECT_NE(data, nullptr);
}

TEST_F(FirstLoad, AbsentFileIsToldAndNothingIsMade) {
    EXPECT_EQ(load("absent.txt"), LoadResult::NoFile);
    EXPECT_EQ(console, "\nWrong Filename or Path!\n");
    EXPECT_EQ(run.DateiName, "absent.txt");
    EXPECT_EQ(run.Daten, nullptr);
    EXPECT_FALSE(fs::exists("absent.txt_KVAresult00"));
}

TEST_F(FirstLoad, EmptyNameDoesNotOpen) {
    EXPECT_EQ(load(""), LoadResult::NoFile);
}

TEST_F(FirstLoad, NameOf1023BytesOpens) {
    EXPECT_EQ(load(nameOfLength(1023)), LoadResult::Done);
}

TEST_F(FirstLoad, NameOf1024BytesCountsAsOneThatDoesNotOpen) {
    EXPECT_EQ(load(nameOfLength(1024)), LoadResult::NoFile);
    EXPECT_EQ(console, "\nWrong Filename or Path!\n");
}

// A folder opens, but there is nothing to read in it: message 18, and a run without data.
TEST_F(FirstLoad, FolderIsRefusedByTheReader) {
    fs::create_directory("sub");
    EXPECT_EQ(load("sub"), LoadResult::Done);
    EXPECT_TRUE(console.starts_with("\n!! ERROR Can't allocate memory! ERROR !!\n"));
    EXPECT_EQ(run.AnzLoci, 0);
}

// Opening it would wait for a writer.
TEST_F(FirstLoad, PipeDoesNotOpen) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_EQ(load("pipe"), LoadResult::NoFile);
    EXPECT_EQ(load("data.txt", (folder / "pipe").string()), LoadResult::Done);
    EXPECT_TRUE(console.ends_with("no side file " + (folder / "pipe").string() + "\n"));
}

TEST_F(FirstLoad, RefusedFileGoesOn) {
    writeFile("bad.txt", "");
    EXPECT_EQ(load("bad.txt"), LoadResult::Done);
    EXPECT_EQ(run.AnzLoci, 0);
    EXPECT_EQ(run.AnzPop, 0);
    EXPECT_TRUE(fs::exists(folder / "bad.txt_KVAresult00/KVA.log"));
}

TEST_F(FirstLoad, AbsentSideFileIsReportedBehindTheReading) {
    EXPECT_EQ(load("data.txt", "side.txt"), LoadResult::Done);
    EXPECT_TRUE(console.ends_with("\nno side file side.txt\n"));
}

TEST_F(FirstLoad, AbsentDataFileComesBeforeTheSideFile) {
    EXPECT_EQ(load("absent.txt", "side.txt"), LoadResult::NoFile);
    EXPECT_EQ(console, "\nWrong Filename or Path!\n");
}

TEST_F(FirstLoad, WithoutAResultFolderThereIsNoRun) {
    const std::string name(250, 'n'); // with "_KVAresult00" longer than a file name can be
    writeFile(name, tabbed(kTwoPops));
    EXPECT_EQ(load(name), LoadResult::NoFolder);
    EXPECT_TRUE(run.FolderMissing);
}

// kTwoPops has four data rows.
TEST_F(FirstLoad, PrintsOneDotPerDataRow) {
    load("data.txt");
    EXPECT_EQ(console, "\nRead Loci/Pop Information!\n....\n");
}

TEST_F(FirstLoad, SecondLoadOnOneObjectIsToldAndGoesOn) {
    load("data.txt");
    EXPECT_EQ(load((folder / "data.txt").string()), LoadResult::Done);
    EXPECT_EQ(console, "\n!! This Class has already Checked a Datafile !!\n"
                       "\t Please try this to load with a new Class\n"
                       "Errorcode: 1-1\n"
                       "\nRead Loci/Pop Information!\n....\n");
    EXPECT_EQ(run.AnzPop, 2);
}

// Nothing guards a run behind a failed open: the passes meet an empty object.
TEST_F(FirstLoad, RunBehindAFailedOpenWritesALogAlone) {
    load("absent.txt");
    EXPECT_EQ(run.LinkResultNew(), 1);
    fs::remove("data.txt");
    const StdoutCapture capture;
    StartRun(run, kCommandLineDefaults, {});
    EXPECT_TRUE(readFile("KVA.log").starts_with("KVAnalyser-Log\n"));
    fs::remove("KVA.log");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(FirstLoad, RunTakesTheSettingsOver) {
    load("data.txt");
    const AnalyseSettings masks{0x31FF, 0x7, 0x5, 0x0239, 0x1};
    const ScalarSettings scalars{.RichnessRef = 8, .ReplikaLoci = 3};
    const StdoutCapture capture;
    StartRun(run, masks, scalars);
    EXPECT_EQ(run.PopDistMask, 0x7U);
    EXPECT_EQ(run.IndDistMask, 0x5U);
    EXPECT_EQ(run.FstMask, 0x0239U);
    EXPECT_EQ(run.HetRangeMask, 0x1U);
    EXPECT_EQ(run.RichnessRef, 8);
    EXPECT_EQ(run.ReplikaLoci, 3);
    EXPECT_EQ(run.PopAllele.size(), 3U); // the pool and two populations: the passes ran
}

TEST_F(FirstLoad, RunWithZeroBootstrapsSilencesTheDistances) {
    load("data.txt");
    const AnalyseSettings masks{0x3DFF, 0x7, 0x7, 0x9A39, 0x803};
    const StdoutCapture capture;
    StartRun(run, masks, {.Bootstraps = 0});
    EXPECT_EQ(run.PopDistMask, 0U);
}

TEST_F(FirstLoad, RunLogsBootstrapsAndPermutations) {
    load("data.txt");
    const AnalyseSettings masks{0x75FF, 0x1, 0x0, 0x0, 0x0};
    {
        const StdoutCapture capture;
        StartRun(run, masks, {.Bootstraps = 12, .Permutationen = 34});
    }
    const std::string log = readFile("KVA.log");
    EXPECT_NE(log.find("\nNumber of bootstraps\t: 12\n"), std::string::npos);
    EXPECT_NE(log.find("\nNumber of permutations\t: 34\n"), std::string::npos);
}

// --- Numbers -----------------------------------------------------------------------

TEST(NearestInt32, KeepsWhatFits) {
    EXPECT_EQ(NearestInt32(0), 0);
    EXPECT_EQ(NearestInt32(2147483647L), 2147483647);
    EXPECT_EQ(NearestInt32(-2147483648L), std::numeric_limits<int32_t>::min());
}

TEST(NearestInt32, BoundsWhatDoesNot) {
    EXPECT_EQ(NearestInt32(2147483648L), 2147483647);
    EXPECT_EQ(NearestInt32(std::numeric_limits<long>::max()), 2147483647);
    EXPECT_EQ(NearestInt32(-2147483649L), std::numeric_limits<int32_t>::min());
}

TEST(TruncatedInt32, DropsTheFraction) {
    EXPECT_EQ(TruncatedInt32(4.6), 4);
    EXPECT_EQ(TruncatedInt32(-4.6), -4);
    EXPECT_EQ(TruncatedInt32(-0.5), 0);
    EXPECT_EQ(TruncatedInt32(2147483647.9), 2147483647);
}

TEST(TruncatedInt32, BoundsWhatDoesNotFit) {
    EXPECT_EQ(TruncatedInt32(1e300), 2147483647);
    EXPECT_EQ(TruncatedInt32(HUGE_VAL), 2147483647);
    EXPECT_EQ(TruncatedInt32(-HUGE_VAL), std::numeric_limits<int32_t>::min());
}

TEST(TruncatedInt32, NotANumberIsZero) {
    EXPECT_EQ(TruncatedInt32(std::nan("")), 0);
    EXPECT_EQ(TruncatedInt32(-std::nan("")), 0);
}
