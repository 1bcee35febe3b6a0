#include "report/html.h"
#include "report/numbertext.h"
#include "report/panels.h"
#include "report/sections.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kva {

namespace {

constexpr const char* kExpected = "heterozygosity_expected";
constexpr const char* kObserved = "heterozygosity_observed";
constexpr const char* kRichness = "allelic_richness";
constexpr const char* kVariance = "allelic_richness_variance";
constexpr const char* kAlleles = "allele_number_observed";

std::vector<double> overLoci(const ReportData& data, const char* statistic,
                             std::size_t population) {
    std::vector<double> values;
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        values.push_back(numberOf(data.cell(statistic, population + 1, l)));
    }
    return values;
}

// The mean of those that are finite; NaN where none is.
double meanOf(const std::vector<double>& values) {
    double sum = 0;
    double of = 0;
    for (const double value : values) {
        if (std::isfinite(value)) {
            sum += value;
            ++of;
        }
    }
    return sum / of;
}

// The standard error of the mean richness over the loci that have one: the root of the sum of their
// variances, over their number; NaN where one of them has no variance.
double richnessError(const ReportData& data, std::size_t population) {
    double sum = 0;
    double of = 0;
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        if (std::isfinite(numberOf(data.cell(kRichness, population + 1, l)))) {
            sum += numberOf(data.cell(kVariance, population + 1, l));
            ++of;
        }
    }
    return std::sqrt(sum) / of;
}

Table meansTable(const ReportData& data) {
    constexpr int kDigits = 4;
    Table table{.id = "diversity-means",
                .title = "Means over the loci that have a value",
                .source = "of the numbers of the next table"};
    table.columns = {{.head = "Population", .labels = true},
                     {.head = "Ho", .derived = true},
                     {.head = "He", .derived = true},
                     {.head = "Allelic richness", .derived = true},
                     {.head = "Its standard error", .derived = true},
                     {.head = "Alleles counted", .derived = true}};
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        std::vector<Cell> row = {{data.populations[p]}};
        for (const char* statistic : {kObserved, kExpected, kRichness}) {
            row.push_back({fixedText(meanOf(overLoci(data, statistic, p)), kDigits)});
        }
        row.push_back({fixedText(richnessError(data, p), kDigits)});
        row.push_back({fixedText(meanOf(overLoci(data, kAlleles, p)), kDigits)});
        table.rows.push_back(std::move(row));
    }
    return table;
}

struct Shown {
    const char* head;
    const char* statistic;
};

constexpr Shown kShown[] = {
    {"Gene copies", "gene_copies"},
    {"Ho", kObserved},
    {"He", kExpected},
    {"Allelic richness", kRichness},
    {"Variance of richness", kVariance},
    {"Alleles counted", kAlleles},
    {"Fis", "fis_population"},
};

Table cellsTable(const ReportData& data) {
    Table table{.id = "diversity-loci",
                .title = "By population and locus",
                .source = "Summary.xls, Single_data/"};
    table.columns = {{.head = "Population", .labels = true}, {.head = "Locus", .words = true}};
    for (const Shown& shown : kShown) {
        table.columns.push_back({.head = shown.head});
    }
    table.folded = true;
    for (std::size_t s = 0; s <= data.populations.size(); ++s) {
        for (std::size_t l = 0; l < data.loci.size(); ++l) {
            std::vector<Cell> row = {{data.sampleName(s)}, {data.loci[l]}};
            for (const Shown& shown : kShown) {
                row.push_back({std::string(data.cell(shown.statistic, s, l))});
            }
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

// --- The picture -------------------------------------------------------------------------------

struct DiversityPanel {
    const char* title;
    const char* statistic;
    bool share;    // of 0 to 1
    bool hasError; // a standard error is drawn
};

constexpr std::array<DiversityPanel, 4> kPanels = {{
    {"Expected heterozygosity", kExpected, true, false},
    {"Observed heterozygosity", kObserved, true, false},
    {"Allelic richness", kRichness, false, true},
    {"Alleles counted", kAlleles, false, false},
}};

double largest(const ReportData& data, const char* statistic) {
    double most = 0;
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        for (const double value : overLoci(data, statistic, p)) {
            most = std::isfinite(value) ? std::max(most, value) : most;
        }
    }
    return most;
}

std::string picture(const ReportData& data, bool points) {
    std::vector<Panel> panels;
    for (const DiversityPanel& panel : kPanels) {
        const double most = panel.share ? 1 : largest(data, panel.statistic);
        panels.push_back({panel.title, 0, most > 0 ? most : 1});
    }
    const auto draw = [&](Svg& svg, const Scale& x, std::size_t p, std::size_t row, double y) {
        const std::vector<double> values = overLoci(data, kPanels[p].statistic, row);
        for (std::size_t l = 0; points && l < values.size(); ++l) {
            if (std::isfinite(values[l])) {
                svg.circle(x.at(values[l]), y, 1.8, "#b5b5b5");
            }
        }
        const double mean = meanOf(values);
        if (!std::isfinite(mean)) {
            return;
        }
        svg.circle(x.at(mean), y, 4, kOrange, data.populations[row] + ": " + fixedText(mean, 4));
        const double error = kPanels[p].hasError ? richnessError(data, row) : std::nan("");
        if (std::isfinite(error)) {
            svg.line(x.at(mean - error), y, x.at(mean + error), y, kInk, 1.5);
        }
    };
    return panelPicture(data.populations, panels, {.width = 205, .ticks = 4},
                        "Expected and observed heterozygosity, allelic richness and number of "
                        "alleles of each population",
                        draw);
}

} // namespace

bool writeDiversitySection(const ReportData& data, std::string& html) {
    constexpr std::size_t kMostPoints = 4000; // of a panel
    const bool points = data.populations.size() * data.loci.size() <= kMostPoints;
    const std::vector<ResultRow>& references = data.of("allelic_richness_reference");
    appendFigure(html, "diversity-picture", "Diversity of the populations", picture(data, points),
                 std::string(points ? "Grey: a locus. " : "") +
                     "Orange: the mean of the loci; the dark bar at the richness is its standard "
                     "error, two ways "
                     "(rarefaction).",
                 data.populations.size() > kTallPicture);
    appendTable(html, meansTable(data));
    appendTable(html, cellsTable(data));
    if (!references.empty()) {
        Table table{.id = "richness-reference",
                    .title = "Individuals that the richness is of",
                    .source = "Single_data/AllelicRichness.xls"};
        table.columns = {{.head = "Locus", .labels = true}, {.head = "Individuals"}};
        table.folded = true;
        for (const ResultRow& row : references) {
            table.rows.push_back({{row.locus}, {row.value}});
        }
        appendTable(html, table);
    }
    return true;
}

} // namespace kva
