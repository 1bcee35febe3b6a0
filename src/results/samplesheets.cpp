#include "results/layouts.h"

#include "base/filename.h"
#include "results/cellvalue.h"

#include <algorithm>
#include <array>

namespace kva {

namespace {

using Cells = std::span<const std::string_view>;

// --- Tables -------------------------------------------------------------------------------

// Hands out the cells of a row, one for each locus; `place` holds what they have in common.
bool rowOfLoci(SheetReading& sheet, std::string_view statistic, TidyPlace place,
               const LocusHead& head, Cells cells, NoValue none = nullptr) {
    for (std::size_t l = 0; l < head.loci.size(); ++l) {
        place.locus = head.loci[l];
        if (!sheet.row(statistic, place, cells[l], none)) {
            return false;
        }
    }
    return true;
}

// The cells of the current line; `closed`: with a tab behind each. Empty, and a fault, where they
// are not a label and one for each locus.
Cells rowCells(SheetReading& sheet, bool closed, const LocusHead& head) {
    const Cells cells = closed ? sheet.lines().closedCells() : sheet.lines().cells();
    return sheet.hasCells(cells.size(), 1 + head.loci.size()) ? cells : Cells();
}

// Whether a table named as many populations as other sheets do.
void holdPopulations(SheetReading& sheet, std::size_t found) {
    const std::size_t expected = sheet.populations().size();
    if (expected > 0 && found != expected && sheet.lines().sound()) {
        sheet.lines().fault("the sheet ends with population " + std::to_string(found) + " of " +
                            std::to_string(expected));
    }
}

// Reads rows up to an empty line or the end; gives their number.
std::size_t readTable(SheetReading& sheet, std::string_view statistic, bool closed,
                      const LocusHead& head) {
    SheetLines& lines = sheet.lines();
    std::size_t rows = 0;
    for (bool more = head.more; more && !(closed && lines.line().empty()); more = lines.next()) {
        const Cells cells = rowCells(sheet, closed, head);
        if (cells.empty()) {
            break;
        }
        const TidyPlace place{.population1 = cells[0], .replicate = sheet.rule().replicate};
        rowOfLoci(sheet, statistic, place, head, cells.subspan(1), sheet.rule().none);
        ++rows;
    }
    return rows;
}

void readClosedTable(SheetReading& sheet) {
    const LocusHead head = readLocusHead(sheet.lines(), 1);
    const bool pool = head.more && sheet.lines().line().starts_with("Total\t");
    const std::size_t rows = readTable(sheet, sheet.rule().statistic, true, head);
    if (pool) { // a table of groups has none
        holdPopulations(sheet, rows - 1);
    }
}

void readOpenTable(SheetReading& sheet) {
    const LocusHead head = readLocusHead(sheet.lines(), 1);
    holdPopulations(sheet, readTable(sheet, sheet.rule().statistic, false, head));
}

// The population of a sheet whose name is made of it. Of several with one file the last one's
// stands. An unknown one is named as the file is.
std::string populationOfFile(const SheetReading& sheet) {
    const std::string_view pattern = sheet.rule().name;
    const std::string end(pattern.substr(pattern.find('*') + 1));
    const std::string file = std::string(sheet.part()) + end;
    const auto names = sheet.populations();
    const auto found = std::find_if(names.rbegin(), names.rend(), [&](const std::string& name) {
        return fileNameOf(name + end) == file;
    });
    return found != names.rend() ? *found : std::string(sheet.part());
}

void readReplicateTable(SheetReading& sheet) {
    const std::string population = populationOfFile(sheet);
    const LocusHead head = readLocusHead(sheet.lines(), 1);
    for (bool more = head.more; more; more = sheet.lines().next()) {
        const Cells cells = rowCells(sheet, false, head);
        if (cells.empty()) {
            return;
        }
        if (!isWholeNumber(cells[0])) {
            return sheet.lines().fault("no number of a replicate in front");
        }
        rowOfLoci(sheet, sheet.rule().statistic, {.population1 = population, .replicate = cells[0]},
                  head, cells.subspan(1), sheet.rule().none);
    }
}

// --- Alleles ------------------------------------------------------------------------------

// The first names of the loci: they stand in every second cell.
LocusHead readAlleleHead(SheetLines& lines) {
    LocusHead head;
    if (!lines.next()) {
        lines.fault("the sheet has no head");
        return head;
    }
    const Cells cells = lines.cells();
    if (cells.size() % 2 == 0 || !cells[0].empty()) {
        lines.fault("no head of locus names");
        return head;
    }
    for (std::size_t l = 1; l < cells.size(); l += 2) {
        head.loci.emplace_back(cells[l]);
    }
    head.more = lines.next();
    return head;
}

// The pairs of cells of a row; both are empty where a locus has no further allele.
bool readAlleles(SheetReading& sheet, const std::string& population, const LocusHead& head,
                 Cells cells) {
    for (std::size_t l = 0; l < head.loci.size(); ++l) {
        const std::string_view allele = cells[2 * l];
        const std::string_view value = cells[2 * l + 1];
        if (allele.empty() && value.empty()) {
            continue;
        }
        if (!isWholeNumber(allele)) {
            sheet.lines().fault("a value without its allele");
            return false;
        }
        if (!sheet.row({.population1 = population, .locus = head.loci[l], .replicate = allele},
                       value)) {
            return false;
        }
    }
    return true;
}

void readAlleleList(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    const LocusHead head = readAlleleHead(lines);
    std::string population;
    bool begins = true; // a block, at the first line and behind empty ones
    bool ended = true;  // the block so far
    for (bool more = head.more; more; more = lines.next()) {
        if (lines.line().empty()) {
            begins = true;
            ended = true;
            continue;
        }
        const Cells cells = lines.closedCells();
        if (begins) {
            population = cells[0];
        } else if (!cells[0].empty()) {
            return lines.fault("a name inside a block");
        }
        const bool nameAlone = begins && cells.size() == 1; // a population without any allele
        begins = false;
        ended = nameAlone;
        if (!nameAlone && (!sheet.hasCells(cells.size(), 1 + 2 * head.loci.size()) ||
                           !readAlleles(sheet, population, head, cells.subspan(1)))) {
            return;
        }
    }
    if (!ended) {
        lines.fault("the sheet ends inside a block");
    }
}

// --- Allelic richness ---------------------------------------------------------------------

constexpr std::string_view kRichnessOf = "allelic_richness";
constexpr std::string_view kRichnessReference = "allelic_richness_reference";
constexpr std::string_view kRichnessVariance = "allelic_richness_variance";

void readRichness(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    const LocusHead head = readLocusHead(lines, 1);
    const std::size_t samples = readTable(sheet, kRichnessOf, true, head);
    if (!sheet.nextOf("the reference")) {
        return;
    }
    const Cells cells = rowCells(sheet, true, head);
    if (cells.empty() || cells[0] != "Std. Ind. Number") {
        return lines.fault("no reference of the richness");
    }
    rowOfLoci(sheet, kRichnessReference, {}, head, cells.subspan(1), isUnreachedReference);
    for (const std::string_view text : {"", "Variance of allelic richness"}) {
        if (!sheet.nextOf("the variance") || lines.line() != text) {
            return lines.fault("no variances of the richness");
        }
    }
    const LocusHead second = readLocusHead(lines, 1);
    const std::size_t rows = readTable(sheet, kRichnessVariance, true, second);
    if (rows != samples) {
        lines.fault("the sheet ends with sample " + std::to_string(rows) + " of " +
                    std::to_string(samples));
    }
}

// --- Gst -----------------------------------------------------------------------------------

struct NamedRow {
    std::string_view label;
    std::string_view statistic;
};

constexpr NamedRow kGstRows[] = {{"Gst", "gst"},           {"Gst'", "gst_prime"}, {"", ""},
                                 {"Gst(max)", "gst_max"},  {"Hs", "gst_hs"},      {"Ht", "gst_ht"},
                                 {"Ht(max)", "gst_ht_max"}};

struct OverLoci {
    std::string_view label;
    std::string_view gst;
    std::string_view gstPrime;
};

constexpr OverLoci kGstOverLoci[] = {
    {"Gst Hamrick and Godt", "gst_mean_of_ratios", "gst_prime_mean_of_ratios"},
    {"Gst Nei", "gst_ratio_of_means", "gst_prime_ratio_of_means"},
};

bool readGstRow(SheetReading& sheet, const NamedRow& row, const LocusHead& head) {
    if (row.label.empty()) { // the empty line between
        return sheet.hasCells(sheet.lines().line().size(), 0);
    }
    const Cells cells = rowCells(sheet, false, head);
    if (cells.empty()) {
        return false;
    }
    if (cells[0] != row.label) {
        sheet.lines().fault("\"" + std::string(row.label) + "\" should stand in front");
        return false;
    }
    return rowOfLoci(sheet, row.statistic, {}, head, cells.subspan(1));
}

void readGst(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    const LocusHead head = readLocusHead(lines, 1);
    bool more = head.more;
    for (const NamedRow& row : kGstRows) {
        if (!more) {
            return lines.fault("the sheet ends among the loci");
        }
        if (!readGstRow(sheet, row, head)) {
            return;
        }
        more = lines.next();
    }
    if (!more || !lines.line().empty() || !lines.next() || lines.line() != "\tGst\tGst'") {
        return lines.fault("no values over all loci");
    }
    for (const OverLoci& mean : kGstOverLoci) {
        if (!sheet.nextOf(mean.label)) {
            return;
        }
        const Cells cells = lines.cells();
        if (!sheet.hasCells(cells.size(), 3) || cells[0] != mean.label) {
            return lines.fault("\"" + std::string(mean.label) + "\" should stand in front");
        }
        sheet.row(mean.gst, {}, cells[1]);
        sheet.row(mean.gstPrime, {}, cells[2]);
    }
}

std::vector<std::string_view> gstStatistics() {
    std::vector<std::string_view> names;
    for (const NamedRow& row : kGstRows) {
        if (!row.statistic.empty()) {
            names.push_back(row.statistic);
        }
    }
    for (const OverLoci& mean : kGstOverLoci) {
        names.push_back(mean.gst);
        names.push_back(mean.gstPrime);
    }
    return names;
}

// --- Long sheets ----------------------------------------------------------------------------

struct Column {
    std::string_view head;
    std::string_view statistic;
    NoValue none = nullptr;
};

// Those that a sheet of Single_data holds, too, are named so.
constexpr std::array<Column, 22> kSummaryColumns = {{
    {"Het obs", "heterozygosity_observed"},
    {"Het exp", "summary_heterozygosity_expected"},
    {"Het RD", "summary_heterozygosity_expected_rd"},
    {"Var", "summary_allele_variance"},
    {"VarRD", "summary_allele_variance_rd"},
    {"Var repeatnumber", "summary_repeat_variance"},
    {"Var repeatRD", "summary_repeat_variance_rd", isNegative},
    {"ShannonID", "summary_shannon"},
    {"MinAllele", "summary_allele_min"},
    {"MeanAllele", "summary_allele_mean"},
    {"MaxAllele", "summary_allele_max"},
    {"MinRepeat", "repeat_min"},
    {"MeanRepeat", "repeat_mean"},
    {"MaxRepeat", "repeat_max"},
    {"Analys.Chrom.", "summary_gene_copies"},
    {"Effect.Chrom.", "summary_gene_copies_effective"},
    {"Num.Alleles", "summary_allele_number_rd"},
    {"Max.obs.Alleles", "allele_number_observed"},
    {"SMM Exp.Num.Alleles", "summary_allele_number_expected_smm"},
    {"IAN Exp.Num.Alleles", "summary_allele_number_expected_iam"},
    {"Hs Nei", "heterozygosity_nei"},
    {"Fis,Pop", "fis_population"},
}};

constexpr std::string_view kSummaryFrequency = "summary_allele_frequency";

constexpr std::array<Column, 12> kGroupColumns = {{
    {"Het exp", "group_summary_heterozygosity_expected"},
    {"Het exp RD", "group_summary_heterozygosity_expected_rd", isNegative},
    {"Var", "group_summary_allele_variance", isNegative},
    {"VarRD", "group_summary_allele_variance_rd", isNegative},
    {"Var repeatnumber", "group_summary_repeat_variance"},
    {"Var repeatRD", "group_summary_repeat_variance_rd", isNegative},
    {"MinAllele", "group_allele_min"},
    {"MeanAllele", "group_allele_mean"},
    {"MaxAllele", "group_allele_max"},
    {"MinRepeat", "group_repeat_min"},
    {"MeanRepeat", "group_repeat_mean"},
    {"MaxRepeat", "group_repeat_max"},
}};

template <std::size_t Count>
std::vector<std::string_view> statisticsOf(const std::array<Column, Count>& columns) {
    std::vector<std::string_view> names(Count);
    std::transform(columns.begin(), columns.end(), names.begin(),
                   [](const Column& column) { return column.statistic; });
    return names;
}

std::vector<std::string_view> summaryStatistics() {
    std::vector<std::string_view> names = statisticsOf(kSummaryColumns);
    names.push_back(kSummaryFrequency);
    return names;
}

// Reads the head of a long sheet; `labels` behind the names of the locus. Gives the number of
// cells in front of the columns; 0, and a fault, where the head is another one.
std::size_t readLongHead(SheetReading& sheet, std::string_view labels,
                         std::span<const Column> columns, std::string_view end) {
    if (!sheet.lines().next()) {
        sheet.lines().fault("the sheet has no head");
        return 0;
    }
    std::string rest(labels);
    for (const Column& column : columns) {
        rest.append("\t").append(column.head);
    }
    rest += end;
    const std::string& line = sheet.lines().line();
    const std::size_t more = labels.empty() ? 0 : 1;
    if (line == "Locus name" + rest) {
        return 1 + more;
    }
    if (line == "Locus name1\tLocus name2" + rest) {
        return 2 + more;
    }
    sheet.lines().fault("another head than this program writes");
    return 0;
}

bool rowOfColumns(SheetReading& sheet, const TidyPlace& place, std::span<const Column> columns,
                  Cells cells) {
    for (std::size_t c = 0; c < columns.size(); ++c) {
        if (!sheet.row(columns[c].statistic, place, cells[c], columns[c].none)) {
            return false;
        }
    }
    return true;
}

// The frequencies of the alleles, numbered from 1.
void rowsOfFrequencies(SheetReading& sheet, TidyPlace place, Cells cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        place.replicate = number;
        sheet.row(kSummaryFrequency, place, cells[i]);
    }
}

void readSummary(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    const std::size_t front = readLongHead(sheet, "\tPop.name", kSummaryColumns, "\tFrequences");
    std::size_t rows = 0;
    while (front > 0 && lines.next()) {
        const Cells cells = lines.closedCells();
        if (cells.size() < front + kSummaryColumns.size()) {
            return lines.fault("only " + std::to_string(cells.size()) + " cells");
        }
        const TidyPlace place{.population1 = cells[front - 1], .locus = cells[0]};
        if (!rowOfColumns(sheet, place, kSummaryColumns, cells.subspan(front))) {
            return;
        }
        rowsOfFrequencies(sheet, place, cells.subspan(front + kSummaryColumns.size()));
        ++rows;
    }
    const std::size_t populations = sheet.populations().size();
    if (populations > 0 && rows % populations != 0) { // a locus lacks some
        holdPopulations(sheet, rows % populations);
    }
}

void readGroupSummary(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    const std::string group = "Grp " + std::string(sheet.part());
    const std::size_t front = readLongHead(sheet, "", kGroupColumns, "");
    while (front > 0 && lines.next()) {
        const Cells cells = lines.closedCells();
        if (!sheet.hasCells(cells.size(), front + kGroupColumns.size()) ||
            !rowOfColumns(sheet, {.population1 = group, .locus = cells[0]}, kGroupColumns,
                          cells.subspan(front))) {
            return;
        }
    }
}

} // namespace

const Layout kAlleleList = {readAlleleList, nullptr};
const Layout kClosedTable = {readClosedTable, nullptr};
const Layout kOpenTable = {readOpenTable, nullptr};
const Layout kReplicateTable = {readReplicateTable, nullptr};
const Layout kRichness = {
    readRichness, [] {
        return std::vector{kRichnessOf, kRichnessReference, kRichnessVariance};
    }};
const Layout kGst = {readGst, gstStatistics};
const Layout kSummary = {readSummary, summaryStatistics};
const Layout kGroupSummary = {readGroupSummary, [] { return statisticsOf(kGroupColumns); }};

} // namespace kva
