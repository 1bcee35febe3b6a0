#include "check/reporttext.h"

#include "support/datasets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace kva;
using namespace kva_test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::string reportOn(const std::string& bytes) {
    const TempFolder folder;
    writeFile(folder / "data.txt", bytes);
    CheckReport report = checkFile((folder / "data.txt").string());
    report.file = "data.txt";
    std::ostringstream out;
    writeReport(out, report);
    return out.str();
}

} // namespace

TEST(PlaceText, NamesRowColumnAndWhatStandsThere) {
    EXPECT_EQ(placeText({8, 4, "104.5"}), "row 8, column 4 (104.5)");
    EXPECT_EQ(placeText({8, 0, ""}), "row 8");
    EXPECT_EQ(placeText({0, 0, ""}), "the whole file");
}

TEST(ReportText, FindingsAndSummaryOfASmallFile) {
    // One allele of four is missing at the only locus: half of an individual, a quarter of all.
    EXPECT_EQ(reportOn(tabbed("2 . . 2 .\n. . . 100 .\n. . . L1 L1b\nA d 1 104 106\nB h 2 104\n")),
              "data.txt: no error, 2 warnings, no note\n"
              "\n"
              "warning: row-short, a row with fewer cells than the table has columns\n"
              "  at: row 5 (4 of 5 cells)\n"
              "  means: The cells that are not there are missing alleles.\n"
              "  do: Look whether cells of the row slipped to the left; else fill it up with empty "
              "cells.\n"
              "\n"
              "warning: half-missing, an individual with one of two alleles missing\n"
              "  at: row 5, column 5 (L1)\n"
              "  means: The other allele counts alone; the Genepop and Arlequin files show half a "
              "genotype.\n"
              "  do: Look whether the allele was forgotten; a homozygote needs it twice.\n"
              "\n"
              "Understood: 2 columns per locus, 3 header rows, 2 populations, 2 individuals, 1 "
              "locus, 25.0 % of the alleles missing.\n"
              "  Population  Individuals  Inbred  Group  Missing\n"
              "  A                     1       0      1    0.0 %\n"
              "  B                     1       1      2   50.0 %\n"
              "  Locus  Repeat  Rest  Alleles  Smallest  Largest  Missing\n"
              "  L1          2   100        2       104      106   25.0 %\n");
}

TEST(ReportText, ManyPlacesAreCutShort) {
    std::string text = "2 . . 2 .\n. . . 100 .\n. . . L1 L1b\n";
    for (int row = 4; row <= 10; ++row) {
        text += "A d 1 104x 106\n";
    }
    EXPECT_THAT(reportOn(tabbed(text)),
                HasSubstr("error: letters, an allele with other characters behind it (7 times)\n"
                          "  at: row 4, column 4 (104x); row 5, column 4 (104x); row 6, column 4 "
                          "(104x); row 7, column 4 (104x); row 8, column 4 (104x); and 2 more\n"));
}

TEST(ReportText, RefusedFilesAreNotUnderstood) {
    const std::string report = reportOn("x\n");
    EXPECT_THAT(report, StartsWith("data.txt: 1 error, no warning, no note\n"));
    EXPECT_THAT(report, HasSubstr("at: row 1 (found \"x\" as first byte)"));
    EXPECT_THAT(report, HasSubstr("\nUnderstood: nothing, a run would write sheets with heads"));
}
