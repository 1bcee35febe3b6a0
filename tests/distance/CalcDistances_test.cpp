#include "distance/passrun.h"
#include "fstat/randsci.h"

#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

constexpr uint32_t kAllMeasures = 0x1FE;

// One population of two typed individuals, two loci.
const char* const kOnePop = "2 . . 2 . 2 .\n"
                            ". . . 0 . 0 .\n"
                            ". . . L1 L1b L2 L2b\n"
                            "Solo d 0 100 102 200 200\n"
                            "Solo d 0 100 100 204 208\n";

// No allele in common.
const char* const kDisjoint = "2 . . 2 .\n"
                              ". . . 0 .\n"
                              ". . . L1 L1b\n"
                              "A d 0 100 102\n"
                              "B d 0 110 112\n";

// Twice the same population: 100 1/2, 104 1/2.
const char* const kIdentical = "2 . . 2 .\n"
                               ". . . 0 .\n"
                               ". . . L1 L1b\n"
                               "A d 0 100 104\n"
                               "A d 0 100 104\n"
                               "B d 0 100 104\n"
                               "B d 0 100 104\n";

// C has no data at L1, and L3 has none at all.
const char* const kAbsent = "2 . . 2 . 2 . 2 .\n"
                            ". . . 0 . 0 . 0 .\n"
                            ". . . L1 L1b L2 L2b L3 L3b\n"
                            "A d 0 100 100 200 200 . .\n"
                            "B d 0 102 102 200 200 . .\n"
                            "C d 0 . . 200 202 . .\n";

// A and B without a common locus.
const char* const kNoCommonLocus = "2 . . 2 . 2 .\n"
                                   ". . . 0 . 0 .\n"
                                   ". . . L1 L1b L2 L2b\n"
                                   "A d 0 100 100 . .\n"
                                   "B d 0 . . 200 200\n";

// The cell at row r and column c (from 0) of the first matrix of a file.
std::string cellAt(const std::string& matrix, int r, int c, std::size_t label = 10) {
    std::size_t line = matrix.find('\n') + 1;
    for (int row = 0; row < r; ++row) {
        line = matrix.find('\n', line) + 1;
    }
    return matrix.substr(line + label + 9 * static_cast<std::size_t>(c), 9);
}

// The places in the random stream that can be the next one after a pass that drew nothing.
bool nextIsFirstOfAClockSeed(long before, float next) {
    for (long seed = before; seed <= static_cast<long>(std::time(nullptr)); ++seed) {
        srand2(seed);
        if (rand2() == next) {
            return true;
        }
    }
    return false;
}

void makeFolderAt(LoadedRun& run, const std::string& name) {
    std::filesystem::create_directories(run->ResultPfad + "/Distance_data/" + name);
}

} // namespace

// --- The passes ------------------------------------------------------------------------

TEST(CalcDistancesPop, EmptyMaskIsRefused) {
    LoadedRun run(kThreePops);
    run->PopDistMask = 0;
    EXPECT_EQ(run->CalcDistancesPop(1), 2);
    EXPECT_FALSE(std::filesystem::exists(run->ResultPfad + "/Distance_data"));
}

TEST(CalcDistancesPop, NothingLoadedIsRefused) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.CalcDistancesPop(1), -4);
    empty.PopDistMask = 0;
    EXPECT_EQ(empty.CalcDistancesPop(1), 2);
}

TEST(CalcDistancesPop, CountsTheAllelesFirstIfNeedBe) {
    LoadedRun run(kThreePops);
    run->PopDistMask = DistBit::Engine | DistBit::Dps;
    const StdoutCapture swallowed;
    EXPECT_EQ(run->CalcDistancesPop(1), 0);
    EXPECT_FALSE(run->PopAllele.empty());
    EXPECT_EQ(cellAt(distanceFile(run, "POSA_Pop.txt"), 0, 1), "  0.25000");
}

TEST(CalcDistancesPop, WithoutTablesThereIsNoCommonLocus) {
    LoadedRun run(kThreePops);
    writeFile("Allelecount", "in the way of the counting pass");
    popPass(run, DistBit::Dps | DistBit::Dmu);
    EXPECT_TRUE(run->PopAllele.empty());
    for (const char* name : {"POSA_Pop.txt", "DMS_Pop.txt"}) {
        EXPECT_EQ(occurrences(distanceFile(run, name), "-32767.00000"), 6) << name;
    }
}

TEST(CalcDistancesPop, WithoutTablesABootstrapHasNothingToDraw) {
    LoadedRun run(kThreePops);
    writeFile("Allelecount", "in the way of the counting pass");
    run->BootLoci = 3;
    popPass(run, DistBit::Dps, 2);
    EXPECT_EQ(occurrences(distanceFile(run, "POSA_Pop.txt"), "-32767.00000"), 12);
}

TEST(PopDistPosa, CountsTheAllelesFirstIfNeedBe) {
    LoadedRun run(kThreePops);
    run->PopDistMask = DistBit::Engine | DistBit::Dps;
    const StdoutCapture swallowed;
    EXPECT_EQ(run->POP_DIST_POSA(), 0);
    EXPECT_EQ(run->PopAllele.size(), 4U);
}

TEST(CalcDistancesPop, ConsoleOfARunWithoutBootstrap) {
    LoadedRun run(kThreePops);
    // One mark per locus, a line end per replicate and one at the end.
    EXPECT_EQ(popPass(run, DistBit::Dps).Console,
              "\nCalculate Population Distance: Proportion of shared allels & others\n"
              "! Please wait...\n"
              "??\n\n"
              "\n... Finished Population Distance!\n");
}

TEST(CalcDistancesPop, ConsoleOfABootstrapTellsThePassNumbers) {
    LoadedRun run(kThreePops);
    EXPECT_EQ(popPass(run, DistBit::Dps, 2).Console,
              "\nCalculate Population Distance: Proportion of shared allels & others\n"
              "! Please wait...\n"
              "0 ?1 ?\n0 ?1 ?\n\n"
              "\n... Finished Population Distance!\n");
}

TEST(CalcDistancesPop, LogEntryAndTheFolderOfBefore) {
    LoadedRun run(kThreePops);
    EXPECT_EQ(popPass(run, DistBit::Dps).Result, 0);
    EXPECT_EQ(std::filesystem::current_path(), run->ResultPfad);
    const std::string log = run.resultFile("KVA.log");
    const std::string entry = "\n\nCalculate Distances...\n";
    EXPECT_EQ(log.substr(log.size() - entry.size()), entry);
}

TEST(CalcDistancesPop, BootstrapsIsKept) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps, 3);
    EXPECT_EQ(run->Bootstraps, 3);
}

TEST(CalcDistancesPop, WithoutTheMasterSwitchOnlyFolderAndLog) {
    LoadedRun run(kThreePops);
    run.counted();
    run->PopDistMask = DistBit::Dps;
    StdoutCapture console;
    EXPECT_EQ(run->CalcDistancesPop(1), 0);
    EXPECT_EQ(console.text(), "");
    EXPECT_TRUE(std::filesystem::is_empty(run->ResultPfad + "/Distance_data"));
    EXPECT_NE(run.resultFile("KVA.log").find("\nCalculate Distances...\n"), std::string::npos);
}

TEST(CalcDistancesPop, FolderThatCannotBeEnteredEndsThePass) {
    LoadedRun run(kThreePops);
    writeFile(run->ResultPfad + "/Distance_data", "in the way");
    const Pass pass = popPass(run, DistBit::Dps);
    EXPECT_EQ(pass.Result, 2);
    EXPECT_EQ(pass.Console, "\n!! ERROR Can't create Subfolder Distance_data! ERROR !!\n"
                            "Errorcode: 4-2\n");
}

TEST(PopDistPosa, NoMeasureSelected) {
    LoadedRun run(kThreePops);
    run.counted();
    run->PopDistMask = DistBit::Engine | DistBit::Rst | DistBit::PerLocus;
    const StdoutCapture swallowed;
    EXPECT_EQ(run->POP_DIST_POSA(), -3);
    EXPECT_EQ(run->IND_DIST_POSA(), -3);
}

TEST(PopDistPosa, OnlyTheSelectedFilesAreMade) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dfs | DistBit::DcDa | DistBit::PerLocus);
    std::string names;
    for (const char* stem : {"POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG"}) {
        if (hasDistanceFile(run, std::string(stem) + "_Pop.txt")) {
            EXPECT_TRUE(hasDistanceFile(run, std::string(stem) + "_Pop_Loci.xls"));
            names.append(stem).append(" ");
        }
    }
    EXPECT_EQ(names, "FSS CAS DAN ");
}

TEST(PopDistPosa, WithoutTheBitThereAreNoSheets) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps);
    EXPECT_FALSE(hasDistanceFile(run, "POSA_Pop_Loci.xls"));
}

TEST(PopDistPosa, ARunBeforeIsOverwritten) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps);
    const std::string first = distanceFile(run, "POSA_Pop.txt");
    popPass(run, DistBit::Dps);
    EXPECT_EQ(distanceFile(run, "POSA_Pop.txt"), first);
}

TEST(PopDistPosa, MatrixThatCannotBeReopenedIsToldAndTheNextOneWritten) {
    LoadedRun run(kThreePops);
    makeFolderAt(run, "POSA_Pop.txt");
    const Pass pass = popPass(run, DistBit::Dps | DistBit::Dfs);
    EXPECT_EQ(occurrences(pass.Console, "!! ERROR Can't create Resultfile for Distance! ERROR !!\n"
                                        "Errorcode: 4-3\n"),
              1);
    EXPECT_EQ(cellAt(distanceFile(run, "FSS_Pop.txt"), 0, 2), "  0.50000");
}

// --- The pipeline --------------------------------------------------------------------------

namespace {

void writeOutput(LoadedRun& run, uint32_t generalMask, uint32_t popMask, uint32_t indMask,
                 long bootstraps) {
    run->GeneralMask = generalMask;
    run->PopDistMask = popMask;
    run->IndDistMask = indMask;
    const StdoutCapture swallowed;
    run->WriteOutput(bootstraps, 0);
}

} // namespace

TEST(DistancePipeline, EachPassHasItsSwitch) {
    LoadedRun populations(kThreePops);
    writeOutput(populations, GeneralBit::PopDistances, 0x3, 0x3, 1);
    EXPECT_TRUE(hasDistanceFile(populations, "POSA_Pop.txt"));
    EXPECT_FALSE(hasDistanceFile(populations, "POSA_Ind.txt"));
    LoadedRun individuals(kThreePops);
    writeOutput(individuals, GeneralBit::IndDistances, 0x3, 0x3, 1);
    EXPECT_FALSE(hasDistanceFile(individuals, "POSA_Pop.txt"));
    EXPECT_TRUE(hasDistanceFile(individuals, "POSA_Ind.txt"));
}

TEST(DistancePipeline, NoBootstrapsSilenceBothEngines) {
    LoadedRun run(kThreePops);
    writeOutput(run, GeneralBit::PopDistances | GeneralBit::IndDistances, 0x3, 0x3, 0);
    EXPECT_EQ(run->PopDistMask, 0U);
    EXPECT_FALSE(std::filesystem::exists(run->ResultPfad + "/Distance_data"));
}

TEST(DistancePipeline, IndividualMaskOnlySwitches) {
    LoadedRun off(kThreePops);
    writeOutput(off, GeneralBit::IndDistances, 0x3, 0, 1);
    EXPECT_FALSE(std::filesystem::exists(off->ResultPfad + "/Distance_data"));
    // The measure is that of the population mask, Dfs, and not Dps.
    LoadedRun on(kThreePops);
    writeOutput(on, GeneralBit::IndDistances, 0x5, 0x3, 1);
    EXPECT_TRUE(hasDistanceFile(on, "FSS_Ind.txt"));
    EXPECT_FALSE(hasDistanceFile(on, "POSA_Ind.txt"));
}

TEST(DistancePipeline, IndividualMaskWithoutPopulationMaskDoesNothing) {
    LoadedRun run(kThreePops);
    writeOutput(run, GeneralBit::IndDistances, 0, 0x3, 1);
    EXPECT_FALSE(std::filesystem::exists(run->ResultPfad + "/Distance_data"));
}

// --- Bootstrap -----------------------------------------------------------------------------

TEST(DistanceBootstrap, WithOneReplicateTheNumberOfLociIsIgnored) {
    LoadedRun run(kThreePops);
    run->BootLoci = 5;
    const long before = static_cast<long>(std::time(nullptr));
    EXPECT_NE(popPass(run, DistBit::Dps).Console.find("\n??\n"), std::string::npos);
    const float next = rand2();
    EXPECT_TRUE(nextIsFirstOfAClockSeed(before, next)) << "a number was drawn";
    EXPECT_EQ(cellAt(distanceFile(run, "POSA_Pop.txt"), 0, 1), "  0.25000");
}

TEST(DistanceBootstrap, AHundredReplicatesMakeAHundredMatrices) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps | DistBit::D, 100);
    for (const char* file : {"POSA_Pop.txt", "DSG_Pop.txt"}) {
        const std::string matrices = distanceFile(run, file);
        // Nothing but the empty line of each matrix between them.
        EXPECT_EQ(occurrences("\n" + matrices, "\n3\n         A  0.00000"), 100);
        EXPECT_EQ(occurrences(matrices, "\n\n"), 100);
        EXPECT_EQ(occurrences(matrices, "\n"), 500);
    }
}

TEST(DistanceBootstrap, MoreLociThanThereAre) {
    LoadedRun run(kThreePops);
    run->BootLoci = 7;
    EXPECT_NE(popPass(run, DistBit::Dps, 2).Console.find("\n0 ?1 ?2 ?3 ?4 ?5 ?6 ?\n0 ?"),
              std::string::npos);
}

TEST(DistanceBootstrap, FewerLociThanThereAre) {
    LoadedRun run(kThreePops);
    run->BootLoci = 1;
    popPass(run, DistBit::Dps, 40);
    // A single locus gives A-B 0.5 (L1) or 0 (L2); in 40 draws both come up.
    const std::string matrices = distanceFile(run, "POSA_Pop.txt");
    EXPECT_EQ(occurrences(matrices, "A  0.00000  0.50000") +
                  occurrences(matrices, "A  0.00000  0.00000"),
              40);
    EXPECT_GT(occurrences(matrices, "A  0.00000  0.50000"), 0);
    EXPECT_GT(occurrences(matrices, "A  0.00000  0.00000"), 0);
}

TEST(DistanceBootstrap, EveryCallSeedsTheStream) {
    LoadedRun run(kThreePops);
    srand2(12345);
    const long before = static_cast<long>(std::time(nullptr));
    indPass(run, DistBit::Dps);
    const float next = rand2();
    EXPECT_TRUE(nextIsFirstOfAClockSeed(before, next));
}

TEST(DistanceBootstrap, WithoutReplicatesTheFilesStayEmpty) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps | DistBit::PerLocus, 0);
    EXPECT_EQ(distanceFile(run, "POSA_Pop.txt"), "");
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"), "");
}

// --- Populations ---------------------------------------------------------------------------

TEST(PopulationDistance, OnePopulationIsARowOfZero) {
    LoadedRun run(kOnePop);
    popPass(run, kAllMeasures | DistBit::PerLocus);
    EXPECT_EQ(distanceFile(run, "POSA_Pop.txt"), "1\n      Solo  0.00000\n\n");
    EXPECT_EQ(distanceFile(run, "DSG_Pop.txt"), "1\n      Solo  0.00000\n\n");
    // The two heads are a tab and nothing else, the rows labels alone.
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"), "\t\n\t\nL1\tL1b\nL2\tL2b\n");
}

TEST(PopulationDistance, NothingInCommonIsTheLargestDistance) {
    LoadedRun run(kDisjoint);
    popPass(run, kAllMeasures);
    EXPECT_EQ(cellAt(distanceFile(run, "POSA_Pop.txt"), 0, 1), "  1.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "FSS_Pop.txt"), 0, 1), "  1.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "KSC_Pop.txt"), 0, 1), "  1.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "DAN_Pop.txt"), 0, 1), "  1.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "CAS_Pop.txt"), 0, 1), "  0.90032"); // 2 sqrt(2) / pi
}

TEST(PopulationDistance, NothingInCommonUnderLogIsTenInMatricesAndInfiniteInSheets) {
    LoadedRun run(kDisjoint);
    run->GeneralMask |= GeneralBit::MinusLog;
    popPass(run, kAllMeasures | DistBit::PerLocus);
    for (const char* stem : {"POSA", "FSS", "KSC"}) {
        const std::string matrix = distanceFile(run, std::string(stem) + "_Pop.txt");
        EXPECT_EQ(cellAt(matrix, 0, 1), " 10.00000") << stem;
        EXPECT_EQ(cellAt(matrix, 1, 0), " 10.00000") << stem;
        EXPECT_EQ(distanceFile(run, std::string(stem) + "_Pop_Loci.xls"),
                  "\t\tA\n\t\tB\nL1\tL1b\tinf\n")
            << stem;
    }
}

TEST(PopulationDistance, IdenticalPopulations) {
    LoadedRun run(kIdentical);
    popPass(run, kAllMeasures);
    for (const char* stem : {"POSA", "FSS", "CAS", "DAN", "ADA", "DMS"}) {
        EXPECT_EQ(cellAt(distanceFile(run, std::string(stem) + "_Pop.txt"), 0, 1), "  0.00000")
            << stem;
    }
    // v = 8/6 x 4 = 16/3 in both, r = 2: (16/3 + 0 + 16/3) / 4.
    EXPECT_EQ(cellAt(distanceFile(run, "ASD_Pop.txt"), 0, 1), "  2.66667");
}

TEST(PopulationDistance, IdenticalPopulationsUnderLogAreAtMinusZero) {
    LoadedRun run(kIdentical);
    run->GeneralMask |= GeneralBit::MinusLog;
    popPass(run, DistBit::Dps);
    EXPECT_EQ(cellAt(distanceFile(run, "POSA_Pop.txt"), 0, 1), " -0.00000"); // -ln(1) is -0
}

// 0.2 + 0.4 + 0.3 + 0.1 is above 1 in doubles, and so is B: the chord of 2 (1 - B) counts as 0.
TEST(PopulationDistance, ChordOfIdenticalPopulationsIsZeroWhereRoundingExceedsOne) {
    std::string data = "2 . . 1 .\n. . . 0 .\n. . . L1 L1b\n";
    for (const char* name : {"A", "B"}) {
        for (const char* genotype : {"1 1", "2 2", "2 2", "3 3", "3 4"}) {
            data.append(name).append(" d 0 ").append(genotype).append("\n");
        }
    }
    LoadedRun run(data);
    popPass(run, DistBit::DcDa | DistBit::PerLocus);
    EXPECT_EQ(distanceFile(run, "CAS_Pop_Loci.xls"), "\t\tA\n\t\tB\nL1\tL1b\t0.000000\n");
    EXPECT_EQ(cellAt(distanceFile(run, "CAS_Pop.txt"), 0, 1), "  0.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "DAN_Pop.txt"), 0, 1), " -0.00000"); // 1 - B as it is
}

TEST(PopulationDistance, PopulationWithoutDataAtALocus) {
    LoadedRun run(kAbsent);
    popPass(run, kAllMeasures | DistBit::PerLocus);
    // L1 counts for A-B alone: s = 0 at L1 and 1 at L2. A-C at L2: s = 0.5.
    EXPECT_EQ(distanceFile(run, "POSA_Pop.txt"), "3\n"
                                                 "         A  0.00000  0.50000  0.50000\n"
                                                 "         B  0.50000  0.00000  0.50000\n"
                                                 "         C  0.50000  0.50000  0.00000\n\n");
    EXPECT_EQ(distanceFile(run, "POSA_Pop_Loci.xls"),
              "\t\tA\tA\tB\n\t\tB\tC\tC\n"
              "L1\tL1b\t1.000000\tn.d.\tn.d.\n"
              "L2\tL2b\t0.000000\t0.500000\t0.500000\n"
              "L3\tL3b\n"); // nobody has an allele: a row of its label alone
    for (const char* stem : {"FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG"}) {
        const std::string sheet = distanceFile(run, std::string(stem) + "_Pop_Loci.xls");
        EXPECT_NE(sheet.find("\tn.d.\tn.d.\nL2"), std::string::npos) << stem;
    }
}

TEST(PopulationDistance, WithoutACommonLocusTheCellSaysSo) {
    LoadedRun run(kNoCommonLocus);
    for (const uint32_t general : {0U, uint32_t{GeneralBit::MinusLog}}) {
        run->GeneralMask = general;
        popPass(run, kAllMeasures);
        for (const char* stem : {"POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG"}) {
            EXPECT_EQ(distanceFile(run, std::string(stem) + "_Pop.txt"),
                      "2\n         A  0.00000 -32767.00000\n"
                      "         B -32767.00000  0.00000\n\n")
                << stem;
        }
    }
}

// A single copy has J' = (1 x 1 - 1) / (1 - 1), which is no number, and so are the sums over
// both loci, though the second locus is complete.
TEST(PopulationDistance, SingleGeneCopyPoisonsNeisDistance) {
    LoadedRun run("2 . . 1 . 1 .\n"
                  ". . . 0 . 0 .\n"
                  ". . . L1 L1b L2 L2b\n"
                  "A d 0 100 . 200 200\n"
                  "B d 0 100 100 200 200\n"
                  "C d 0 100 100 200 200\n");
    popPass(run, DistBit::D);
    const std::string matrix = distanceFile(run, "DSG_Pop.txt");
    EXPECT_NE(cellAt(matrix, 0, 1).find("nan"), std::string::npos) << matrix;
    EXPECT_NE(cellAt(matrix, 2, 0).find("nan"), std::string::npos) << matrix;
    EXPECT_EQ(cellAt(matrix, 1, 2), "  0.00000"); // J' = 1 everywhere: 1 - 2 / sqrt(2 x 2)
}

// A repeat length below 1 is 1: means 100 and 104.
TEST(PopulationDistance, RepeatLengthBelowOneCountsAsOne) {
    LoadedRun run("2 . . 0 .\n. . . 0 .\n. . . L1 L1b\nA d 0 100 100\nB d 0 104 104\n");
    popPass(run, DistBit::Dad | DistBit::Dmu);
    EXPECT_EQ(cellAt(distanceFile(run, "ADA_Pop.txt"), 0, 1), "  4.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "DMS_Pop.txt"), 0, 1), " 16.00000");
}

// One inbred individual each: C = 2, so there is no variance, and its -1.0 goes in twice:
// (-1 + 1 + -1) / 1 = -1. That counts in the matrix and reads "n.d." in the sheet.
TEST(PopulationDistance, VarianceThatIsNotThereGoesInAsMinusOne) {
    LoadedRun run("2 . . 1 .\n. . . 0 .\n. . . L1 L1b\nA h 0 100 100\nB h 0 101 101\n");
    popPass(run, DistBit::D1 | DistBit::PerLocus);
    EXPECT_EQ(cellAt(distanceFile(run, "ASD_Pop.txt"), 0, 1), " -1.00000");
    EXPECT_EQ(distanceFile(run, "ASD_Pop_Loci.xls"), "\t\tA\n\t\tB\nL1\tL1b\tn.d.\n");
}

// Inbred samples take the mean variance of their random-discard replicates: 6/3 = 2 for A, and
// for B, without replicates, 4/2 x 4 x 1/4 = 2 (C = 4, both deviations 1): (2 + 0 + 2) / 1.
TEST(PopulationDistance, InbredVarianceIsThatOfTheReplicates) {
    LoadedRun run("2 . . 1 .\n. . . 0 .\n. . . L1 L1b\n"
                  "A h 0 100 100\nA h 0 110 110\n"
                  "B h 0 104 104\nB h 0 106 106\n");
    run.counted();
    run->PopAllele[1][0].RDVar = 6.0;
    run->PopAllele[1][0].RDDurchlauf = 3;
    run->PopDistMask = DistBit::Engine | DistBit::D1;
    const StdoutCapture swallowed;
    run->CalcDistancesPop(1);
    EXPECT_EQ(cellAt(distanceFile(run, "ASD_Pop.txt"), 0, 1), "  4.00000");
}

// A single inbred copy has no mean (C = 1): Dad, Dmu and D1 leave the locus out, the others
// count it.
TEST(PopulationDistance, SampleWithoutMeanIsLeftOutOfTheDifferences) {
    LoadedRun run("2 . . 1 .\n. . . 0 .\n. . . L1 L1b\nA h 0 100 .\nB d 0 100 100\n");
    popPass(run, kAllMeasures | DistBit::PerLocus);
    for (const char* stem : {"ADA", "DMS", "ASD"}) {
        EXPECT_EQ(cellAt(distanceFile(run, std::string(stem) + "_Pop.txt"), 1, 0), " -32767.0");
        EXPECT_NE(distanceFile(run, std::string(stem) + "_Pop_Loci.xls").find("\tn.d.\n"),
                  std::string::npos);
    }
    EXPECT_EQ(cellAt(distanceFile(run, "POSA_Pop.txt"), 1, 0), "  0.00000");
}

// --- Individuals ---------------------------------------------------------------------------

TEST(CalcDistancesInd, RefusesWhatThePopulationPassRefuses) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.CalcDistancesInd(1), -4);
    LoadedRun run(kThreePops);
    run->PopDistMask = 0; // the individuals' own mask is still on
    EXPECT_NE(run->IndDistMask, 0U);
    EXPECT_EQ(run->CalcDistancesInd(1), 2);
}

TEST(CalcDistancesInd, ConsoleAndLog) {
    LoadedRun run(kThreePops);
    indPass(run, DistBit::Dps); // counts the individuals
    EXPECT_EQ(indPass(run, DistBit::Dps, 2).Console,
              "\nCalculate Population Distance: Distances per individuals\n"
              "! Please wait...\n"
              "!!\n!!\n\n"
              "\n... Finished Population Distance!\n");
    EXPECT_NE(run.resultFile("KVA.log").find("\nCalculate Individual Distances...\n"),
              std::string::npos);
    EXPECT_EQ(std::filesystem::current_path(), run->ResultPfad);
}

TEST(CalcDistancesInd, CountsPopulationsAndIndividualsIfNeedBe) {
    LoadedRun run(kThreePops);
    run->PopDistMask = DistBit::Engine | DistBit::Dps;
    const StdoutCapture swallowed;
    EXPECT_EQ(run->CalcDistancesInd(1), 0);
    EXPECT_FALSE(run->PopAllele.empty());
    EXPECT_EQ(run->AnzInd, 6);
}

TEST(CalcDistancesInd, WithoutTheMasterSwitchNoFileIsMade) {
    LoadedRun run(kThreePops);
    run.counted();
    run->PopDistMask = DistBit::Dps;
    const StdoutCapture swallowed;
    EXPECT_EQ(run->CalcDistancesInd(1), 0);
    EXPECT_TRUE(std::filesystem::is_empty(run->ResultPfad + "/Distance_data"));
    EXPECT_NE(run.resultFile("KVA.log").find("\nCalculate Individual Distances...\n"),
              std::string::npos);
}

TEST(CalcDistancesInd, ThereAreNoSheetsOfLoci) {
    LoadedRun run(kThreePops);
    indPass(run, DistBit::Dps | DistBit::PerLocus);
    EXPECT_FALSE(hasDistanceFile(run, "POSA_Pop_Loci.xls"));
    EXPECT_FALSE(hasDistanceFile(run, "POSA_Ind_Loci.xls"));
}

TEST(CalcDistancesInd, MatrixThatCannotBeReopenedIsTold) {
    LoadedRun run(kThreePops);
    makeFolderAt(run, "POSA_Ind.txt");
    EXPECT_EQ(occurrences(indPass(run, DistBit::Dps, 2).Console, "Errorcode: 4-3\n"), 2);
}

namespace {

// Individual 1 is 100/100, 2 is 104/104, 3 has no data, 4 has one allele, 100.
const char* const kGaps = "2 . . 2 .\n"
                          ". . . 0 .\n"
                          ". . . L1 L1b\n"
                          "A d 0 100 100\n"
                          "A d 0 104 104\n"
                          "A d 0 . .\n"
                          "A d 0 . 100\n";

constexpr std::size_t kIndLabel = 8;

} // namespace

TEST(IndividualDistance, SameHomozygotesAreAtZero) {
    LoadedRun run("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 100 100\nB d 0 100 100\n");
    indPass(run, kAllMeasures);
    for (const char* stem : {"POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN", "DSG"}) {
        EXPECT_EQ(cellAt(distanceFile(run, std::string(stem) + "_Ind.txt"), 0, 1, kIndLabel),
                  "  0.00000")
            << stem;
    }
}

TEST(IndividualDistance, DifferentHomozygotesInNeisDistance) {
    LoadedRun run(kGaps);
    indPass(run, DistBit::D);
    const std::string matrix = distanceFile(run, "DSG_Ind.txt");
    EXPECT_EQ(cellAt(matrix, 0, 1, kIndLabel), "  1.00000"); // 1 - 0 / sqrt(1 x 1)
    EXPECT_EQ(cellAt(matrix, 1, 0, kIndLabel), "  1.00000");
}

TEST(IndividualDistance, TheTrianglesOfNeisDistanceDifferUnderLog) {
    LoadedRun run(kGaps);
    run->GeneralMask |= GeneralBit::MinusLog;
    indPass(run, DistBit::D);
    // 1 and 2 share nothing: -32767 above the diagonal, 10 below. 3 and 4 take no part.
    EXPECT_EQ(distanceFile(run, "DSG_Ind.txt"),
              "4\n"
              "    A001  0.00000 -32767.00000 -32767.00000 -32767.00000\n"
              "    A002 10.00000  0.00000 -32767.00000 -32767.00000\n"
              "    A003 -32767.00000 -32767.00000  0.00000 -32767.00000\n"
              "    A004 -32767.00000 -32767.00000 -32767.00000  0.00000\n\n");
}

TEST(IndividualDistance, WithoutDataTheRowAndColumnSaySo) {
    LoadedRun run(kGaps);
    indPass(run, DistBit::Dps);
    // The single allele of 4 is a homozygote's: 1 - 1 against 1, 1 - 0 against 2.
    EXPECT_EQ(distanceFile(run, "POSA_Ind.txt"),
              "4\n"
              "    A001  0.00000  1.00000 -32767.00000  0.00000\n"
              "    A002  1.00000  0.00000 -32767.00000  1.00000\n"
              "    A003 -32767.00000 -32767.00000  0.00000 -32767.00000\n"
              "    A004  0.00000  1.00000 -32767.00000  0.00000\n\n");
}

// 1 and 4 have the same allele, 4 in one copy.
TEST(IndividualDistance, SingleAlleleTakesPartEverywhereButInNeisDistance) {
    LoadedRun run(kGaps);
    indPass(run, kAllMeasures);
    for (const char* stem : {"POSA", "FSS", "ADA", "KSC", "DMS", "ASD", "CAS", "DAN"}) {
        const std::string file = distanceFile(run, std::string(stem) + "_Ind.txt");
        const std::string lastRow = file.substr(file.find("    A004"), kIndLabel + 9);
        EXPECT_EQ(lastRow, "    A004  0.00000") << stem;
    }
    const std::string nei = distanceFile(run, "DSG_Ind.txt");
    EXPECT_EQ(nei.substr(nei.find("    A004"), kIndLabel + 13), "    A004 -32767.00000");
}

// In a group an individual counts with the weight of a haploid, so that its single allele has
// no mean (C = 1). Two alleles have one (C = 2).
TEST(IndividualDistance, SingleAlleleInAGroupHasNoMean) {
    const std::string head = "2 . . 2 .\n. . . 0 .\n. . . L1 L1b\n";
    LoadedRun grouped(head + "A d 1 100 .\nA d 1 100 104\n");
    indPass(grouped, DistBit::Dad | DistBit::Dps);
    EXPECT_EQ(distanceFile(grouped, "ADA_Ind.txt"), "2\n"
                                                    "    A001  0.00000 -32767.00000\n"
                                                    "    A002 -32767.00000  0.00000\n\n");
    EXPECT_EQ(cellAt(distanceFile(grouped, "POSA_Ind.txt"), 0, 1, kIndLabel), "  0.50000");
    LoadedRun ungrouped(head + "A d 0 100 .\nA d 0 100 104\n");
    indPass(ungrouped, DistBit::Dad);
    EXPECT_EQ(cellAt(distanceFile(ungrouped, "ADA_Ind.txt"), 0, 1, kIndLabel), "  2.00000");
}

TEST(IndividualDistance, RepeatLengthAndVarianceDoNotCount) {
    LoadedRun run("2 . . 4 .\n. . . 0 .\n. . . L1 L1b\nA d 0 100 104\nB d 0 104 108\n");
    indPass(run, DistBit::Dad | DistBit::Dmu | DistBit::D1);
    // Means 102 and 106.
    EXPECT_EQ(cellAt(distanceFile(run, "ADA_Ind.txt"), 0, 1, kIndLabel), "  4.00000");
    EXPECT_EQ(cellAt(distanceFile(run, "DMS_Ind.txt"), 0, 1, kIndLabel), " 16.00000");
    EXPECT_EQ(distanceFile(run, "ASD_Ind.txt"), distanceFile(run, "DMS_Ind.txt"));
}

// Three rows each in one column: six slots are three individuals, but each population has one.
TEST(IndividualDistance, OddRowsMakeARowWithoutData) {
    LoadedRun run("1 . . 1\n. . . 0\n. . . L1\n"
                  "A d 0 100\nA d 0 100\nA d 0 100\n"
                  "B d 0 100\nB d 0 100\nB d 0 100\n");
    indPass(run, DistBit::Dps);
    EXPECT_EQ(distanceFile(run, "POSA_Ind.txt"), "3\n"
                                                 "    A001  0.00000  0.00000 -32767.00000\n"
                                                 "    B001  0.00000  0.00000 -32767.00000\n"
                                                 "     001 -32767.00000 -32767.00000  0.00000\n\n");
}

TEST(IndividualDistance, NoIndividualsAtAll) {
    LoadedRun run("1 . . 1\n. . . 0\n. . . L1\nA d 0 100\n"); // half an individual
    indPass(run, DistBit::Dps);
    EXPECT_EQ(distanceFile(run, "POSA_Ind.txt"), "0\n\n");
}

// --- NEXUS -----------------------------------------------------------------------------------

TEST(IndividualNexus, HeadRowsAndEnd) {
    LoadedRun run("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 100 104\nB d 0 104 104\n");
    indPass(run, DistBit::DcDa | DistBit::Nexus);
    const std::string expected = "#NEXUS\n"
                                 "[!user defined distances]\n"
                                 "Begin distances;\n"
                                 "Dimensions ntax=2;\n"
                                 "format triangle = both;\n"
                                 "matrix\n"
                                 "    A001  0.00000  0.29289\n" // 1 - sqrt(0.5)
                                 "    B001  0.29289  0.00000;\n"
                                 "end;\n"
                                 "[! nj with user defined distances]\n"
                                 "Begin paup;\n"
                                 "dset distance=user;\n"
                                 "nj;\n"
                                 "end;\n"
                                 "\n";
    EXPECT_EQ(distanceFile(run, "DAN_Ind.txt"), expected);
}

TEST(IndividualNexus, WithABootstrapTheMatricesArePlain) {
    LoadedRun run(kGaps);
    indPass(run, DistBit::Dps | DistBit::Nexus, 2);
    const std::string matrices = distanceFile(run, "POSA_Ind.txt");
    EXPECT_EQ(occurrences("\n" + matrices, "\n4\n"), 2);
    EXPECT_EQ(occurrences(matrices, ";"), 0);
    EXPECT_EQ(occurrences(matrices, "#"), 0);
}

TEST(IndividualNexus, OneIndividualIsFirstAndLastRow) {
    LoadedRun run("2 . . 2 .\n. . . 0 .\n. . . L1 L1b\nA d 0 100 104\n");
    indPass(run, DistBit::Dps | DistBit::Nexus);
    EXPECT_NE(distanceFile(run, "POSA_Ind.txt").find("matrix\n    A001  0.00000;\nend;\n"),
              std::string::npos);
}

TEST(PopulationNexus, PopulationMatricesAreNeverNexus) {
    LoadedRun run(kThreePops);
    popPass(run, DistBit::Dps | DistBit::Nexus);
    EXPECT_EQ(distanceFile(run, "POSA_Pop.txt").substr(0, 2), "3\n");
}
