// The partition of gene diversity in "GST.xls".
#include "stats/statsupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

using namespace kva;

using kva_test::cellOf;
using kva_test::kTwoPops;
using kva_test::LoadedRun;
using kva_test::readFile;
using kva_test::StdoutCapture;
using kva_test::tableOf;
using kva_test::withoutNanSign;

namespace {

std::string gstOf(LoadedRun& run) {
    const StdoutCapture swallowed;
    run->calcGST();
    return readFile("GST.xls");
}

std::string gstSheet(std::string_view text) {
    LoadedRun run(text);
    run.counted();
    return gstOf(run);
}

} // namespace

// L1: Ht = 42/64, Hs = (6/16 + 6/16)/2 = 3/8, Ht(max) = (1 + 3/8)/2 = 11/16; Hs/Ht = 4/7,
// Hs/Ht(max) = 6/11. L2: Ht = 34/64, Hs = (10/16 + 6/16)/2 = 1/2, Ht(max) = 3/4; 16/17, 2/3.
// Gst 3/7, 1/17; Gst(max) 5/11, 1/3; Gst' 33/35, 3/17.
// Means of the ratios 90/119, 20/33: 29/119, 29/119 x 33/13. Sums 7/8, 19/16, 23/16: 5/19,
// 5/19 x 23/9.
TEST(CalcGST, WholeSheet) {
    EXPECT_EQ(gstSheet(kTwoPops), "\tL1\tL2\t\n"
                                  "\tL1b\tL2b\t\n"
                                  "Gst\t0.428571\t0.058824\n"
                                  "Gst'\t0.942857\t0.176471\n"
                                  "\n"
                                  "Gst(max)\t0.454545\t0.333333\n"
                                  "Hs\t0.375000\t0.500000\n"
                                  "Ht\t0.656250\t0.531250\n"
                                  "Ht(max)\t0.687500\t0.750000\n"
                                  "\n"
                                  "\tGst\tGst'\n"
                                  "Gst Hamrick and Godt\t0.243697\t0.618617\n"
                                  "Gst Nei\t0.263158\t0.672515\n");
}

TEST(CalcGST, OneColumnDataHaveOneHeadLine) {
    EXPECT_EQ(gstSheet(kva_test::kTwoPopsOneColumn).substr(0, 12), "\tL1\tL2\t\nGst\t");
}

// L1 as in kTwoPops, L2 monomorphic: its Hs = Ht = 0 and Ht(max) = 1/2 enter the sums all the
// same, and its Hs/Ht(max) = 0 the second mean. Ratios 4/7 (one locus), (6/11 + 0)/2 = 3/11:
// 3/7, 3/7 x 11/8. Sums 3/8, 21/32, 19/16: 1 - 4/7 = 3/7, 3/7 / (1 - 6/19) = 57/91.
TEST(CalcGST, MonomorphicLocusAddsToTheSums) {
    const std::string sheet = gstSheet("2 . . 2 . 4 .\n. . . 50 . 60 .\n. . . L1 L1b L2 L2b\n"
                                       "A d 0 100 102 200 200\n"
                                       "A d 0 100 100 200 200\n"
                                       "B d 0 102 104 200 200\n"
                                       "B d 0 104 104 200 200\n");
    for (const char* row : {"Gst'", "Gst(max)", "Hs", "Ht", "Ht(max)"}) {
        EXPECT_EQ(cellOf(sheet, row, 2), "n.d.") << row;
        EXPECT_NE(cellOf(sheet, row, 1), "n.d.") << row;
    }
    EXPECT_NE(sheet.find("\nGst Hamrick and Godt\t0.428571\t0.589286\n"), std::string::npos);
    EXPECT_NE(sheet.find("\nGst Nei\t0.428571\t0.626374\n"), std::string::npos);
}

// L2 has no data at all: it adds nothing, so the means are those of L1 alone, Gst 3/7 and Gst'
// 33/35 both times.
TEST(CalcGST, LocusWithoutDataAddsNothing) {
    const std::string sheet = gstSheet("2 . . 2 . 4 .\n. . . 50 . 60 .\n. . . L1 L1b L2 L2b\n"
                                       "A d 0 100 102 . .\n"
                                       "A d 0 100 100 . .\n"
                                       "B d 0 102 104 . .\n"
                                       "B d 0 104 104 . .\n");
    EXPECT_EQ(cellOf(sheet, "Gst'", 2), "n.d.");
    EXPECT_EQ(cellOf(sheet, "Ht", 2), "n.d.");
    EXPECT_NE(sheet.find("\nGst Hamrick and Godt\t0.428571\t0.942857\n"), std::string::npos);
    EXPECT_NE(sheet.find("\nGst Nei\t0.428571\t0.942857\n"), std::string::npos);
}

// Population C without data is left out of Hs and of s: as without it.
TEST(CalcGST, PopulationWithoutDataIsLeftOut) {
    const std::string without = gstSheet(kTwoPops);
    EXPECT_EQ(gstSheet(std::string(kTwoPops) + "C d 0 . . . .\n"), without);
}

TEST(CalcGST, NoPolymorphicLocusHasNoMeans) {
    const std::string sheet = gstSheet("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                                       "A d 0 100 100\n"
                                       "B d 0 100 100\n");
    EXPECT_NE(sheet.find("\nGst Hamrick and Godt\tn.d.\tn.d.\nGst Nei\tn.d.\tn.d.\n"),
              std::string::npos);
}

// s = 1: Hs = Ht = Ht(max), so Gst' is 0/0, not guarded.
TEST(CalcGST, OnePopulationDividesByZero) {
    EXPECT_EQ(withoutNanSign(gstSheet("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                                      "A d 0 100 102\n")),
              "\tL1\t\n\tL1b\t\n"
              "Gst\t0.000000\nGst'\tnan\n\n"
              "Gst(max)\t0.000000\nHs\t0.500000\nHt\t0.500000\nHt(max)\t0.500000\n\n"
              "\tGst\tGst'\n"
              "Gst Hamrick and Godt\t0.000000\tnan\n"
              "Gst Nei\t0.000000\tnan\n");
}

// Hs = 0, Ht = Ht(max) = 1/2: Gst = Gst(max) = 1.
TEST(CalcGST, FixedPopulationsAreFullyApart) {
    const std::string sheet = gstSheet("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\n"
                                       "A d 0 100 100\n"
                                       "B d 0 102 102\n");
    EXPECT_EQ(cellOf(sheet, "Gst'", 1), "1.000000");
    EXPECT_NE(sheet.find("\nGst Nei\t1.000000\t1.000000\n"), std::string::npos);
}

// Tables made by hand, 1 of 4000000 copies differs: Ht is 5e-7, which counts as none.
TEST(CalcGST, TinyDiversityHasNoCells) {
    LoadedRun run("2 . . 2 .\n. . . 50 .\n. . . L1 L1b\nA d 0 100 102\n");
    run.counted();
    AllelCount table = tableOf({{100, 1}, {102, 1}});
    table.Allele[0].Anzahl = 3999999;
    table.AnzGesamt = 4000000;
    run->PopAllele[0][0] = table;
    run->PopAllele[1][0] = table;
    const std::string sheet = gstOf(run);
    EXPECT_EQ(cellOf(sheet, "Ht", 1), "n.d.");
    EXPECT_NE(sheet.find("\nGst Nei\tn.d.\tn.d.\n"), std::string::npos);
}

TEST(CalcGST, DataSetWithoutLociGivesLabels) {
    LoadedRun run(kTwoPops);
    run->Daten->init(0);
    run.counted();
    EXPECT_EQ(gstOf(run), "\t\n\t\nGst\nGst'\n\nGst(max)\nHs\nHt\nHt(max)\n\n\tGst\tGst'\n"
                          "Gst Hamrick and Godt\tn.d.\tn.d.\nGst Nei\tn.d.\tn.d.\n");
}

TEST(CalcGST, TellsItsBeginningAndEnd) {
    LoadedRun run(kTwoPops);
    run.counted();
    StdoutCapture console;
    EXPECT_EQ(run->calcGST(), 0);
    EXPECT_EQ(console.text(), "\nStart with G ST calculation!\n\n... Finished GST calculation!\n");
    EXPECT_NE(run.resultFile("KVA.log").find("\n     Calculated Gst\n"), std::string::npos);
}

TEST(CalcGST, AFullDiskIsToldBeforeTheEnd) {
    LoadedRun run(kTwoPops);
    run.counted();
    const kva_test::SizeLimit limit(115); // enough for log and console, not for the sheet
    const std::string told = "Cannot write result file GST.xls: File too large\n";
    StdoutCapture console;
    run->calcGST();
    EXPECT_EQ(console.text(),
              "\nStart with G ST calculation!\n\n" + told + "\n... Finished GST calculation!\n");
    EXPECT_NE(run.resultFile("KVA.log").find(told + "\n     Calculated Gst\n"), std::string::npos);
}

// Tables made by hand, L1 with a pool alone: it adds nothing to the sums, which are those of L2.
TEST(CalcGST, APoolOverEmptyPopulationsAddsNothing) {
    LoadedRun run(kTwoPops);
    run.counted();
    run->PopAllele[1][0].Clr();
    run->PopAllele[2][0].Clr();
    const std::string sheet = gstOf(run);
    EXPECT_EQ(cellOf(sheet, "Hs", 1), "0.000000");
    EXPECT_EQ(cellOf(sheet, "Gst Nei", 1), "0.058824"); // 1 - (1/2) / (34/64)
}
