#include "control/AnalyseDataObj.h"

#include "support/datasets.h"
#include "support/support.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

using namespace kva;

using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::readFile;
using kva_test::StdoutCapture;
using kva_test::tabbed;
using kva_test::TempFolder;
using kva_test::writeFile;

namespace fs = std::filesystem;

namespace {

// Reads the data file `name`, of the two populations, as a front end does.
void load(AnalyseDataObj& run, const std::string& name) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                               &std::fclose);
    run.DateiName = name;
    const StdoutCapture swallowed;
    ASSERT_EQ(run.CheckDataFile(file.get()), 0);
    run.ReadDataFile(file.get());
}

void writeOutput(AnalyseDataObj& run, long bootstraps = 1) {
    const StdoutCapture swallowed;
    EXPECT_EQ(run.WriteOutput(bootstraps, 0), 0);
}

int linkResultNew(AnalyseDataObj& run) {
    const StdoutCapture swallowed;
    return run.LinkResultNew();
}

const char* const kIsFolder = "Cannot write result file Shannon.xls: Is a directory\n";

} // namespace

// --- Defaults and settings ---------------------------------------------------------------

TEST(AnalyseDataObj, StartsWithTheSettingsOfTheMenu) {
    const AnalyseDataObj run;
    EXPECT_EQ(run.GeneralMask, 0xC31FFU);
    EXPECT_EQ(run.PopDistMask, 0xA3U);
    EXPECT_EQ(run.IndDistMask, 0xA3U);
    EXPECT_EQ(run.FstMask, 0x9A39U);
    EXPECT_EQ(run.HetRangeMask, 0x803U);
    EXPECT_EQ(run.Bootstraps, 1);
    EXPECT_EQ(run.BootLoci, -1);
    EXPECT_EQ(run.HetRandomisierungen, 1000);
    EXPECT_EQ(run.HetReserve, 1);
    EXPECT_EQ(run.ReplikaLoci, -1);
    EXPECT_EQ(run.Replikate, 1000);
}

TEST(AnalyseDataObj, StartsWithTheFixedValues) {
    const AnalyseDataObj run;
    EXPECT_EQ(run.DistUnendlich, 10.0);
    EXPECT_EQ(run.DistFehlerwert, -32767.0);
    EXPECT_EQ(run.FstAlpha, 0.05);
    EXPECT_EQ(run.JackknifeAnteil, 0.1);
    EXPECT_EQ(run.GapSchritte, 5);
    EXPECT_EQ(run.GapBasen, 15);
    EXPECT_EQ(run.AllelMaxLaenge, 300);
    EXPECT_EQ(run.AllelMinLaenge, 35);
}

TEST(AnalyseDataObj, StartsWithoutData) {
    const AnalyseDataObj run;
    EXPECT_EQ(run.Daten, nullptr);
    EXPECT_TRUE(run.PopAllele.empty());
    EXPECT_TRUE(run.IndAllele.empty());
    EXPECT_TRUE(run.StartPfad.empty());
    EXPECT_TRUE(run.ResultPfad.empty());
    EXPECT_FALSE(run.LogDatei.isOpen());
    EXPECT_EQ(run.AnzLoci + run.AnzPop + run.MaxChromosomen, 0);
    EXPECT_EQ(run.KopfSpalten + run.KopfZeilen + run.DatenFormat, 0);
    EXPECT_EQ(run.DateiName, "testdata.dat");
}

// --- The end of an object ---------------------------------------------------------------------

TEST(AnalyseDataObj, ItsEndLeadsBackToTheFolderOfTheDataFile) {
    const TempFolder folder(TempFolder::Enter::yes);
    writeFile("data.txt", tabbed(kTwoPops));
    {
        AnalyseDataObj run;
        load(run, "data.txt");
        EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult00");
    }
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST(AnalyseDataObj, OfAnObjectThatLoadedNothingTheEndChangesNoFolder) {
    const TempFolder folder(TempFolder::Enter::yes);
    { const AnalyseDataObj run; }
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST(AnalyseDataObj, AStartFolderThatIsGoneDoesNoHarmAtTheEnd) {
    const TempFolder folder(TempFolder::Enter::yes);
    {
        AnalyseDataObj run;
        run.StartPfad = folder / "gone";
    }
    EXPECT_EQ(fs::current_path(), folder.path());
}

TEST(AnalyseDataObj, ItsEndWritesTheRestOfTheLog) {
    const TempFolder folder(TempFolder::Enter::yes);
    {
        AnalyseDataObj run;
        run.LogDatei = run.OpenResult("KVA.log", "wb");
        run.LogDatei.text("last words");
    }
    EXPECT_EQ(readFile(folder / "KVA.log"), "last words");
}

TEST(AnalyseDataObj, ALogThatCannotBeWrittenIsToldAtTheEnd) {
    const TempFolder folder(TempFolder::Enter::yes);
    StdoutCapture console;
    {
        AnalyseDataObj run;
        run.LogDatei = run.OpenResult("/dev/full", "wb");
        run.LogDatei.text("last words");
    }
    EXPECT_EQ(console.text(), "\nCannot write result file /dev/full: No space left on device\n");
}

// --- Result files and the log --------------------------------------------------------------------

TEST(AnalyseDataObj, AFileThatDoesNotOpenIsToldOnConsoleAndInTheLog) {
    LoadedRun run(kTwoPops);
    fs::create_directory("Shannon.xls");
    StdoutCapture console;
    EXPECT_FALSE(run->OpenResult("Shannon.xls", "wb").isOpen());
    EXPECT_EQ(console.text(), std::string("\n") + kIsFolder);
    EXPECT_EQ(run.resultFile("KVA.log"), kIsFolder);
}

TEST(AnalyseDataObj, WithoutALogTheConsoleAloneIsTold) {
    const TempFolder folder(TempFolder::Enter::yes);
    fs::create_directory("Shannon.xls");
    AnalyseDataObj run;
    StdoutCapture console;
    EXPECT_FALSE(run.OpenResult("Shannon.xls", "wb").isOpen());
    EXPECT_EQ(console.text(), std::string("\n") + kIsFolder);
}

TEST(AnalyseDataObj, AFailingWriteIsToldWithTheFolderOfThePass) {
    LoadedRun run(kTwoPops);
    run->CurrentFolder = "Single_data";
    ResultFile sheet = run->OpenResult("/dev/full", "wb");
    run->CurrentFolder.clear(); // the file keeps the name it was opened with
    sheet.text("x");
    StdoutCapture console;
    EXPECT_FALSE(sheet.close());
    EXPECT_EQ(console.text(),
              "\nCannot write result file Single_data/dev/full: No space left on device\n");
}

TEST(AnalyseDataObj, AnEntryOfTheLogStandsBetweenLineEnds) {
    LoadedRun run(kTwoPops);
    run->LogEntry("Make Overview...");
    run->LogEntry("100%s");
    EXPECT_EQ(run.resultFile("KVA.log"), "\nMake Overview...\n\n100%s\n"); // written at once
}

TEST(AnalyseDataObj, WithoutALogAnEntryIsDropped) {
    AnalyseDataObj run;
    run.LogEntry("nowhere");
    EXPECT_FALSE(run.LogDatei.isOpen());
}

// --- The pipeline -----------------------------------------------------------------------------

TEST(WriteOutput, BeginsWithTheLogHeadAndCounts) {
    LoadedRun run(kTwoPops);
    writeOutput(*run);
    const std::string log = run.resultFile("KVA.log");
    EXPECT_TRUE(log.starts_with("KVAnalyser-Log\n"));
    EXPECT_LT(log.find("Allelic Richness"), log.find("\nCount Allels...\n"));
    EXPECT_NE(log.find("\nCount Allels...\n"), std::string::npos);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(WriteOutput, EndsInTheResultFolder) {
    LoadedRun run(kTwoPops);
    writeOutput(*run);
    EXPECT_EQ(fs::current_path(), run->ResultPfad);
}

TEST(WriteOutput, NoBootstrapsSwitchTheDistancesOff) {
    LoadedRun run(kTwoPops);
    run->PopDistMask = 0xA3;
    writeOutput(*run, 1);
    EXPECT_EQ(run->PopDistMask, 0xA3U);
    writeOutput(*run, 0);
    EXPECT_EQ(run->PopDistMask, 0U);
    EXPECT_EQ(run->IndDistMask, 0xA3U);
}

TEST(WriteOutput, ALogThatWasClosedIsAppendedTo) {
    LoadedRun run(kTwoPops);
    run->LogDatei.text("before\n");
    run->LogDatei.close();
    writeOutput(*run);
    EXPECT_TRUE(run.resultFile("KVA.log").starts_with("before\nKVAnalyser-Log\n"));
}

TEST(WriteOutput, WithoutALogTheRunGoesOn) {
    LoadedRun run(kTwoPops);
    run->LogDatei.close();
    fs::remove("KVA.log");
    fs::create_directory("KVA.log");
    StdoutCapture console;
    EXPECT_EQ(run->WriteOutput(1, 0), 0);
    const std::string told = "\nCannot write result file KVA.log: Is a directory\n";
    EXPECT_TRUE(console.text().starts_with(told));
    EXPECT_EQ(console.text().find(told, 1), std::string::npos); // once
    EXPECT_TRUE(fs::exists("Allelecount/Allelecount.xls"));
}

// Nothing guards it: the log's head comes into the current folder.
TEST(WriteOutput, OfAnObjectThatLoadedNothingLeavesALogAlone) {
    const TempFolder folder(TempFolder::Enter::yes);
    writeFile("KVA.log", "before\n");
    AnalyseDataObj run;
    writeOutput(run);
    EXPECT_TRUE(run.PopAllele.empty());
    run.LogDatei.close();
    EXPECT_EQ(readFile(folder / "KVA.log"), "before\n"
                                            "KVAnalyser-Log\n"
                                            "\tVersion: 4.05\n"
                                            "\tKVAnalyzer, population genetics of microsatellites\n"
                                            "\n"
                                            "Filename: testdata.dat\n"
                                            "Number of Loci\t\t: 0\n"
                                            "Number of Populations\t: 0\n"
                                            "Format : 0\n"
                                            "\n"
                                            "Allelic Richness : Minimal sample number per locus\n");
    fs::remove("KVA.log");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

namespace {

// The passes that a bit of the settings switches on, and their entries in the log.
struct SwitchedPass {
    uint32_t bit;
    const char* entry;
};

constexpr SwitchedPass kSwitchedPasses[] = {
    {GeneralBit::IMFormat, "\nCreate IM-formated population pair files\n"},
    {GeneralBit::PopDistances, "\nCalculate Distances...\n"},
    {GeneralBit::IndDistances, "\nCalculate Individual Distances...\n"},
    {GeneralBit::FStatistics, "\nDo some F-statistics...\n"},
    {GeneralBit::HetRange, "\nCalculate heterosygosity range as a sampling artefact\n"},
};

// The entries of switched passes in the log of a run with these masks, one after the other.
std::string entriesOfRun(uint32_t bits, uint32_t popDist, uint32_t indDist, uint32_t fst) {
    LoadedRun run(kTwoPops);
    run->TakeSettings({bits, popDist, indDist, fst, 0}, {.HetRandomisierungen = 1});
    writeOutput(*run);
    const std::string log = run.resultFile("KVA.log");
    std::string entries;
    for (const SwitchedPass& pass : kSwitchedPasses) {
        entries += log.find(pass.entry) != std::string::npos ? pass.entry : "";
    }
    return entries;
}

} // namespace

TEST(WriteOutput, ASwitchTurnsItsOwnPassOn) {
    for (const SwitchedPass& pass : kSwitchedPasses) {
        EXPECT_EQ(entriesOfRun(pass.bit, 1, 1, 1), pass.entry);
    }
}

TEST(WriteOutput, AnEmptyMaskKeepsItsPassOff) {
    EXPECT_EQ(entriesOfRun(GeneralBit::PopDistances, 0, 1, 1), "");
    EXPECT_EQ(entriesOfRun(GeneralBit::IndDistances, 1, 0, 1), "");
    EXPECT_EQ(entriesOfRun(GeneralBit::FStatistics, 1, 1, 0), "");
}

// --- A further run ----------------------------------------------------------------------------

TEST(LinkResultNew, NeedsDataAndAStartFolder) {
    AnalyseDataObj run;
    EXPECT_EQ(linkResultNew(run), 1);
    run.Daten = std::make_unique<Datensatz>();
    EXPECT_EQ(linkResultNew(run), 1);
    run.Daten.reset();
    run.StartPfad = fs::current_path();
    EXPECT_EQ(linkResultNew(run), 1);
}

TEST(LinkResultNew, MakesTheNextFolderWithALogOfItsOwn) {
    const TempFolder folder(TempFolder::Enter::yes);
    writeFile("data.txt", tabbed(kTwoPops));
    AnalyseDataObj run;
    load(run, "data.txt");
    run.LogEntry("first run");
    EXPECT_EQ(linkResultNew(run), 0);
    run.LogEntry("second run");
    EXPECT_EQ(fs::current_path(), folder / "data.txt_KVAresult01");
    EXPECT_EQ(run.ResultPfad, folder / "data.txt_KVAresult01");
    EXPECT_EQ(run.StartPfad, folder.path());
    EXPECT_EQ(run.DateiKurzName, "data.txt");
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult00/KVA.log"), "\nfirst run\n");
    EXPECT_EQ(readFile(folder / "data.txt_KVAresult01/KVA.log"), "\nsecond run\n");
}

TEST(LinkResultNew, ASecondRunWritesTheSameSheetsAndLeavesTheFirst) {
    const TempFolder folder(TempFolder::Enter::yes);
    writeFile("data.txt", tabbed(kTwoPops));
    AnalyseDataObj run;
    load(run, "data.txt");
    writeOutput(run);
    const fs::path first = run.ResultPfad;
    const fs::path sheet = "Allelecount/Allelecount.xls";
    const std::string bytes = readFile(first / sheet);
    EXPECT_EQ(linkResultNew(run), 0);
    writeOutput(run);
    EXPECT_EQ(readFile(run.ResultPfad / sheet), bytes);
    EXPECT_EQ(readFile(first / sheet), bytes);
    EXPECT_NE(run.ResultPfad, first.string());
}

TEST(LinkResultNew, WithoutAResultFolderNoPassRuns) {
    const TempFolder folder(TempFolder::Enter::yes);
    fs::create_directory("sub");
    writeFile("sub/data.txt", tabbed(kTwoPops));
    AnalyseDataObj run;
    load(run, "sub/data.txt");
    fs::remove_all(folder / "sub"); // the next folder cannot be made
    EXPECT_EQ(linkResultNew(run), 0);
    EXPECT_TRUE(run.FolderMissing);
    StdoutCapture console;
    EXPECT_EQ(run.WriteOutput(0, 0), 0);
    EXPECT_EQ(console.text(), "");
    EXPECT_TRUE(run.PopAllele.empty());
    EXPECT_TRUE(fs::is_empty(folder.path()));
}
