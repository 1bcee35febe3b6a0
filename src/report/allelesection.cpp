#include "report/html.h"
#include "report/panels.h"
#include "report/sections.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

Table locusTable(const ReportData& data, std::size_t locus) {
    Table table{.id = "alleles-" + std::to_string(locus + 1),
                .title = "Allele frequencies of " + data.loci[locus],
                .source = "Allelecount/Allelefrequencies.xls"};
    table.folded = true;
    table.columns = {{.head = "Population", .labels = true}};
    const std::vector<AlleleCell>& all = data.alleles[0][locus];
    for (const AlleleCell& cell : all) {
        table.columns.push_back({.head = cell.allele});
    }
    for (std::size_t s = 0; s < data.alleles.size(); ++s) {
        std::vector<Cell> row(all.size() + 1);
        row[0] = {data.sampleName(s)};
        for (const AlleleCell& cell : data.alleles[s][locus]) {
            const auto at = std::find_if(all.begin(), all.end(), [&cell](const AlleleCell& other) {
                return other.allele == cell.allele;
            });
            if (at != all.end()) {
                row[static_cast<std::size_t>(at - all.begin()) + 1] = {cell.frequency};
            }
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Panel panelOf(const ReportData& data, std::size_t locus) {
    Panel panel{data.loci[locus], 0, 1};
    const std::vector<AlleleCell>& all = data.alleles[0][locus];
    if (all.empty()) {
        return panel;
    }
    panel.low = panel.high = numberOf(all[0].allele);
    for (const AlleleCell& cell : all) {
        panel.low = std::min(panel.low, numberOf(cell.allele));
        panel.high = std::max(panel.high, numberOf(cell.allele));
    }
    const double room = std::max(1.0, 0.03 * (panel.high - panel.low));
    panel.low -= room;
    panel.high += room;
    return panel;
}

// Radius of a dot: its area is the frequency. Colour: dark for frequent alleles.
double radiusOf(double frequency) {
    constexpr double kMost = 7.5;
    return std::max(0.8, kMost * std::sqrt(frequency));
}

std::string colourOf(double frequency) {
    return heatColour(0.95 * (1 - frequency));
}

void drawLegend(Svg& svg, double y) {
    double x = 12;
    svg.text(x, y + 4, "Frequency:", {.size = 11});
    x += 76;
    for (const double frequency : {0.05, 0.25, 0.5, 0.75, 1.0}) {
        svg.circle(x, y, radiusOf(frequency), colourOf(frequency));
        const std::string text = place(frequency);
        svg.text(x + 11, y + 4, text, {.size = 11});
        x += 26 + textWidth(text, 11);
    }
}

std::string picture(const ReportData& data) {
    std::vector<Panel> panels;
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        panels.push_back(panelOf(data, l));
    }
    const auto draw = [&](Svg& svg, const Scale& x, std::size_t p, std::size_t row, double y) {
        for (const AlleleCell& cell : data.alleles[row + 1][p]) {
            const double frequency = numberOf(cell.frequency);
            if (frequency > 0) {
                svg.circle(x.at(numberOf(cell.allele)), y, radiusOf(frequency), colourOf(frequency),
                           cell.allele + ": " + cell.frequency);
            }
        }
    };
    return panelPicture(data.populations, panels, {.width = 225, .ticks = 5},
                        "Frequencies of the alleles of each locus in each population", draw,
                        drawLegend);
}

} // namespace

bool writeAlleleSection(const ReportData& data, std::string& html) {
    const bool any = std::any_of(data.alleles[0].begin(), data.alleles[0].end(),
                                 [](const auto& locus) { return !locus.empty(); });
    if (!any) {
        appendNote(html, "There is no allele.");
        return true;
    }
    appendFigure(html, "alleles-picture", "Allele frequencies", picture(data),
                 "A panel a locus, a row a population, a dot an allele: the larger and darker, the "
                 "more frequent. The axes are lengths of alleles in base pairs, or their codes.",
                 data.populations.size() > kTallPicture);
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        appendTable(html, locusTable(data, l));
    }
    return true;
}

} // namespace kva
