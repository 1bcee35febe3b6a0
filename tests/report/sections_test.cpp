// The sections of the report of data that are put together by hand: what they say, and the numbers
// that they work out.
#include "report/report.h"
#include "report/sections.h"
#include "report/svg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kva {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

using Names = std::vector<std::string>;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// --- Data --------------------------------------------------------------------------------------

// Data of a folder without any number.
ReportData dataOf(const Names& populations, const Names& loci = {"L1"}) {
    ReportData data;
    data.folder = "result";
    data.populations = populations;
    data.loci = loci;
    data.alleles.assign(populations.size() + 1, std::vector<std::vector<AlleleCell>>(loci.size()));
    return data;
}

// So many names: P1, P2, ...
Names manyNames(std::size_t count) {
    Names names;
    for (std::size_t k = 1; k <= count; ++k) {
        names.push_back("P" + std::to_string(k));
    }
    return names;
}

// Adds rows of a statistic, of a locus if it is named.
void put(ReportData& data, const char* statistic, const Names& values, const char* locus = "") {
    for (const std::string& value : values) {
        data.rows[statistic].push_back({"", "", locus, "", value});
    }
}

// Adds a row of a statistic with its replicate.
void putReplicate(ReportData& data, const char* statistic, const char* replicate,
                  const char* value) {
    data.rows[statistic].push_back({"", "", "", replicate, value});
}

// Tests whose p-values after Holm are these; p is half of them, its error a tenth.
std::vector<RunRecord::Test> testsOf(const std::vector<double>& holm) {
    std::vector<RunRecord::Test> tests;
    tests.reserve(holm.size());
    for (const double p : holm) {
        tests.push_back({std::to_string(p / 2), std::to_string(p / 10), std::to_string(p), ""});
    }
    return tests;
}

// --- HTML --------------------------------------------------------------------------------------

using Write = bool (*)(const ReportData& data, std::string& html);

// What a section writes.
std::string htmlOf(Write write, const ReportData& data) {
    std::string html;
    EXPECT_TRUE(write(data, html));
    return html;
}

// Expects that a section has no numbers and leaves the page as it is.
void expectNothing(Write write, const ReportData& data) {
    std::string html = "before";
    EXPECT_FALSE(write(data, html));
    EXPECT_EQ(html, "before");
}

// The same HTML with tags alone, without their attributes. Data hold no "<" or ">".
std::string plain(const std::string& html) {
    std::string text;
    bool attributes = false;
    bool tag = false;
    for (const char c : html) {
        tag = c == '<' || (tag && c != '>');
        attributes = tag && (attributes || c == ' ');
        if (!attributes) {
            text += c;
        }
    }
    return text;
}

std::string note(const std::string& inner) {
    return "<p class=\"note\">" + inner + "</p>\n";
}

std::string paragraph(const std::string& inner) {
    return "<p>" + inner + "</p>\n";
}

// A row of a table in plain(), its label in front.
std::string row(const Names& cells) {
    std::string text = "<tr><th>" + cells.front() + "</th>";
    for (std::size_t c = 1; c < cells.size(); ++c) {
        text += "<td>" + cells[c] + "</td>";
    }
    return text + "</tr>";
}

// The heads of the columns of a table in plain().
std::string heads(const Names& names) {
    std::string text;
    for (const std::string& name : names) {
        text += "<th>" + name + "</th>";
    }
    return "<tr>" + text + "</tr></thead>";
}

std::size_t timesIn(const std::string& html, const std::string& text) {
    std::size_t times = 0;
    for (std::size_t at = html.find(text); at != std::string::npos; at = html.find(text, at + 1)) {
        ++times;
    }
    return times;
}

// --- What the record holds ---------------------------------------------------------------------

TEST(ReportData, HasNoTestsWithoutARecord) {
    const ReportData data = dataOf({"A", "B"});
    EXPECT_THAT(data.tests("fst_global"), IsEmpty());
    EXPECT_THAT(data.pairTests("fst_pairwise"), IsEmpty());
}

TEST(ReportData, FindsTestsByTheirStatistic) {
    ReportData data = dataOf({"A", "B"});
    data.record.emplace();
    data.record->tests["fst_global"] = testsOf({0.5});
    EXPECT_THAT(data.tests("fst_global"), SizeIs(1));
    EXPECT_THAT(data.tests("gst_global"), IsEmpty());
    EXPECT_THAT(data.tests("fst_global_locus"), IsEmpty());
}

TEST(ReportData, TestsOfPairsAreOneAPairOrNone) {
    ReportData data = dataOf({"A", "B", "C"}); // three pairs
    data.record.emplace();
    for (const std::size_t count : {0U, 2U, 4U}) {
        data.record->tests["fst_pairwise"] = testsOf(std::vector<double>(count, 0.5));
        EXPECT_THAT(data.pairTests("fst_pairwise"), IsEmpty()) << count;
        EXPECT_THAT(data.tests("fst_pairwise"), SizeIs(count));
    }
    data.record->tests["fst_pairwise"] = testsOf({0.1, 0.2, 0.3});
    EXPECT_THAT(data.pairTests("fst_pairwise"), SizeIs(3));
}

// --- The page ----------------------------------------------------------------------------------

// Pairs and F-statistics take two populations, a tree and coordinates three.
TEST(ReportPage, SectionsThatNoRunComputesSayHowManyPopulationsTheyTake) {
    const std::string two = note("This takes 2 or more populations.");
    const std::string three = note("This takes 3 or more populations.");
    for (const std::size_t populations : {1U, 2U, 3U}) {
        const std::string page = reportPage(dataOf(manyNames(populations)));
        EXPECT_EQ(timesIn(page, two), populations < 2 ? 2U : 0U) << populations;
        EXPECT_EQ(timesIn(page, three), populations < 3 ? 2U : 0U) << populations;
        // Individuals and the range of heterozygosity are not run either.
        EXPECT_EQ(timesIn(page, "Not run."), 2 * populations) << populations;
    }
}

// --- The run -----------------------------------------------------------------------------------

TEST(RunSection, WarningsOfTheRunAreNotes) {
    ReportData data = dataOf({"A"});
    data.record.emplace();
    data.record->warnings = {"row 7: <b> is no number", "no locus has two alleles"};
    EXPECT_THAT(htmlOf(writeRunSection, data),
                HasSubstr(note("Warning of the run: row 7: &lt;b&gt; is no number") +
                          note("Warning of the run: no locus has two alleles")));
}

TEST(RunSection, RowsWithoutAValueAreLeftOut) {
    ReportData data = dataOf({"A"});
    data.record.emplace();
    data.record->version = "4.05";
    const std::string html = plain(htmlOf(writeRunSection, data));
    EXPECT_THAT(html, HasSubstr(row({"Version of the program", "4.05"})));
    EXPECT_THAT(html, HasSubstr(row({"Result folder", "result"})));
    EXPECT_THAT(html, Not(HasSubstr("Seed of the random numbers")));
}

TEST(RunSection, FolderWithoutARecordSaysSo) {
    ReportData data = dataOf({"A"});
    data.folder = "cats&dogs_KVAresult00";
    const std::string html = htmlOf(writeRunSection, data);
    EXPECT_THAT(html, StartsWith("<p>The folder <code>cats&amp;dogs_KVAresult00</code> is of the "
                                 "program <code>kva</code> and has no record of the run"));
    EXPECT_THAT(html, Not(HasSubstr("<table")));
}

TEST(RunSection, LogIsOpenWhereItIsAllThereIs) {
    ReportData data = dataOf({"A"});
    data.log = "a < b";
    EXPECT_THAT(htmlOf(writeRunSection, data),
                AllOf(HasSubstr("<details open><summary>Log of the run"),
                      HasSubstr("<pre id=\"log\">a &lt; b</pre>")));
    data.record.emplace();
    EXPECT_THAT(htmlOf(writeRunSection, data), AllOf(HasSubstr("<details><summary>Log of the run"),
                                                     HasSubstr("<pre id=\"log\">a &lt; b</pre>")));
}

TEST(RunSection, FolderWithoutALogSaysSo) {
    const std::string html = htmlOf(writeRunSection, dataOf({"A"}));
    EXPECT_THAT(html, HasSubstr(note("There is no log, <code>KVA.log</code>.")));
    EXPECT_THAT(html, Not(HasSubstr("<pre")));
}

// --- The data ----------------------------------------------------------------------------------

// Two individuals in A, three in B: 4 and 6 gene copies at a locus where none is missing. At L2 A
// has two of 4, and B none, for which the sheet has no number.
ReportData missingData() {
    ReportData data = dataOf({"A", "B"}, {"L1", "L2"});
    data.individuals = {2, 3};
    put(data, "gene_copies", {"10", "2", "4", "2", "6", ""});
    return data;
}

// Missing are 2 of 8 in A, 6 of 12 in B, 8 of 20 in both.
TEST(DataSection, MissingGeneCopiesAreSharesOfAll) {
    const std::string html = htmlOf(writeDataSection, missingData());
    EXPECT_THAT(html, HasSubstr("<li><strong>2</strong> populations</li>\n"
                                "<li><strong>5</strong> individuals</li>\n"
                                "<li><strong>2</strong> loci</li>\n"
                                "<li><strong>0</strong> alleles of all loci</li>\n"
                                "<li><strong>40.00 %</strong> of the gene copies missing</li>\n"));
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "2", "25.00"}) + "\n" + row({"B", "3", "50.00"})));
}

// Of nine steps a half is above six: 1, 2, 5, 10, 20 and 30 %.
TEST(DataSection, CellsAreTheDarkerTheMoreIsMissing) {
    const std::string html = htmlOf(writeDataSection, missingData());
    EXPECT_THAT(html,
                HasSubstr("<tr><th scope=\"row\">Total</th><td>10</td><td>2</td></tr>\n"
                          "<tr><th scope=\"row\">A</th><td>4</td><td class=\"h6\">2</td></tr>\n"
                          "<tr><th scope=\"row\">B</th><td>6</td><td class=\"h9\"></td></tr>\n"));
    EXPECT_THAT(html,
                HasSubstr("<p>Coloured cells: gene copies are missing, the darker the more."));
}

TEST(DataSection, WithoutTheGenepopFileNothingIsKnownOfIndividuals) {
    ReportData data = missingData();
    data.individuals.clear();
    const std::string html = htmlOf(writeDataSection, data);
    EXPECT_THAT(html, HasSubstr(note("The number of individuals is not known: "
                                     "<code>Formats&amp;Data/Genepop.gen</code> is not in the "
                                     "folder.")));
    for (const char* words : {"</strong> individuals", " missing", "id=\"sizes\"", "Coloured"}) {
        EXPECT_THAT(html, Not(HasSubstr(words)));
    }
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "4", "2"}))); // and no cell is coloured
    EXPECT_THAT(html, Not(HasSubstr("<td class=\"h")));
}

TEST(DataSection, OneOfEachIsNoPlural) {
    ReportData data = dataOf({"A"});
    data.individuals = {1};
    data.alleles[0][0] = {{"100", "2", "1"}};
    EXPECT_THAT(htmlOf(writeDataSection, data),
                HasSubstr("<li><strong>1</strong> population</li>\n"
                          "<li><strong>1</strong> individual</li>\n"
                          "<li><strong>1</strong> locus</li>\n"
                          "<li><strong>1</strong> allele of all loci</li>\n"));
}

// --- The checklist of alleles ------------------------------------------------------------------

// Data with an error report that has no remark yet.
ReportData remarkedData(const Names& populations, const Names& loci = {"L1"}) {
    ReportData data = dataOf(populations, loci);
    put(data, "report_limit_gap_steps", {"5"});
    put(data, "report_limit_gap_length", {"20"});
    put(data, "report_limit_allele_short", {"60"});
    put(data, "report_limit_allele_long", {"400"});
    return data;
}

TEST(Checklist, WithoutAnErrorReportSaysSo) {
    EXPECT_THAT(htmlOf(writeDataSection, dataOf({"A"})),
                HasSubstr(note("There is no error report.")));
}

TEST(Checklist, WithoutARemarkSaysSo) {
    const std::string html = htmlOf(writeDataSection, remarkedData({"A"}));
    EXPECT_THAT(html,
                HasSubstr(paragraph("The error report remarks on gaps of more than 5 repeats or "
                                    "more than 20 base pairs, on alleles below 60 or above 400, "
                                    "and on steps that do not fit the repeat length.") +
                          paragraph("It has no remark on these data.")));
    EXPECT_THAT(html, Not(HasSubstr("id=\"suspicious\"")));
}

// By locus, and of a locus in the order of the catalogue; only remarks on the repeat length have it
// beside them.
TEST(Checklist, HasARowForEachRemark) {
    ReportData data = remarkedData({"A"}, {"L1", "L2"});
    put(data, "report_allele_short", {"40"}, "L1");
    put(data, "report_step_too_small", {"1"}, "L1");
    put(data, "report_step_expected", {"2"}, "L1");
    put(data, "report_monomorphic", {""}, "L2");
    put(data, "report_step_found", {"3"}, "L2");
    const std::string box = "<tr><td><input></td>";
    const auto cells = [&box](const Names& texts) {
        return box + row(texts).substr(std::string("<tr>").size()) + "\n";
    };
    EXPECT_THAT(plain(htmlOf(writeDataSection, data)),
                HasSubstr(cells({"L1", "smallest step between alleles is below the repeat length",
                                 "1", "2", ""}) +
                          cells({"L1", "very short allele", "40", "", ""}) +
                          cells({"L2", "repeat length not given; smallest step between alleles",
                                 "3", "", ""}) +
                          cells({"L2", "fewer than two alleles", "", "", ""})));
}

TEST(Checklist, NamesFivePopulationsThatHoldAnAllele) {
    ReportData data = remarkedData(manyNames(7));
    put(data, "report_allele_long", {"500"}, "L1");
    for (std::size_t p = 1; p <= 7; ++p) { // the second has none
        data.alleles[p][0] = {{"500", p == 2 ? "0" : std::to_string(p), ""}};
    }
    EXPECT_THAT(htmlOf(writeDataSection, data),
                HasSubstr(">P1 (1), P3 (3), P4 (4), P5 (5), P6 (6) and 1 more</td>"));
}

// 100 110 120 130 140 have four gaps of 10; the one of 30 up to 170 is another length.
TEST(Checklist, NamesBothSidesOfThreeGaps) {
    ReportData data = remarkedData({"A", "B"});
    put(data, "report_gap_large", {"10"}, "L1");
    for (const char* allele : {"100", "110", "120", "130", "140", "170"}) {
        data.alleles[0][0].push_back({allele, "3", ""});
        data.alleles[1][0].push_back({allele, "1", ""});
    }
    data.alleles[2][0] = {{"110", "2", ""}};
    EXPECT_THAT(htmlOf(writeDataSection, data),
                HasSubstr(">100 in A (1), 110 in A (1), B (2); 110 in A (1), B (2), 120 in A (1); "
                          "120 in A (1), 130 in A (1); and 1 more</td>"));
}

// --- Diversity ---------------------------------------------------------------------------------

// Richness of A 2 and 3 with variances 0.16 and 0.09: mean 2.5, error sqrt(0.25)/2 = 0.25; of B at
// one locus, error sqrt(0.04)/1; C has no variance there, D no value at all. He of A is 0.5 at one
// locus alone. Numbers of alleles come locus by locus, without a total.
TEST(DiversitySection, MeansAreOfTheLociThatHaveAValue) {
    ReportData data = dataOf({"A", "B", "C", "D"}, {"L1", "L2"});
    put(data, "allelic_richness", {"3", "3", "2", "3", "2", "", "", "4", "", ""});
    put(data, "allelic_richness_variance", {"", "", "0.16", "0.09", "0.04", "0.5", "", "", "", ""});
    put(data, "heterozygosity_expected", {"", "", "", "0.5", "0.25", "0.5", "", "", "", ""});
    put(data, "allele_number_observed", {"2", "3", "", "", "5", "", "4", ""});
    EXPECT_THAT(plain(htmlOf(writeDiversitySection, data)),
                HasSubstr(row({"A", "", "0.5000", "2.5000", "0.2500", "3.5000"}) + "\n" +
                          row({"B", "", "0.3750", "2.0000", "0.2000", "3.0000"}) + "\n" +
                          row({"C", "", "", "4.0000", "", "4.0000"}) + "\n" +
                          row({"D", "", "", "", "", ""}) + "\n"));
}

TEST(DiversitySection, FourThousandPointsAreTheMost) {
    EXPECT_THAT(htmlOf(writeDiversitySection, dataOf(manyNames(40), manyNames(100))),
                HasSubstr("</strong> Grey: a locus. Orange: "));
    EXPECT_THAT(htmlOf(writeDiversitySection, dataOf(manyNames(40), manyNames(101))),
                HasSubstr("</strong> Orange: the mean of the loci; "));
}

TEST(DiversitySection, PictureOfMoreThanFortyPopulationsIsFolded) {
    const std::string folded = "<details><summary>Diversity of the populations</summary>";
    EXPECT_THAT(htmlOf(writeDiversitySection, dataOf(manyNames(40))), Not(HasSubstr(folded)));
    EXPECT_THAT(htmlOf(writeDiversitySection, dataOf(manyNames(41))), StartsWith(folded));
}

TEST(DiversitySection, HasTheReferenceOfTheRichnessWhereThereIsOne) {
    ReportData data = dataOf({"A"});
    EXPECT_THAT(htmlOf(writeDiversitySection, data), Not(HasSubstr("richness-reference")));
    put(data, "allelic_richness_reference", {"7.5"}, "L1");
    const std::string html = htmlOf(writeDiversitySection, data);
    EXPECT_THAT(html, HasSubstr("id=\"richness-reference\""));
    EXPECT_THAT(plain(html), HasSubstr(row({"L1", "7.5"})));
}

// --- Alleles -----------------------------------------------------------------------------------

TEST(AlleleSection, WithoutAnAlleleSaysSo) {
    EXPECT_EQ(htmlOf(writeAlleleSection, dataOf({"A", "B"}, {"L1", "L2"})),
              note("There is no allele."));
}

TEST(AlleleSection, AlleleThatAPopulationLacksHasNoCell) {
    ReportData data = dataOf({"A", "B"}, {"L1", "L2"});
    data.alleles[0][1] = {{"90", "1", "0.25"}, {"92", "3", "0.75"}};
    data.alleles[1][1] = {{"92", "2", "1"}};
    data.alleles[2][1] = {{"90", "1", "0.5"}, {"92", "1", "0.5"}};
    const std::string html = plain(htmlOf(writeAlleleSection, data));
    EXPECT_THAT(html, HasSubstr(heads({"Population", "90", "92"}) + "\n<tbody>\n" +
                                row({"Total", "0.25", "0.75"}) + "\n" + row({"A", "", "1"}) + "\n" +
                                row({"B", "0.5", "0.5"}) + "\n"));
    EXPECT_THAT(html, HasSubstr(row({"Total"}) + "\n" + row({"A"}) + "\n" + row({"B"}))); // L1
}

// --- Pairs -------------------------------------------------------------------------------------

// Fst of four populations, in the order of the lower triangle: AB, AC, BC, AD, BD, CD.
ReportData pairData() {
    ReportData data = dataOf({"A", "B", "C", "D"});
    put(data, "fst_pairwise", {"0.1", "0.2", "0.3", "0.4", "0.5", "0.6"});
    return data;
}

// The same with tests in the order of the record: AB, AC, AD, BC, BD, CD.
ReportData testedPairs(const char* permutations, const char* sequentialHits = "0") {
    ReportData data = pairData();
    data.record.emplace();
    data.record->settings = {{"permutations", permutations}, {"sequential_hits", sequentialHits}};
    data.record->tests["fst_pairwise"] = testsOf({0.01, 0.02, 0.03, 0.04, 0.05, 0.06});
    return data;
}

TEST(PairSection, OfOnePopulationOrWithoutAllPairsIsNone) {
    expectNothing(writePairSection, dataOf({"A"}));
    expectNothing(writePairSection, dataOf({"A", "B"}));
    ReportData data = dataOf({"A", "B", "C"});
    put(data, "fst_pairwise", {"0.1", "0.2"});
    expectNothing(writePairSection, data);
}

TEST(PairSection, WithoutTestsSaysSo) {
    const std::string html = htmlOf(writePairSection, pairData());
    EXPECT_THAT(html, StartsWith(note("There were no tests of pairs; <code>--permutations "
                                      "10000</code> of <code>kvatool run</code> makes them.")));
    EXPECT_THAT(html, HasSubstr("Below the diagonal Fst; there were no tests.</figcaption>"));
    EXPECT_THAT(plain(html), HasSubstr(heads({"Population 1", "Population 2", "Fst"})));
}

TEST(PairSection, TestsOfTheRecordStandBesideTheirPair) {
    const std::string html = htmlOf(writePairSection, testedPairs("9999"));
    EXPECT_THAT(plain(html), HasSubstr(row({"B", "C", "0.3", "0.02", "0.004", "0.04", ""}) + "\n" +
                                       row({"A", "D", "0.4", "0.015", "0.003", "0.03", ""})));
    EXPECT_THAT(html, HasSubstr("data-v=\"0.015000\">0.015</td>"));
    EXPECT_THAT(html,
                HasSubstr("Below the diagonal Fst, above it the p-value, adjusted after Holm, "
                          "bold where it is 0.05 or less."));
    // In the map five of six, and the head of the scale.
    EXPECT_EQ(timesIn(html, "font-weight=\"bold\""), 6U);
}

TEST(PairSection, WrongNumberOfTestsLeavesThoseOfTheSheet) {
    ReportData data = testedPairs("9");
    data.record->tests["fst_pairwise"].pop_back();
    put(data, "fst_pairwise_p", {"0.01", "0.02", "0.03", "0.04", "0.05", "0.06"});
    put(data, "fst_pairwise_p_bonferroni", {"0.06", "0.12", "0.18", "0.24", "0.3", "0.36"});
    const std::string html = htmlOf(writePairSection, data);
    EXPECT_THAT(plain(html), HasSubstr(heads({"Population 1", "Population 2", "Fst",
                                              "p of the sheet", "p times pairs, of the sheet"})));
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "D", "0.4", "0.04", "0.24"})));
    EXPECT_THAT(html, HasSubstr("above it the p-value, times the number of pairs (n.s.: above "
                                "0.05), bold where it is 0.05 or less."));
    EXPECT_THAT(html, Not(HasSubstr("class=\"note\"")));
}

// The sheet has "n.s." for AC, whose p times pairs is above 0.05, and nothing at all for BC.
TEST(PairSection, MapTellsOnlyOfTestedPairsThatTheyAreNotSignificant) {
    ReportData data = dataOf({"A", "B", "C"});
    put(data, "fst_pairwise", {"0.1", "0.2", ""});
    put(data, "fst_pairwise_p", {"0.01", "0.5", ""});
    put(data, "fst_pairwise_p_bonferroni", {"0.03", "", ""});
    EXPECT_EQ(timesIn(plain(htmlOf(writePairSection, data)), "<text>n.s.</text>"), 1U);
    data.record.emplace();
    data.record->tests["fst_pairwise"] = testsOf({0.02, 0.7});
    data.record->tests["fst_pairwise"].emplace_back(); // the record has none, either
    EXPECT_EQ(timesIn(plain(htmlOf(writePairSection, data)), "<text>n.s.</text>"), 0U);
}

std::string tooFew(const char* permutations, const char* pairs) {
    return note(std::string(permutations) + " permutations are too few for a p-value of 0.05 or " +
                "less after Holm with " + pairs + ", whatever the data.");
}

// The least p is 1/(permutations + 1), the least after Holm that times 6: 0.05 with 119.
TEST(PairSection, TooFewPermutationsForThePairsAreTold) {
    EXPECT_THAT(htmlOf(writePairSection, testedPairs("118")), StartsWith(tooFew("118", "6 pairs")));
    EXPECT_THAT(htmlOf(writePairSection, testedPairs("119")), Not(HasSubstr("too few")));
    EXPECT_THAT(htmlOf(writePairSection, testedPairs("118", "5")), Not(HasSubstr("too few")));
}

// A pair without a p-value is none of those that Holm's method counts: 1/(permutations + 1) times 1
// is 0.05 with 19.
TEST(PairSection, PermutationsAreForThePairsThatHaveAValue) {
    for (const auto& [permutations, start] :
         {std::pair("18", tooFew("18", "1 pair")), std::pair("19", std::string("<figure"))}) {
        ReportData data = testedPairs(permutations);
        data.record->tests["fst_pairwise"].assign(6, {});
        data.record->tests["fst_pairwise"][2] = testsOf({0.06})[0];
        EXPECT_THAT(htmlOf(writePairSection, data), StartsWith(start));
    }
}

// Fst of 0.125 of each of many pairs, two of which differ.
ReportData manyPairs(std::size_t populations) {
    const std::size_t pairs = populations * (populations - 1) / 2;
    ReportData data = dataOf(manyNames(populations));
    put(data, "fst_pairwise", Names(pairs, "0.125"));
    std::vector<double> holm(pairs, 0.5);
    holm[0] = holm[7] = 0.05;
    data.record.emplace();
    data.record->tests["fst_pairwise"] = testsOf(holm);
    return data;
}

TEST(PairSection, MapOfFortyPopulationsHasNumbers) {
    const std::string html = htmlOf(writePairSection, manyPairs(40));
    EXPECT_THAT(html, HasSubstr("bold where it is 0.05 or less."));
    EXPECT_EQ(timesIn(html, "fill=\"#555555\""), 0U);
    EXPECT_EQ(timesIn(plain(html), ">0.125</text>"), 780U); // 40 * 39 / 2
}

TEST(PairSection, MapOfMorePopulationsHasNone) {
    const std::string html = htmlOf(writePairSection, manyPairs(41));
    EXPECT_THAT(html, HasSubstr("Below the diagonal Fst, above it dark where the p-value, adjusted "
                                "after Holm, is 0.05 or less."));
    EXPECT_EQ(timesIn(html, "fill=\"#555555\""), 2U);
    EXPECT_EQ(timesIn(plain(html), ">0.125</text>"), 0U);
}

// --- All populations together ------------------------------------------------------------------

// The five statistics over all loci and at two.
ReportData globalData() {
    ReportData data = dataOf({"A", "B"}, {"L1", "L2"});
    const char* const names[] = {"fst", "fit", "fis", "gst", "gst_prime"};
    for (int k = 0; k < 5; ++k) {
        const std::string name = std::string(names[k]) + "_global";
        const std::string value = "0." + std::to_string(k + 1);
        put(data, name.c_str(), {value});
        put(data, (name + "_locus").c_str(), {value + "1"}, "L1");
        put(data, (name + "_locus").c_str(), {value + "2"}, "L2");
    }
    return data;
}

TEST(GlobalSection, WithoutAValueIsNone) {
    expectNothing(writeGlobalSection, dataOf({"A", "B"}));
}

TEST(GlobalSection, OfOnePopulationIsNone) {
    ReportData data = dataOf({"A"});
    put(data, "fst_global", {""});
    expectNothing(writeGlobalSection, data);
}

TEST(GlobalSection, WithoutTestsAndLimitsSaysSo) {
    const std::string html = htmlOf(writeGlobalSection, globalData());
    EXPECT_THAT(
        html, HasSubstr(note("Limits of the global values were not computed. The menu of "
                             "<code>kva</code> does it: F-statistics, heterogeneity among loci.") +
                        note("There were no tests; <code>--permutations 10000</code> of "
                             "<code>kvatool run</code> makes them.")));
    EXPECT_THAT(html, HasSubstr("</strong> Orange: over all loci; blue: a locus.</figcaption>"));
    EXPECT_THAT(plain(html), HasSubstr(heads({"Statistic", "Value"}) + "\n<tbody>\n" +
                                       row({"Fst", "0.1"}) + "\n" + row({"Fit", "0.2"})));
    EXPECT_THAT(plain(html), HasSubstr(row({"L2", "0.12", "0.22", "0.32", "0.42", "0.52"})));
}

// The record has tests of Fst and Gst over all loci, of Fst at the first locus, of Gst at both.
TEST(GlobalSection, PValuesAreThoseOfTheSheetAndOfTheRecord) {
    ReportData data = globalData();
    for (const char* name : {"fst", "gst", "gst_prime"}) {
        put(data, (std::string(name) + "_global_p").c_str(), {"0.01"});
        put(data, (std::string(name) + "_global_locus_p").c_str(), {"0.02", "0.03"});
    }
    data.record.emplace();
    data.record->tests["fst_global"] = testsOf({0.08});
    data.record->tests["gst_global"] = testsOf({0.06});
    data.record->tests["fst_global_locus"] = testsOf({0.4});
    data.record->tests["gst_global_locus"] = testsOf({0.6, 0.8});
    const std::string html = plain(htmlOf(writeGlobalSection, data));
    EXPECT_THAT(html, HasSubstr(heads({"Statistic", "Value", "p of the sheet", "p"}) +
                                "\n<tbody>\n" + row({"Fst", "0.1", "0.01", "0.04"}) + "\n" +
                                row({"Fit", "0.2", "", ""}) + "\n" + row({"Fis", "0.3", "", ""}) +
                                "\n" + row({"Gst", "0.4", "0.01", "0.03"}) + "\n" +
                                row({"Gst&#39;", "0.5", "0.01", ""}) + "\n"));
    EXPECT_THAT(html, HasSubstr(row({"L1", "0.11", "0.02", "0.2", "0.21", "0.31", "0.41", "0.02",
                                     "0.3", "0.51", "0.02", ""}) +
                                "\n" +
                                row({"L2", "0.12", "0.03", "", "0.22", "0.32", "0.42", "0.03",
                                     "0.4", "0.52", "0.03", ""})));
    EXPECT_THAT(html, Not(HasSubstr("There were no tests")));
}

TEST(GlobalSection, LimitsStandBesideFstFitAndFis) {
    ReportData data = globalData();
    for (const char* name :
         {"fst_global_heterogeneity", "fit_global_heterogeneity", "fis_global_heterogeneity"}) {
        const std::string begin = std::string("-0.") + (name[1] == 's' ? "1" : "2");
        putReplicate(data, name, "upper 99 %", (begin + "4").c_str());
        putReplicate(data, name, "lower 95 %", (begin + "1").c_str());
        putReplicate(data, name, "upper 95 %", (begin + "2").c_str());
        putReplicate(data, name, "lower 99 %", (begin + "3").c_str());
    }
    const std::string html = htmlOf(writeGlobalSection, data);
    EXPECT_THAT(html, HasSubstr("Orange: over all loci, with the 95 % limits over loci drawn at "
                                "random; blue: a locus."));
    EXPECT_THAT(html, Not(HasSubstr("Limits of the global values")));
    EXPECT_THAT(plain(html),
                HasSubstr(row({"Fst", "0.1", "-0.11", "-0.12", "-0.13", "-0.14"}) + "\n" +
                          row({"Fit", "0.2", "-0.21", "-0.22", "-0.23", "-0.24"})));
    EXPECT_THAT(plain(html), HasSubstr(row({"Gst", "0.4", "", "", "", ""})));
}

// A number of the first element that begins with some text.
double numberIn(const std::string& html, const std::string& element, const std::string& attribute) {
    const std::size_t begin = html.find(element);
    const std::size_t at = html.find(" " + attribute + "=\"", begin);
    return begin == std::string::npos ? kNone : std::stod(html.substr(at + attribute.size() + 3));
}

// Fst is 0.1, so that limits of 0.08 and 0.12 are a line as long on both sides of its circle.
TEST(GlobalSection, LimitsAreDrawnWhereTheyAre) {
    ReportData data = globalData();
    putReplicate(data, "fst_global_heterogeneity", "lower 95 %", "0.08");
    putReplicate(data, "fst_global_heterogeneity", "upper 95 %", "0.12");
    std::string html = htmlOf(writeGlobalSection, data);
    const std::size_t orange = html.find(std::string("stroke=\"") + std::string(kOrange));
    ASSERT_NE(orange, std::string::npos);
    html.erase(0, html.rfind("<line", orange));
    const double circle = numberIn(html, "<circle", "cx");
    const double length = circle - numberIn(html, "<line", "x1");
    EXPECT_GT(length, 5.0);
    EXPECT_NEAR(numberIn(html, "<line", "x2") - circle, length, 0.2); // rounded to tenths
}

// --- The tree ----------------------------------------------------------------------------------

PairDistances distancesOf(const Names& labels, const std::vector<double>& values) {
    PairDistances distances;
    distances.measure = "DAN";
    distances.labels = labels;
    distances.values = values;
    for (const double value : values) {
        distances.texts.push_back(std::isfinite(value) ? std::to_string(value) : "");
    }
    distances.replicatesRead = 1;
    return distances;
}

ReportData treeData(const Names& populations, const std::vector<double>& values) {
    ReportData data = dataOf(populations);
    data.ofPopulations = distancesOf(populations, values);
    return data;
}

// A tree of five populations; (a, b) and (d, e) are neighbours:
//
//      a --2--+                  +--2-- d
//             1 --3-- 2 --2-- 3 -+
//      b --3--+       |          +--1-- e
//                     4
//                     c
const Names kFivePops = {"a", "b", "c", "d", "e"};
const std::vector<double> kFive = {5, 9, 10, 9, 10, 8, 8, 9, 7, 3};

// The same with b and c in each other's place: (a, c) and (d, e).
const std::vector<double> kExchanged = {9, 5, 10, 9, 8, 10, 8, 7, 9, 3};

TEST(TreeSection, WithoutDistancesIsNone) {
    expectNothing(writeTreeSection, dataOf({"A", "B", "C"}));
}

TEST(TreeSection, OfTwoPopulationsHasTheirDistanceAlone) {
    for (const double distance : {0.5, kNone}) {
        const std::string html = htmlOf(writeTreeSection, treeData({"A", "B"}, {distance}));
        EXPECT_THAT(html, StartsWith(note("A tree takes three or more populations.") +
                                     "<details><summary>Distances DAN"));
        EXPECT_THAT(plain(html), HasSubstr(row({"A", "B", distance == 0.5 ? "0.500000" : ""})));
    }
}

// A at (3 + 4 - 5)/2 = 1 from the node, B at 2, C at 3.
TEST(TreeSection, OfThreePopulationsIsAStar) {
    const std::string html = plain(htmlOf(writeTreeSection, treeData({"A", "B", "C"}, {3, 4, 5})));
    EXPECT_THAT(html, HasSubstr(row({"A", "node 1", "1.000000"}) + "\n" +
                                row({"B", "node 1", "2.000000"}) + "\n" +
                                row({"C", "node 1", "3.000000"}) + "\n"));
}

TEST(TreeSection, TellsOfHowManyPairsThereIsNoDistance) {
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const std::string html = htmlOf(
        writeTreeSection, treeData({"A", "B", "C", "D"}, {0.1, kNone, 0.3, kInfinite, 0.5, 0.6}));
    EXPECT_THAT(html, StartsWith(note("There is no tree: the distance has no value for 2 of 6 "
                                      "pairs.")));
    EXPECT_THAT(html, Not(HasSubstr("<svg")));
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "C", ""}) + "\n" + row({"B", "C", "0.300000"})));
}

TEST(TreeSection, WithoutABootstrapTellsHowToMakeIt) {
    const std::string html = htmlOf(writeTreeSection, treeData(kFivePops, kFive));
    EXPECT_THAT(html, StartsWith(note("There is no bootstrap. <code>kvatool run DATA -o FOLDER2 "
                                      "--distances population:DAN --bootstrap 1000</code> makes "
                                      "the replicates, and <code>kvatool report --bootstrap "
                                      "FOLDER2</code> shows the support.")));
    EXPECT_THAT(html, HasSubstr("Neighbour joining of the distance DAN; the tree has no root. Bar: "
                                "distance.</figcaption>"));
    EXPECT_THAT(plain(html), HasSubstr(heads({"Node", "Its parent", "Length †"})));
    EXPECT_THAT(html, Not(HasSubstr("Shown is the distance")));
}

// (a, b) is joined in two of three trees, (d, e) in all: 67 and 100 %.
TEST(TreeSection, ReplicatesWithoutAValueAreLeftOutOfTheSupport) {
    ReportData data = treeData(kFivePops, kFive);
    std::vector<double> broken = kFive;
    broken[4] = kNone;
    data.ofPopulations.bootstrap = {kFive, broken, kExchanged, kFive};
    const std::string html = htmlOf(writeTreeSection, data);
    EXPECT_THAT(html, StartsWith(note("1 replicate with a distance without a value left out.") +
                                 "<figure"));
    EXPECT_THAT(html, HasSubstr(" Numbers: bootstrap support in percent of 3 replicates, where it "
                                "is 50 or more."));
    EXPECT_THAT(plain(html), HasSubstr(row({"a", "node 1", "2.000000", ""}) + "\n" +
                                       row({"b", "node 1", "3.000000", ""}) + "\n" +
                                       row({"c", "node 2", "4.000000", ""}) + "\n" +
                                       row({"d", "node 3", "2.000000", ""}) + "\n" +
                                       row({"e", "node 3", "1.000000", ""}) + "\n" +
                                       row({"node 1", "node 2", "3.000000", "67"}) + "\n" +
                                       row({"node 2", "node 3", "2.000000", "100"}) + "\n"));
    EXPECT_THAT(html, HasSubstr(")67:3"));
    EXPECT_EQ(timesIn(plain(html), "<text>67</text>"), 1U);
}

// (a, b) in one of two trees and in one of three: 33 % stand in the table, but not in the picture.
TEST(TreeSection, SupportBelowAHalfIsNotDrawn) {
    ReportData data = treeData(kFivePops, kFive);
    data.ofPopulations.bootstrap = {kExchanged, kFive};
    EXPECT_EQ(timesIn(plain(htmlOf(writeTreeSection, data)), "<text>50</text>"), 1U);
    data.ofPopulations.bootstrap = {kExchanged, kFive, kExchanged};
    const std::string html = plain(htmlOf(writeTreeSection, data));
    EXPECT_THAT(html, HasSubstr(row({"node 1", "node 2", "3.000000", "33"})));
    EXPECT_EQ(timesIn(html, "<text>33</text>"), 0U);
    EXPECT_EQ(timesIn(html, "<text>100</text>"), 1U);
}

TEST(TreeSection, WithoutAWholeReplicateHasNoSupport) {
    ReportData data = treeData(kFivePops, kFive);
    data.ofPopulations.bootstrap.assign(2, std::vector<double>(10, kNone));
    const std::string html = htmlOf(writeTreeSection, data);
    EXPECT_THAT(html, StartsWith(note("2 replicates with a distance without a value left out.")));
    EXPECT_THAT(html, Not(HasSubstr("bootstrap support")));
    EXPECT_THAT(plain(html), HasSubstr(heads({"Node", "Its parent", "Length †"})));
}

TEST(TreeSection, MeansOfReplicatesAreMarkedAsSuch) {
    ReportData data = treeData(kFivePops, kFive);
    data.ofPopulations.bootstrap = {kFive, kFive};
    data.ofPopulations.texts.clear();
    const std::string html = htmlOf(writeTreeSection, data);
    EXPECT_THAT(html, StartsWith(note("The folder holds the bootstrap replicates alone: the "
                                      "distances are their means.")));
    EXPECT_THAT(html, HasSubstr("Distances DAN, means of the bootstrap replicates"));
    EXPECT_THAT(plain(html), HasSubstr(heads({"Population 1", "Population 2", "Distance †"})));
    EXPECT_THAT(plain(html), HasSubstr(row({"d", "e", "3.000000"})));
}

TEST(TreeSection, NamesTheOtherDistancesOfTheFolder) {
    ReportData data = treeData({"A", "B"}, {0.5});
    data.ofPopulations.others = {"CAS", "DSG"};
    EXPECT_THAT(htmlOf(writeTreeSection, data),
                StartsWith(paragraph("Shown is the distance DAN. The folder has others, too: CAS, "
                                     "DSG; <code>--measure</code> chooses.")));
}

// --- Principal coordinates ---------------------------------------------------------------------

// The corners (2, 1), (2, -1), (-2, 1), (-2, -1): eigenvalues are the sums of squares, 16 and 4.
const std::vector<double> kRectangle = {2, 4, std::sqrt(20.0), std::sqrt(20.0), 4, 2};

// Individuals on the corners of many rectangles one in another, each of a population of its own.
ReportData individualData(std::size_t count) {
    ReportData data = dataOf(manyNames(count));
    data.ofIndividuals = distancesOf(manyNames(count), {});
    const auto at = [](std::size_t k) {
        const std::size_t ring = 1 + k / 4;
        const auto size = static_cast<double>(ring);
        return std::pair(k % 4 < 2 ? 2 * size : -2 * size, k % 2 == 0 ? size : -size);
    };
    for (std::size_t i = 0; i < count; ++i) {
        data.populationOf.push_back(i);
        for (std::size_t j = 0; j < i; ++j) {
            data.ofIndividuals.values.push_back(
                std::hypot(at(i).first - at(j).first, at(i).second - at(j).second));
        }
    }
    return data;
}

TEST(CoordinateSections, WithoutDistancesAreNone) {
    expectNothing(writePopulationCoordinates, individualData(4));
    expectNothing(writeIndividualCoordinates, treeData({"A", "B", "C", "D"}, kRectangle));
}

TEST(CoordinateSections, TellOfHowManyPairsThereIsNoDistance) {
    EXPECT_EQ(htmlOf(writePopulationCoordinates, treeData({"A", "B"}, {kNone})),
              note("There are no coordinates: the distance DAN has no value for 1 of 1 pair."));
    EXPECT_EQ(htmlOf(writePopulationCoordinates, treeData({"A", "B", "C"}, {kNone, 1, kNone})),
              note("There are no coordinates: the distance DAN has no value for 2 of 3 pairs."));
}

// Points at 0, 3 and 6 of a line have one axis, two populations never more.
TEST(CoordinateSections, OfFewerThanTwoAxesSaySo) {
    const std::string words = note("There are fewer than two principal coordinates.");
    EXPECT_EQ(htmlOf(writePopulationCoordinates, treeData({"A", "B", "C"}, {3, 6, 3})), words);
    EXPECT_EQ(htmlOf(writePopulationCoordinates, treeData({"A", "B"}, {1})), words);
    EXPECT_EQ(htmlOf(writePopulationCoordinates, treeData({"A"}, {})), words);
}

// The eigenvalues 16 and 4 are 80 and 20 % of their sum.
TEST(CoordinateSections, AxesHaveTheirShareOfTheVariance) {
    const std::string html =
        htmlOf(writePopulationCoordinates, treeData({"A", "B", "C", "D"}, kRectangle));
    EXPECT_THAT(html, HasSubstr(">Axis 1 (80.0 % of the variance)</text>"));
    EXPECT_THAT(html, HasSubstr(">Axis 2 (20.0 % of the variance)</text>"));
    EXPECT_THAT(html,
                HasSubstr("The first two principal coordinates of the distance DAN.</figcaption>"));
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "2.000000", "1.000000"}) + "\n" +
                                       row({"B", "2.000000", "-1.000000"}) + "\n" +
                                       row({"C", "-2.000000", "1.000000"}) + "\n" +
                                       row({"D", "-2.000000", "-1.000000"}) + "\n"));
    EXPECT_THAT(plain(html), HasSubstr(row({"1", "16", "80.0"}) + "\n" + row({"2", "4", "20.0"})));
}

TEST(CoordinateSections, OfMeansOfReplicatesSaySo) {
    ReportData data = treeData({"A", "B", "C", "D"}, kRectangle);
    data.ofPopulations.replicatesRead = 2;
    EXPECT_THAT(htmlOf(writePopulationCoordinates, data),
                HasSubstr("of the distance DAN, means of the bootstrap replicates.</figcaption>"));
}

TEST(CoordinateSections, IndividualsOfUnknownPopulationsAreNamed) {
    ReportData data = individualData(4);
    data.populationOf.clear();
    const std::string html = htmlOf(writeIndividualCoordinates, data);
    EXPECT_THAT(html, HasSubstr("The first two principal coordinates of the distance DAN.<"));
    EXPECT_THAT(plain(html), HasSubstr(heads({"Individual", "Axis 1 †", "Axis 2 †"})));
}

TEST(CoordinateSections, LegendOfMoreThanFortyPopulationsStandsAlone) {
    const std::string few = htmlOf(writeIndividualCoordinates, individualData(40));
    const std::string many = htmlOf(writeIndividualCoordinates, individualData(41));
    const std::string legend = "<details><summary>Colours and shapes of the populations</summary>";
    EXPECT_THAT(few, Not(HasSubstr(legend)));
    EXPECT_EQ(timesIn(few, "<svg"), 1U);
    EXPECT_THAT(many, HasSubstr(legend));
    EXPECT_EQ(timesIn(many, "<svg"), 2U);
    for (const std::string& html : {few, many}) {
        EXPECT_EQ(timesIn(plain(html), "<text>P40</text>"), 1U); // in either legend
        EXPECT_THAT(html, HasSubstr("of the distance DAN; colours and shapes: populations.<"));
    }
}

// The marks of the legend that stands alone, without their places: a circle's colour, or the steps
// of a path and its colour.
Names marksOfLegend(const std::string& html) {
    const std::size_t begin = html.find("id=\"individuals-legend\"");
    std::istringstream lines(html.substr(begin, html.find("</svg>", begin) - begin));
    Names marks;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("<circle")) {
            marks.push_back(line.substr(line.find("fill=")));
        } else if (line.starts_with("<path")) {
            marks.push_back(line.substr(line.find('m')));
        }
    }
    return marks;
}

// Seven colours and six shapes are 42 marks.
TEST(CoordinateSections, MarksRepeatAfterFortyTwoPopulations) {
    EXPECT_THAT(htmlOf(writeIndividualCoordinates, individualData(42)),
                HasSubstr("; colours and shapes: populations.</figcaption>"));
    const std::string html = htmlOf(writeIndividualCoordinates, individualData(43));
    EXPECT_THAT(
        html, HasSubstr("; colours and shapes: populations, which repeat after 42.</figcaption>"));
    const Names marks = marksOfLegend(html);
    ASSERT_THAT(marks, SizeIs(43));
    EXPECT_THAT(std::set<std::string>(marks.begin(), marks.end()), SizeIs(42));
    EXPECT_EQ(marks[42], marks[0]);
}

// --- The range of heterozygosity ---------------------------------------------------------------

// Rows of the least values, of the means and of the largest ones, for A at two loci.
ReportData rangeData() {
    ReportData data = dataOf({"A"}, {"L1", "L2"});
    const std::pair<const char*, Names> parts[] = {
        {"min", {"0.1", "0.2"}}, {"mean", {"0.3", ""}}, {"max", {"0.5", "0.6"}}};
    for (const auto& [which, values] : parts) {
        for (const std::string& value : values) {
            putReplicate(data, "heterozygosity_range", which, value.c_str());
        }
    }
    put(data, "heterozygosity_expected", {"", "", "0.41", "0.42"});
    put(data, "heterozygosity_expected_rd", {"", "", "0.31", "0.32"});
    return data;
}

TEST(RangeSection, WithoutDrawsIsNone) {
    expectNothing(writeRangeSection, dataOf({"A"}));
}

TEST(RangeSection, StandsBesideTheExpectedHeterozygosity) {
    const std::string html = htmlOf(writeRangeSection, rangeData());
    EXPECT_THAT(html, HasSubstr("HetRangeMax.xls; observed: Single_data/Hetexp.xls"));
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "L1", "0.1", "0.3", "0.5", "0.41"}) + "\n" +
                                       row({"A", "L2", "0.2", "", "0.6", "0.42"})));
}

TEST(RangeSection, OfThinnedDrawsStandsBesideThatOfThinnedData) {
    ReportData data = rangeData();
    data.record.emplace();
    data.record->settings = {{"het_thin", "false"}};
    EXPECT_THAT(htmlOf(writeRangeSection, data), HasSubstr("Single_data/Hetexp.xls"));
    data.record->settings = {{"het_thin", "true"}};
    const std::string html = htmlOf(writeRangeSection, data);
    EXPECT_THAT(html, HasSubstr("Single_data/HetRDexp.xls"));
    EXPECT_THAT(plain(html), HasSubstr(row({"A", "L1", "0.1", "0.3", "0.5", "0.31"})));
}

// --- Methods -----------------------------------------------------------------------------------

// The paragraph alone.
std::string methodsOf(const ReportData& data) {
    const std::string html = htmlOf(writeMethodsSection, data);
    const std::size_t begin = html.find('>') + 1;
    return html.substr(begin, html.find("</p>") - begin);
}

const std::string kDiversityWords =
    " Expected heterozygosity was estimated without bias (Nei 1978); allelic richness is that of "
    "rarefaction (Hurlbert 1971) with its variance (Heck et al. 1975).";

TEST(MethodsSection, OfARunWithoutAPassTellsOfTheDiversity) {
    const ReportData data = dataOf({"A"});
    EXPECT_EQ(methodsOf(data),
              "1 population was analysed at one locus with the program kva." + kDiversityWords);
    const std::string html = htmlOf(writeMethodsSection, data);
    EXPECT_EQ(timesIn(html, "<li>"), 3U);
    for (const char* paper : {"<li>Heck KL", "<li>Hurlbert SH", "<li>Nei M (1978)"}) {
        EXPECT_THAT(html, HasSubstr(paper));
    }
}

TEST(MethodsSection, TellsVersionAndSeedOfTheRecord) {
    ReportData data = dataOf({"A", "B"}, {"L1", "L2", "L3"});
    data.record.emplace();
    data.record->version = "4.05";
    const std::string begin =
        "2 populations were analysed at 3 loci with the program kva, version 4.05.";
    EXPECT_EQ(methodsOf(data), begin + kDiversityWords);
    data.record->seed = "7";
    EXPECT_EQ(methodsOf(data), begin +
                                   " Random numbers were those of Philox4x32-10 (Salmon et al. "
                                   "2011), seed 7." +
                                   kDiversityWords);
}

TEST(MethodsSection, NamesTheFStatisticsThatWereEstimated) {
    const std::string after = " were estimated after Weir &amp; Cockerham (1984).";
    const std::string beside = " Beside them stand Gst (Nei 1973) and Gst' (Hedrick 2005).";
    ReportData data = dataOf({"A", "B"});
    put(data, "fst_pairwise", {"0.1"});
    EXPECT_THAT(methodsOf(data), EndsWith("F-statistics of pairs of populations" + after));
    put(data, "fst_global", {"0.1"});
    EXPECT_THAT(
        methodsOf(data),
        EndsWith("F-statistics of pairs of populations and of all together" + after + beside));
    data.rows.erase("fst_pairwise");
    EXPECT_THAT(methodsOf(data),
                EndsWith("F-statistics of all populations together" + after + beside));
}

TEST(MethodsSection, TellsOfNoFStatisticsOfOnePopulation) {
    ReportData data = dataOf({"A"});
    put(data, "fst_global", {""});
    data.record.emplace();
    data.record->settings = {{"permutations", "999"}};
    EXPECT_THAT(htmlOf(writeMethodsSection, data),
                AllOf(Not(HasSubstr("F-statistics")), Not(HasSubstr("permutations"))));
}

TEST(MethodsSection, TellsHowManyPermutationsOfWhatWereMade) {
    ReportData data = pairData();
    data.record.emplace();
    const std::string p = "; p is (hits + 1) / (permutations + 1) (Davison &amp; Hinkley 1997).";
    const struct {
        std::vector<std::pair<std::string, std::string>> Settings;
        std::string Words;
    } kCases[] = {
        {{{"permutations", "99"}, {"resample", "genotypes"}, {"sequential_hits", "0"}},
         " They were tested by 99 permutations of genotypes" + p},
        {{{"permutations", "99"}, {"resample", "alleles"}, {"sequential_hits", "5"}},
         " They were tested by 99 permutations of single alleles" + p +
             " The test of a pair ended after 5 hits (Besag &amp; Clifford 1991)."},
        {{{"permutations", "0"}}, "(1984)."},
    };
    for (const auto& each : kCases) {
        data.record->settings = each.Settings;
        EXPECT_THAT(methodsOf(data), EndsWith(each.Words));
    }
}

TEST(MethodsSection, OfAFolderWithoutARecordTellsOfTheTestsOfTheSheets) {
    ReportData data = dataOf({"A", "B"});
    put(data, "fst_pairwise", {"0.1"});
    put(data, "fst_pairwise_p", {"0.5"});
    EXPECT_THAT(methodsOf(data), EndsWith(" They were tested by permutations. p-values of pairs "
                                          "were multiplied by the number of pairs (Bonferroni)."));
    data = dataOf({"A", "B"});
    put(data, "fst_global", {"0.1"});
    put(data, "permutations_global", {"1000"});
    EXPECT_THAT(methodsOf(data), EndsWith(" They were tested by 1000 permutations."));
}

TEST(MethodsSection, TellsHowPValuesWereAdjusted) {
    ReportData data = testedPairs("99");
    EXPECT_THAT(methodsOf(data),
                HasSubstr(" p-values of pairs were adjusted for their number after "
                          "Holm (1979) and after Benjamini &amp; Hochberg "
                          "(1995)."));
    data.record->tests["fst_pairwise"].pop_back(); // one is missing
    EXPECT_THAT(methodsOf(data), Not(HasSubstr("adjusted")));
}

const std::string kJoining =
    " The tree of the populations is that of neighbour joining (Saitou &amp; Nei 1987) from ";
const std::string kCoordinates = " Principal coordinates (Gower 1966) are ";

TEST(MethodsSection, TellsOfTreeAndCoordinates) {
    ReportData data = treeData({"A", "B", "C"}, {3, 4, 5});
    EXPECT_THAT(methodsOf(data), EndsWith(kJoining + "the distance Da (Nei et al. 1983)." +
                                          kCoordinates + "of the distances of the populations."));
    const std::string both = kCoordinates + "of the distances of populations and individuals";
    data.ofIndividuals = data.ofPopulations;
    EXPECT_THAT(methodsOf(data), EndsWith(both + "."));
    const std::string other = " from the absolute difference of the mean alleles.";
    data.ofIndividuals.measure = "ADA"; // which no paper is cited for
    EXPECT_THAT(methodsOf(data), EndsWith(both + ", those of the individuals" + other));
    data.ofPopulations = {};
    EXPECT_THAT(methodsOf(data),
                EndsWith(kDiversityWords + kCoordinates + "those of the individuals" + other));
}

TEST(MethodsSection, CitesTheSourceOfEachDistance) {
    const std::pair<const char*, const char*> measures[] = {
        {"POSA", "the proportion of shared alleles (Bowcock et al. 1994)"},
        {"FSS", "the fuzzy set similarity (Dubois &amp; Prade 1980)"},
        {"ADA", "the absolute difference of the mean alleles"},
        {"KSC", "the kinship coefficient (Cavalli-Sforza &amp; Bodmer 1971)"},
        {"DMS", "delta mu squared (Goldstein et al. 1995a)"},
        {"ASD", "the average squared difference (Goldstein et al. 1995b)"},
        {"CAS", "the chord distance (Cavalli-Sforza &amp; Edwards 1967)"},
        {"DAN", "the distance Da (Nei et al. 1983)"},
        {"DSG", "the standard genetic distance (Nei 1978)"},
    };
    for (const auto& [measure, words] : measures) {
        ReportData data = treeData({"A", "B", "C"}, {3, 4, 5});
        data.ofPopulations.measure = measure;
        EXPECT_THAT(methodsOf(data), HasSubstr(kJoining + words + "."));
    }
}

// The replicate without a value is none of those that the support is the share of.
TEST(MethodsSection, SupportIsTheShareOfTheWholeReplicates) {
    ReportData data = treeData({"A", "B", "C"}, {3, 4, 5});
    data.ofPopulations.bootstrap = {{3, 4, 5}, {3, kNone, 5}, {3, 4, 6}};
    EXPECT_THAT(methodsOf(data), HasSubstr("the distance Da (Nei et al. 1983); its support is the "
                                           "share of 2 bootstrap replicates over loci (Efron 1979; "
                                           "Felsenstein 1985) that have the split."));
    data.ofPopulations.bootstrap = {{3, kNone, 5}};
    EXPECT_THAT(methodsOf(data), Not(HasSubstr("support")));
}

// Two populations, or a pair without a value: the page has neither tree nor coordinates.
TEST(MethodsSection, TellsOfNoTreeThatThePageLacks) {
    for (const ReportData& of :
         {treeData({"A", "B"}, {0.5}), treeData({"A", "B", "C"}, {3, kNone, 5})}) {
        ReportData data = of;
        EXPECT_THAT(methodsOf(data), EndsWith(kDiversityWords + " Populations were compared by the "
                                                                "distance Da (Nei et al. 1983)."));
        EXPECT_EQ(timesIn(htmlOf(writeMethodsSection, data), "<li>"), 4U);
        std::swap(data.ofIndividuals, data.ofPopulations);
        EXPECT_THAT(methodsOf(data), EndsWith(kDiversityWords + " Individuals were compared by the "
                                                                "distance Da (Nei et al. 1983)."));
    }
}

TEST(MethodsSection, TellsOfTheDrawsOfTheRange) {
    ReportData data = rangeData();
    const std::string words = " by drawing each population anew with replacement";
    EXPECT_THAT(methodsOf(data), EndsWith(words + " (Efron 1979)."));
    data.record.emplace();
    data.record->settings = {{"het_range", "50"}};
    EXPECT_THAT(methodsOf(data), EndsWith(words + ", 50 times (Efron 1979)."));
}

} // namespace
} // namespace kva
