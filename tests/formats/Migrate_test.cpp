#include "formats/formats_support.h"

#include <array>
#include <gtest/gtest.h>

using namespace kva;

using namespace kva_test;

namespace {

struct Texts {
    std::string migrate;
    std::string arlequin1;
    std::string arlequin2;
};

Texts textsOf(LoadedRun& run, int pop, int ind, int repeatMass,
              const std::vector<int32_t>& widths) {
    Texts texts;
    EXPECT_EQ(run->Daten->MakeMigrateLine(pop, ind, repeatMass, texts.migrate, texts.arlequin1,
                                          texts.arlequin2, widths),
              0);
    return texts;
}

std::string exportMigrate(LoadedRun& run, uint32_t mask = GeneralBit::Migrate) {
    run->GeneralMask = mask;
    quietly([&] { return run->MakeNextFormates(); });
    return exported(run, "data.txt.migrate");
}

constexpr const char* kOneLocus = "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n";

} // namespace

TEST(MigrateLine, LengthsAreDividedByTheStepWidths) {
    LoadedRun run(kTwoPops); // A's second individual: 100/100, 204/208
    const Texts texts = textsOf(run, 0, 1, 0, {2, 4});
    EXPECT_EQ(texts.migrate, " 50.50 51.52");
    EXPECT_EQ(texts.arlequin1, " 50 51");
    EXPECT_EQ(texts.arlequin2, " 50 52");
}

TEST(MigrateLine, DivisionTruncates) {
    LoadedRun run(kTwoPops);
    // 204 / 5 = 40.8, 208 / 5 = 41.6, 100 / 3 = 33.3
    EXPECT_EQ(textsOf(run, 0, 1, 0, {3, 5}).migrate, " 33.33 40.41");
}

TEST(MigrateLine, RepeatLengthsDivideWhereAskedFor) {
    LoadedRun run(kTwoPops); // repeat lengths 2 and 4
    EXPECT_EQ(textsOf(run, 0, 1, 1, {1, 1}).migrate, " 50.50 51.52");
    run->Daten->SetLociRepeatMuster(1, 0); // unknown: the step width, 5
    EXPECT_EQ(textsOf(run, 0, 1, 1, {5, 1}).migrate, " 20.20 51.52");
}

TEST(MigrateLine, MissingAllelesAreQuestionMarks) {
    LoadedRun run(std::string(kOneLocus) + "A d 0 . .\nA d 0 . 100\nA d 0 100 .\nA d 0 -7 0\n");
    const char* const expected[4][3] = {
        {" ?.?", " ?", " ?"}, {" ?.50", " ?", " 50"}, {" 50.?", " 50", " ?"}, {" ?.0", " ?", " 0"}};
    for (int ind = 0; ind < 4; ++ind) {
        const Texts texts = textsOf(run, 0, ind, 0, {2});
        EXPECT_EQ(texts.migrate, expected[ind][0]);
        EXPECT_EQ(texts.arlequin1, expected[ind][1]);
        EXPECT_EQ(texts.arlequin2, expected[ind][2]);
    }
}

TEST(MigrateLine, InbredIndividualStandsWithBothEntries) {
    LoadedRun run(kInbredPop);
    EXPECT_EQ(textsOf(run, 1, 0, 0, {2, 4}).migrate, " 51.52 50.51");
}

TEST(MigrateLine, TextsAreReplaced) {
    LoadedRun run(kTwoPops);
    Texts texts = textsOf(run, 0, 0, 0, {2, 4});
    run->Daten->MakeMigrateLine(1, 1, 0, texts.migrate, texts.arlequin1, texts.arlequin2, {2, 4});
    EXPECT_EQ(texts.migrate, " 52.52 50.50");
    EXPECT_EQ(texts.arlequin1, " 52 50");
    EXPECT_EQ(texts.arlequin2, " 52 50");
}

TEST(MigrateLine, LongNumbersAndManyLociAreWhole) {
    std::string first = "1 . .";
    std::string names = ". . .";
    std::string row;
    std::string expected;
    for (int l = 0; l < 500; ++l) {
        first += " .";
        names += " L";
        row += " 2147483647";
        expected += " 2147483647.2147483647";
    }
    LoadedRun run(first + "\n" + names + "\nA d 0" + row + "\nA d 0" + row + "\n");
    EXPECT_EQ(textsOf(run, 0, 0, 0, std::vector<int32_t>(500, 1)).migrate, expected);
}

TEST(Migrate, FileWhole) {
    LoadedRun run(kWithGaps);
    EXPECT_EQ(exportMigrate(run), " 2 2 . File data.txt converted from KVAnalyzer\n"
                                  "2 A\n"
                                  "0000_0000 50.51 50.50\n"
                                  "0000_0001 50.? 51.52\n"
                                  "2 B\n"
                                  "0001_0000 51.52 ?.?\n"
                                  "0001_0001 52.52 ?.?\n");
}

TEST(Migrate, LocusOfOneAlleleIsWrittenInBasePairs) {
    LoadedRun run(std::string(kOneLocus) + "A d 0 120 120\n"); // step width 1
    EXPECT_EQ(exportMigrate(run), " 1 1 . File data.txt converted from KVAnalyzer\n"
                                  "1 A\n"
                                  "0000_0000 120.120\n");
}

TEST(Migrate, RepeatStepsBitDividesByTheRepeatLength) {
    LoadedRun run(std::string(kOneLocus) + "A d 0 120 121\n"); // greedy width 1, repeat 2
    EXPECT_EQ(exportMigrate(run, GeneralBit::Migrate | GeneralBit::RepeatSteps),
              " 1 1 . File data.txt converted from KVAnalyzer\n"
              "1 A\n"
              "0000_0000 60.60\n");
}

TEST(Migrate, NumbersInLabelsHaveFourDigitsAtLeast) {
    std::string text = kOneLocus;
    for (int i = 0; i <= 10000; ++i) {
        text += "A d 0 120 120\n";
    }
    LoadedRun run(text);
    const std::string file = exportMigrate(run);
    EXPECT_NE(file.find("\n0000_9999 120.120\n0000_10000 120.120\n"), std::string::npos);
}
