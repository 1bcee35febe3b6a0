#include "formats/GenePop.h"

#include "formats/formats_support.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

using namespace kva;

namespace fs = std::filesystem;
using namespace kva_test;

namespace {

// All lines of one individual.
struct Lines {
    std::string genepop;
    std::array<std::string, 8> other;

    const std::string& rd() const { return other[0]; }
    const std::string& rd2() const { return other[1]; }
    const std::string& two() const { return other[2]; }
    const std::string& two2() const { return other[3]; }
    const std::string& one() const { return other[4]; }
    const std::string& one2() const { return other[5]; }
    const std::string& structure() const { return other[6]; }
    const std::string& structure2() const { return other[7]; }
};

GenepopLines into(std::array<std::string, 8>& room) {
    return {&room[0], &room[1], &room[2], &room[3], &room[4], &room[5], &room[6], &room[7]};
}

Lines linesOf(LoadedRun& run, int pop, int ind, int first = 1, int last = 0) {
    Lines lines;
    lines.genepop = run->Daten->MakeGenePopLine(pop, ind, first, last, run->PopAllele.front(),
                                                into(lines.other));
    return lines;
}

// One locus of repeat length 2 with three alleles, one population of one kind of individuals.
LoadedRun oneLocus(const std::string& rows) {
    return LoadedRun("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n" + rows);
}

// The draws of seed 1 begin 0.416, 0.092, 0.756, 0.530, 0.930, 0.384 (Press et al. 1992, ran1).
constexpr long kLowLowHigh = 1;

long exportGenepop(LoadedRun& run) {
    return quietly([&] { return run->MakeGenePop(); });
}

} // namespace

// --- One individual ------------------------------------------------------------------------

TEST(GenePopLine, DiploidStandsAlikeInAllLines) {
    // Tables of the pool: L1 100 102 104, L2 200 204 208.
    LoadedRun run(kTwoPops);
    const Lines lines = linesOf(run.counted(), 1, 0);
    EXPECT_EQ(lines.genepop, "A, 0102 0101");
    EXPECT_EQ(lines.rd(), "A, 0102 0101");
    EXPECT_EQ(lines.rd2(), "A, 0102 0101");
    EXPECT_EQ(lines.two(), "A\td\t0\t100\t102\t200\t200");
    EXPECT_EQ(lines.two2(), lines.two());
    EXPECT_EQ(lines.one(), "A\td\t0\t100\t200");
    EXPECT_EQ(lines.one2(), "A\td\t0\t102\t200");
    EXPECT_EQ(lines.structure(), "A000\t100\t200");
    EXPECT_EQ(lines.structure2(), "A000\t102\t200");
}

TEST(GenePopLine, OneColumnDataArePairsOfRows) {
    LoadedRun run(kTwoPopsOneColumn);
    const Lines lines = linesOf(run.counted(), 1, 1);
    EXPECT_EQ(lines.genepop, "A, 0101 0203");
    EXPECT_EQ(lines.two(), "A\td\t0\t100\t100\t204\t208");
    EXPECT_EQ(lines.structure2(), "A001\t100\t208");
}

TEST(GenePopLine, HalfMissingDiploidStandsAsItIs) {
    LoadedRun run = oneLocus("A d 0 . 120\nA d 0 120 .\n");
    const Lines left = linesOf(run.counted(), 1, 0);
    EXPECT_EQ(left.genepop, "A, 0001");
    EXPECT_EQ(left.rd(), "A, 0001");
    EXPECT_EQ(left.two(), "A\td\t0\t-1\t120");
    EXPECT_EQ(left.one(), "A\td\t0\t-1");
    EXPECT_EQ(left.structure(), "A000\t-9");
    EXPECT_EQ(left.structure2(), "A000\t120");
    const Lines right = linesOf(run, 1, 1);
    EXPECT_EQ(right.genepop, "A, 0100");
    EXPECT_EQ(right.one2(), "A\td\t0\t-1");
    EXPECT_EQ(right.structure2(), "A001\t-9");
}

TEST(GenePopLine, NegativeAlleleKeepsItsNumberInTheSheets) {
    LoadedRun run = oneLocus("A d 0 -7 120\n");
    const Lines lines = linesOf(run.counted(), 1, 0);
    EXPECT_EQ(lines.genepop, "A, 0001");
    EXPECT_EQ(lines.two(), "A\td\t0\t-7\t120");
    EXPECT_EQ(lines.structure(), "A000\t-9");
}

TEST(GenePopLine, AlleleZeroIsDataOfPlaceOne) {
    LoadedRun run = oneLocus("A d 0 0 5\n");
    const Lines lines = linesOf(run.counted(), 1, 0);
    EXPECT_EQ(lines.genepop, "A, 0102");
    EXPECT_EQ(lines.structure(), "A000\t0");
}

TEST(GenePopLine, InbredIndividualKeepsOneAlleleOfEachLocus) {
    // Places 2/3 and 1/2. Draws 0.416 and 0.092 keep the second alleles: 104 (3) and 204 (2).
    LoadedRun run(kInbredPop);
    run.counted();
    srand2(kLowLowHigh);
    const Lines lines = linesOf(run, 2, 0);
    EXPECT_EQ(lines.genepop, "B, 0203 0102");
    EXPECT_EQ(lines.rd(), "B, 0303 0202");
    EXPECT_EQ(lines.rd2(), "B, 0202 0101");
    EXPECT_EQ(lines.two(), "B\th\t2\t104\t104\t204\t204");
    EXPECT_EQ(lines.two2(), "B\th\t2\t102\t102\t200\t200");
    EXPECT_EQ(lines.one(), "B\th\t2\t104\t204");
    EXPECT_EQ(lines.one2(), "B\th\t2\t104\t204");
    EXPECT_EQ(lines.structure(), "B000\t104\t204");
    EXPECT_EQ(lines.structure2(), "B000\t-9\t-9");
}

TEST(GenePopLine, DrawFromOneHalfOnKeepsTheFirstAllele) {
    LoadedRun run(kInbredPop);
    run.counted();
    srand2(kLowLowHigh);
    InternRand(); // 0.416
    InternRand(); // 0.092; 0.756 and 0.530 follow
    const Lines lines = linesOf(run, 2, 0);
    EXPECT_EQ(lines.rd(), "B, 0202 0101");
    EXPECT_EQ(lines.rd2(), "B, 0303 0202");
    EXPECT_EQ(lines.structure(), "B000\t102\t200");
}

TEST(GenePopLine, InbredHomozygoteUsesUpADraw) {
    LoadedRun run(kInbredPop);
    run.counted();
    srand2(kLowLowHigh);
    const Lines lines = linesOf(run, 2, 1); // 104/104 and 200/200: two draws
    EXPECT_EQ(lines.rd(), "B, 0303 0101");
    EXPECT_EQ(lines.rd2(), "B, 0303 0101");
    EXPECT_NEAR(InternRand(), 0.7564, 0.0001); // the third of the published sequence
}

TEST(GenePopLine, InbredWithoutAllelesDrawsAndStaysMissing) {
    LoadedRun run = oneLocus("A d 0 120 120\nB h 0 . .\n");
    run.counted();
    srand2(kLowLowHigh);
    const Lines lines = linesOf(run, 2, 0);
    EXPECT_EQ(lines.rd(), "B, 0000");
    EXPECT_EQ(lines.two(), "B\th\t0\t-1\t-1");
    EXPECT_EQ(lines.one2(), "B\th\t0\t-1");
    EXPECT_EQ(lines.structure(), "B000\t-9");
    EXPECT_EQ(lines.structure2(), "B000\t-9");
    EXPECT_NEAR(InternRand(), 0.0920, 0.0001); // the second of the sequence
}

TEST(GenePopLine, InbredKeepsTheOneAlleleItHasWithoutADraw) {
    LoadedRun run = oneLocus("A d 0 120 124\nB h 3 . 124\nB h 3 124 .\n");
    run.counted();
    srand2(kLowLowHigh);
    for (int ind = 0; ind < 2; ++ind) {
        const Lines lines = linesOf(run, 2, ind);
        EXPECT_EQ(lines.genepop, ind == 0 ? "B, 0002" : "B, 0200");
        EXPECT_EQ(lines.rd(), "B, 0202");
        EXPECT_EQ(lines.rd2(), "B, 0202");
        EXPECT_EQ(lines.two(), "B\th\t3\t124\t124");
        EXPECT_EQ(lines.two2(), "B\th\t3\t124\t124");
        EXPECT_EQ(lines.one2(), "B\th\t3\t124");
        EXPECT_EQ(lines.structure().substr(4), "\t124");
        EXPECT_EQ(lines.structure2().substr(4), "\t-9");
    }
    EXPECT_NEAR(InternRand(), 0.4160, 0.0001); // still the first of the sequence
}

TEST(GenePopLine, DiploidDrawsNothing) {
    LoadedRun run(kTwoPops);
    run.counted();
    srand2(kLowLowHigh);
    linesOf(run, 1, 0);
    EXPECT_NEAR(InternRand(), 0.4160, 0.0001);
}

TEST(GenePopLine, NumbersOfIndividualsHaveThreeDigitsAtLeast) {
    std::string rows;
    for (int i = 0; i <= 1000; ++i) {
        rows += "Pop1 d 0 120 120\n";
    }
    LoadedRun run = oneLocus(rows);
    EXPECT_EQ(linesOf(run.counted(), 1, 0).structure(), "Pop1000\t120");
    EXPECT_EQ(linesOf(run, 1, 42).structure(), "Pop1042\t120");
    EXPECT_EQ(linesOf(run, 1, 1000).structure(), "Pop11000\t120");
}

TEST(GenePopLine, NamesOfAnyLengthAreWhole) {
    const std::string name(3000, 'n');
    LoadedRun run = oneLocus(name + " d 0 120 124\n");
    const Lines lines = linesOf(run.counted(), 1, 0);
    EXPECT_EQ(lines.genepop, name + ", 0102");
    EXPECT_EQ(lines.two(), name + "\td\t0\t120\t124");
    EXPECT_EQ(lines.structure2(), name + "000\t124");
}

TEST(GenePopLine, LargestAllelesFit) {
    LoadedRun run = oneLocus("A d 1073741823 2147483647 2147483646\n");
    const Lines lines = linesOf(run.counted(), 1, 0);
    EXPECT_EQ(lines.genepop, "A, 0201");
    EXPECT_EQ(lines.two(), "A\td\t1073741823\t2147483647\t2147483646");
}

// --- Places above 99 ----------------------------------------------------------------------

namespace {

// Sixty individuals with 120 alleles: individual i has 1000 + 2i and 1001 + 2i, in places
// 2i + 1 and 2i + 2, at the locus of many alleles, and 150/150 at the other.
std::string manyAlleles(const char* head, bool manyFirst) {
    std::string text = head;
    for (int i = 0; i < 60; ++i) {
        const std::string many = numbered(" ", 1000 + 2 * i) + numbered(" ", 1001 + 2 * i);
        text += "P d 0" + (manyFirst ? many + " 150 150" : " 150 150" + many) + "\n";
    }
    return text;
}

constexpr const char* kTwoLoci = "2 . . 2 . 2 .\n. . . 50 . 50 .\n. . . L1 L1b L2 L2b\n";

} // namespace

TEST(GenePopLine, PlaceAbove99IsOverwrittenByTheNextField) {
    LoadedRun run(manyAlleles(kTwoLoci, true));
    run.counted();
    EXPECT_EQ(linesOf(run, 1, 48).genepop, "P, 9798 0101");
    EXPECT_EQ(linesOf(run, 1, 49).genepop, "P, 9910 0101"); // " 99100" loses its last 0
    EXPECT_EQ(linesOf(run, 1, 50).genepop, "P, 1011 0101"); // " 101102" loses "02"
    EXPECT_EQ(linesOf(run, 1, 50).rd(), "P, 1011 0101");
}

TEST(GenePopLine, PlaceAbove99AtTheLastLocusIsWhole) {
    LoadedRun run(manyAlleles(kTwoLoci, false));
    run.counted();
    EXPECT_EQ(linesOf(run, 1, 49).genepop, "P, 0101 99100");
    EXPECT_EQ(linesOf(run, 1, 50).genepop, "P, 0101 101102");
    EXPECT_EQ(linesOf(run, 1, 50).rd2(), "P, 0101 101102");
}

// --- Ranges of loci, groups of lines ----------------------------------------------------------

TEST(GenePopLine, RangeOfLociIsCut) {
    LoadedRun run(kTwoPops);
    run.counted();
    const auto genepop = [&](int first, int last) {
        return linesOf(run, 1, 0, first, last).genepop;
    };
    EXPECT_EQ(genepop(1, 1), "A, 0102");
    EXPECT_EQ(genepop(2, 2), "A, 0101");
    EXPECT_EQ(genepop(0, 1), "A, 0102");
    EXPECT_EQ(genepop(1, 2), "A, 0102 0101");
}

TEST(GenePopLine, RangeThatIsNoneGoesToTheLastLocus) {
    LoadedRun run(kTwoPops);
    run.counted();
    const auto genepop = [&](int first, int last) {
        return linesOf(run, 1, 0, first, last).genepop;
    };
    EXPECT_EQ(genepop(1, 0), "A, 0102 0101");
    EXPECT_EQ(genepop(-3, -4), "A, 0102 0101");
    EXPECT_EQ(genepop(1, 3), "A, 0102 0101"); // the end lies behind the last locus
    EXPECT_EQ(genepop(2, 1), "A, 0101");      // the end lies in front of the start
    EXPECT_EQ(genepop(9, 9), "A, 0101");      // the start is at most the last locus
}

TEST(GenePopLine, GroupOfLinesWithANullIsLeftOut) {
    LoadedRun run(kTwoPops);
    run.counted();
    for (std::size_t absent = 0; absent < 8; ++absent) {
        std::array<std::string, 8> room;
        std::array<std::string*, 8> to;
        for (std::size_t i = 0; i < 8; ++i) {
            to[i] = i == absent ? nullptr : &room[i];
        }
        run->Daten->MakeGenePopLine(1, 0, 1, 0, run->PopAllele.front(),
                                    {to[0], to[1], to[2], to[3], to[4], to[5], to[6], to[7]});
        const auto group = [](std::size_t i) { return i < 4 ? i / 2 : 2; };
        for (std::size_t i = 0; i < 8; ++i) {
            EXPECT_EQ(room[i].empty(), group(i) == group(absent)) << i << " without " << absent;
        }
    }
}

TEST(GenePopLine, APopulationThatIsNotThereHasNone) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(run->Daten->MakeGenePopLine(3, 0, 1, 0, run->PopAllele.front(), {}), "");
}

TEST(GenePopLine, WithoutOtherLinesTheStreamAdvancesAlike) {
    LoadedRun run(kInbredPop);
    run.counted();
    srand2(kLowLowHigh);
    EXPECT_EQ(run->Daten->MakeGenePopLine(2, 0, 1, 0, run->PopAllele.front(), {}), "B, 0203 0102");
    EXPECT_NEAR(InternRand(), 0.7564, 0.0001);
}

TEST(GenePopLine, NoSuchPopulationGivesNothing) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(linesOf(run, 3, 0).genepop, "");
    EXPECT_EQ(linesOf(run, 0, 0).genepop, "");
}

// --- The pass -----------------------------------------------------------------------------

TEST(MakeGenePop, GenepopFileWhole) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(exportGenepop(run), 0);
    EXPECT_EQ(exported(run, "Genepop.gen"),
              "KVA-Output from file: data.txt          by KVAnalyzer 4.05\n"
              "L1\n"
              "L2\n"
              "POP\n"
              "A, 0102 0101\n"
              "A, 0101 0203\n"
              "POP\n"
              "B, 0203 0102\n"
              "B, 0303 0101\n");
}

TEST(MakeGenePop, DiscardedGenepopFileHasItsOwnTitle) {
    LoadedRun run(kTwoPops);
    exportGenepop(run);
    EXPECT_EQ(exported(run, "GenepopRD.gen"),
              "KVA-Output Randomdiscaded from file: data.txt      by KVAnalyzer 4.05\n"
              "L1\n"
              "L2\n"
              "POP\n"
              "A, 0102 0101\n"
              "A, 0101 0203\n"
              "POP\n"
              "B, 0203 0102\n"
              "B, 0303 0101\n");
}

TEST(MakeGenePop, TwoColumnSheetWhole) {
    LoadedRun run(kTwoPops);
    exportGenepop(run);
    EXPECT_EQ(exported(run, "data.txt_2C_RD"), tabbed("2 . . 2 . 4 .\n"
                                                      ". . . 50 . 60 .\n"
                                                      ". . . L1 L1b L2 L2b\n"
                                                      "A d 0 100 102 200 200\n"
                                                      "A d 0 100 100 204 208\n"
                                                      "B d 0 102 104 200 204\n"
                                                      "B d 0 104 104 200 200\n"));
}

TEST(MakeGenePop, OneColumnSheetWhole) {
    LoadedRun run(kTwoPops);
    exportGenepop(run);
    EXPECT_EQ(exported(run, "data.txt_1C_RD"), tabbed("1 . . 2 4\n"
                                                      ". . . 50 60\n"
                                                      ". . . L1 L2\n"
                                                      "A d 0 100 200\n"
                                                      "A d 0 102 200\n"
                                                      "A d 0 100 204\n"
                                                      "A d 0 100 208\n"
                                                      "B d 0 102 200\n"
                                                      "B d 0 104 204\n"
                                                      "B d 0 104 200\n"
                                                      "B d 0 104 200\n"));
}

TEST(MakeGenePop, StructureFileWholeWithoutHead) {
    LoadedRun run(kWithGaps);
    exportGenepop(run);
    EXPECT_EQ(exported(run, "data.txt.struct"), tabbed("A000 100 200\n"
                                                       "A000 102 200\n"
                                                       "A001 100 204\n"
                                                       "A001 -9 208\n"
                                                       "B000 102 -9\n"
                                                       "B000 104 -9\n"
                                                       "B001 104 -9\n"
                                                       "B001 104 -9\n"));
}

TEST(MakeGenePop, MonomorphicLocusReads0101AndMissing0000) {
    LoadedRun run = oneLocus("A d 0 150 150\nA d 0 . .\nB d 0 150 150\n");
    exportGenepop(run);
    const std::string file = exported(run, "Genepop.gen");
    EXPECT_EQ(file.substr(file.find("POP")), "POP\nA, 0101\nA, 0000\nPOP\nB, 0101\n");
}

TEST(MakeGenePop, FullGenepopFileKeepsBothAllelesOfInbreds) {
    LoadedRun run(kInbredPop);
    exportGenepop(run);
    const std::string file = exported(run, "Genepop.gen");
    EXPECT_EQ(file.substr(file.rfind("POP")), "POP\nB, 0203 0102\nB, 0303 0101\n");
}

TEST(MakeGenePop, OneColumnDataNameSecondColumnsAsTheFirst) {
    LoadedRun run(kTwoPopsOneColumn);
    exportGenepop(run);
    const std::string file = exported(run, "data.txt_2C_RD");
    EXPECT_EQ(file.substr(0, file.find("A\t")), tabbed("2 . . 2 . 4 .\n"
                                                       ". . . 50 . 60 .\n"
                                                       ". . . L1 L1 L2 L2\n"));
}

TEST(MakeGenePop, UnknownLengthsAreMinusOne) {
    LoadedRun run("1 . . . .\n. . . L1 L2\nA d 0 100 200\nA d 0 100 200\n");
    exportGenepop(run);
    EXPECT_EQ(exported(run, "data.txt_1C_RD"), tabbed("1 . . -1 -1\n"
                                                      ". . . -1 -1\n"
                                                      ". . . L1 L2\n"
                                                      "A d 0 100 200\n"
                                                      "A d 0 100 200\n"));
}

TEST(MakeGenePop, RowWithoutPartnerIsLeftOut) {
    LoadedRun run("1 . . 2\n. . . 50\n. . . L1\nA d 0 100\nA d 0 102\nA d 0 104\n");
    exportGenepop(run);
    EXPECT_EQ(exported(run, "data.txt.struct"), "A000\t100\nA000\t102\n");
}

TEST(MakeGenePop, ConsoleTellsIndividualsOfEachPopulation) {
    LoadedRun run(kTwoPops);
    run.counted();
    EXPECT_EQ(printed([&] { return run->MakeGenePop(); }),
              "\n\nMake Genepop formated files\nand Randomdiscarded datafiles!"
              "\nPop 1:2 animal(s)\nPop 2:2 animal(s)\nAll Lines generated!\n");
}

TEST(MakeGenePop, LogHasTwoLines) {
    LoadedRun run(kTwoPops);
    run.counted();
    const std::string before = run.resultFile("KVA.log");
    exportGenepop(run);
    EXPECT_EQ(run.resultFile("KVA.log"),
              before + "\nMake Genepop files...\n     and datasheet convertion...\n");
}

TEST(MakeGenePop, CountsFirstWhereNothingIsCounted) {
    LoadedRun run(kTwoPops);
    EXPECT_TRUE(run->PopAllele.empty());
    exportGenepop(run);
    EXPECT_EQ(run->PopAllele.size(), 3U);
}

TEST(MakeGenePop, WithoutDataNothingIsDone) {
    AnalyseDataObj empty;
    EXPECT_EQ(printed([&] { return empty.MakeGenePop(); }), "");
    EXPECT_EQ(empty.MakeGenePop(), -4);
}

TEST(MakeGenePop, EndsInTheResultFolder) {
    LoadedRun run(kTwoPops);
    exportGenepop(run);
    EXPECT_EQ(fs::current_path(), run->ResultPfad);
}

TEST(MakeGenePop, FolderThatIsAFileEndsThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    writeFile("Formats&Data", "");
    EXPECT_EQ(exportGenepop(run), 2);
}

TEST(MakeGenePop, FileThatCannotBeOpenedEndsThePassInItsFolder) {
    for (const char* name : {"Genepop.gen", "GenepopRD.gen", "data.txt_2C_RD", "data.txt_1C_RD"}) {
        LoadedRun run(kTwoPops);
        run.counted();
        fs::create_directories(fs::path("Formats&Data") / name);
        EXPECT_EQ(exportGenepop(run), 1) << name;
        EXPECT_EQ(fs::current_path(), fs::path(run->ResultPfad) / "Formats&Data") << name;
    }
}

TEST(MakeGenePop, WithoutTheStructureFileTheOthersAreWritten) {
    LoadedRun run(kTwoPops);
    run.counted();
    fs::create_directories("Formats&Data/data.txt.struct");
    EXPECT_EQ(exportGenepop(run), 0);
    EXPECT_EQ(exported(run, "data.txt_1C_RD").substr(0, 5), "1\t\t\t2");
}

// --- Draws of a whole run --------------------------------------------------------------------

namespace {

// Twenty inbred heterozygotes 100/102 in each of two populations, at two loci: 80 draws.
std::string inbredHeterozygotes() {
    std::string text = kTwoLoci;
    for (int i = 0; i < 40; ++i) {
        text += i < 20 ? "A h 0 100 102 100 102\n" : "B h 0 100 102 100 102\n";
    }
    return text;
}

// The body of GenepopRD.gen for that data and a seed: draws by population, individual, locus.
std::string replay(long seed) {
    srand2(seed);
    std::string body;
    for (int i = 0; i < 40; ++i) {
        body += i % 20 == 0 ? "POP\n" : "";
        body += i < 20 ? "A," : "B,";
        body += InternRand() < 0.5F ? " 0202" : " 0101";
        body += InternRand() < 0.5F ? " 0202\n" : " 0101\n";
    }
    return body;
}

} // namespace

TEST(MakeGenePop, DrawsOfASeedByPopulationIndividualAndLocus) {
    LoadedRun run(inbredHeterozygotes());
    run.counted();
    const std::time_t before = std::time(nullptr);
    exportGenepop(run);
    const std::time_t after = std::time(nullptr);
    const std::string file = exported(run, "GenepopRD.gen");
    const std::string body = file.substr(file.find("POP"));
    bool found = false; // the pass took its seed from the clock at some second of this span
    for (std::time_t seed = before; seed <= after; ++seed) {
        found = found || body == replay(seed);
    }
    EXPECT_TRUE(found) << body;
}

TEST(MakeGenePop, AllFilesHoldTheSameChoices) {
    LoadedRun run(inbredHeterozygotes());
    exportGenepop(run);
    std::istringstream genepop(exported(run, "GenepopRD.gen"));
    std::istringstream twoColumns(exported(run, "data.txt_2C_RD"));
    std::istringstream structure(exported(run, "data.txt.struct"));
    std::string line;
    for (int i = 0; i < 3; ++i) {
        std::getline(genepop, line);
        std::getline(twoColumns, line);
    }
    const auto allele = [](const std::string& place) { return place == "01" ? "100" : "102"; };
    for (int i = 0; i < 40; ++i) {
        std::getline(genepop, line);
        if (line == "POP") {
            std::getline(genepop, line);
        }
        const char* const a = allele(line.substr(3, 2));
        const char* const b = allele(line.substr(8, 2));
        std::ostringstream sheet;
        sheet << "\th\t0\t" << a << '\t' << a << '\t' << b << '\t' << b;
        std::ostringstream row;
        row << '\t' << a << '\t' << b;
        std::getline(twoColumns, line);
        EXPECT_EQ(line.substr(1), sheet.str());
        std::getline(structure, line);
        EXPECT_EQ(line.substr(4), row.str());
        std::getline(structure, line);
        EXPECT_EQ(line.substr(4), "\t-9\t-9");
    }
}

// --- The sheets read back ----------------------------------------------------------------------

namespace {

// Everything of a data set but the second names of the loci.
void expectSameData(AnalyseDataObj& in, AnalyseDataObj& out, const std::string& what) {
    ASSERT_EQ(out.AnzLoci, in.AnzLoci) << what;
    ASSERT_EQ(out.AnzPop, in.AnzPop) << what;
    for (int l = 1; l <= in.AnzLoci; ++l) {
        EXPECT_EQ(*out.Daten->GetLociName(l), *in.Daten->GetLociName(l)) << what;
        EXPECT_EQ(out.Daten->GetLociRepeatMuster(l), in.Daten->GetLociRepeatMuster(l)) << what;
        EXPECT_EQ(out.Daten->GetLociRepeatRest(l), in.Daten->GetLociRepeatRest(l)) << what;
        for (int p = 1; p <= in.AnzPop; ++p) {
            EXPECT_EQ(*out.Daten->GetPopName(p), *in.Daten->GetPopName(p)) << what;
            const LociObj& a = *in.Daten->Locus(l);
            const LociObj& b = *out.Daten->Locus(l);
            EXPECT_TRUE(std::ranges::equal(a.DataSlots(p), b.DataSlots(p))) << what;
            EXPECT_TRUE(std::ranges::equal(a.InfoSlots(p), b.InfoSlots(p))) << what;
        }
    }
}

void expectSheetsReadBack(const std::string& text, const std::string& what) {
    LoadedRun in(text);
    exportGenepop(in);
    LoadedRun two(exported(in, "data.txt_2C_RD"));
    EXPECT_EQ(two->DatenFormat, 2);
    expectSameData(*in, *two, what + ", two columns");
    LoadedRun one(exported(in, "data.txt_1C_RD"));
    EXPECT_EQ(one->DatenFormat, 1);
    expectSameData(*in, *one, what + ", one column");
}

// A data set without inbred individuals, drawn from the random stream.
std::string randomData(int columns) {
    const int loci = 1 + drawIndex(4);
    std::string lengths;
    std::string names;
    for (int l = 0; l < loci; ++l) {
        const std::string gap = columns == 2 ? " ." : "";
        lengths += (drawIndex(3) == 0 ? " ." : numbered(" ", drawIndex(6))) + gap;
        names += numbered(" L", l) + (columns == 2 ? numbered(" M", l) : "");
    }
    std::string text = std::to_string(columns) + " . ." + lengths + "\n";
    text += ". . ." + lengths + "\n. . ." + names + "\n";
    const int populations = 1 + drawIndex(4);
    for (int p = 0; p < populations; ++p) {
        const int rows = (1 + drawIndex(5)) * (3 - columns);
        const std::string group = std::to_string(drawIndex(4) - 1);
        for (int row = 0; row < rows; ++row) {
            text += numbered("P", p) + " d " + group;
            for (int cell = 0; cell < loci * columns; ++cell) {
                const int allele = drawIndex(14) - 1;
                text += allele < 0 ? " ." : numbered(" ", allele * 13);
            }
            text += "\n";
        }
    }
    return text;
}

} // namespace

TEST(SheetsReadBack, SmallDataSetsComeBack) {
    expectSheetsReadBack(kTwoPops, "two columns");
    expectSheetsReadBack(kTwoPopsOneColumn, "one column");
    expectSheetsReadBack(kWithGaps, "gaps");
}

TEST(SheetsReadBack, SecondNamesComeBackFromTwoColumns) {
    LoadedRun in(kTwoPops);
    exportGenepop(in);
    LoadedRun out(exported(in, "data.txt_2C_RD"));
    EXPECT_EQ(*out->Daten->GetLociName2(1), "L1b");
    EXPECT_EQ(*out->Daten->GetLociName2(2), "L2b");
}

TEST(SheetsReadBack, RandomDataSetsComeBack) {
    for (int seed = 1; seed <= 60; ++seed) {
        srand2(seed);
        const int columns = 1 + drawIndex(2);
        expectSheetsReadBack(randomData(columns), numbered("seed ", seed));
    }
}

TEST(SheetsReadBack, DiscardedSheetsAgreeWithEachOther) {
    LoadedRun in(inbredHeterozygotes());
    exportGenepop(in);
    LoadedRun two(exported(in, "data.txt_2C_RD"));
    LoadedRun one(exported(in, "data.txt_1C_RD"));
    expectSameData(*two, *one, "inbred");
}
