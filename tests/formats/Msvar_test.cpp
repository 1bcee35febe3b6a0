#include "formats/formats_support.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

// Writes the msvar files alone, with `more` bits of GeneralMask.
void exportMsvar(LoadedRun& run, uint32_t more = 0) {
    run->GeneralMask = GeneralBit::Msvar | more;
    quietly([&] { return run->MakeNextFormates(); });
}

// One locus, repeat length as given, one population.
std::string onePopulation(const std::string& repeat, const std::string& alleles) {
    return "2 . . " + repeat + " .\n. . . 50 .\n. . . L1 L1b\n" + alleles;
}

} // namespace

TEST(Msvar, FileWhole) {
    // Steps of 2 at L1 and of 4 at L2. A: L1 100 x3, 102 x1; L2 200 x2, 204 x1, 208 x1.
    // B: L1 102 x1, 104 x3; L2 200 x3, 204 x1.
    LoadedRun run(kTwoPops);
    exportMsvar(run);
    EXPECT_EQ(exported(run, "A.beau.infile"), "2\n2\n3 1 \n0 1 \n3\n2 1 1 \n0 1 2 \n");
    EXPECT_EQ(exported(run, "B.beau.infile"), "2\n2\n1 3 \n0 1 \n2\n3 1 \n0 1 \n");
}

TEST(Msvar, LocusWithoutDataIsLeftOutAndNotCounted) {
    LoadedRun run(kWithGaps);
    exportMsvar(run);
    EXPECT_EQ(exported(run, "B.beau.infile"), "1\n2\n1 3 \n0 1 \n");
}

TEST(Msvar, PopulationWithoutDataIsACountOfZero) {
    LoadedRun run(onePopulation("2", "A d 0 100 102\nB d 0 . .\n"));
    exportMsvar(run);
    EXPECT_EQ(exported(run, "B.beau.infile"), "0\n");
}

TEST(Msvar, DistancesInStepsOfTheGreedyWidth) {
    // 100 104 108 without a repeat length: steps of 4.
    LoadedRun run(onePopulation("0", "A d 0 100 104\nA d 0 108 108\n"));
    exportMsvar(run);
    EXPECT_EQ(exported(run, "A.beau.infile"), "1\n3\n1 1 2 \n0 1 2 \n");
}

TEST(Msvar, RepeatLengthDividesWhereAskedFor) {
    // 100 102 105 with repeat length 2: steps of 1, so 0 2 5; in repeats 0, 2/2, 5/2 cut to 2.
    const std::string data = onePopulation("2", "A d 0 100 102\nA d 0 105 105\n");
    LoadedRun steps(data);
    exportMsvar(steps);
    EXPECT_EQ(exported(steps, "A.beau.infile"), "1\n3\n1 1 2 \n0 2 5 \n");
    LoadedRun repeats(data);
    exportMsvar(repeats, GeneralBit::RepeatSteps);
    EXPECT_EQ(exported(repeats, "A.beau.infile"), "1\n3\n1 1 2 \n0 1 2 \n");
}

TEST(Msvar, UnknownRepeatLengthFallsBackToTheSteps) {
    LoadedRun run(onePopulation("0", "A d 0 100 104\nA d 0 108 108\n"));
    exportMsvar(run, GeneralBit::RepeatSteps);
    EXPECT_EQ(exported(run, "A.beau.infile"), "1\n3\n1 1 2 \n0 1 2 \n");
}

TEST(Msvar, DistancesStartAtThePopulationsSmallestAllele) {
    // Pool 100 102 110; B has 102 and 110 alone: 0 and (110 - 102) / 2.
    LoadedRun run(onePopulation("2", "A d 0 100 100\nB d 0 102 110\n"));
    exportMsvar(run);
    EXPECT_EQ(exported(run, "B.beau.infile"), "1\n2\n1 1 \n0 4 \n");
}

TEST(Msvar, NamesThatWouldBePathsStayInTheFolder) {
    LoadedRun run(onePopulation("2", "a/b d 0 100 102\n.. d 0 100 102\n/ d 0 100 102\n"));
    exportMsvar(run);
    EXPECT_EQ(exported(run, "a_b.beau.infile"), "1\n2\n1 1 \n0 1 \n");
    EXPECT_TRUE(fs::exists(fs::path(run->ResultPfad) / "Formats&Data/...beau.infile"));
    EXPECT_TRUE(fs::exists(fs::path(run->ResultPfad) / "Formats&Data/_.beau.infile"));
}

TEST(Msvar, AnEmptyNameGivesAFileNameWithoutAStem) {
    LoadedRun run(onePopulation("2", "A d 0 100 102\n. d 0 100 102\n"));
    exportMsvar(run);
    EXPECT_EQ(exported(run, ".beau.infile"), "1\n2\n1 1 \n0 1 \n");
}

TEST(Msvar, FileThatCannotBeOpenedIsLeftOut) {
    LoadedRun run(kTwoPops);
    run.counted();
    fs::create_directories("Formats&Data/A.beau.infile");
    run->GeneralMask = GeneralBit::Msvar;
    const std::string console = printed([&] { return run->MakeNextFormates(); });
    EXPECT_NE(console.find("Formats&Data/A.beau.infile"), std::string::npos);
    EXPECT_EQ(exported(run, "B.beau.infile").substr(0, 4), "2\n2\n");
}

TEST(Msvar, LaterPopulationOfTheSameNameStands) {
    LoadedRun run(onePopulation("2", "A d 0 100 102\nB d 0 100 102\nA d 0 102 102\n"));
    exportMsvar(run);
    EXPECT_EQ(exported(run, "A.beau.infile"), "1\n1\n2 \n0 \n");
}
