#include "run/passframe.h"

#include "control/AnalyseDataObj.h"
#include "support/datasets.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

namespace {

using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::writeFile;

constexpr PassFrame kWhole{.Folder = &Folder::FormatsData,
                           .Inner = &Folder::IMFormat,
                           .Begin = Message::GenepopBegin,
                           .End = Message::GenepopEnd,
                           .LogText = "Worked"};

std::string currentFolder() {
    return std::filesystem::current_path().filename();
}

bool inLog(LoadedRun& run, const std::string& text) {
    run->LogDatei.flush();
    return run.resultFile("KVA.log").find(text) != std::string::npos;
}

} // namespace

TEST(PassFrame, WorksInItsFolderAndComesBack) {
    LoadedRun run(kva_test::kTwoPops);
    const StdoutCapture swallowed;
    const std::string before = currentFolder();
    std::string during;
    EXPECT_EQ(runInFrame(*run, kWhole,
                         [&] {
                             during = currentFolder();
                             EXPECT_FALSE(inLog(run, "Worked"));
                             return 0;
                         }),
              0);
    EXPECT_EQ(during, "IM_Format");
    EXPECT_EQ(currentFolder(), before);
    EXPECT_FALSE(run->PopAllele.empty());
    EXPECT_TRUE(inLog(run, "\nWorked\n"));
}

TEST(PassFrame, WorkThatCannotGoOnStaysAndIsNotLogged) {
    LoadedRun run(kva_test::kTwoPops);
    const StdoutCapture swallowed;
    EXPECT_EQ(runInFrame(*run, kWhole, [] { return -2; }), -2);
    EXPECT_EQ(currentFolder(), "IM_Format");
    EXPECT_FALSE(inLog(run, "Worked"));
}

TEST(PassFrame, StaysWhereTheFrameSaysSo) {
    LoadedRun run(kva_test::kTwoPops);
    const StdoutCapture swallowed;
    constexpr PassFrame kStays{.Folder = &Folder::GroupData, .StaysInFolder = true};
    EXPECT_EQ(runInFrame(*run, kStays, [] { return 0; }), 0);
    EXPECT_EQ(currentFolder(), "Group_data");
}

TEST(PassFrame, TellsItsBeginAndEnd) {
    LoadedRun run(kva_test::kTwoPops);
    run.counted();
    StdoutCapture console;
    constexpr PassFrame kTold{.Begin = Message::HetRangeBegin, .End = Message::HetRangeEnd};
    EXPECT_EQ(runInFrame(*run, kTold,
                         [] {
                             std::printf("work");
                             return 0;
                         }),
              0);
    EXPECT_EQ(console.text(), "\nCalculate random heterozygosity range\n"
                              "! This may take a long time...\n"
                              "work\n... Finished random heterozygosity range calculation!\n");
}

TEST(PassFrame, WithoutTablesItDependsOnTheFrame) {
    LoadedRun run(kva_test::kTwoPops);
    writeFile("Allelecount", "in the way of the counting pass");
    const StdoutCapture swallowed;
    int worked = 0;
    const auto work = [&worked] {
        ++worked;
        return 0;
    };
    EXPECT_EQ(runInFrame(*run, {}, work), 1);
    EXPECT_EQ(worked, 0);
    EXPECT_EQ(runInFrame(*run, {.NeedsTables = false}, work), 0);
    EXPECT_EQ(worked, 1);
}

TEST(PassFrame, AFolderThatIsAFileIsTold) {
    LoadedRun run(kva_test::kTwoPops);
    writeFile("Formats&Data", "in the way");
    const StdoutCapture swallowed;
    int worked = 0;
    EXPECT_EQ(runInFrame(*run, kWhole, [&worked] { return ++worked; }), 2);
    EXPECT_EQ(worked, 0);
}

TEST(PassFrame, WithoutDataThereIsNothingToDo) {
    AnalyseDataObj empty;
    EXPECT_EQ(runInFrame(empty, {}, [] { return 0; }), -4);
}
