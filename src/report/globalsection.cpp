#include "report/html.h"
#include "report/panels.h"
#include "report/sections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kva {

namespace {

struct GlobalStatistic {
    const char* head;
    const char* name;
    bool tested;
    const char* limits; // empty: there are none
};

constexpr std::array<GlobalStatistic, 5> kGlobal = {{
    {"Fst", "fst_global", true, "fst_global_heterogeneity"},
    {"Fit", "fit_global", false, "fit_global_heterogeneity"},
    {"Fis", "fis_global", false, "fis_global_heterogeneity"},
    {"Gst", "gst_global", true, ""},
    {"Gst'", "gst_prime_global", true, ""},
}};

constexpr std::array<const char*, 4> kLimits = {"lower 95 %", "upper 95 %", "lower 99 %",
                                                "upper 99 %"};

std::string valueOf(const ReportData& data, const std::string& statistic, std::size_t row = 0) {
    return std::string(data.value(statistic, row));
}

std::string limitOf(const ReportData& data, std::string_view statistic,
                    std::string_view replicate) {
    for (const ResultRow& row : data.of(statistic)) {
        if (row.replicate == replicate) {
            return row.value;
        }
    }
    return {};
}

bool hasLimits(const ReportData& data) {
    return !data.of("fst_global_heterogeneity").empty();
}

bool hasTests(const ReportData& data) {
    return !data.tests("fst_global").empty();
}

// The p-value of the record; place: of a locus.
Cell testCell(const ReportData& data, const std::string& statistic, std::size_t place = 0) {
    const std::span<const RunRecord::Test> tests = data.tests(statistic);
    return place < tests.size() ? shortCell(tests[place].p) : Cell{""};
}

Table overAllTable(const ReportData& data) {
    Table table{.id = "f-global", .title = "Over all loci", .source = "F-Statistic/GlobFst.xls"};
    table.columns = {{.head = "Statistic", .labels = true}, {.head = "Value"}};
    const bool sheetP = !data.of("fst_global_p").empty();
    if (sheetP) {
        table.columns.push_back({.head = "p of the sheet"});
    }
    if (hasTests(data)) {
        table.columns.push_back({.head = "p"});
        table.source += "; p: run.json";
    }
    if (hasLimits(data)) {
        table.source += "; limits: F-Statistic/LocusFHeterogeneity.xls";
        for (const char* limit : kLimits) {
            table.columns.push_back({.head = limit});
        }
    }
    for (const GlobalStatistic& statistic : kGlobal) {
        std::vector<Cell> row = {{statistic.head}, {valueOf(data, statistic.name)}};
        if (sheetP) {
            row.push_back(
                {statistic.tested ? valueOf(data, std::string(statistic.name) + "_p") : ""});
        }
        if (hasTests(data)) {
            row.push_back(testCell(data, statistic.name));
        }
        for (const char* limit : kLimits) {
            if (hasLimits(data)) {
                row.push_back({limitOf(data, statistic.limits, limit)});
            }
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table lociTable(const ReportData& data) {
    Table table{.id = "f-loci", .title = "By locus", .source = "F-Statistic/GlobFst.xls"};
    table.columns = {{.head = "Locus", .labels = true}};
    const bool sheetP = !data.of("fst_global_locus_p").empty();
    for (const GlobalStatistic& statistic : kGlobal) {
        table.columns.push_back({.head = statistic.head});
        if (sheetP && statistic.tested) {
            table.columns.push_back({.head = "p of the sheet"});
        }
        if (hasTests(data) && statistic.tested) {
            table.columns.push_back({.head = "p"});
        }
    }
    const std::vector<ResultRow>& loci = data.of("fst_global_locus");
    for (std::size_t l = 0; l < loci.size(); ++l) {
        std::vector<Cell> row = {{loci[l].locus}};
        for (const GlobalStatistic& statistic : kGlobal) {
            const std::string name = std::string(statistic.name) + "_locus";
            row.push_back({valueOf(data, name, l)});
            if (sheetP && statistic.tested) {
                row.push_back({valueOf(data, name + "_p", l)});
            }
            if (hasTests(data) && statistic.tested) {
                row.push_back(testCell(data, name, l));
            }
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

// --- The picture --------------------------------------------------------------------------------

constexpr std::size_t kPanels = 3; // Fst, Fit, Fis

std::string picture(const ReportData& data) {
    std::vector<std::string> rows = {"All loci"};
    for (const ResultRow& row : data.of("fst_global_locus")) {
        rows.push_back(row.locus);
    }
    double low = 0;
    double high = 0;
    std::vector<Panel> panels;
    const auto textAt = [&data](std::size_t p, std::size_t row) {
        const std::string name = kGlobal[p].name;
        return row == 0 ? valueOf(data, name) : valueOf(data, name + "_locus", row - 1);
    };
    for (std::size_t p = 0; p < kPanels; ++p) {
        for (std::size_t r = 0; r < rows.size(); ++r) {
            const double value = numberOf(textAt(p, r));
            low = std::isfinite(value) ? std::min(low, value) : low;
            high = std::isfinite(value) ? std::max(high, value) : high;
        }
    }
    for (std::size_t p = 0; p < kPanels; ++p) {
        panels.push_back({kGlobal[p].head, low, high > low ? high : low + 1});
    }
    const auto draw = [&](Svg& svg, const Scale& x, std::size_t p, std::size_t row, double y) {
        const std::string text = textAt(p, row);
        const double value = numberOf(text);
        const double lower = numberOf(limitOf(data, kGlobal[p].limits, kLimits[0]));
        const double upper = numberOf(limitOf(data, kGlobal[p].limits, kLimits[1]));
        if (row == 0 && std::isfinite(lower) && std::isfinite(upper)) {
            svg.line(x.at(std::max(lower, x.low)), y, x.at(std::min(upper, x.high)), y, kOrange, 2);
        }
        if (std::isfinite(value)) {
            svg.circle(x.at(value), y, row == 0 ? 4.5 : 3.5, row == 0 ? kOrange : kBlue,
                       rows[row] + ": " + text);
        }
    };
    return panelPicture(rows, panels, {.width = 270, .ticks = 5},
                        "Fst, Fit and Fis of all populations over all loci and at each locus",
                        draw);
}

} // namespace

bool writeGlobalSection(const ReportData& data, std::string& html) {
    if (data.populations.size() < 2 || data.of("fst_global").empty()) {
        return false;
    }
    appendFigure(html, "f-picture", "F-statistics of all populations", picture(data),
                 hasLimits(data) ? "Orange: over all loci, with the 95 % limits over loci drawn at "
                                   "random; blue: a locus."
                                 : "Orange: over all loci; blue: a locus.");
    appendTable(html, overAllTable(data));
    if (!hasLimits(data)) {
        appendNote(html, "Limits of the global values were not computed. The menu of "
                         "<code>kva</code> does it: F-statistics, heterogeneity among loci.");
    }
    if (data.of("fst_global_p").empty()) {
        appendNote(html, "There were no tests; <code>--permutations 10000</code> of "
                         "<code>kvatool run</code> makes them.");
    }
    appendTable(html, lociTable(data));
    return true;
}

} // namespace kva
