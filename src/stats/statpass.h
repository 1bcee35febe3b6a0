// What the passes of the descriptive statistics share: sheets and columns as rows
// of a table, names of loci, and the way into the result folder.
#ifndef KVA_STATS_STATPASS_H
#define KVA_STATS_STATPASS_H

#include "output/sheet.h"
#include "run/run.h"

#include <array>
#include <cstddef>
#include <string>

namespace kva {

// Replicates of the random discard for the sheets.
constexpr int kRDReplicates = 200;

// --- Cells by rule -------------------------------------------------------------------

enum class CellFormat { Real, Count }; // "%f\t", "%d\t"

// A sheet with one cell per sample and locus, or a column of a long table. `Values`
// is what the pass worked out for the place.
template <class Values> struct CellRule {
    const char* name; // file name of the sheet, head of the column
    CellFormat format;
    double (*value)(const Values&);
    bool (*missing)(const Values&); // the cell is "n.d."
};

// The plain rule: a field as it is, missing where it is negative.
template <auto Field, class Values> double field(const Values& values) {
    return static_cast<double>(values.*Field);
}
template <auto Field, class Values> bool negative(const Values& values) {
    return values.*Field < 0;
}
template <auto Field, class Values> bool belowOne(const Values& values) {
    return values.*Field < 1;
}

// Values in repeats, for a locus with repeat length r and rest length s.
template <class Values> double varRepeat(const Values& v) {
    return v.var / (static_cast<double>(v.r) * v.r);
}
template <class Values> double varRDRepeat(const Values& v) {
    return v.varRD / (static_cast<double>(v.r) * v.r);
}
template <class Values> double inRepeats(const Values& v, double allele) {
    return (allele - v.s) / v.r;
}

template <class Values>
void writeCell(ResultFile& f, const CellRule<Values>& rule, const Values& values) {
    if (rule.missing(values)) {
        writeNd(f);
    } else if (rule.format == CellFormat::Real) {
        writeReal(f, rule.value(values));
    } else {
        writeCount(f, static_cast<int>(rule.value(values)));
    }
}

// Opens the sheets of all rules in their order and writes the heads of locus names.
template <class Values, std::size_t Count>
std::array<ResultFile, Count> openSheets(Run& run,
                                         const std::array<CellRule<Values>, Count>& rules) {
    std::array<ResultFile, Count> sheets;
    for (std::size_t i = 0; i < Count; ++i) {
        sheets[i] = run.OpenResult(rules[i].name, "wb");
        writeLociHead(sheets[i], *run.Daten, run.DatenFormat);
    }
    return sheets;
}

// "\tname" for every column.
template <class Values, std::size_t Count>
void writeColumnHeads(ResultFile& f, const std::array<CellRule<Values>, Count>& rules) {
    for (const CellRule<Values>& rule : rules) {
        f.character('\t');
        f.text(rule.name);
    }
}

// --- Names of loci -------------------------------------------------------------------

// The first name of a locus; empty if it has none.
std::string locusLabel(const Datensatz& daten, int locus);

// "name\t", in two-column data "name\tname2\t".
void writeLocusNames(ResultFile& f, const Run& run, int locus);

// The head of these cells: "Locus name", in two-column data "Locus name1\tLocus name2".
const char* locusNameHead(const Run& run);

// --- Passes ----------------------------------------------------------------------------

// The independent gene copies of a table: C/2, cut to a whole number; 0 if empty.
int effectiveCopies(const AllelCount& table);

// Counts the alleles if no pass did so yet. False if there are still no tables.
bool tablesReady(Run& run);

} // namespace kva

#endif
