#include "check/reporttext.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kva {

namespace {

// "2 errors", "1 error", "no error"
std::string counted(int64_t count, const std::string& word) {
    return (count == 0 ? "no" : std::to_string(count)) + " " + word + (count > 1 ? "s" : "");
}

void writeFinding(std::ostream& out, const Finding& finding) {
    const FindingKind& kind = kindOf(finding.code);
    out << '\n' << nameOf(kind.severity) << ": " << kind.name << ", " << kind.title;
    if (finding.count > 1) {
        out << " (" << finding.count << " times)";
    }
    out << "\n  at: ";
    for (const Place& place : finding.places) {
        out << (&place == &finding.places.front() ? "" : "; ") << placeText(place);
    }
    const auto more = finding.count - static_cast<int64_t>(finding.places.size());
    if (more > 0) {
        out << "; and " << more << " more";
    }
    out << "\n  means: " << kind.meaning << "\n  do: " << kind.advice << '\n';
}

using TableRow = std::vector<std::string>;

// Columns as wide as their widest cell, the first to the left, the others to the right.
void writeTable(std::ostream& out, const std::vector<TableRow>& rows) {
    std::vector<std::size_t> widths(rows.front().size());
    for (const TableRow& row : rows) {
        for (std::size_t cell = 0; cell < row.size(); ++cell) {
            widths[cell] = std::max(widths[cell], row[cell].size());
        }
    }
    for (const TableRow& row : rows) {
        out << "  ";
        for (std::size_t cell = 0; cell < row.size(); ++cell) {
            const std::string fill(widths[cell] - row[cell].size(), ' ');
            out << (cell == 0 ? row[cell] + fill : "  " + fill + row[cell]);
        }
        out << '\n';
    }
}

std::string share(int64_t part, int64_t all) {
    const int64_t tenths = all == 0 ? 0 : (part * 1000 + all / 2) / all;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " %";
}

std::string lengthText(int32_t length, int32_t least) {
    return length < least ? "unknown" : std::to_string(length);
}

void writePopulations(std::ostream& out, const DataSummary& summary) {
    const auto loci = static_cast<int64_t>(summary.loci.size());
    std::vector<TableRow> rows = {{"Population", "Individuals", "Inbred", "Group", "Missing"}};
    for (const PopulationSummary& population : summary.populations) {
        rows.push_back({shownText(population.name), std::to_string(population.individuals),
                        std::to_string(population.inbred),
                        population.group < 1 ? "none" : std::to_string(population.group),
                        share(population.missing, population.individuals * loci * 2)});
    }
    writeTable(out, rows);
}

void writeLoci(std::ostream& out, const DataSummary& summary) {
    std::vector<TableRow> rows = {
        {"Locus", "Repeat", "Rest", "Alleles", "Smallest", "Largest", "Missing"}};
    for (const LocusSummary& locus : summary.loci) {
        const bool data = locus.copies > 0;
        rows.push_back({shownText(locus.name), lengthText(locus.repeat, 1),
                        lengthText(locus.rest, 0), std::to_string(locus.alleles),
                        data ? std::to_string(locus.smallest) : "none",
                        data ? std::to_string(locus.largest) : "none",
                        share(locus.missing, locus.missing + locus.copies)});
    }
    writeTable(out, rows);
}

} // namespace

std::string placeText(const Place& place) {
    std::string text = place.row == 0 ? "the whole file" : "row " + std::to_string(place.row);
    if (place.column != 0) {
        text += ", column " + std::to_string(place.column);
    }
    return place.found.empty() ? text : text + " (" + place.found + ")";
}

void writeReport(std::ostream& out, const CheckReport& report) {
    out << report.file << ": " << counted(report.errors, "error") << ", "
        << counted(report.warnings, "warning") << ", " << counted(report.notes, "note") << '\n';
    for (const Finding& finding : report.findings) {
        writeFinding(out, finding);
    }
    const DataSummary& summary = report.summary;
    if (!report.read || summary.loci.empty()) {
        out << "\nUnderstood: nothing, a run would write sheets with heads alone.\n";
        return;
    }
    out << "\nUnderstood: " << counted(summary.columns, "column") << " per locus, "
        << counted(summary.headerRows, "header row") << ", "
        << counted(std::ssize(summary.populations), "population") << ", "
        << counted(summary.individuals, "individual") << ", "
        << (summary.loci.size() == 1 ? "1 locus" : std::to_string(summary.loci.size()) + " loci")
        << ", " << share(summary.missing, summary.alleles) << " of the alleles missing.\n";
    writePopulations(out, summary);
    writeLoci(out, summary);
}

} // namespace kva
