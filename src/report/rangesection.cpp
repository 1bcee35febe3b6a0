#include "report/html.h"
#include "report/panels.h"
#include "report/sections.h"

#include <cmath>

namespace kva {

namespace {

// The heterozygosity that the draws are compared with: where inbred data were thinned for them,
// that of thinned data.
const char* observedStatistic(const ReportData& data) {
    const bool thinned = data.record && data.record->setting("het_thin") == "true";
    return thinned ? "heterozygosity_expected_rd" : "heterozygosity_expected";
}

Table rangeTable(const ReportData& data, const char* observed) {
    Table table{.id = "het-range",
                .title = "Heterozygosity over the draws",
                .source = "Resampling_data/HetRangeMin.xls, HetRangeMean.xls, HetRangeMax.xls; "
                          "observed: Single_data/"};
    table.source +=
        observed == std::string("heterozygosity_expected") ? "Hetexp.xls" : "HetRDexp.xls";
    table.folded = true;
    table.columns = {{.head = "Population", .labels = true},
                     {.head = "Locus", .words = true},
                     {.head = "Least"},
                     {.head = "Mean"},
                     {.head = "Largest"},
                     {.head = "Observed"}};
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        for (std::size_t l = 0; l < data.loci.size(); ++l) {
            std::vector<Cell> row = {{data.populations[p]}, {data.loci[l]}};
            for (const char* which : {"min", "mean", "max"}) {
                row.push_back({std::string(data.range(which, p, l))});
            }
            row.push_back({std::string(data.cell(observed, p + 1, l))});
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

std::string picture(const ReportData& data, const char* observed) {
    std::vector<Panel> panels;
    for (const std::string& locus : data.loci) {
        panels.push_back({locus, 0, 1});
    }
    const auto draw = [&](Svg& svg, const Scale& x, std::size_t l, std::size_t p, double y) {
        const double least = numberOf(data.range("min", p, l));
        const double mean = numberOf(data.range("mean", p, l));
        const double most = numberOf(data.range("max", p, l));
        if (std::isfinite(least) && std::isfinite(most)) {
            svg.rect(x.at(least), y - 3, std::max(0.5, x.at(most) - x.at(least)), 6, kSky);
        }
        if (std::isfinite(mean)) {
            svg.line(x.at(mean), y - 5, x.at(mean), y + 5, kBlue, 2);
        }
        const std::string text(data.cell(observed, p + 1, l));
        const double value = numberOf(text);
        if (std::isfinite(value)) {
            svg.circle(x.at(value), y, 2.8, kOrange, data.populations[p] + ": " + text);
        }
    };
    return panelPicture(data.populations, panels, {.width = 160, .ticks = 2},
                        "Range of the heterozygosity over the draws and the observed value, of "
                        "each population and locus",
                        draw);
}

} // namespace

bool writeRangeSection(const ReportData& data, std::string& html) {
    if (data.of("heterozygosity_range").empty()) {
        return false;
    }
    const char* const observed = observedStatistic(data);
    appendFigure(html, "range-picture", "Range of heterozygosity", picture(data, observed),
                 "Bar: least to largest heterozygosity over the draws; blue line: their mean; "
                 "orange: the expected heterozygosity of the population itself.",
                 data.populations.size() > kTallPicture);
    appendTable(html, rangeTable(data, observed));
    return true;
}

} // namespace kva
