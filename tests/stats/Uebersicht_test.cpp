// The overview sheets of "Single_data".
#include "fstat/randsci.h"
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
using kva_test::kTwoPopsOneColumn;
using kva_test::LoadedRun;
using kva_test::readFile;
using kva_test::StdoutCapture;
using kva_test::tabbed;
using kva_test::withoutNanSign;
using kva_test::writeFile;

namespace {

// A data set whose overview was written, by default with the minimal sample as reference.
class Written {
  public:
    explicit Written(std::string_view text, int32_t richnessRef = -1)
        : Run(text), Result(write(richnessRef)) {}

    std::string sheet(const std::string& name) const {
        return Run.resultFile("Single_data/" + name + ".xls");
    }
    // The cell of a sample at locus l (from 1).
    std::string cell(const std::string& name, const std::string& sample, std::size_t l = 1) const {
        return cellOf(sheet(name), sample, l);
    }

    LoadedRun Run;
    int Result;

  private:
    int write(int32_t richnessRef) {
        const StdoutCapture swallowed;
        Run->RichnessRef = richnessRef;
        return Run->Uebersicht();
    }
};

// The sheet of kTwoPops with the given cells of Total, A and B.
std::string twoPopsSheet(const std::string& total, const std::string& a, const std::string& b) {
    return tabbed(". L1 L2 .\n. L1b L2b .\nTotal " + total + " .\nA " + a + " .\nB " + b + " .\n");
}

const std::vector<std::string> kAllSheets = {"Hetexp",
                                             "HetRDexp",
                                             "Shannon",
                                             "Thetaexp",
                                             "ThetaRDexp",
                                             "Var",
                                             "Mean",
                                             "VarRD",
                                             "Varrepeat",
                                             "VarRDrepeat",
                                             "MaxAllele",
                                             "MinAllele",
                                             "AllelicRichness",
                                             "VarrepeatKorr",
                                             "VarRDrepeatKorr",
                                             "NumChromosomes",
                                             "NumAlleles",
                                             "NumAllelesExpSMM",
                                             "NumAllelesExpIAM",
                                             "NumChromosomeseffective"};

} // namespace

// --- Whole sheets -----------------------------------------------------------------------------
// kTwoPops. L1: pool 100 x 3, 102 x 2, 104 x 3; A 100 x 3, 102; B 102, 104 x 3.
// L2: pool 200 x 5, 204 x 2, 208; A 200 x 2, 204, 208; B 200 x 3, 204.
// All diploid: the factor is 8/7 in the pool and 4/3 in the populations.

// Pool L1 8/7 x 42/64 = 3/4, L2 8/7 x 34/64 = 17/28; A 4/3 x 6/16, 4/3 x 10/16; B 4/3 x 6/16.
TEST(Uebersicht, HetSheets) {
    const Written run(kTwoPops);
    const std::string expected =
        twoPopsSheet("0.750000 0.607143", "0.500000 0.833333", "0.500000 0.500000");
    EXPECT_EQ(run.sheet("Hetexp"), expected);
    EXPECT_EQ(run.sheet("HetRDexp"), expected); // diploid: the plain value
}

// -sum p ln p of 3/8 2/8 3/8, 5/8 2/8 1/8; 3/4 1/4, 1/2 1/4 1/4.
TEST(Uebersicht, ShannonSheet) {
    EXPECT_EQ(Written(kTwoPops).sheet("Shannon"),
              twoPopsSheet("1.082196 0.900256", "0.562335 1.039721", "0.562335 0.562335"));
}

// (1/(1-H)^2 - 1)/2: 15/2, (784/121 - 1)/2 = 663/242; 3/2, 35/2; 3/2.
TEST(Uebersicht, ThetaSheets) {
    const Written run(kTwoPops);
    const std::string expected =
        twoPopsSheet("7.500000 2.739669", "1.500000 17.500000", "1.500000 1.500000");
    EXPECT_EQ(run.sheet("Thetaexp"), expected);
    EXPECT_EQ(run.sheet("ThetaRDexp"), expected);
}

// L1: 8/7 x 24/8 = 24/7, 4/3 x 3/4, the same; L2: 8/7 x 64/8 = 64/7, 4/3 x 44/4, 4/3 x 12/4.
TEST(Uebersicht, VarSheets) {
    const Written run(kTwoPops);
    const std::string expected =
        twoPopsSheet("3.428571 9.142857", "1.000000 14.666667", "1.000000 4.000000");
    EXPECT_EQ(run.sheet("Var"), expected);
    EXPECT_EQ(run.sheet("VarRD"), expected);
}

TEST(Uebersicht, MeanSheet) {
    EXPECT_EQ(
        Written(kTwoPops).sheet("Mean"),
        twoPopsSheet("102.000000 202.000000", "100.500000 203.000000", "103.500000 201.000000"));
}

// The variances over 2 x 2 and 4 x 4: 6/7, 4/7; 1/4, 11/12; 1/4, 1/4. All are positive, so the
// corrected sheets hold the same.
TEST(Uebersicht, RepeatSheets) {
    const Written run(kTwoPops);
    const std::string expected =
        twoPopsSheet("0.857143 0.571429", "0.250000 0.916667", "0.250000 0.250000");
    for (const char* name : {"Varrepeat", "VarRDrepeat", "VarrepeatKorr", "VarRDrepeatKorr"}) {
        EXPECT_EQ(run.sheet(name), expected) << name;
    }
}

TEST(Uebersicht, ExtremeSheets) {
    const Written run(kTwoPops);
    EXPECT_EQ(run.sheet("MaxAllele"), twoPopsSheet("104 208", "102 208", "104 204"));
    EXPECT_EQ(run.sheet("MinAllele"), twoPopsSheet("100 200", "100 200", "102 200"));
}

// k = 4, the size of the populations, which hold all their alleles. Pool: C(8, 4) = 70.
// L1: q = 5/70, 15/70, 5/70; R = 185/70; V = 2 x 13/196 + 33/196 = 59/196; D = -7/196; variance
// 45/196. L2: 200 is always there, q = 15/70, 35/70; R = 1 + 55/70 + 35/70 = 16/7;
// V = 33/196 + 1/4, D = 5/70 - 3/28 = -1/28; variance 17/49.
TEST(Uebersicht, RichnessSheetWithItsTwoTables) {
    EXPECT_EQ(Written(kTwoPops).sheet("AllelicRichness"),
              twoPopsSheet("2.642857 2.285714", "2.000000 3.000000", "2.000000 2.000000") +
                  "\nStd. Ind. Number\t2.000000\t2.000000\t\n" +
                  "\nVariance of allelic richness\n" +
                  twoPopsSheet("0.229592 0.346939", "0.000000 0.000000", "0.000000 0.000000"));
}

TEST(Uebersicht, NumberSheets) {
    const Written run(kTwoPops);
    const std::string copies = twoPopsSheet("8 8", "4 4", "4 4");
    EXPECT_EQ(run.sheet("NumChromosomes"), copies);
    EXPECT_EQ(run.sheet("NumChromosomeseffective"), copies);
    EXPECT_EQ(run.sheet("NumAlleles"),
              twoPopsSheet("3.000000 3.000000", "2.000000 3.000000", "2.000000 2.000000"));
}

// With the H and n above. H = 1/2, n = 4: theta = 3/2, b = 1/2, P = 3/2/2 x ... x 9/2/5 = 63/128,
// smm = 4 x 65/128; iam = 1 + 1/2 + 1/3 + 1/4. The others by the same formulas in fractions.
TEST(Uebersicht, ExpectedAllelesSheets) {
    const Written run(kTwoPops);
    EXPECT_EQ(run.sheet("NumAllelesExpSMM"),
              twoPopsSheet("3.931027 2.999383", "2.031250 3.128211", "2.031250 2.031250"));
    EXPECT_EQ(run.sheet("NumAllelesExpIAM"),
              twoPopsSheet("4.286905 3.283510", "2.083333 3.172619", "2.083333 2.083333"));
}

TEST(Uebersicht, OneColumnDataHaveOneHeadLine) {
    const Written run(kTwoPopsOneColumn);
    EXPECT_EQ(run.sheet("Hetexp"), tabbed(". L1 L2 .\n"
                                          "Total 0.750000 0.607143 .\n"
                                          "A 0.500000 0.833333 .\n"
                                          "B 0.500000 0.500000 .\n"));
    const std::string richness = run.sheet("AllelicRichness");
    EXPECT_NE(richness.find("Variance of allelic richness\n\tL1\tL2\t\nTotal\t"),
              std::string::npos);
}

// --- Console, log, folder -----------------------------------------------------------------------

TEST(Uebersicht, ConsoleMarksOfADiploidRun) {
    LoadedRun run(kTwoPops);
    run.counted();
    StdoutCapture console;
    EXPECT_EQ(run->Uebersicht(), 0);
    EXPECT_EQ(console.text(), "\nCalculate Stat's and create single data files\n"
                              "\nCalculate Het's:\n"
                              "Total \nA \nB \n"
                              "\nCalculate Var's and Mean's:\n&&\n"
                              "\nWrite Min- and Max- Allels:\n$$\n"
                              "\nFind Num.Chromosomes and Num.of Allels\n**\n"
                              "\nStart with G ST calculation!\n"
                              "\n... Finished GST calculation!\n"
                              "\n");
}

// B is inbred, and so the pool is mixed; L2 of B is monomorphic.
TEST(Uebersicht, ReplicatesMarkTheirCells) {
    LoadedRun run("2 . . 2 . 4 .\n"
                  ". . . 50 . 60 .\n"
                  ". . . L1 L1b L2 L2b\n"
                  "A d 0 100 102 200 204\n"
                  "B h 0 102 104 200 200\n"
                  "B h 0 104 104 200 200\n");
    run.counted();
    StdoutCapture console;
    run->Uebersicht();
    EXPECT_NE(console.text().find("\nTotal 3#3#\nA \nB 3#2#\n"), std::string::npos);
}

TEST(Uebersicht, LogEntryFollowsThatOfGst) {
    const Written run(kTwoPops);
    const std::string log = run.Run.resultFile("KVA.log");
    EXPECT_NE(log.find("\nCount Allels...\n\n     Calculated Gst\n\nMake Overview...\n"),
              std::string::npos);
}

TEST(Uebersicht, ReturnsToTheResultFolder) {
    Written run(kTwoPops);
    EXPECT_EQ(run.Result, 0);
    EXPECT_EQ(std::filesystem::current_path().string(), run.Run->ResultPfad);
}

TEST(Uebersicht, WithoutDataIsRefused) {
    AnalyseDataObj empty;
    EXPECT_EQ(empty.Uebersicht(), -4);
}

TEST(Uebersicht, FolderThatCannotBeEnteredEndsThePass) {
    LoadedRun run(kTwoPops);
    run.counted();
    writeFile("Single_data", "in the way");
    StdoutCapture console;
    EXPECT_EQ(run->Uebersicht(), 1);
    EXPECT_EQ(console.text(), "\nCalculate Stat's and create single data files\n"
                              "\n!! ERROR Can't create Subfolder Single_data! ERROR !!\n"
                              "Errorcode: 2-1\n"
                              "\n!! ERROR Can't change into Subfolder Single_data! ERROR !!\n"
                              "Errorcode: 2-2\n");
}

TEST(Uebersicht, FolderThatIsThereIsToldAndTaken) {
    LoadedRun run(kTwoPops);
    run.counted();
    std::filesystem::create_directory("Single_data");
    StdoutCapture console;
    EXPECT_EQ(run->Uebersicht(), 0);
    EXPECT_NE(console.text().find("Errorcode: 2-1\n\nCalculate Het's:"), std::string::npos);
}

TEST(Uebersicht, WithoutTablesThePassIsRefused) {
    LoadedRun run(kTwoPops);
    writeFile("Allelecount", "in the way"); // counting fails
    const StdoutCapture swallowed;
    EXPECT_EQ(run->Uebersicht(), 1);
    EXPECT_FALSE(std::filesystem::exists("Single_data"));
}

// --- Single cells -----------------------------------------------------------------------------

namespace {

// L1: A monomorphic, B all different, C a single copy, D untyped. L2 has no repeat length.
const char* const kEdges = "2 . . 2 . 0 .\n"
                           ". . . 50 . 0 .\n"
                           ". . . L1 L1b L2 L2b\n"
                           "A d 0 100 100 200 204\n"
                           "A d 0 100 100 200 200\n"
                           "B d 0 100 102 200 204\n"
                           "B d 0 104 106 200 204\n"
                           "C d 0 100 . 200 204\n"
                           "D d 0 . . 200 204\n";

} // namespace

// n = 4: 8/9 (h = 0 counts as 2/5); 1/(n + 1) = 1/5.
TEST(Uebersicht, MonomorphicSample) {
    const Written run(kEdges);
    EXPECT_EQ(run.cell("Hetexp", "A"), "0.000000");
    EXPECT_EQ(run.cell("Shannon", "A"), "0.000000");
    EXPECT_EQ(run.cell("Thetaexp", "A"), "0.888889");
    EXPECT_EQ(run.cell("Var", "A"), "0.000000");
    EXPECT_EQ(run.cell("Varrepeat", "A"), "0.000000");
    EXPECT_EQ(run.cell("VarrepeatKorr", "A"), "0.200000");
    EXPECT_EQ(run.cell("VarRDrepeatKorr", "A"), "0.200000");
    EXPECT_EQ(run.cell("NumAllelesExpSMM", "A"), "1.000000");
    EXPECT_EQ(run.cell("NumAllelesExpIAM", "A"), "1.000000");
}

// One homozygote: n = 2, the fewest copies of a corrected variance, 1/(2 + 1).
TEST(Uebersicht, TwoAlikeCopiesHaveACorrectedVariance) {
    const Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 100\n");
    EXPECT_EQ(run.cell("Varrepeat", "A"), "0.000000");
    EXPECT_EQ(run.cell("VarrepeatKorr", "A"), "0.333333");
    EXPECT_EQ(run.cell("VarRDrepeatKorr", "A"), "0.333333");
}

// 100/102: variance 4/2 x 1 = 2, by 1 x 1 base.
TEST(Uebersicht, ARepeatOfOneBaseIsKnown) {
    const Written run("2 . . 1 .\n. . . 1 .\n. . . L1 L1b\nA d 0 100 102\n");
    for (const char* name : {"Varrepeat", "VarRDrepeat", "VarrepeatKorr", "VarRDrepeatKorr"}) {
        EXPECT_EQ(run.cell(name, "A"), "2.000000") << name;
    }
}

// Allele 0, which no file gives, is an allele: 0/4 has the variance 4/2 x 4 = 8, by 2 x 2 bases.
TEST(Uebersicht, AlleleZeroHasItsCells) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 1 1\n");
    run->SetTierDaten(1, 1, 0, 0, 4);
    const StdoutCapture swallowed;
    run->Uebersicht();
    EXPECT_EQ(cellOf(run.resultFile("Single_data/MinAllele.xls"), "A", 1), "0");
    EXPECT_EQ(cellOf(run.resultFile("Single_data/VarrepeatKorr.xls"), "A", 1), "2.000000");
}

// H = 8/6 x 3/4 = 1; q = 2/(4 x 5), theta = 99/2.
TEST(Uebersicht, AllDifferentSample) {
    const Written run(kEdges);
    EXPECT_EQ(run.cell("Hetexp", "B"), "1.000000");
    EXPECT_EQ(run.cell("Thetaexp", "B"), "49.500000");
    EXPECT_EQ(run.cell("NumAllelesExpSMM", "B"), "4.000000");
    EXPECT_EQ(run.cell("NumAllelesExpIAM", "B"), "4.000000");
}

// One diploid copy, C = 2: no variance, so n = 1 and no corrected one; but a mean and numbers.
TEST(Uebersicht, SingleCopySample) {
    const Written run(kEdges);
    for (const char* name : {"Hetexp", "Thetaexp", "Shannon", "Var", "Varrepeat", "VarrepeatKorr",
                             "VarRDrepeatKorr", "AllelicRichness", "NumAllelesExpSMM"}) {
        EXPECT_EQ(run.cell(name, "C"), "n.d.") << name;
    }
    EXPECT_EQ(run.cell("Mean", "C"), "100.000000");
    EXPECT_EQ(run.cell("NumChromosomes", "C"), "1");
    EXPECT_EQ(run.cell("NumChromosomeseffective", "C"), "1");
    EXPECT_EQ(run.cell("NumAlleles", "C"), "1.000000");
}

TEST(Uebersicht, UntypedSampleHasNoValueInAnySheet) {
    const Written run(kEdges);
    for (const std::string& name : kAllSheets) {
        EXPECT_EQ(run.cell(name, "D"), "n.d.") << name;
    }
}

TEST(Uebersicht, WithoutRepeatLengthOnlyTheRepeatSheetsHaveNone) {
    const Written run(kEdges);
    for (const char* name : {"Varrepeat", "VarRDrepeat", "VarrepeatKorr", "VarRDrepeatKorr"}) {
        EXPECT_EQ(run.cell(name, "A", 2), "n.d.") << name;
    }
    EXPECT_EQ(run.cell("Var", "A", 2), "4.000000"); // 4/3 x 12/4
    EXPECT_EQ(run.cell("VarRD", "A", 2), "4.000000");
}

TEST(Uebersicht, UnknownRepeatLengthIsLikeNone) {
    Written run("2 . . . .\n. . . . .\n. . . L1 L1b\nA d 0 100 102\nA d 0 100 104\n");
    EXPECT_EQ(run.Run->Daten->GetLociRepeatMuster(1), -1);
    EXPECT_EQ(run.cell("Varrepeat", "A"), "n.d.");
    EXPECT_NE(run.cell("Var", "A"), "n.d.");
}

// --- Richness reference -----------------------------------------------------------------------

// C has one copy at L1, which does not lower the minimum of 4 (A and B): 2 individuals.
TEST(Uebersicht, SingleCopyDoesNotLowerTheReference) {
    const Written run(kEdges);
    EXPECT_EQ(run.cell("AllelicRichness", "Std. Ind. Number"), "2.000000");
    EXPECT_EQ(run.cell("AllelicRichness", "B"), "4.000000");
}

TEST(Uebersicht, LocusWithoutTwoCopiesKeepsTheStartOfTheReference) {
    const Written run("2 . . 2 . 2 .\n. . . 50 . 50 .\n. . . L1 L1b L2 L2b\n"
                      "A d 0 100 . 100 102\nA d 0 . . 100 102\n");
    EXPECT_EQ(cellOf(run.sheet("AllelicRichness"), "Std. Ind. Number", 1), "500000.000000");
    EXPECT_EQ(cellOf(run.sheet("AllelicRichness"), "Std. Ind. Number", 2), "2.000000");
    EXPECT_EQ(run.cell("AllelicRichness", "Total"), "n.d.");
    EXPECT_EQ(run.cell("AllelicRichness", "A"), "n.d.");
}

// Reference 5: above the 4 copies of A and B, below the 9 of the pool (100 x 6, 102, 104, 106):
// q = C(8,5)/C(9,5) = 4/9 for the three rare ones; R = 1 + 3 x 5/9.
// V = 3 x 20/81, D = 3 (C(7,5)/126 - 16/81) = 3 (1/6 - 16/81); variance 60/81 + 1 - 96/81 = 5/9.
TEST(Uebersicht, ReferenceAboveASampleSilencesItsCellsAlone) {
    const Written run(kEdges, 5);
    EXPECT_EQ(run.cell("AllelicRichness", "Total"), fixed6(8.0 / 3.0));
    EXPECT_EQ(run.cell("AllelicRichness", "A"), "n.d.");
    EXPECT_EQ(run.cell("AllelicRichness", "Std. Ind. Number"), "2.500000");
    const std::string richness = run.sheet("AllelicRichness");
    const std::string variances = richness.substr(richness.find("Variance of"));
    EXPECT_EQ(cellOf(variances, "Total", 1), fixed6(5.0 / 9.0));
    EXPECT_EQ(cellOf(variances, "A", 1), "n.d.");
}

// Of two copies the number of alleles is 1 with the probability P that they are alike, else 2: mean
// 2 - P, variance P (1 - P). L1: pool P = (3 + 1 + 3)/28, A and B 3/6. L2: pool (10 + 1)/28, A 1/6,
// B 3/6.
TEST(Uebersicht, EachSampleHasItsVarianceOfTheRichness) {
    EXPECT_EQ(Written(kTwoPops, 2).sheet("AllelicRichness"),
              twoPopsSheet("1.750000 1.607143", "1.500000 1.833333", "1.500000 1.500000") +
                  "\nStd. Ind. Number\t1.000000\t1.000000\t\n" +
                  "\nVariance of allelic richness\n" +
                  twoPopsSheet("0.187500 0.238520", "0.250000 0.138889", "0.250000 0.250000"));
}

TEST(Uebersicht, ReferenceOfZeroHasNoRichness) {
    const Written run(kTwoPops, 0);
    EXPECT_EQ(run.sheet("AllelicRichness"),
              twoPopsSheet("n.d. n.d.", "n.d. n.d.", "n.d. n.d.") +
                  "\nStd. Ind. Number\t0.000000\t0.000000\t\n" +
                  "\nVariance of allelic richness\n" +
                  twoPopsSheet("n.d. n.d.", "n.d. n.d.", "n.d. n.d."));
}

// 100 individuals 100/100 but one 102/104; the reference of 150 copies overflows: R is negative.
TEST(Uebersicht, OverflowingRichnessHasNone) {
    std::string text = "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 102 104\n";
    for (int i = 1; i < 100; ++i) {
        text += "A d 0 100 100\n";
    }
    const Written run(text, 150);
    EXPECT_EQ(run.cell("AllelicRichness", "A"), "n.d.");
    EXPECT_EQ(run.cell("AllelicRichness", "Std. Ind. Number"), "75.000000");
}

// --- Inbred data ------------------------------------------------------------------------------

namespace {

// All different alleles in three inbred individuals: every replicate has 3 alleles and H = 1.
const char* const kInbredTriple = "2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                                  "A h 0 100 100\nA h 0 102 102\nA h 0 110 110\n";

} // namespace

// The factor is 6/4: H = 6/4 x 2/3 = 1, variance 6/4 x (16 + 4 + 36)/3 = 28; the replicates always
// draw 100, 102, 110: mean 104, variance 2/4 x 56 = 28. n = 3: theta q = 2/12, (36 - 1)/2.
TEST(Uebersicht, InbredHomozygotesReplicateThemselves) {
    const Written run(kInbredTriple);
    EXPECT_EQ(run.cell("Hetexp", "A"), "1.000000"); // 3/(3 - 2) x (1 - 3 x 1/9) = 2, capped
    EXPECT_EQ(run.cell("HetRDexp", "A"), "1.000000");
    EXPECT_EQ(run.cell("Thetaexp", "A"), "17.500000");
    EXPECT_EQ(run.cell("ThetaRDexp", "A"), "17.500000");
    EXPECT_EQ(run.cell("Var", "A"), "28.000000");
    EXPECT_EQ(run.cell("VarRD", "A"), "28.000000");
    EXPECT_EQ(run.cell("Mean", "A"), "104.000000");
    EXPECT_EQ(run.cell("NumAlleles", "A"), "3.000000");
    EXPECT_EQ(run.cell("NumChromosomes", "A"), "6");
    EXPECT_EQ(run.cell("NumChromosomeseffective", "A"), "3");
    EXPECT_EQ(run.cell("NumAllelesExpSMM", "A"), "3.000000");
}

// Sheets with RD in their name, "Mean", "NumAlleles" and the expected numbers hold the mean over
// 200 replicates of the stream, first the pool and then the population.
TEST(Uebersicht, RandomDiscardSheetsHoldTheMeanOverTheReplicates) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                  "A h 0 100 102\nA h 0 102 104\nA h 0 100 106\nB d 0 100 102\n");
    run.counted();
    SampleTables tables = run->PopAllele;
    const StdoutCapture swallowed;
    srand2(7);
    run->Daten->CalcRDHet(tables, 0, 1, 200);
    run->Daten->CalcRDHet(tables, 1, 1, 200);
    srand2(7);
    run->Uebersicht();
    const AllelCount& A = tables[1][0];
    const auto cell = [&run](const char* name) {
        return cellOf(run.resultFile("Single_data/" + std::string(name) + ".xls"), "A", 1);
    };
    EXPECT_EQ(A.RDDurchlauf, 200);
    EXPECT_EQ(cell("HetRDexp"), fixed6(A.RDHet / 200.0));
    EXPECT_EQ(cell("Mean"), fixed6(A.RDMean / 200.0));
    EXPECT_EQ(cell("VarRD"), fixed6(A.RDVar / 200.0));
    EXPECT_EQ(cell("VarRDrepeat"), fixed6(A.RDVar / 200.0 / 4.0));
    EXPECT_EQ(cell("VarRDrepeatKorr"), fixed6(A.RDVar / 200.0 / 4.0));
    EXPECT_EQ(cell("NumAlleles"), fixed6(A.RDAlleleSumme / 200.0));
    EXPECT_EQ(cell("Hetexp"), fixed6(A.CalcHet()));
    EXPECT_EQ(cell("Varrepeat"), fixed6(A.CalcVar(A.CalcMean()) / 4.0));
}

// A half missing diploid and a half missing inbred individual: two copies, C = 3, so a variance but
// no replicate: both repeat sheets follow the random-discard value. n = 1: theta of h = 0 divides
// by 0, and 1/(n + 1) is not taken.
TEST(Uebersicht, VarianceWithoutReplicateHasNoRepeatVariance) {
    const Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 .\nA h 0 100 .\n");
    EXPECT_EQ(run.cell("Var", "A"), "0.000000");
    EXPECT_EQ(run.cell("VarRD", "A"), "n.d.");
    EXPECT_EQ(run.cell("Varrepeat", "A"), "n.d.");
    EXPECT_EQ(run.cell("VarRDrepeat", "A"), "n.d.");
    EXPECT_EQ(run.cell("VarrepeatKorr", "A"), "n.d.");
    EXPECT_EQ(run.cell("Thetaexp", "A"), "inf");
    EXPECT_EQ(run.cell("ThetaRDexp", "A"), "n.d.");
}

// The same with 100 and 102: n = 1, variance 3/1 x (1 + 1)/2 = 3, by 2 x 2 bases. The plain one is
// there, above 0 though below 1.
TEST(Uebersicht, VarianceOfOneIndependentCopyIsNotCorrected) {
    const Written run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 .\nA h 0 102 .\n");
    EXPECT_EQ(run.cell("VarrepeatKorr", "A"), "0.750000");
    EXPECT_EQ(run.cell("VarRDrepeatKorr", "A"), "n.d.");
}

// Three rows of one-column inbred data are one individual and a rest: the replicate of one copy is
// no number, and is printed as such.
TEST(Uebersicht, NotANumberIsPrinted) {
    const Written run("1 . . 2\n. . . 50\n. . . L1\nA h 0 100\nA h 0 102\nA h 0 104\n");
    EXPECT_EQ(withoutNanSign(run.cell("HetRDexp", "A")), "nan");
    EXPECT_EQ(withoutNanSign(run.cell("ThetaRDexp", "A")), "nan");
    EXPECT_EQ(run.cell("Hetexp", "A"), "1.000000"); // 3/(3 - 2) x (1 - 3 x 1/9) = 2, capped
}

// --- Shapes -----------------------------------------------------------------------------------

TEST(Uebersicht, WritesItsTwentySheetsAndGst) {
    const Written run(kTwoPops);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator("Single_data")) {
        files += entry.is_regular_file() ? 1U : 0U;
    }
    EXPECT_EQ(files, kAllSheets.size() + 1);
}

TEST(Uebersicht, DataSetWithoutLociGivesHeads) {
    LoadedRun run(kTwoPops);
    run->Daten->init(0);
    const StdoutCapture swallowed;
    EXPECT_EQ(run->Uebersicht(), 0);
    EXPECT_EQ(run.resultFile("Single_data/Hetexp.xls"), "\t\n\t\nTotal\t\n");
}

TEST(Uebersicht, PopulationsKeepTheirOrderAndNames) {
    const Written run(kEdges);
    std::vector<std::string> labels;
    for (const std::vector<std::string>& line : cellsOf(run.sheet("Hetexp"))) {
        labels.push_back(line.front());
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"", "", "Total", "A", "B", "C", "D", ""}));
}
