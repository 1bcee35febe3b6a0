// What the passes of the descriptive statistics share: sheets and columns as rows
// of a table, names of loci, and the way into the result folder.
#ifndef KVA_STATS_STATPASS_H
#define KVA_STATS_STATPASS_H

#include "output/sheet.h"
#include "run/passframe.h"
#include "run/run.h"

#include <array>
#include <cstddef>
#include <string>

namespace kva {

// Replicates of the random discard that a table runs for the sheets.
constexpr int kRDReplicates = 200;

// --- Cells by rule -------------------------------------------------------------------

// How a value is written: Real "%f\t", Count "%d\t".
enum class CellFormat { Real, Count };

// A sheet with one cell per sample and locus, or a column of a long table. `Values` is what the
// pass worked out for the place, a struct of its own with the fields that the rules name.
template <class Values> struct CellRule {
    const char* name;               // file name of the sheet, head of the column
    CellFormat format;              // a count is the value cut to a whole number
    double (*value)(const Values&); // the number of the cell; not called where it is missing
    bool (*missing)(const Values&); // the cell is "n.d."
};

// Parts of rules: a field as it is; missing where a field is negative, the sentinel of the tables;
// missing where it is below 1, for numbers of copies and of alleles.
template <auto Field, class Values> double field(const Values& values) {
    return static_cast<double>(values.*Field);
}
template <auto Field, class Values> bool negative(const Values& values) {
    return values.*Field < 0;
}
template <auto Field, class Values> bool belowOne(const Values& values) {
    return values.*Field < 1;
}

// Values in repeats, for a locus with repeat length r and rest length s, both in base pairs: a
// variance of allele numbers over r^2, of the plain counts and of the random discard, and an allele
// number (var, varRD, r and s are fields of `Values`). r is not 0.
template <class Values> double varRepeat(const Values& v) {
    return v.var / (static_cast<double>(v.r) * v.r);
}
template <class Values> double varRDRepeat(const Values& v) {
    return v.varRD / (static_cast<double>(v.r) * v.r);
}
template <class Values> double inRepeats(const Values& v, double allele) {
    return (allele - v.s) / v.r;
}

// Writes the cell of a place by its rule, with its tab: "n.d.\t" where it is missing.
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

// Opens the sheets of all rules in the current folder, in their order, and writes the heads of
// locus names. A sheet that cannot be opened stays closed, and takes what is written to it for
// nothing.
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

// Writes the heads of all columns, "\tname" for each.
template <class Values, std::size_t Count>
void writeColumnHeads(ResultFile& f, const std::array<CellRule<Values>, Count>& rules) {
    for (const CellRule<Values>& rule : rules) {
        f.character('\t');
        f.text(rule.name);
    }
}

// --- Names of loci -------------------------------------------------------------------

// The first name of a locus (from 1); empty if it has none.
std::string locusLabel(const Datensatz& daten, int locus);

// Writes the cells that name a locus (from 1): "name\t", in two-column data "name\tname2\t",
// where name2 is the first one if there is no second.
void writeLocusNames(ResultFile& f, const Run& run, int locus);

// The head of these cells, without the last tab: "Locus name", in two-column data
// "Locus name1\tLocus name2".
const char* locusNameHead(const Run& run);

// --- Passes ----------------------------------------------------------------------------

// The independent gene copies of a table: AnzChromosomen / 2, cut to a whole number; 0 if it is
// empty. A diploid individual has two of them, one flagged haploid has one.
int effectiveCopies(const AllelCount& table);

} // namespace kva

#endif
