// Sheets of samples and loci.
#include "rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using kva_test::faultOf;
using kva_test::readAs;
using kva_test::rowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

// --- Tables ---------------------------------------------------------------------------------

TEST(ClosedTable, CellBecomesARowWithItsSampleAndLocus) {
    EXPECT_THAT(rowsOf("Single_data/Hetexp.xls", "|L1|L2|\nTotal|0.5|0.25|\nA|n.d.|1.0|\n"),
                ElementsAre("heterozygosity_expected|Total||L1||0.5",
                            "heterozygosity_expected|Total||L2||0.25",
                            "heterozygosity_expected|A||L1||",
                            "heterozygosity_expected|A||L2||1.0"));
}

TEST(ClosedTable, PopulationsOfOneNameAndWithoutOneStayInOrder) {
    EXPECT_THAT(rowsOf("Single_data/Var.xls", "|L1|\nTotal|1|\nA|2|\n|3|\nA|4|\n"),
                ElementsAre("allele_variance|Total||L1||1", "allele_variance|A||L1||2",
                            "allele_variance|||L1||3", "allele_variance|A||L1||4"));
}

TEST(ClosedTable, GroupsAreNamedAsTheirRows) {
    EXPECT_THAT(rowsOf("Group_data/Vargroup.xls", "|L1|\n|L1b|\nGrp 01|2.5|\n", {"A", "B", "C"}),
                ElementsAre("group_allele_variance|Grp 01||L1||2.5"));
}

TEST(ClosedTable, DataWithoutLociHaveNoRows) {
    EXPECT_THAT(rowsOf("Single_data/Var.xls", "|\nTotal|\nA|\n"), IsEmpty());
}

TEST(ClosedTable, ShortRowIsAFaultAndGivesNoCell) {
    const auto read = readAs("Single_data/Var.xls", "|L1|L2|\nTotal|1|2|\nA|3|\n");
    EXPECT_THAT(read.rows,
                ElementsAre("allele_variance|Total||L1||1", "allele_variance|Total||L2||2"));
    EXPECT_EQ(read.fault, "line 3: 2 cells instead of 3");
}

TEST(ClosedTable, CellThatIsNoNumberIsShownCut) {
    EXPECT_EQ(faultOf("Single_data/Var.xls", "|L1|\nTotal|what|\n"),
              "line 2: \"what\" is no number");
    EXPECT_EQ(faultOf("Single_data/Var.xls", "|L1|\nTotal|" + std::string(5000, 'x') + "|\n"),
              "line 2: \"" + std::string(40, 'x') + "\" is no number");
}

TEST(ClosedTable, MissingPopulationsAreToldWhereTheirNumberIsKnown) {
    const std::string text = "|L1|\nTotal|1|\nA|2|\n";
    EXPECT_EQ(faultOf("Single_data/Var.xls", text, {"A", "B"}),
              "line 4: the sheet ends with population 1 of 2");
    EXPECT_EQ(faultOf("Single_data/Var.xls", text, {"A"}), "");
}

TEST(OpenTable, CellsBehindTheirTabs) {
    EXPECT_THAT(rowsOf("Resampling_data/HetRangeMin.xls", "|L1|L2|\nA|0.5|n.d.\n|0.1|0.2\n"),
                ElementsAre("heterozygosity_range|A||L1|min|0.5", "heterozygosity_range|A||L2|min|",
                            "heterozygosity_range|||L1|min|0.1",
                            "heterozygosity_range|||L2|min|0.2"));
}

TEST(OpenTable, LeastNumberOfAllelesIsNeverNegative) {
    EXPECT_THAT(rowsOf("Resampling_data/AlleleRangeMin.xls", "|L1|\nA|-1.000000\n"),
                ElementsAre("allele_number_range|A||L1|min|"));
    EXPECT_THAT(rowsOf("Resampling_data/AlleleRangeMean.xls", "|L1|\nA|-0.500000\n"),
                ElementsAre("allele_number_range|A||L1|mean|-0.500000"));
}

// --- Draws ----------------------------------------------------------------------------------

TEST(ReplicateTable, RowIsADrawOfThePopulationInTheName) {
    EXPECT_THAT(
        rowsOf("Resampling_data/North_HetRange.xls", "|L1|\n|L1b|\n1|0.5\n2|n.d.\n"),
        ElementsAre("heterozygosity_draw|North||L1|1|0.5", "heterozygosity_draw|North||L1|2|"));
}

TEST(ReplicateTable, NameOfTheFileIsTurnedBack) {
    EXPECT_THAT(rowsOf("Resampling_data/a_b_VarRange.xls", "|L1|\n1|2\n", {"x", "a/b", "y"}),
                ElementsAre("allele_variance_draw|a/b||L1|1|2"));
}

TEST(ReplicateTable, LastOfSeveralPopulationsHasTheFile) {
    EXPECT_THAT(rowsOf("Resampling_data/a_b_VarRange.xls", "|L1|\n1|2\n", {"a/b", "a_b"}),
                ElementsAre("allele_variance_draw|a_b||L1|1|2"));
}

TEST(ReplicateTable, RowWithoutItsNumberIsAFault) {
    EXPECT_EQ(faultOf("Resampling_data/A_HetRange.xls", "|L1|\nA|0.5\n"),
              "line 2: no number of a replicate in front");
}

// --- Alleles --------------------------------------------------------------------------------

TEST(AlleleList, AlleleStandsAsReplicate) {
    EXPECT_THAT(rowsOf("Allelecount/Allelecount.xls", "|L1|L1b|L2|L2b\n"
                                                      "Total|104|3|88|3|\n"
                                                      "|106|1|||\n\n\n"
                                                      "A|104|3|88|3|\n"
                                                      "|106|1|||\n\n"),
                ElementsAre("allele_count|Total||L1|104|3", "allele_count|Total||L2|88|3",
                            "allele_count|Total||L1|106|1", "allele_count|A||L1|104|3",
                            "allele_count|A||L2|88|3", "allele_count|A||L1|106|1"));
}

TEST(AlleleList, OneColumnDataHaveEmptyCellsInTheHead) {
    EXPECT_THAT(
        rowsOf("Allelecount/Allelefrequencies.xls", "|L1||L2|\nTotal|7|0.5|9|1.0|\n\n"),
        ElementsAre("allele_frequency|Total||L1|7|0.5", "allele_frequency|Total||L2|9|1.0"));
}

TEST(AlleleList, PopulationWithoutAllelesIsANameAlone) {
    EXPECT_THAT(rowsOf("Allelecount/Allelecount.xls",
                       "|L1|\nTotal|7|2|\n\n\nVoid\n\nB|7|2|\n\n\n|7|1|\n\n"),
                ElementsAre("allele_count|Total||L1|7|2", "allele_count|B||L1|7|2",
                            "allele_count|||L1|7|1"));
}

TEST(AlleleList, SheetThatEndsInABlockIsTold) {
    EXPECT_EQ(faultOf("Allelecount/Allelecount.xls", "|L1|\nTotal|7|2|\n"),
              "line 3: the sheet ends inside a block");
}

TEST(AlleleList, PairsAndBlocksAreWhole) {
    const char* const sheet = "Allelecount/Allelecount.xls";
    EXPECT_EQ(faultOf(sheet, "|L1|\nTotal||2|\n\n"), "line 2: a value without its allele");
    EXPECT_EQ(faultOf(sheet, "|L1|\nTotal|7||\n\n"), "line 2: \"\" is no number");
    EXPECT_EQ(faultOf(sheet, "|L1|\nTotal|7|2|\nA|8|1|\n\n"), "line 3: a name inside a block");
    EXPECT_EQ(faultOf(sheet, "|L1|\nTotal|7|\n\n"), "line 2: 2 cells instead of 3");
    EXPECT_EQ(faultOf(sheet, "Total|7|2|\n\n"), "line 1: no head of locus names");
    EXPECT_EQ(faultOf(sheet, ""), "line 1: the sheet has no head");
}

// --- Richness and Gst -------------------------------------------------------------------------

namespace {

const char* const kRichness = "Single_data/AllelicRichness.xls";
const std::string kRichnessTop = "|L1|\nTotal|2.5|\nA|2.0|\n";
const std::string kRichnessRest = "\nStd. Ind. Number|2.0|\n\nVariance of allelic richness\n"
                                  "|L1|\nTotal|0.25|\nA|n.d.|\n";

const std::string kGst = "|L1|\nGst|0.1\nGst'|0.2\n\nGst(max)|0.3\nHs|0.4\nHt|0.5\nHt(max)|0.6\n\n"
                         "|Gst|Gst'\nGst Hamrick and Godt|0.7|0.8\nGst Nei|0.9|n.d.\n";

} // namespace

TEST(Richness, HasReferencesAndVariances) {
    EXPECT_THAT(rowsOf(kRichness, kRichnessTop + kRichnessRest),
                ElementsAre("allelic_richness|Total||L1||2.5", "allelic_richness|A||L1||2.0",
                            "allelic_richness_reference|||L1||2.0",
                            "allelic_richness_variance|Total||L1||0.25",
                            "allelic_richness_variance|A||L1||"));
}

TEST(Richness, ReferenceThatNoSampleReachesIsEmpty) {
    const auto read = readAs(kRichness, kRichnessTop + "\nStd. Ind. Number|500000.000000|\n");
    EXPECT_EQ(read.rows.back(), "allelic_richness_reference|||L1||");
}

TEST(Richness, PartsThatAreMissingAreTold) {
    EXPECT_EQ(faultOf(kRichness, kRichnessTop),
              "line 4: the sheet ends, where the reference should follow");
    EXPECT_EQ(faultOf(kRichness, kRichnessTop + "\nStd. Ind. Number|2.0|\n"),
              "line 6: the sheet ends, where the variance should follow");
    EXPECT_EQ(faultOf(kRichness, kRichnessTop + "\nElse|2.0|\n"),
              "line 5: no reference of the richness");
    EXPECT_EQ(faultOf(kRichness, kRichnessTop + kRichnessRest.substr(0, kRichnessRest.rfind("A|"))),
              "line 10: the sheet ends with sample 1 of 2");
}

TEST(Gst, RowsOfLociAndTwoOverAll) {
    EXPECT_THAT(rowsOf("Single_data/GST.xls", kGst),
                ElementsAre("gst|||L1||0.1", "gst_prime|||L1||0.2", "gst_max|||L1||0.3",
                            "gst_hs|||L1||0.4", "gst_ht|||L1||0.5", "gst_ht_max|||L1||0.6",
                            "gst_mean_of_ratios|||||0.7", "gst_prime_mean_of_ratios|||||0.8",
                            "gst_ratio_of_means|||||0.9", "gst_prime_ratio_of_means|||||"));
}

// Wherever whole lines are missing at the end, the sheet is told to be wrong.
TEST(Gst, EveryCutIsTold) {
    for (std::size_t end = kGst.rfind('\n'); end > 0 && end != std::string::npos;
         end = kGst.rfind('\n', end - 1)) {
        if (end + 1 < kGst.size()) {
            EXPECT_NE(faultOf("Single_data/GST.xls", kGst.substr(0, end + 1)), "") << end;
        }
    }
}

TEST(Gst, RowsAreInTheirOrder) {
    EXPECT_EQ(faultOf("Single_data/GST.xls", "|L1|\nHs|0.1\n"),
              "line 2: \"Gst\" should stand in front");
}

// --- Long sheets --------------------------------------------------------------------------------

namespace {

const std::string kSummaryColumns =
    "|Het obs|Het exp|Het RD|Var|VarRD|Var repeatnumber|Var repeatRD|ShannonID|MinAllele|"
    "MeanAllele|MaxAllele|MinRepeat|MeanRepeat|MaxRepeat|Analys.Chrom.|Effect.Chrom.|Num.Alleles|"
    "Max.obs.Alleles|SMM Exp.Num.Alleles|IAN Exp.Num.Alleles|Hs Nei|Fis,Pop|Frequences\n";
const std::string kGroupColumns =
    "|Het exp|Het exp RD|Var|VarRD|Var repeatnumber|Var repeatRD|MinAllele|MeanAllele|MaxAllele|"
    "MinRepeat|MeanRepeat|MaxRepeat\n";

// 22 cells: 1, 2 and so on, but -0.25 as variance in repeats with random discard, and no Hs.
const std::string kSummaryCells =
    "1|2|3|4|5|6|-0.25|8|9|10|11|12|13|14|15|16|17|18|19|20|n.d.|-22|";

} // namespace

TEST(Summary, ColumnsAreStatisticsAndFrequenciesAreNumbered) {
    EXPECT_THAT(
        rowsOf("Summary.xls",
               "Locus name|Pop.name" + kSummaryColumns + "L1|A|" + kSummaryCells + "0.75|0.25|\n"),
        ElementsAre("heterozygosity_observed|A||L1||1", "summary_heterozygosity_expected|A||L1||2",
                    "summary_heterozygosity_expected_rd|A||L1||3",
                    "summary_allele_variance|A||L1||4", "summary_allele_variance_rd|A||L1||5",
                    "summary_repeat_variance|A||L1||6", "summary_repeat_variance_rd|A||L1||",
                    "summary_shannon|A||L1||8", "summary_allele_min|A||L1||9",
                    "summary_allele_mean|A||L1||10", "summary_allele_max|A||L1||11",
                    "repeat_min|A||L1||12", "repeat_mean|A||L1||13", "repeat_max|A||L1||14",
                    "summary_gene_copies|A||L1||15", "summary_gene_copies_effective|A||L1||16",
                    "summary_allele_number_rd|A||L1||17", "allele_number_observed|A||L1||18",
                    "summary_allele_number_expected_smm|A||L1||19",
                    "summary_allele_number_expected_iam|A||L1||20", "heterozygosity_nei|A||L1||",
                    "fis_population|A||L1||-22", "summary_allele_frequency|A||L1|1|0.75",
                    "summary_allele_frequency|A||L1|2|0.25"));
}

TEST(Summary, SecondNamesOfLociArePassedOver) {
    const auto rows = rowsOf("Summary.xls", "Locus name1|Locus name2|Pop.name" + kSummaryColumns +
                                                "L1|L1b|A|" + kSummaryCells + "\n");
    ASSERT_EQ(rows.size(), 22U);
    EXPECT_EQ(rows[0], "heterozygosity_observed|A||L1||1");
}

TEST(Summary, AnotherHeadIsAFault) {
    EXPECT_EQ(faultOf("Summary.xls", "Locus name|Pop.name|Het obs\n"),
              "line 1: another head than this program writes");
    EXPECT_EQ(faultOf("Summary.xls", ""), "line 1: the sheet has no head");
}

TEST(Summary, ShortAndMissingRowsAreTold) {
    const std::string head = "Locus name|Pop.name" + kSummaryColumns;
    EXPECT_EQ(faultOf("Summary.xls", head + "L1|A|1|2|\n"), "line 2: only 4 cells");
    EXPECT_EQ(faultOf("Summary.xls", head + "L1|A|" + kSummaryCells + "\n", {"A", "B"}),
              "line 3: the sheet ends with population 1 of 2");
}

TEST(GroupSummary, GroupStandsInTheNameOfTheSheet) {
    EXPECT_THAT(rowsOf("Group_data/SumGrp12.xls",
                       "Locus name" + kGroupColumns + "L1|0|-1|2|-1|3|-0.25|7|8|9|-1|4|5|\n"),
                ElementsAre("group_summary_heterozygosity_expected|Grp 12||L1||0",
                            "group_summary_heterozygosity_expected_rd|Grp 12||L1||",
                            "group_summary_allele_variance|Grp 12||L1||2",
                            "group_summary_allele_variance_rd|Grp 12||L1||",
                            "group_summary_repeat_variance|Grp 12||L1||3",
                            "group_summary_repeat_variance_rd|Grp 12||L1||",
                            "group_allele_min|Grp 12||L1||7", "group_allele_mean|Grp 12||L1||8",
                            "group_allele_max|Grp 12||L1||9", "group_repeat_min|Grp 12||L1||-1",
                            "group_repeat_mean|Grp 12||L1||4", "group_repeat_max|Grp 12||L1||5"));
}

TEST(GroupSummary, ShortRowIsAFault) {
    EXPECT_EQ(faultOf("Group_data/SumGrp01.xls", "Locus name" + kGroupColumns + "L1|0|\n"),
              "line 2: 2 cells instead of 13");
}
