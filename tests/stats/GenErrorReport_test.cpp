// The report of suspicious alleles.
#include "stats/statsupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace kva;

using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::writeFile;

namespace {

const char* const kHead = "This file is a log-file of possible errors in your dataset.\n"
                          "What you find here:\n"
                          "- Unexpected Mutationsteps/The real Mutationsteps.\n"
                          "- Large Gaps in your Data (>5xMutationstep OR >15 bp)\n"
                          "- Unexpected short/long Allels (possible type errors!)[<35,>300]\n";

std::string reportOf(LoadedRun& run) {
    const StdoutCapture swallowed;
    run->GenErrorReport();
    return run.resultFile("Errorreport.txt");
}

// What the report says of one locus with these alleles, one homozygote each.
std::string remarks(const std::vector<int>& alleles, int repeat) {
    std::string text = "2 . . " + std::to_string(repeat);
    text += " .\n. . . 50 .\n. . . L1 L1b\n";
    for (const int allele : alleles) {
        const std::string number = std::to_string(allele);
        text += "A d 0 ";
        text += number;
        text += ' ';
        text += number;
        text += '\n';
    }
    LoadedRun run(text);
    const std::string report = reportOf(run);
    const std::string start = std::string(kHead) + "\nL1,\t";
    EXPECT_EQ(report.substr(0, start.size()), start);
    return report.substr(start.size());
}

} // namespace

TEST(GenErrorReport, GoodLocusHasNoRemark) {
    EXPECT_EQ(remarks({100, 102, 104}, 2), "");
}

// s = 1 differs from 2, so the incompatible gap of 1 is not told.
TEST(GenErrorReport, SmallestStepBelowTheRepeat) {
    EXPECT_EQ(remarks({100, 101, 103}, 2), "Incorrect Mutationsteps:1 instead of 2\t");
}

TEST(GenErrorReport, SmallestStepAboveTheRepeat) {
    EXPECT_EQ(remarks({100, 104, 108}, 2), "Mutationsteps to large:4 instead of 2\t");
}

TEST(GenErrorReport, UnknownRepeatTellsTheStepFound) {
    EXPECT_EQ(remarks({100, 102, 105}, 0), "Mutationsteps found:2\t");
    EXPECT_EQ(remarks({100, 102, 105}, -3), "Mutationsteps found:2\t");
}

TEST(GenErrorReport, IncompatibleStep) {
    EXPECT_EQ(remarks({100, 102, 107, 109}, 2), "Found incompatible Mutationstep:5 !\t");
}

TEST(GenErrorReport, LastIncompatibleStepIsTold) {
    EXPECT_EQ(remarks({100, 102, 107, 110, 112}, 2), "Found incompatible Mutationstep:3 !\t");
}

// 18 > 5 x 2.
TEST(GenErrorReport, LargeGapInSteps) {
    EXPECT_EQ(remarks({100, 102, 120}, 2), "Large Allelgap detected:18\t");
    EXPECT_EQ(remarks({100, 102, 114}, 2), "Large Allelgap detected:12\t");
    EXPECT_EQ(remarks({100, 102, 112}, 2), ""); // 10 is not more than 5 x 2
}

// With a repeat of 1 only the base pairs count: 18 > 15; 12 is not, though above 5 x 1.
TEST(GenErrorReport, LargeGapInBasePairs) {
    EXPECT_EQ(remarks({100, 101, 119}, 1), "Large Allelgap detected:18\t");
    EXPECT_EQ(remarks({100, 101, 113}, 1), "");
    EXPECT_EQ(remarks({100, 101, 116}, 1), ""); // 15 is not more than 15
}

// The same alleles without a repeat of 1: s = 2, g = 18 > 15.
TEST(GenErrorReport, LargeGapOfAnUnfittingRepeat) {
    EXPECT_EQ(remarks({100, 102, 120}, 1),
              "Mutationsteps to large:2 instead of 1\tLarge Allelgap detected:18\t");
}

TEST(GenErrorReport, AllRemarksInTheirOrder) {
    EXPECT_EQ(remarks({20, 400}, 2),
              "Mutationsteps to large:380 instead of 2\tLarge Allelgap detected:380\t"
              "Found to short Allel(s):20\tFound to long Allel(s):400\t");
}

TEST(GenErrorReport, LengthLimitsThemselvesAreGood) {
    EXPECT_EQ(remarks({35, 36}, 1), "");
    EXPECT_EQ(remarks({299, 300}, 1), "");
    EXPECT_EQ(remarks({34, 35}, 1), "Found to short Allel(s):34\t");
    EXPECT_EQ(remarks({300, 301}, 1), "Found to long Allel(s):301\t");
}

// The search for the smallest gap starts at 10000.
TEST(GenErrorReport, SmallestGapIsNeverAbove10000) {
    EXPECT_EQ(remarks({40, 20040}, 0), "Mutationsteps found:10000\tLarge Allelgap detected:20000\t"
                                       "Found to long Allel(s):20040\t");
}

TEST(GenErrorReport, LargestAlleleNumbersDoNotOverflow) {
    EXPECT_EQ(remarks({0, 2147483647}, 2),
              "Mutationsteps to large:10000 instead of 2\tLarge Allelgap detected:2147483647\t"
              "Found to short Allel(s):0\tFound to long Allel(s):2147483647\t");
}

TEST(GenErrorReport, MonomorphicLocusIsNotLookedAtFurther) {
    EXPECT_EQ(remarks({500}, 2), "monomorphic");
}

// The gaps are those of all populations together; a locus without alleles reads as monomorphic.
TEST(GenErrorReport, WholeFile) {
    LoadedRun run("2 . . 2 . 2 . 2 .\n. . . 50 . 50 . 50 .\n. . . L1 L1b L2 L2b L3 L3b\n"
                  "A d 0 100 100 20 20 . .\n"
                  "B d 0 103 103 22 24 . .\n");
    EXPECT_EQ(reportOf(run), std::string(kHead) + "\nL1,\tMutationsteps to large:3 instead of 2\t"
                                                  "\nL2,\tFound to short Allel(s):20\t"
                                                  "\nL3,\tmonomorphic");
}

TEST(GenErrorReport, LimitsAreTheObjects) {
    LoadedRun run(kTwoPops);
    run->GapSchritte = 1;
    run->GapBasen = 3;
    run->AllelMinLaenge = 101;
    run->AllelMaxLaenge = 207;
    const std::string report = reportOf(run);
    EXPECT_NE(report.find(">1xMutationstep OR >3 bp)\n"), std::string::npos);
    EXPECT_NE(report.find("[<101,>207]\n"), std::string::npos);
    EXPECT_NE(report.find("\nL1,\tFound to short Allel(s):100\t"
                          "\nL2,\tLarge Allelgap detected:4\tFound to long Allel(s):208\t"),
              std::string::npos);
}

TEST(GenErrorReport, DataSetWithoutLociGivesTheHead) {
    LoadedRun run(kTwoPops);
    run->Daten->init(0);
    EXPECT_EQ(reportOf(run), kHead);
}

// --- Console, log, folder ----------------------------------------------------------------

TEST(GenErrorReport, TicksALocusAndEndsTheLine) {
    LoadedRun run(kTwoPops);
    run.counted();
    StdoutCapture console;
    EXPECT_EQ(run->GenErrorReport(), 0);
    EXPECT_EQ(console.text(), "\nCreate Errorreport of Loci dataset\n**\n");
    EXPECT_NE(run.resultFile("KVA.log").find("\nGenerate Errorreport...\n"), std::string::npos);
}

TEST(GenErrorReport, CountsFirstIfNothingIsCounted) {
    LoadedRun run(kTwoPops);
    reportOf(run);
    EXPECT_TRUE(std::filesystem::exists("Allelecount/Allelecount.xls"));
}

TEST(GenErrorReport, WritesIntoTheResultFolderFromAnywhere) {
    LoadedRun run(kTwoPops);
    run.counted();
    std::filesystem::current_path("Allelecount");
    reportOf(run);
    EXPECT_EQ(std::filesystem::current_path().string(), run->ResultPfad);
}

TEST(GenErrorReport, WithoutDataIsRefused) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.GenErrorReport(), -4);
}

TEST(GenErrorReport, ResultFolderThatIsGoneEndsThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    const std::string folder = run->ResultPfad;
    run->ResultPfad = folder + "/gone";
    StdoutCapture console;
    EXPECT_EQ(run->GenErrorReport(), 1);
    EXPECT_EQ(console.text(), "\n!! ERROR Can't change into result folder ERROR !!\n");
    run->ResultPfad = folder;
}
