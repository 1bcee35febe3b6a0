// The long table "Summary.xls".
#include "fstat/randsci.h"
#include "stats/statsupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

using namespace kva;

using kva_test::cellsOf;
using kva_test::fixed6;
using kva_test::kTwoPops;
using kva_test::kTwoPopsOneColumn;
using kva_test::LoadedRun;
using kva_test::StdoutCapture;
using kva_test::tabbed;

namespace {

const char* const kColumns =
    "Pop.name\tHet obs\tHet exp\tHet RD\tVar\tVarRD\tVar repeatnumber\tVar repeatRD\tShannonID\t"
    "MinAllele\tMeanAllele\tMaxAllele\tMinRepeat\tMeanRepeat\tMaxRepeat\tAnalys.Chrom.\t"
    "Effect.Chrom.\tNum.Alleles\tMax.obs.Alleles\tSMM Exp.Num.Alleles\tIAN Exp.Num.Alleles\t"
    "Hs Nei\tFis,Pop\tFrequences\n";

std::string summaryOf(LoadedRun& run) {
    const StdoutCapture swallowed;
    run->TABAusgabe();
    return run.resultFile("Summary.xls");
}

// The overview runs before the summary, as in a whole run.
std::string summaryAfterOverview(LoadedRun& run) {
    {
        const StdoutCapture swallowed;
        run->Uebersicht();
    }
    return summaryOf(run);
}

std::string summary(std::string_view text) {
    LoadedRun run(text);
    return summaryAfterOverview(run);
}

// Columns of two-column data, from 0.
enum Column : std::size_t {
    kPopName = 2,
    kHetObs,
    kHetExp,
    kHetRD,
    kVar,
    kVarRD,
    kVarRepeat,
    kVarRepeatRD,
    kShannon,
    kMinAllele,
    kMeanAllele,
    kMaxAllele,
    kMinRepeat,
    kMeanRepeat,
    kMaxRepeat,
    kAnalysed,
    kEffective,
    kNumAlleles,
    kObserved,
    kSmm,
    kIam,
    kHs,
    kFis,
    kFrequencies
};

// The cells of line `line` (from 1) of the table.
std::vector<std::string> lineOf(const std::string& sheet, std::size_t line) {
    return cellsOf(sheet).at(line);
}

} // namespace

// --- Whole sheets ------------------------------------------------------------------------------
// The values of kTwoPops stand with the overview's tests. Hobs: A 1/2, 1/2; B 1/2, 1/2. Hs with
// C = 8, 8/6 (D - Hobs/8): L1 8/6 (3/8 - 1/16) = 5/12 in A and B; L2 A 8/6 (5/8 - 1/16) = 3/4, B
// 5/12. Fis = 1 - Hobs/Hs: -1/5, -1/5, 1/3, -1/5. Repeats (a - 50)/2 and (a - 60)/4.
TEST(TABAusgabe, TwoColumnSheet) {
    EXPECT_EQ(
        summary(kTwoPops),
        std::string("Locus name1\tLocus name2\t") + kColumns +
            tabbed("L1 L1b A 0.500000 0.500000 0.500000 1.000000 1.000000 0.250000 0.250000 "
                   "0.562335 100 100.500000 102 25.000000 25.250000 26.000000 4 4 2.000000 2 "
                   "2.031250 2.083333 0.416667 -0.200000 0.750000 0.250000 .\n"
                   "L1 L1b B 0.500000 0.500000 0.500000 1.000000 1.000000 0.250000 0.250000 "
                   "0.562335 102 103.500000 104 26.000000 26.750000 27.000000 4 4 2.000000 2 "
                   "2.031250 2.083333 0.416667 -0.200000 0.250000 0.750000 .\n"
                   "L2 L2b A 0.500000 0.833333 0.833333 14.666667 14.666667 0.916667 0.916667 "
                   "1.039721 200 203.000000 208 35.000000 35.750000 37.000000 4 4 3.000000 3 "
                   "3.128211 3.172619 0.750000 0.333333 0.500000 0.250000 0.250000 .\n"
                   "L2 L2b B 0.500000 0.500000 0.500000 4.000000 4.000000 0.250000 0.250000 "
                   "0.562335 200 201.000000 204 35.000000 35.250000 36.000000 4 4 2.000000 2 "
                   "2.031250 2.083333 0.416667 -0.200000 0.750000 0.250000 .\n"));
}

TEST(TABAusgabe, OneColumnSheetHasOneName) {
    const std::string sheet = summary(kTwoPopsOneColumn);
    EXPECT_EQ(sheet.substr(0, sheet.find('\n') + 1), std::string("Locus name\t") + kColumns);
    EXPECT_EQ(lineOf(sheet, 1)[0], "L1");
    EXPECT_EQ(lineOf(sheet, 1)[1], "A");
    EXPECT_EQ(lineOf(sheet, 1)[2], "0.500000");
}

// --- Each column's condition ---------------------------------------------------------------------

namespace {

// L1: repeat and rest known; A polymorphic, B untyped, C monomorphic. L2: no rest. L3: no repeat.
const char* const kConditions = "2 . . 2 . 2 . 0 .\n"
                                ". . . 50 . 0 . 50 .\n"
                                ". . . L1 L1b L2 L2b L3 L3b\n"
                                "A d 0 100 102 100 102 100 102\n"
                                "A d 0 100 100 100 100 100 100\n"
                                "B d 0 . . 100 102 100 102\n"
                                "C d 0 104 104 100 102 100 102\n";

} // namespace

TEST(TABAusgabe, UntypedPopulationHasItsLineWithoutValues) {
    const std::vector<std::string> line = lineOf(summary(kConditions), 2);
    EXPECT_EQ(line[kPopName], "B");
    for (std::size_t column = kHetObs; column < kFrequencies; ++column) {
        EXPECT_EQ(line[column], "n.d.") << column;
    }
    EXPECT_EQ(line.size(), kFrequencies + 1U); // no frequency, the empty end behind the last tab
}

TEST(TABAusgabe, MonomorphicPopulationHasNoFis) {
    const std::vector<std::string> line = lineOf(summary(kConditions), 3);
    EXPECT_EQ(line[kPopName], "C");
    EXPECT_EQ(line[kHs], "n.d.");
    EXPECT_EQ(line[kFis], "n.d.");
    EXPECT_EQ(line[kHetExp], "0.000000");
    EXPECT_EQ(line[kFrequencies], "1.000000");
}

TEST(TABAusgabe, WithoutRestLengthOnlyTheRepeatNumbersAreMissing) {
    const std::vector<std::string> line = lineOf(summary(kConditions), 4);
    EXPECT_EQ(line[0], "L2");
    EXPECT_EQ(line[kVarRepeat], "0.250000");
    EXPECT_EQ(line[kVarRepeatRD], "0.250000");
    for (const std::size_t column : {kMinRepeat, kMeanRepeat, kMaxRepeat}) {
        EXPECT_EQ(line[column], "n.d.");
    }
    EXPECT_EQ(line[kMinAllele], "100");
}

TEST(TABAusgabe, WithoutRepeatLengthAllRepeatColumnsAreMissing) {
    const std::vector<std::string> line = lineOf(summary(kConditions), 7);
    EXPECT_EQ(line[0], "L3");
    for (const std::size_t column :
         {kVarRepeat, kVarRepeatRD, kMinRepeat, kMeanRepeat, kMaxRepeat}) {
        EXPECT_EQ(line[column], "n.d.");
    }
    EXPECT_EQ(line[kVar], "1.000000");
}

// A step of one base and a rest of one base: variance 2 / 1, repeats (100 - 1) / 1.
TEST(TABAusgabe, LengthsOfOneBaseAreKnown) {
    const std::vector<std::string> line =
        lineOf(summary("2 . . 1 .\n. . . 1 .\n. . . L1 L1b\nA d 0 100 102\n"), 1);
    EXPECT_EQ(line[kVarRepeat], "2.000000");
    EXPECT_EQ(line[kVarRepeatRD], "2.000000");
    EXPECT_EQ(line[kMinRepeat], "99.000000");
    EXPECT_EQ(line[kMeanRepeat], "100.000000");
    EXPECT_EQ(line[kMaxRepeat], "101.000000");
}

// One diploid copy: C = 2, so n = 1 and no variance; a mean, Hobs = 0, one allele.
TEST(TABAusgabe, SingleCopy) {
    const std::vector<std::string> line =
        lineOf(summary("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 .\n"), 1);
    EXPECT_EQ(line[kHetObs], "0.000000");
    for (const std::size_t column :
         {kHetExp, kHetRD, kVar, kVarRD, kVarRepeat, kShannon, kSmm, kIam, kHs}) {
        EXPECT_EQ(line[column], "n.d.") << column;
    }
    EXPECT_EQ(line[kMeanAllele], "100.000000");
    EXPECT_EQ(line[kMeanRepeat], "25.000000");
    EXPECT_EQ(line[kAnalysed], "1");
    EXPECT_EQ(line[kEffective], "1");
    EXPECT_EQ(line[kNumAlleles], "1.000000");
    EXPECT_EQ(line[kObserved], "1");
}

// A half missing diploid and a half missing inbred individual, 100 and 104: C = 3, variance
// 3 x (4 + 4)/2 = 12, but no replicate of two copies. The repeat columns look at the plain variance
// alone: -1/4 is printed.
TEST(TABAusgabe, MissingReplicateIsPrintedPerRepeat) {
    const std::vector<std::string> line =
        lineOf(summary("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 .\nA h 0 104 .\n"), 1);
    EXPECT_EQ(line[kVar], "12.000000");
    EXPECT_EQ(line[kVarRD], "n.d.");
    EXPECT_EQ(line[kVarRepeat], "3.000000");
    EXPECT_EQ(line[kVarRepeatRD], "-0.250000");
    EXPECT_EQ(line[kNumAlleles], "n.d.");
}

// A single half missing inbred individual: C = 1, no mean; the numbers stand.
TEST(TABAusgabe, SingleInbredCopyHasNoMean) {
    const std::vector<std::string> line =
        lineOf(summary("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA h 0 100 .\n"), 1);
    for (const std::size_t column :
         {kHetObs, kMinAllele, kMeanAllele, kMaxAllele, kMinRepeat, kEffective}) {
        EXPECT_EQ(line[column], "n.d.") << column;
    }
    EXPECT_EQ(line[kAnalysed], "1");
    EXPECT_EQ(line[kObserved], "1");
}

// The rest length may exceed the alleles: (100 - 110)/4.
TEST(TABAusgabe, RepeatNumbersMayBeNegative) {
    const std::vector<std::string> line =
        lineOf(summary("2 . . 4 .\n. . . 110 .\n. . . L1 L1b\nA d 0 100 100\n"), 1);
    EXPECT_EQ(line[kMinRepeat], "-2.500000");
    EXPECT_EQ(line[kMeanRepeat], "-2.500000");
    EXPECT_EQ(line[kMaxRepeat], "-2.500000");
}

// The largest numbers of 32 bits neither overflow nor lose their sign.
TEST(TABAusgabe, LargestLengthsStayNumbers) {
    const std::vector<std::string> line = lineOf(
        summary("2 . . 2147483647 .\n. . . 2147483647 .\n. . . L1 L1b\nA d 0 0 2147483647\n"), 1);
    EXPECT_EQ(line[kMinRepeat], "-1.000000");
    EXPECT_EQ(line[kMeanRepeat], "-0.500000");
    EXPECT_EQ(line[kMaxRepeat], "0.000000");
    EXPECT_EQ(line[kVarRepeat], "0.500000"); // 4/2 x (1/4 + 1/4)/2
}

// --- Inbred data ------------------------------------------------------------------------------

namespace {

const char* const kInbred = "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                            "A h 0 100 102\nA h 0 102 104\nA h 0 100 106\nB d 0 100 102\n";

} // namespace

TEST(TABAusgabe, InbredPopulationHasReplicateMeansAndNoFis) {
    LoadedRun run(kInbred);
    const std::vector<std::string> line = lineOf(summaryAfterOverview(run), 1);
    const AllelCount& A = run->PopAllele[1][0];
    EXPECT_EQ(A.RDDurchlauf, 200);
    EXPECT_EQ(line[kHetExp], fixed6(A.CalcHet()));
    EXPECT_EQ(line[kHetRD], fixed6(A.RDHet / 200.0));
    EXPECT_EQ(line[kVarRD], fixed6(A.RDVar / 200.0));
    EXPECT_EQ(line[kVarRepeatRD], fixed6(A.RDVar / 200.0 / 4.0));
    EXPECT_EQ(line[kNumAlleles], fixed6(A.RDAlleleSumme / 200.0));
    EXPECT_EQ(line[kMeanAllele], fixed6(A.CalcMean())); // the plain mean, unlike the overview's
    EXPECT_EQ(line[kAnalysed], "6");
    EXPECT_EQ(line[kEffective], "3");
    EXPECT_EQ(line[kHs], "n.d.");
    EXPECT_EQ(line[kFis], "n.d.");
}

// Alone, the pass reads the plain heterozygosity and then starts the replicates for the number of
// alleles. H of 100 x 2, 102 x 2, 104, 106 with factor 6/4: 3/2 x (1 - 10/36) = 13/12, cut to 1.
TEST(TABAusgabe, WithoutTheOverviewTheNumberOfAllelesStartsTheReplicates) {
    LoadedRun run(kInbred);
    srand2(3);
    const std::vector<std::string> line = lineOf(summaryOf(run), 1);
    EXPECT_EQ(line[kHetRD], "1.000000");
    EXPECT_EQ(run->PopAllele[1][0].RDDurchlauf, 200);
    EXPECT_EQ(line[kNumAlleles], fixed6(run->PopAllele[1][0].RDAlleleSumme / 200.0));
}

// --- Console, log, folder ---------------------------------------------------------------------

TEST(TABAusgabe, ConsoleNamesTheLociAndMarksThePopulations) {
    LoadedRun run(kTwoPops);
    run.counted();
    StdoutCapture console;
    EXPECT_EQ(run->TABAusgabe(), 0);
    EXPECT_EQ(console.text(), "\nStart creating overview sheet!\n"
                              "\nLOCI: L1 PP\nLOCI: L2 PP\n");
    EXPECT_NE(run.resultFile("KVA.log").find("\nCreate tabular result files...\n"),
              std::string::npos);
}

TEST(TABAusgabe, StaysInTheResultFolder) {
    LoadedRun run(kTwoPops);
    run.counted();
    std::filesystem::current_path("Allelecount");
    summaryOf(run);
    EXPECT_EQ(std::filesystem::current_path().string(), run->ResultPfad);
}

TEST(TABAusgabe, WithoutDataIsRefused) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.TABAusgabe(), -4);
}

TEST(TABAusgabe, ResultFolderThatIsGoneEndsThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    const std::string folder = run->ResultPfad;
    run->ResultPfad = folder + "/gone";
    StdoutCapture console;
    EXPECT_EQ(run->TABAusgabe(), 1);
    EXPECT_EQ(console.text(), "\n!! ERROR Can't change into result folder ERROR !!\n");
    run->ResultPfad = folder;
}

TEST(TABAusgabe, DataSetWithoutLociGivesTheHead) {
    LoadedRun run(kTwoPops);
    run->Daten->init(0);
    EXPECT_EQ(summaryOf(run), std::string("Locus name1\tLocus name2\t") + kColumns);
}
