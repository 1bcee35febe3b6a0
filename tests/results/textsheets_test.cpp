// Sheets of texts with numbers.
#include "rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using kva_test::faultOf;
using kva_test::rowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

// --- Global F-statistics ----------------------------------------------------------------------

namespace {

const char* const kGlobal = "F-Statistic/GlobFst.xls";
const std::string kTop = "Global Fst of Datafile: data.txt\n";
const std::string kOverLoci =
    "global Fst over all loci:|0.1\nglobal Fit over all loci:|0.2\nglobal Fis over all loci:|0.3\n"
    "Gst over all loci:|0.4\nGst' over all loci:|nan\n";
const std::string kLocus = "Locus: L1  /  L1b\nL1|global Fst:|0.6\nL1|global Fit: |0.7\n"
                           "L1|global Fis: |0.8\nL1|Gst:|0.9\nL1|Gst':|-32767.000000\n";

} // namespace

TEST(GlobalF, ValuesOverAllLociAndOfEach) {
    EXPECT_THAT(rowsOf(kGlobal, kTop + "\n" + kOverLoci + kLocus),
                ElementsAre("fst_global|||||0.1", "fit_global|||||0.2", "fis_global|||||0.3",
                            "gst_global|||||0.4", "gst_prime_global|||||NaN",
                            "fst_global_locus|||L1||0.6", "fit_global_locus|||L1||0.7",
                            "fis_global_locus|||L1||0.8", "gst_global_locus|||L1||0.9",
                            "gst_prime_global_locus|||L1||"));
}

TEST(GlobalF, PValuesStandBesideThem) {
    EXPECT_THAT(
        rowsOf(kGlobal, kTop + "Number of permutations is: 50\n\n|Values|p-Values\n"
                               "global Fst over all loci:|0.1|0.02\n"
                               "global Fit over all loci:|0.2\nglobal Fis over all loci:|0.3\n"
                               "Gst over all loci:|0.4|0.04\nGst' over all loci:|0.5|n.d.\n"
                               "||Values|p-Values\nLocus: L1\nL1|global Fst:|0.6|0.08\n"
                               "L1|global Fit: |0.7\nL1|global Fis: |0.8\nL1|Gst:|0.9|0.10\n"
                               "L1|Gst':|1|0.12\n"),
        ElementsAre("permutations_global|||||50", "fst_global|||||0.1", "fst_global_p|||||0.02",
                    "fit_global|||||0.2", "fis_global|||||0.3", "gst_global|||||0.4",
                    "gst_global_p|||||0.04", "gst_prime_global|||||0.5", "gst_prime_global_p|||||",
                    "fst_global_locus|||L1||0.6", "fst_global_locus_p|||L1||0.08",
                    "fit_global_locus|||L1||0.7", "fis_global_locus|||L1||0.8",
                    "gst_global_locus|||L1||0.9", "gst_global_locus_p|||L1||0.10",
                    "gst_prime_global_locus|||L1||1", "gst_prime_global_locus_p|||L1||0.12"));
}

TEST(GlobalF, EveryCutButThatBetweenLociIsTold) {
    const std::string whole = kTop + "\n" + kOverLoci + kLocus;
    const std::string withoutLoci = kTop + "\n" + kOverLoci;
    for (std::size_t end = whole.rfind('\n', whole.size() - 2); end != std::string::npos && end > 0;
         end = whole.rfind('\n', end - 1)) {
        const std::string cut = whole.substr(0, end + 1);
        EXPECT_EQ(faultOf(kGlobal, cut).empty(), cut == withoutLoci) << cut;
    }
}

TEST(GlobalF, RowsAreInTheirOrder) {
    EXPECT_EQ(faultOf(kGlobal, "global Fst over all loci:|0.1\nGst over all loci:|0.4\n"),
              "line 2: \"global Fit over all loci:\" should stand in front");
    EXPECT_EQ(faultOf(kGlobal, kOverLoci + "L1|global Fst:|0.6\n"),
              "line 6: the name of a locus should stand here");
    EXPECT_EQ(faultOf(kGlobal, kOverLoci + "Locus: L1\nL1|Gst:|0.6\n"),
              "line 7: \"global Fst:\" should stand here");
    EXPECT_EQ(faultOf(kGlobal, "global Fst over all loci:|0.1|0.2|0.3\n"),
              "line 1: a value should stand here, or a value and its p");
}

// --- Heterogeneity among loci -------------------------------------------------------------------

namespace {

const char* const kHeterogeneity = "F-Statistic/LocusFHeterogeneity.xls";
const std::string kTexts = "Heterogeneity in F-Statistics among loci\n"
                           "calculated by resampling (with replacement) over all loci\n\n"
                           "Analysis takes 8 Loci out of 9 Loci total.\n";
const std::string kPairs = "KVA made 200 replikas.\n\n|||Fst||||Fst\n"
                           "||95% lower|mean|95% upper||99% lower|mean|99% upper\n"
                           "A|B|0.1|0.2|0.3||0.0|0.2|0.4|";
const std::string kAll = "||Fst||||Fit||||Fis||||Fst||||Fit||||Fis\n|95% lower|mean|95% upper\n"
                         "Global:|1|2|3||4|5|6||7|8|9||10|2|12||13|5|15||n.d.|n.d.|n.d.|\n";

} // namespace

TEST(Heterogeneity, PairsMayEndTheSheet) {
    EXPECT_THAT(rowsOf(kHeterogeneity, kTexts + kPairs),
                ElementsAre("heterogeneity_loci_drawn|||||8", "heterogeneity_loci_total|||||9",
                            "heterogeneity_replicates|||||200",
                            "fst_pairwise_heterogeneity|A|B||lower 95 %|0.1",
                            "fst_pairwise_heterogeneity|A|B||mean 95 %|0.2",
                            "fst_pairwise_heterogeneity|A|B||upper 95 %|0.3",
                            "fst_pairwise_heterogeneity|A|B||lower 99 %|0.0",
                            "fst_pairwise_heterogeneity|A|B||mean 99 %|0.2",
                            "fst_pairwise_heterogeneity|A|B||upper 99 %|0.4"));
}

TEST(Heterogeneity, AllPopulationsBehindThePairs) {
    const auto rows = rowsOf(kHeterogeneity, kTexts + kPairs + "\n\n" + kAll);
    ASSERT_EQ(rows.size(), 3U + 6U + 18U);
    EXPECT_EQ(rows[9], "fst_global_heterogeneity||||lower 95 %|1");
    EXPECT_EQ(rows[13], "fit_global_heterogeneity||||mean 95 %|5");
    EXPECT_EQ(rows[17], "fis_global_heterogeneity||||upper 95 %|9");
    EXPECT_EQ(rows[20], "fst_global_heterogeneity||||upper 99 %|12");
    EXPECT_EQ(rows[26], "fis_global_heterogeneity||||upper 99 %|");
}

TEST(Heterogeneity, AllPopulationsAlone) {
    const auto rows = rowsOf(kHeterogeneity, kTexts + "KVA makes 200 replikas.\n\n\n\n" + kAll);
    ASSERT_EQ(rows.size(), 3U + 18U);
    EXPECT_EQ(rows[2], "heterogeneity_replicates|||||200");
}

TEST(Heterogeneity, EmptySheetHasNoRows) {
    EXPECT_THAT(rowsOf(kHeterogeneity, ""), IsEmpty());
}

TEST(Heterogeneity, FaultsAreTold) {
    EXPECT_EQ(faultOf(kHeterogeneity, kTexts + kPairs.substr(0, kPairs.size() - 1)),
              "line 9: 7 cells instead of 8");
    EXPECT_EQ(faultOf(kHeterogeneity, "something\n"), "line 1: not a line of this sheet");
    EXPECT_EQ(faultOf(kHeterogeneity, "Analysis takes x Loci out of 9 Loci total.\n"),
              "line 1: not a line of this sheet");
    EXPECT_EQ(faultOf(kHeterogeneity, "KVA made replikas.\n"), "line 1: not a line of this sheet");
}

// --- Error report -----------------------------------------------------------------------------

namespace {

const char* const kReport = "Errorreport.txt";
const std::string kHead = "This file is a log-file of possible errors in your dataset.\n"
                          "What you find here:\n"
                          "- Unexpected Mutationsteps/The real Mutationsteps.\n"
                          "- Large Gaps in your Data (>5xMutationstep OR >15 bp)\n"
                          "- Unexpected short/long Allels (possible type errors!)[<35,>300]\n";

// The rows behind the four limits.
std::vector<std::string> remarks(const std::string& lines) {
    auto rows = rowsOf(kReport, kHead + lines);
    EXPECT_GE(rows.size(), 4U);
    rows.erase(rows.begin(), rows.begin() + 4);
    return rows;
}

} // namespace

TEST(ErrorReport, LimitsStandInTheHead) {
    EXPECT_THAT(rowsOf(kReport, kHead),
                ElementsAre("report_limit_gap_steps|||||5", "report_limit_gap_length|||||15",
                            "report_limit_allele_short|||||35",
                            "report_limit_allele_long|||||300"));
}

TEST(ErrorReport, EachRemarkIsAStatistic) {
    EXPECT_THAT(remarks("\nL1,|Mutationsteps found:2|\nL2,|Incorrect Mutationsteps:1 instead of 2|"
                        "Large Allelgap detected:72|\nL3,|Mutationsteps to large:8 instead of 4|"
                        "Found to short Allel(s):20|Found to long Allel(s):400|\n"
                        "L4,|Found incompatible Mutationstep:3 !|\nL5,|monomorphic\nL6,|"),
                ElementsAre("report_step_found|||L1||2", "report_step_too_small|||L2||1",
                            "report_step_expected|||L2||2", "report_gap_large|||L2||72",
                            "report_step_too_large|||L3||8", "report_step_expected|||L3||4",
                            "report_allele_short|||L3||20", "report_allele_long|||L3||400",
                            "report_step_incompatible|||L4||3", "report_monomorphic|||L5||1"));
}

// A name may hold what stands around it.
TEST(ErrorReport, NamesEndWithTheLastComma) {
    EXPECT_THAT(remarks("\na, b,|monomorphic\n,|monomorphic"),
                ElementsAre("report_monomorphic|||a, b||1", "report_monomorphic|||||1"));
}

TEST(ErrorReport, UnknownAndCutRemarksAreTold) {
    EXPECT_EQ(faultOf(kReport, kHead + "\nL1,|Found to short Allel(s):2"),
              "line 7: the sheet is cut off here");
    EXPECT_EQ(faultOf(kReport, kHead + "\nL1,|Something:2|"),
              "line 7: a remark that this program does not write");
    EXPECT_EQ(faultOf(kReport, kHead + "\nL1|monomorphic"),
              "line 7: the name of a locus should stand in front");
    EXPECT_EQ(faultOf(kReport, kHead + "L1,|monomorphic"),
              "line 6: an empty line should stand here");
    EXPECT_EQ(faultOf(kReport, "a\nb\nc\nd\n"),
              "line 4: the limits of the report should stand here");
    EXPECT_EQ(faultOf(kReport, "a\n"),
              "line 2: the sheet ends, where the explanation should follow");
}
