#include "formats/formats_support.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

long exportIM(LoadedRun& run, uint32_t more = 0) {
    run->GeneralMask = GeneralBit::IMFormat | more;
    return quietly([&] { return run->MakeIMFormat(); });
}

std::string pairFile(LoadedRun& run, const std::string& name) {
    return exported(run, "IM_Format/" + name);
}

// The lines behind the head of a locus, up to the next head or the end.
std::string alleleLines(const std::string& file, const std::string& head) {
    const std::size_t begin = file.find(head) + head.size();
    return file.substr(begin);
}

// One locus L1, repeat length and rows as given.
std::string oneLocus(const std::string& repeat, const std::string& rows) {
    return "2 . . " + repeat + " .\n. . . 50 .\n. . . L1 L1b\n" + rows;
}

} // namespace

TEST(IMFormat, PairFileWhole) {
    // Steps of 2 from 100 at L1, of 4 from 200 at L2.
    LoadedRun run(kTwoPops);
    EXPECT_EQ(exportIM(run), 0);
    EXPECT_EQ(pairFile(run, "IM_A_B.txt"), "File 'data.txt' converted by KVAnalyzer\n"
                                           "A B\n"
                                           "2\n"
                                           "L1 4 4 1 S 1.000000\n"
                                           "     A000 0\n"
                                           "     A001 1\n"
                                           "     A002 0\n"
                                           "     A003 0\n"
                                           "     B000 1\n"
                                           "     B001 2\n"
                                           "     B002 2\n"
                                           "     B003 2\n"
                                           "L2 4 4 1 S 1.000000\n"
                                           "     A000 0\n"
                                           "     A001 0\n"
                                           "     A002 1\n"
                                           "     A003 2\n"
                                           "     B000 0\n"
                                           "     B001 1\n"
                                           "     B002 0\n"
                                           "     B003 0\n"
                                           "\n");
}

TEST(IMFormat, MissingAllelesLeaveGapsAndEmptyLociAreNotCommon) {
    LoadedRun run(kWithGaps); // A 100/102 100/-, B without data at L2
    exportIM(run);
    EXPECT_EQ(pairFile(run, "IM_A_B.txt"), "File 'data.txt' converted by KVAnalyzer\n"
                                           "A B\n"
                                           "1\n"
                                           "L1 3 4 1 S 1.000000\n"
                                           "     A000 0\n"
                                           "     A001 1\n"
                                           "     A002 0\n"
                                           "     B000 1\n"
                                           "     B001 2\n"
                                           "     B002 2\n"
                                           "     B003 2\n"
                                           "\n");
}

TEST(IMFormat, GapStandsInTheMiddle) {
    LoadedRun run(oneLocus("2", "A d 0 100 .\nA d 0 . 104\nB d 0 100 100\n"));
    exportIM(run);
    // Steps: the gap 4 gives 4, the repeat length 2 is smaller.
    EXPECT_EQ(alleleLines(pairFile(run, "IM_A_B.txt"), "L1 2 2 1 S 1.000000\n"),
              "     A000 0\n     A003 2\n     B000 0\n     B001 0\n\n");
}

TEST(IMFormat, MutationRateGivesTheLongHead) {
    LoadedRun run(kTwoPops);
    run->Daten->AccessMutationRate(1) = 0.0005;
    run->Daten->AccessInheritanceScalar(1) = 0.25;
    run->Daten->AccessMutationRate(2) = 1e-7;
    exportIM(run);
    const std::string file = pairFile(run, "IM_A_B.txt");
    EXPECT_NE(file.find("\nL1 4 4 1 S 0.25 0.0005\n"), std::string::npos);
    EXPECT_NE(file.find("\nL2 4 4 1 S 1 1e-07\n"), std::string::npos);
}

TEST(IMFormat, WithoutARateTheScalarHasSixDecimals) {
    LoadedRun run(kTwoPops);
    run->Daten->AccessInheritanceScalar(1) = 0.25;
    run->Daten->AccessInheritanceScalar(2) = 0.0; // becomes 1
    run->Daten->AccessMutationRate(2) = 0.0;      // not above 0
    exportIM(run);
    const std::string file = pairFile(run, "IM_A_B.txt");
    EXPECT_NE(file.find("\nL1 4 4 1 S 0.250000\n"), std::string::npos);
    EXPECT_NE(file.find("\nL2 4 4 1 S 1.000000\n"), std::string::npos);
}

TEST(IMFormat, LongNamesAreCutInTheAlleleLinesAlone) {
    LoadedRun run(oneLocus("2", "Northern d 0 100 102\nSouth d 0 100 100\n"));
    exportIM(run);
    const std::string file = pairFile(run, "IM_Northern_South.txt");
    EXPECT_NE(file.find("\nNorthern South\n"), std::string::npos);
    EXPECT_EQ(alleleLines(file, "1.000000\n"),
              "Northe000 0\nNorthe001 1\n South000 0\n South001 0\n\n");
}

TEST(IMFormat, NamesThatWouldBePathsStayInTheFolder) {
    LoadedRun run(oneLocus("2", "../x d 0 100 102\n.. d 0 100 100\n"));
    exportIM(run);
    EXPECT_NE(pairFile(run, "IM_.._x_...txt").find("\n../x ..\n"), std::string::npos);
}

TEST(IMFormat, AnEmptyNameLeavesItsPlaceInTheFileNameEmpty) {
    LoadedRun run(oneLocus("2", "A d 0 100 102\n. d 0 100 100\n"));
    exportIM(run);
    EXPECT_NE(pairFile(run, "IM_A_.txt").find("\nA \n1\n"), std::string::npos);
}

TEST(IMFormat, EachPairOfPopulationsHasAFile) {
    LoadedRun run(oneLocus("2", "A d 0 100 102\nB d 0 100 100\nC d 0 102 102\n"));
    exportIM(run);
    int files = 0;
    for (const auto& entry : fs::directory_iterator("Formats&Data/IM_Format")) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(files, 3);
    for (const char* pair : {"A B", "A C", "B C"}) {
        std::string name = std::string("IM_") + pair + ".txt";
        name[4] = '_';
        EXPECT_NE(pairFile(run, name).find(std::string("\n") + pair + "\n1\n"), std::string::npos);
    }
}

TEST(IMFormat, StepsCountFromThePoolsSmallestAllele) {
    // Neither B nor C has the 100 of A.
    LoadedRun run(oneLocus("2", "A d 0 100 102\nB d 0 102 104\nC d 0 104 104\n"));
    exportIM(run);
    EXPECT_EQ(alleleLines(pairFile(run, "IM_B_C.txt"), "1.000000\n"),
              "     B000 1\n     B001 2\n     C000 2\n     C001 2\n\n");
}

TEST(IMFormat, OnePopulationHasNoPair) {
    LoadedRun run(oneLocus("2", "A d 0 100 102\n"));
    EXPECT_EQ(exportIM(run), 0);
    EXPECT_TRUE(fs::is_empty("Formats&Data/IM_Format"));
}

TEST(IMFormat, PairWithoutACommonLocusIsALineEnd) {
    const char* const noCommon = "2 . . 2 . 2 .\n. . . 50 . 50 .\n. . . L1 L1b L2 L2b\n"
                                 "A d 0 100 102 . .\nB d 0 . . 100 102\n";
    LoadedRun run(noCommon);
    run.counted();
    run->GeneralMask = GeneralBit::IMFormat;
    EXPECT_EQ(printed([&] { return run->MakeIMFormat(); }),
              "\n\nMake IM formated files"
              "\nCan't create IM_A_B.txt\nbecause the populations has no common locus!"
              "\nAll IM-Pairs generated!\n");
    EXPECT_EQ(pairFile(run, "IM_A_B.txt"), "\n");
}

TEST(IMFormat, LocusOfOneAlleleIsAllZero) {
    LoadedRun run(oneLocus("0", "A d 0 100 100\nB d 0 100 .\n"));
    exportIM(run);
    EXPECT_EQ(alleleLines(pairFile(run, "IM_A_B.txt"), "L1 2 1 1 S 1.000000\n"),
              "     A000 0\n     A001 0\n     B000 0\n\n");
}

TEST(IMFormat, RepeatStepsBitDividesByTheRepeatLength) {
    // Alleles 100 103 108: steps of 1 (gap 5 fits neither 4 nor 3: u = 2, 1). With the bit, repeat
    // length 4: 0, 3/4 = 0, 8/4 = 2.
    const std::string data = oneLocus("4", "A d 0 100 103\nB d 0 108 108\n");
    LoadedRun steps(data);
    exportIM(steps);
    EXPECT_EQ(alleleLines(pairFile(steps, "IM_A_B.txt"), "1.000000\n"),
              "     A000 0\n     A001 3\n     B000 8\n     B001 8\n\n");
    LoadedRun repeats(data);
    exportIM(repeats, GeneralBit::RepeatSteps);
    EXPECT_EQ(alleleLines(pairFile(repeats, "IM_A_B.txt"), "1.000000\n"),
              "     A000 0\n     A001 0\n     B000 2\n     B001 2\n\n");
}

TEST(IMFormat, RepeatStepsBitWithoutARepeatLengthDividesByOne) {
    // Unlike the other exports, which fall back to the step width (here 4).
    LoadedRun run(oneLocus("0", "A d 0 100 104\nB d 0 108 108\n"));
    exportIM(run, GeneralBit::RepeatSteps);
    EXPECT_EQ(alleleLines(pairFile(run, "IM_A_B.txt"), "1.000000\n"),
              "     A000 0\n     A001 4\n     B000 8\n     B001 8\n\n");
}

TEST(IMFormat, OneColumnDataCountRowsAsEntries) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 100\nA d 0 102\nA d 0 104\nB d 0 100\n");
    exportIM(run);
    EXPECT_EQ(alleleLines(pairFile(run, "IM_A_B.txt"), "L1 3 1 1 S 1.000000\n"),
              "     A000 0\n     A001 1\n     A002 2\n     B000 0\n\n");
}

TEST(IMFormat, LocusThatIsNotCommonIsRefused) {
    LoadedRun run(kWithGaps);
    run.counted();
    ResultFile file = run->OpenResult("f", "wb");
    EXPECT_EQ(run->WriteIMLocus(file, 0, 1, 1, "A", "B", 1), -1);
    EXPECT_EQ(run->WriteIMLocus(file, 0, 1, 0, "A", "B", 1), 0);
}

TEST(IMFormat, TablesThatDoNotFitTheDataAreTold) {
    LoadedRun run(kTwoPops);
    run.counted();
    run->Daten->SetTierDaten(1, 2, 0, -1, 104); // B has 3 copies at L1 now, its table says 4
    ResultFile file = run->OpenResult("f", "wb");
    EXPECT_EQ(printed([&] { return run->WriteIMLocus(file, 0, 1, 0, "A", "B", 2); }),
              "Fehler! 1/0 : 4!=3\n");
}

TEST(IMFormat, WithoutTheBitNothingIsDone) {
    LoadedRun run(kTwoPops);
    run->GeneralMask = ~GeneralBit::IMFormat;
    EXPECT_EQ(printed([&] { return run->MakeIMFormat(); }), "");
    EXPECT_FALSE(fs::exists("Formats&Data"));
    AnalyseDataObj empty; // the bit is looked at first
    EXPECT_EQ(empty.MakeIMFormat(), 0);
}

TEST(IMFormat, WithoutDataNothingIsDone) {
    AnalyseDataObj empty;
    empty.GeneralMask = GeneralBit::IMFormat;
    EXPECT_EQ(printed([&] { return empty.MakeIMFormat(); }), "");
    EXPECT_EQ(empty.MakeIMFormat(), -4);
}

TEST(IMFormat, ConsoleAndLog) {
    LoadedRun run(kTwoPops);
    run.counted();
    run->GeneralMask = GeneralBit::IMFormat;
    const std::string before = run.resultFile("KVA.log");
    EXPECT_EQ(printed([&] { return run->MakeIMFormat(); }),
              "\n\nMake IM formated files\nAll IM-Pairs generated!\n");
    EXPECT_EQ(run.resultFile("KVA.log"), before + "\nCreate IM-formated population pair files\n");
    EXPECT_EQ(fs::current_path(), run->ResultPfad);
}

TEST(IMFormat, PairFileThatCannotBeOpenedEndsThePassInItsFolder) {
    LoadedRun run(kTwoPops);
    run.counted();
    fs::create_directories("Formats&Data/IM_Format/IM_A_B.txt");
    run->GeneralMask = GeneralBit::IMFormat;
    long result = 0;
    const std::string console = printed([&] { return result = run->MakeIMFormat(); });
    EXPECT_EQ(result, -2);
    EXPECT_NE(console.find("!! ERROR Can't create Files for IM Format!!\nErrorcode: 8-1\n"),
              std::string::npos);
    EXPECT_EQ(fs::current_path(), fs::path(run->ResultPfad) / "Formats&Data/IM_Format");
}

TEST(IMFormat, WithoutTablesNoFileIsWritten) {
    LoadedRun run(kTwoPops);
    run->GeneralMask |= GeneralBit::IMFormat;
    writeFile("Allelecount", "in the way of the counting pass");
    EXPECT_EQ(quietly([&] { return run->MakeIMFormat(); }), 1);
    EXPECT_TRUE(fs::is_empty(run->ResultPfad + "/Formats&Data/IM_Format"));
}

TEST(IMFormat, FoldersThatAreFilesEndThePass) {
    LoadedRun outer(kTwoPops);
    outer.counted();
    writeFile("Formats&Data", "");
    EXPECT_EQ(exportIM(outer), 2);
    LoadedRun inner(kTwoPops);
    inner.counted();
    fs::create_directories("Formats&Data");
    writeFile("Formats&Data/IM_Format", "");
    EXPECT_EQ(exportIM(inner), 2);
    EXPECT_EQ(fs::current_path(), fs::path(inner->ResultPfad) / "Formats&Data");
}
