// The pass as a whole: console, files, flags.
#include "fstat/passrun.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

using namespace kva;

using kva_test::kBeta;
using kva_test::kBoth;
using kva_test::kGlobal;
using kva_test::kPairs;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::PassRun;
using kva_test::quietly;
using kva_test::StdoutCapture;

namespace {

using Names = std::set<std::string>;

} // namespace

// --- The pass --------------------------------------------------------------------------

TEST(CalcDistancesSpecial, WithoutFlagsOrDataItDoesNothing) {
    LoadedRun run(kTwoPops);
    run->FstMask = 0;
    EXPECT_EQ(run->CalcDistancesSpecial(10), 2);
    AnalyseDataObj empty;
    EXPECT_EQ(empty.CalcDistancesSpecial(10), -4);
}

TEST(CalcDistancesSpecial, CountsFirstIfNothingIsCounted) {
    LoadedRun run(kTwoPops);
    run->FstMask = kPairs;
    quietly([&] { run->CalcDistancesSpecial(0); });
    EXPECT_EQ(run->PopAllele.size(), 3U);
    EXPECT_NE(run.resultFile("F-Statistic/FST_WC84.txt").find("0.16667"), std::string::npos);
}

TEST(CalcDistancesSpecial, StoresPermutationsLogsAndComesBack) {
    PassRun pass(kTwoPops, kPairs, 20);
    EXPECT_EQ(pass.result, 0);
    EXPECT_EQ(pass.run->Permutationen, 20);
    EXPECT_EQ(std::filesystem::current_path(), pass.run->ResultPfad);
    const std::string log = pass.run.resultFile("KVA.log");
    EXPECT_TRUE(log.ends_with("\nDo some F-statistics...\n")) << log;
}

TEST(CalcDistancesSpecial, AFolderThatCannotBeEnteredEndsThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    kva_test::writeFile(run->ResultPfad + "/F-Statistic", "a file in the way");
    StdoutCapture capture;
    EXPECT_EQ(run->CalcDistancesSpecial(0), 2);
    EXPECT_EQ(capture.text(), "\n!! ERROR Can't create Subfolder Distance_data! ERROR !!\n"
                              "Errorcode: 4-2\n");
}

TEST(CalcDistancesSpecial, FlagsChooseTheParts) {
    const Names pairs = {"FST_WC84.txt", "FIT_WC84.txt", "FIS_WC84.txt"};
    EXPECT_EQ(PassRun(kTwoPops, kPairs, 0).files(), pairs);
    EXPECT_EQ(PassRun(kTwoPops, kGlobal, 0).files(), Names{"GlobFst.xls"});
    EXPECT_EQ(PassRun(kTwoPops, kBeta, 0).files(), (Names{"Beta_POP.xls", "Betaij_POP.txt"}));
    Names both = pairs;
    both.insert("GlobFst.xls");
    EXPECT_EQ(PassRun(kTwoPops, kBoth, 0).files(), both);
}

TEST(CalcDistancesSpecial, ConsoleOfPairsAndAll) {
    EXPECT_EQ(PassRun(kTwoPops, kBoth | 0x8000, 1).console,
              "\nCalculate FST Distance: WC84 H=Hobs\n! Please wait...\n"
              "\n... Finished FST Distance!\n"
              "\nCalc Replica: 0"
              "\nCalculate global FST: WC84 H=Hobs\n! Please wait...\n"
              "\nCalc Replica: 0"
              "\n... Finished global FST calculation!\n"
              "\nStart with F-beta-value calculation!\n");
}

TEST(CalcDistancesSpecial, EveryHeterozygosityThatIsOnIsTold) {
    EXPECT_EQ(PassRun(kTwoPops, 0x3F, 0).console,
              "\nCalculate FST Distance: WC84 H=Hobs\n! Please wait...\n"
              "\nCalculate FST Distance: WC84 H=Hexp\n! Please wait...\n"
              "\nCalculate FST Distance: WC84 H=Hexp only for  inbred populations\n"
              "! Please wait...\n"
              "\n... Finished FST Distance!\n");
}

// --- Pairs -----------------------------------------------------------------------------

TEST(FstAllg, WithoutPermutationsThereIsNoPValueSheet) {
    EXPECT_EQ(PassRun(kTwoPops, kPairs | 0x80, 0).files().count("FST_WC84-pValue.xls"), 0U);
}

TEST(FstAllg, WithoutThinningThereAreNoMeanSheets) {
    const Names files = PassRun(kTwoPops, kPairs, 20).files();
    EXPECT_EQ(files.count("FST_WC84-pValue.xls"), 1U);
    EXPECT_EQ(files.count("FST_WC84_MEAN.xls"), 0U);
}

TEST(FstAllg, WithoutTheBitNoLimitSheets) {
    PassRun pass(kTwoPops, kPairs | 0x100, 20);
    EXPECT_EQ(pass.files().count("FST_WC84_MEAN.xls"), 1U);
    EXPECT_EQ(pass.files().count("FST_WC84_OG.xls"), 0U);
}

TEST(FstAllg, ALostFileIsToldAndEndsThePairs) {
    LoadedRun run(kTwoPops);
    run.counted();
    run->FstMask = kBoth;
    const std::filesystem::path folder = std::filesystem::path(run->ResultPfad) / "F-Statistic";
    std::filesystem::create_directories(folder / "FST_WC84.txt"); // a folder in its place
    StdoutCapture capture;
    EXPECT_EQ(run->CalcDistancesSpecial(10), 0) << "the part over all populations goes on";
    const std::string console = capture.text();
    EXPECT_NE(console.find("\n!! ERROR Can't create Resultfile for Distance! ERROR !!\n"
                           "Lost of Fst-Result ()!\n"
                           "Errorcode: 4-4\n"),
              std::string::npos)
        << console;
    EXPECT_FALSE(std::filesystem::exists(folder / "FIT_WC84.txt"));
    EXPECT_TRUE(std::filesystem::exists(folder / "GlobFst.xls"));
}

TEST(FstAllg, CountsFirstIfNothingIsCounted) {
    LoadedRun run(kTwoPops);
    run->FstMask = kPairs;
    run->Permutationen = 0;
    quietly([&] { EXPECT_EQ(run->FST_ALLG(), 0); });
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

// 0x80: random discard, whose means come before the p-values.
TEST(FstAllg, ALostSheetBehindTheMatricesIsTold) {
    for (const char* name : {"FST_WC84_MEAN.xls", "FST_WC84-pValue.xls"}) {
        LoadedRun run(kTwoPops);
        run.counted();
        run->FstMask = kPairs | 0x80;
        run->Permutationen = 1;
        std::filesystem::create_directory(name);
        StdoutCapture capture;
        EXPECT_EQ(run->FST_ALLG(), -1) << name;
        EXPECT_NE(capture.text().find("Lost of Fst-Result ()!\n"), std::string::npos) << name;
    }
}

TEST(CalcDistancesSpecial, WithoutTablesNothingIsWritten) {
    LoadedRun run(kTwoPops);
    kva_test::writeFile("Allelecount", "in the way of the counting pass");
    run->FstMask = kBoth;
    quietly([&] { EXPECT_EQ(run->CalcDistancesSpecial(0), 0); });
    EXPECT_TRUE(std::filesystem::is_empty(run->ResultPfad + "/F-Statistic"));
}

// --- Heterogeneity among loci ----------------------------------------------------------

TEST(LocusFHeterogeneity, PairsAndAllShareTheFile) {
    // Both loci are drawn with equal chance, but the mean of 200 replicas of one locus lies
    // between.
    PassRun pass(kTwoPops, kBoth | 0x6000, 0, 200);
    const std::string sheet = pass.file("LocusFHeterogeneity.xls");
    EXPECT_NE(sheet.find("KVA made 200 replikas."), std::string::npos);
    EXPECT_EQ(sheet.find("KVA makes"), std::string::npos) << "one head for both";
    EXPECT_NE(sheet.find("\nA\tB\t-0.333333\t"), std::string::npos);
    EXPECT_NE(sheet.find("\nGlobal:\t-0.333333\t"), std::string::npos);
}

TEST(LocusFHeterogeneity, GlobalAloneWritesItsOwnHead) {
    PassRun pass(kTwoPops, kGlobal | 0x4000, 0, 200);
    EXPECT_NE(pass.file("LocusFHeterogeneity.xls").find("KVA makes 200 replikas.\n\n\n\n\t\tFst"),
              std::string::npos);
}

TEST(LocusFHeterogeneity, TheTableBitAloneLeavesAnEmptyFile) {
    EXPECT_EQ(PassRun(kTwoPops, kBoth | 0x2000, 0).file("LocusFHeterogeneity.xls"), "");
    EXPECT_EQ(PassRun(kTwoPops, kBoth, 0).files().count("LocusFHeterogeneity.xls"), 0U);
}

TEST(LocusFHeterogeneity, OnePopulationHasATableWithoutPairs) {
    EXPECT_EQ(PassRun(kva_test::kOnePop, kPairs | 0x2000, 0).file("LocusFHeterogeneity.xls"), "");
}

TEST(LocusFHeterogeneity, AFileFromBeforeGrows) {
    LoadedRun run(kTwoPops);
    run.counted();
    run->FstMask = kGlobal | 0x4000;
    run->Replikate = 200;
    quietly([&] { run->CalcDistancesSpecial(0); });
    const std::string once = run.resultFile("F-Statistic/LocusFHeterogeneity.xls");
    quietly([&] { run->CalcDistancesSpecial(0); });
    const std::string twice = run.resultFile("F-Statistic/LocusFHeterogeneity.xls");
    EXPECT_EQ(twice.substr(0, once.size()), once);
    EXPECT_GT(twice.size(), once.size());
}
