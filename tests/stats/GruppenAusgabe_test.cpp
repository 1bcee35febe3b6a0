// The group tables of "Group_data".
#include "stats/statsupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

using namespace kva;

using kva_test::cellOf;
using kva_test::cellsOf;
using kva_test::fixed6;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::tabbed;
using kva_test::writeFile;

namespace {

const char* const kColumns = "Het exp\tHet exp RD\tVar\tVarRD\tVar repeatnumber\tVar repeatRD\t"
                             "MinAllele\tMeanAllele\tMaxAllele\tMinRepeat\tMeanRepeat\tMaxRepeat\n";

const std::vector<std::string> kSheets = {"Hetexpgroup", "Vargroup",         "HetexpRDgroup",
                                          "VarRDgroup",  "VarRDrepeatgroup", "Varrepeatgroup"};

// A data set whose overview and group tables were written.
class Written {
  public:
    explicit Written(std::string_view text) : Run(text), Result(write()) {}

    std::string sheet(const std::string& name) const {
        return Run.resultFile("Group_data/" + name + ".xls");
    }
    bool has(const std::string& name) {
        return std::filesystem::exists(Run->ResultPfad + "/Group_data/" + name);
    }

    LoadedRun Run;
    int Result;

  private:
    int write() {
        const StdoutCapture swallowed;
        Run->Uebersicht();
        return Run->GruppenAusgabe();
    }
};

// kTwoPops with both populations in group 1, and a third, 100/100 and 200/208, in group 2.
const char* const kTwoGroups = "2 . . 2 . 4 .\n"
                               ". . . 50 . 60 .\n"
                               ". . . L1 L1b L2 L2b\n"
                               "A d 1 100 102 200 200\n"
                               "A d 1 100 100 204 208\n"
                               "B d 1 102 104 200 204\n"
                               "B d 1 104 104 200 200\n"
                               "C d 2 100 100 200 208\n";

std::string groupSheet(const std::string& first, const std::string& second) {
    return tabbed(". L1 L2 .\n. L1b L2b .\n") + "Grp 01\t" + tabbed(first) + "\t\nGrp 02\t" +
           tabbed(second) + "\t\n";
}

} // namespace

// --- Whole sheets ---------------------------------------------------------------------------
// H: A 1/2, 5/6; B 1/2, 1/2; C 0, 4/2 x 1/2 = 1. Variances: A 1, 44/3; B 1, 4; C 0,
// 4/2 x (16 + 16)/2 = 32. Means: A 100.5, 203; B 103.5, 201; C 100, 204.

TEST(GruppenAusgabe, MatrixSheets) {
    const Written run(kTwoGroups);
    const std::string het = groupSheet("0.500000 0.666667", "0.000000 1.000000");
    EXPECT_EQ(run.sheet("Hetexpgroup"), het);
    EXPECT_EQ(run.sheet("HetexpRDgroup"), het); // diploid: the plain value
    const std::string var = groupSheet("1.000000 9.333333", "0.000000 32.000000");
    EXPECT_EQ(run.sheet("Vargroup"), var);
    EXPECT_EQ(run.sheet("VarRDgroup"), var);
    const std::string repeat = groupSheet("0.250000 0.583333", "0.000000 2.000000");
    EXPECT_EQ(run.sheet("Varrepeatgroup"), repeat);
    EXPECT_EQ(run.sheet("VarRDrepeatgroup"), repeat);
}

TEST(GruppenAusgabe, LongSheetOfAGroup) {
    const Written run(kTwoGroups);
    EXPECT_EQ(run.sheet("SumGrp01"),
              std::string("Locus name1\tLocus name2\t") + kColumns +
                  tabbed("L1 L1b 0.500000 0.500000 1.000000 1.000000 0.250000 0.250000 "
                         "100 102.000000 104 25.000000 26.000000 27.000000 .\n"
                         "L2 L2b 0.666667 0.666667 9.333333 9.333333 0.583333 0.583333 "
                         "200 202.000000 208 35.000000 35.500000 37.000000 .\n"));
    EXPECT_EQ(run.sheet("SumGrp02"),
              std::string("Locus name1\tLocus name2\t") + kColumns +
                  tabbed("L1 L1b 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 "
                         "100 100.000000 100 25.000000 25.000000 25.000000 .\n"
                         "L2 L2b 1.000000 1.000000 32.000000 32.000000 2.000000 2.000000 "
                         "200 204.000000 208 35.000000 36.000000 37.000000 .\n"));
}

TEST(GruppenAusgabe, OneColumnDataHaveOneName) {
    const Written run("1 . . 2\n. . . 50\n. . . L1\nA d 1 100\nA d 1 102\n");
    EXPECT_EQ(run.sheet("SumGrp01"),
              std::string("Locus name\t") + kColumns +
                  tabbed("L1 1.000000 1.000000 2.000000 2.000000 0.500000 0.500000 "
                         "100 101.000000 102 25.000000 25.500000 26.000000 .\n"));
    EXPECT_EQ(run.sheet("Vargroup"), "\tL1\t\nGrp 01\t2.000000\t\n");
}

// --- The walk over the groups -----------------------------------------------------------------

TEST(GruppenAusgabe, WithoutGroupsTheSheetsHoldTheirHeads) {
    Written run(kTwoPops);
    for (const std::string& name : kSheets) {
        EXPECT_EQ(run.sheet(name), "\tL1\tL2\t\n\tL1b\tL2b\t\n") << name;
    }
    EXPECT_FALSE(run.has("SumGrp01.xls"));
}

TEST(GruppenAusgabe, MissingGroupEndsTheWalk) {
    Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                "A d 1 100 102\nB d 2 100 102\nC d 4 100 102\n");
    EXPECT_TRUE(run.has("SumGrp02.xls"));
    EXPECT_FALSE(run.has("SumGrp03.xls"));
    EXPECT_FALSE(run.has("SumGrp04.xls"));
    EXPECT_EQ(cellsOf(run.sheet("Vargroup")).size(), 2 + 2 + 1U); // heads, groups, the end
}

TEST(GruppenAusgabe, FirstIndividualDecidesForItsPopulation) {
    Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                "A d 1 100 102\nA d 2 100 102\nB d 0 110 112\n");
    EXPECT_FALSE(run.has("SumGrp02.xls"));
    EXPECT_EQ(cellOf(run.sheet("SumGrp01"), "L1", 8), "100");
    EXPECT_EQ(cellOf(run.sheet("SumGrp01"), "L1", 10), "102"); // B is in no group
}

TEST(GruppenAusgabe, NegativeGroupIsNone) {
    Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d -1 100 102\n");
    EXPECT_FALSE(run.has("SumGrp01.xls"));
    EXPECT_EQ(run.sheet("Vargroup"), "\tL1\t\n\tL1b\t\n");
}

TEST(GruppenAusgabe, HundredthGroupHasThreeDigits) {
    std::string text = "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n";
    for (int g = 1; g <= 100; ++g) {
        const std::string number = std::to_string(g);
        text += "P";
        text += number;
        text += " d ";
        text += number;
        text += " 100 102\n";
    }
    Written run(text);
    EXPECT_TRUE(run.has("SumGrp09.xls"));
    EXPECT_TRUE(run.has("SumGrp100.xls"));
    EXPECT_EQ(cellOf(run.sheet("Hetexpgroup"), "Grp 100", 1), "1.000000"); // 4/2 x 1/2
}

// --- Conditions of the cells --------------------------------------------------------------------

namespace {

// L1 without a repeat length, L2 without a rest length, L3 untyped, L4 with a single copy.
const char* const kConditions = "2 . . 0 . 2 . 2 . 2 .\n"
                                ". . . 50 . 0 . 50 . 50 .\n"
                                ". . . L1 L1b L2 L2b L3 L3b L4 L4b\n"
                                "A d 1 100 102 100 102 . . 100 .\n";

} // namespace

TEST(GruppenAusgabe, WithoutRepeatLengthTheRepeatCellsAreMissing) {
    const Written run(kConditions);
    EXPECT_EQ(cellOf(run.sheet("Varrepeatgroup"), "Grp 01", 1), "n.d.");
    EXPECT_EQ(cellOf(run.sheet("VarRDrepeatgroup"), "Grp 01", 1), "n.d.");
    EXPECT_EQ(cellOf(run.sheet("Vargroup"), "Grp 01", 1), "2.000000");
    const std::vector<std::string> line = cellsOf(run.sheet("SumGrp01")).at(1);
    EXPECT_EQ(line, cellsOf(tabbed("L1 L1b 1.000000 1.000000 2.000000 2.000000 n.d. n.d. "
                                   "100 101.000000 102 n.d. n.d. n.d. ."))
                        .at(0));
}

TEST(GruppenAusgabe, WithoutRestLengthTheRepeatNumbersAloneAreMissing) {
    const Written run(kConditions);
    EXPECT_EQ(cellOf(run.sheet("Varrepeatgroup"), "Grp 01", 2), "0.500000");
    const std::vector<std::string> line = cellsOf(run.sheet("SumGrp01")).at(2);
    EXPECT_EQ(line, cellsOf(tabbed("L2 L2b 1.000000 1.000000 2.000000 2.000000 0.500000 0.500000 "
                                   "100 101.000000 102 n.d. n.d. n.d. ."))
                        .at(0));
}

// A step of one base and a rest of one base: variance 2 / 1, repeats (100 - 1) / 1.
TEST(GruppenAusgabe, LengthsOfOneBaseAreKnown) {
    const Written run("2 . . 1 .\n. . . 1 .\n. . . L1 L1b\nA d 1 100 102\n");
    EXPECT_EQ(cellOf(run.sheet("Varrepeatgroup"), "Grp 01", 1), "2.000000");
    EXPECT_EQ(cellOf(run.sheet("VarRDrepeatgroup"), "Grp 01", 1), "2.000000");
    EXPECT_EQ(cellsOf(run.sheet("SumGrp01")).at(1),
              cellsOf(tabbed("L1 L1b 1.000000 1.000000 2.000000 2.000000 2.000000 2.000000 "
                             "100 101.000000 102 99.000000 100.000000 101.000000 ."))
                  .at(0));
}

TEST(GruppenAusgabe, UntypedGroupHasNoValue) {
    const Written run(kConditions);
    for (const std::string& name : kSheets) {
        EXPECT_EQ(cellOf(run.sheet(name), "Grp 01", 3), "n.d.") << name;
    }
    const std::vector<std::string> line = cellsOf(run.sheet("SumGrp01")).at(3);
    for (std::size_t column = 2; column < 14; ++column) {
        EXPECT_EQ(line[column], "n.d.") << column;
    }
}

// C = 2: no heterozygosity and no variance, but alleles and a mean.
TEST(GruppenAusgabe, SingleCopyHasItsAlleles) {
    const std::vector<std::string> line = cellsOf(Written(kConditions).sheet("SumGrp01")).at(4);
    EXPECT_EQ(line, cellsOf(tabbed("L4 L4b n.d. n.d. n.d. n.d. n.d. n.d. 100 100.000000 100 "
                                   "25.000000 25.000000 25.000000 ."))
                        .at(0));
}

// C = 1: an allele, but no mean.
TEST(GruppenAusgabe, SingleInbredCopyHasNoRepeatNumbers) {
    const Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA h 1 100 .\n");
    const std::vector<std::string> line = cellsOf(run.sheet("SumGrp01")).at(1);
    EXPECT_EQ(line[8], "100");
    for (const std::size_t column : {11U, 12U, 13U}) {
        EXPECT_EQ(line[column], "n.d.") << column;
    }
}

// Half missing diploid and half missing inbred, 100 and 104: C = 3, H = 3 x 1/2, cut to 1,
// variance 12; the replicate is refused, and the heterozygosity alone guards its columns: -1.0,
// and per repeat -1/4, are printed in the long sheet, not in the others.
TEST(GruppenAusgabe, HeterozygosityGuardsTheReplicateColumns) {
    const Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 1 100 .\nA h 1 104 .\n");
    EXPECT_EQ(cellsOf(run.sheet("SumGrp01")).at(1),
              cellsOf(tabbed("L1 L1b 1.000000 -1.000000 12.000000 -1.000000 3.000000 -0.250000 "
                             "100 102.000000 104 25.000000 26.000000 27.000000 ."))
                  .at(0));
    EXPECT_EQ(cellOf(run.sheet("HetexpRDgroup"), "Grp 01", 1), "n.d.");
    EXPECT_EQ(cellOf(run.sheet("VarRDgroup"), "Grp 01", 1), "n.d.");
    EXPECT_EQ(cellOf(run.sheet("VarRDrepeatgroup"), "Grp 01", 1), "n.d.");
    EXPECT_EQ(cellOf(run.sheet("Varrepeatgroup"), "Grp 01", 1), "3.000000");
}

// --- Random-discard values --------------------------------------------------------------------

TEST(GruppenAusgabe, InbredGroupHasTheReplicateMeans) {
    Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                "A h 1 100 102\nA h 1 102 104\nA h 1 100 106\n");
    const AllelCount& A = run.Run->PopAllele[1][0];
    EXPECT_EQ(A.RDDurchlauf, 200);
    EXPECT_EQ(cellOf(run.sheet("HetexpRDgroup"), "Grp 01", 1), fixed6(A.RDHet / 200.0));
    EXPECT_EQ(cellOf(run.sheet("VarRDgroup"), "Grp 01", 1), fixed6(A.RDVar / 200.0));
    EXPECT_EQ(cellOf(run.sheet("Hetexpgroup"), "Grp 01", 1), fixed6(A.CalcHet()));
}

// Without the overview no replicate ran, and none is started: H = 6/4 x (1 - 10/36), cut to 1.
TEST(GruppenAusgabe, StartsNoReplicates) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                  "A h 1 100 102\nA h 1 102 104\nA h 1 100 106\n");
    const StdoutCapture swallowed;
    run->GruppenAusgabe();
    EXPECT_EQ(run->PopAllele[1][0].RDDurchlauf, 0);
    EXPECT_EQ(cellOf(run.resultFile("Group_data/HetexpRDgroup.xls"), "Grp 01", 1), "1.000000");
}

// --- Console, log, folder ---------------------------------------------------------------------

TEST(GruppenAusgabe, ConsoleTellsEachGroupTested) {
    LoadedRun run(kTwoGroups);
    run.counted();
    StdoutCapture console;
    EXPECT_EQ(run->GruppenAusgabe(), 0);
    EXPECT_EQ(console.text(), "\nMaking now group overview!\n"
                              "\nTest Group: 1\nTest Group: 2\nTest Group: 3\n");
    EXPECT_NE(run.resultFile("KVA.log").find("\nMake Group results...\n"), std::string::npos);
}

TEST(GruppenAusgabe, StaysInItsFolder) {
    Written run(kTwoGroups);
    EXPECT_EQ(run.Result, 0);
    EXPECT_EQ(std::filesystem::current_path().string(), run.Run->ResultPfad + "/Group_data");
}

TEST(GruppenAusgabe, WithoutDataIsRefused) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.GruppenAusgabe(), -4);
}

TEST(GruppenAusgabe, FolderThatCannotBeEnteredEndsThePass) {
    LoadedRun run(kTwoGroups);
    run.counted();
    writeFile("Group_data", "in the way");
    StdoutCapture console;
    EXPECT_EQ(run->GruppenAusgabe(), 2);
    EXPECT_EQ(console.text(),
              "\n!! ERROR Can't create Subfolder Group_data! ERROR !!\nErrorcode: 3-2\n");
}

TEST(GruppenAusgabe, DataSetWithoutLociGivesHeads) {
    LoadedRun run(kTwoGroups);
    run->Daten->init(0);
    const StdoutCapture swallowed;
    EXPECT_EQ(run->GruppenAusgabe(), 0);
    EXPECT_EQ(run.resultFile("Group_data/Vargroup.xls"), "\t\n\t\n");
}

// C is in group 1 at the second locus alone: there the group holds A (8/6 x 5/8), B (8/6 x 3/8) and
// C (4/2 x 1/2), mean 7/9, and group 2 nobody. L1: A and B 8/6 x 3/8 each, C 0.
TEST(GruppenAusgabe, LociMayDifferInTheirGroups) {
    LoadedRun run(kTwoGroups);
    run.counted();
    run->Daten->Loci[1].SetInfoChromosom(3, 0, 1, 0);
    const StdoutCapture swallowed;
    EXPECT_EQ(run->GruppenAusgabe(), 0);
    EXPECT_EQ(run.resultFile("Group_data/Hetexpgroup.xls"),
              groupSheet("0.500000 0.777778", "0.000000 n.d."));
}
