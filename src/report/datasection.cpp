#include "report/html.h"
#include "report/numbertext.h"
#include "report/sections.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace kva {

namespace {

constexpr int kPercentDigits = 2;

// --- Sizes and missing data ------------------------------------------------------------------

// The share of gene copies that are missing in a population (from 0) at a locus; NaN: not known.
// The sheet has no number where there are none at all.
double missingShare(const ReportData& data, std::size_t population, std::size_t locus) {
    if (data.individuals.empty()) {
        return std::nan("");
    }
    const double all = 2 * static_cast<double>(data.individuals[population]);
    const double copies = numberOf(data.cell("gene_copies", population + 1, locus));
    return std::isnan(copies) ? 1 : 1 - copies / all;
}

// The same over all loci, of the populations from `first` up to the one before `last`.
double missingOver(const ReportData& data, std::size_t first, std::size_t last) {
    double missing = 0;
    double all = 0;
    for (std::size_t p = first; p < last; ++p) {
        for (std::size_t l = 0; l < data.loci.size(); ++l) {
            const double copies = 2 * static_cast<double>(data.individuals[p]);
            missing += missingShare(data, p, l) * copies;
            all += copies;
        }
    }
    return missing / all;
}

std::string percent(double share) {
    return fixedText(std::max(100 * share, 0.0), kPercentDigits);
}

std::size_t sum(const std::vector<std::size_t>& sizes) {
    std::size_t all = 0;
    for (const std::size_t size : sizes) {
        all += size;
    }
    return all;
}

void appendOverview(const ReportData& data, std::string& html) {
    std::size_t alleles = 0;
    for (const std::vector<AlleleCell>& locus : data.alleles[0]) {
        alleles += locus.size();
    }
    const auto item = [&html](const std::string& value, const std::string& what) {
        html += "<li><strong>" + value + "</strong> " + what + "</li>\n";
    };
    const auto count = [&item](std::size_t value, const char* one, const char* more) {
        item(std::to_string(value), value == 1 ? one : more);
    };
    html += "<ul class=\"facts\">\n";
    count(data.populations.size(), "population", "populations");
    if (!data.individuals.empty()) {
        count(sum(data.individuals), "individual", "individuals");
    }
    count(data.loci.size(), "locus", "loci");
    count(alleles, "allele of all loci", "alleles of all loci");
    if (!data.individuals.empty()) {
        item(percent(missingOver(data, 0, data.populations.size())) + " %",
             "of the gene copies missing");
    }
    html += "</ul>\n";
}

Table sizesTable(const ReportData& data) {
    Table table{.id = "sizes",
                .title = "Sizes and missing data by population",
                .source = "Formats&Data/Genepop.gen, Single_data/NumChromosomes.xls"};
    table.columns = {{.head = "Population", .labels = true},
                     {.head = "Individuals"},
                     {.head = "Missing gene copies, %", .derived = true}};
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        table.rows.push_back({{data.populations[p]},
                              {std::to_string(data.individuals[p])},
                              {percent(missingOver(data, p, p + 1))}});
    }
    return table;
}

// Shade of a share: 0 for none at all, then steps up to all.
int shadeOf(double share) {
    if (!(share > 1e-9)) {
        return -1;
    }
    constexpr double kSteps[] = {0.01, 0.02, 0.05, 0.1, 0.2, 0.3, 0.5, 0.7, 0.9};
    int shade = 0;
    for (const double step : kSteps) {
        shade += share > step ? 1 : 0;
    }
    return shade;
}

Table copiesTable(const ReportData& data) {
    Table table{.id = "gene-copies",
                .title = "Gene copies by population and locus",
                .source = "Single_data/NumChromosomes.xls"};
    table.columns = {{.head = "Population", .labels = true}};
    for (const std::string& locus : data.loci) {
        table.columns.push_back({.head = locus});
    }
    for (std::size_t s = 0; s <= data.populations.size(); ++s) {
        std::vector<Cell> row = {{data.sampleName(s)}};
        for (std::size_t l = 0; l < data.loci.size(); ++l) {
            row.push_back({std::string(data.cell("gene_copies", s, l)),
                           {},
                           s == 0 ? -1 : shadeOf(missingShare(data, s - 1, l))});
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

// --- The checklist -----------------------------------------------------------------------------

// What the value of a remark is.
enum class ValueIs { Nothing, Allele, Gap, Step };

struct Remark {
    const char* statistic;
    const char* text;
    ValueIs value;
    bool expected; // beside it stands the repeat length
};

constexpr Remark kRemarks[] = {
    {"report_step_too_small", "smallest step between alleles is below the repeat length",
     ValueIs::Gap, true},
    {"report_step_too_large", "smallest step between alleles is above the repeat length",
     ValueIs::Step, true},
    {"report_step_incompatible", "step is no multiple of the repeat length", ValueIs::Gap, false},
    {"report_gap_large", "large gap between two alleles", ValueIs::Gap, false},
    {"report_allele_short", "very short allele", ValueIs::Allele, false},
    {"report_allele_long", "very long allele", ValueIs::Allele, false},
    {"report_step_found", "repeat length not given; smallest step between alleles", ValueIs::Step,
     false},
    {"report_monomorphic", "fewer than two alleles", ValueIs::Nothing, false},
};

// The populations that have an allele, with their gene copies of it.
std::string holders(const ReportData& data, std::size_t locus, const std::string& allele) {
    constexpr std::size_t kMost = 5;
    std::string text;
    std::size_t count = 0;
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        for (const AlleleCell& cell : data.alleles[p + 1][locus]) {
            if (cell.allele == allele && numberOf(cell.count) > 0 && ++count <= kMost) {
                text += (text.empty() ? "" : ", ") + data.populations[p] + " (" + cell.count + ")";
            }
        }
    }
    return count > kMost ? text + " and " + std::to_string(count - kMost) + " more" : text;
}

// The alleles on the two sides of the gaps of this length, of the first few.
std::string sidesOfGap(const ReportData& data, std::size_t locus, const std::string& length) {
    constexpr std::size_t kMost = 3;
    std::string text;
    std::size_t count = 0;
    const std::vector<AlleleCell>& alleles = data.alleles[0][locus];
    for (std::size_t a = 1; a < alleles.size(); ++a) {
        const double gap = numberOf(alleles[a].allele) - numberOf(alleles[a - 1].allele);
        if (gap == numberOf(length) && ++count <= kMost) {
            text += (text.empty() ? "" : "; ") + alleles[a - 1].allele + " in " +
                    holders(data, locus, alleles[a - 1].allele) + ", " + alleles[a].allele +
                    " in " + holders(data, locus, alleles[a].allele);
        }
    }
    return count > kMost ? text + "; and " + std::to_string(count - kMost) + " more" : text;
}

std::string whereOf(const ReportData& data, const Remark& remark, std::size_t locus,
                    const std::string& value) {
    switch (remark.value) {
    case ValueIs::Allele:
        return holders(data, locus, value);
    case ValueIs::Gap:
        return sidesOfGap(data, locus, value);
    default:
        return {};
    }
}

struct RemarkOn {
    const Remark* remark;
    const std::string* value;
};

// The remarks on each locus, by its name, in the order of kRemarks and of the report.
using RemarksByLocus = std::multimap<std::string_view, RemarkOn>;

RemarksByLocus remarksByLocus(const ReportData& data) {
    RemarksByLocus remarks;
    for (const Remark& remark : kRemarks) {
        for (const ResultRow& row : data.of(remark.statistic)) {
            remarks.insert({row.locus, {&remark, &row.value}});
        }
    }
    return remarks;
}

Table checklist(const ReportData& data) {
    Table table{.id = "suspicious",
                .title = "Alleles to look at again",
                .source = "Errorreport.txt",
                .remark = true};
    table.columns = {{.head = "Locus", .labels = true},
                     {.head = "Remark", .words = true},
                     {.head = "Value"},
                     {.head = "Repeat length"},
                     {.head = "Where", .derived = true, .words = true}};
    std::map<std::string_view, std::string> repeats; // of each locus that has a remark on them
    for (const ResultRow& row : data.of("report_step_expected")) {
        repeats[row.locus] = row.value;
    }
    const RemarksByLocus remarks = remarksByLocus(data);
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        const auto [begin, end] = remarks.equal_range(data.loci[l]);
        for (auto each = begin; each != end; ++each) {
            const Remark& remark = *each->second.remark;
            const std::string& value = *each->second.value;
            table.rows.push_back({{data.loci[l]},
                                  {remark.text},
                                  {remark.value == ValueIs::Nothing ? "" : value},
                                  {remark.expected ? repeats[data.loci[l]] : ""},
                                  {whereOf(data, remark, l, value)}});
        }
    }
    return table;
}

void appendChecklist(const ReportData& data, std::string& html) {
    html += "<h3>Suspicious alleles</h3>\n";
    if (data.of("report_limit_gap_steps").empty()) {
        appendNote(html, "There is no error report.");
        return;
    }
    const auto limit = [&data](const char* of) {
        return escaped(data.value(std::string("report_limit_") + of));
    };
    appendParagraph(html, "The error report remarks on gaps of more than " + limit("gap_steps") +
                              " repeats or more than " + limit("gap_length") +
                              " base pairs, on alleles below " + limit("allele_short") +
                              " or above " + limit("allele_long") +
                              ", and on steps that do not fit the repeat length.");
    const Table table = checklist(data);
    if (table.rows.empty()) {
        appendParagraph(html, "It has no remark on these data.");
        return;
    }
    appendTable(html, table);
}

} // namespace

bool writeDataSection(const ReportData& data, std::string& html) {
    appendOverview(data, html);
    if (data.individuals.empty()) {
        appendNote(html, "The number of individuals is not known: "
                         "<code>Formats&amp;Data/Genepop.gen</code> is not in the folder.");
    } else {
        appendTable(html, sizesTable(data));
    }
    if (!data.of("gene_copies").empty()) {
        appendTable(html, copiesTable(data));
        if (!data.individuals.empty()) {
            appendParagraph(html, "Coloured cells: gene copies are missing, the darker the more. "
                                  "Without missing data there are two for each individual.");
        }
    }
    appendChecklist(data, html);
    return true;
}

} // namespace kva
