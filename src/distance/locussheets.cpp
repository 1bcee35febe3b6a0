#include "distance/locussheets.h"

#include "data/lociclass.h"
#include "output/numberformat.h"

#include <optional>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kMaxKeptBytes = std::size_t{1} << 28U; // of all rows together

void appendCell(std::string& text, double value) {
    char digits[kFixedBufferSize];
    text += '\t';
    text.append(digits, formatFixed(digits, value, 6));
}

} // namespace

LocusSheets::LocusSheets(const Datensatz& daten, int dataFormat, CellRules rules, bool keepRows)
    : Daten(&daten), Format(dataFormat), Rules(rules), KeepRows(keepRows) {}

void LocusSheets::add(ResultFile sheet, const Measure& measure) {
    Sheets.push_back({std::move(sheet), measure, {}});
}

void LocusSheets::writeHead() {
    if (Sheets.empty()) {
        return;
    }
    const int populations = Daten->GetPopAnzahl();
    std::string first = Format == 2 ? "\t" : "";
    std::string second = first;
    for (int i = 1; i < populations; ++i) {
        for (int j = i + 1; j <= populations; ++j) {
            first += '\t' + orEmpty(Daten->GetPopName(i));
            second += '\t' + orEmpty(Daten->GetPopName(j));
        }
    }
    for (Sheet& sheet : Sheets) {
        sheet.File.text(first);
        sheet.File.character('\n');
        sheet.File.text(second);
        sheet.File.character('\n');
    }
}

void LocusSheets::writeRow(int32_t locus, std::span<RowSummer> sums) {
    const std::string rowLabel = Sheets.empty() ? "" : label(locus);
    for (std::size_t s = 0; s < Sheets.size(); ++s) {
        Sheet& sheet = Sheets[s];
        if (sheet.File.isOpen()) {
            sheet.File.text(rowLabel);
            sheet.File.text(keptCells(sheet, locus, sums[s]));
            sheet.File.character('\n');
        }
    }
}

void LocusSheets::close() {
    for (Sheet& sheet : Sheets) {
        sheet.File.close();
    }
}

std::string LocusSheets::label(int32_t locus) const {
    std::string text = orEmpty(Daten->GetLociName(locus + 1));
    if (Format == 2) {
        text += '\t' + orEmpty(Daten->GetLociName2OrFirst(locus + 1));
    }
    return text;
}

// Wanted: the values of both outputs of a bit depend on the first one's sheet, so that without
// the sheet of "CAS" that of "DAN" holds no values.
bool LocusSheets::valuesWanted(const Sheet& sheet) const {
    for (const Sheet& other : Sheets) {
        if (other.Rule.Bit == sheet.Rule.Bit) {
            return other.File.isOpen();
        }
    }
    return true;
}

std::string LocusSheets::cells(const Sheet& sheet, int32_t locus, RowSummer& sums) const {
    std::string text;
    if (sums.samples().Loci[static_cast<std::size_t>(locus)].Pool < 1) {
        return text; // wanted: not even "n.d." where nobody has an allele
    }
    const bool values = valuesWanted(sheet);
    const int32_t populations = sums.samples().Count;
    for (int32_t i = 0; i + 1 < populations; ++i) {
        sums.sum(i, {&locus, 1});
        for (int32_t j = i + 1; j < populations; ++j) {
            const std::optional<double> cell = sheetCell(sheet.Rule, sums.pair(j), Rules);
            if (!cell) {
                text += "\tn.d.";
            } else if (values) {
                appendCell(text, *cell);
            }
        }
    }
    return text;
}

const std::string& LocusSheets::keptCells(Sheet& sheet, int32_t locus, RowSummer& sums) {
    if (KeepRows && sheet.Rows.empty()) {
        sheet.Rows.resize(static_cast<std::size_t>(Daten->AnzLoci));
    }
    std::string* const kept = KeepRows ? &sheet.Rows[static_cast<std::size_t>(locus)] : nullptr;
    if (kept != nullptr && !kept->empty()) {
        return *kept;
    }
    Spare = cells(sheet, locus, sums);
    if (kept == nullptr || KeptBytes + Spare.size() > kMaxKeptBytes) {
        return Spare;
    }
    KeptBytes += Spare.size();
    *kept = Spare;
    return *kept;
}

} // namespace kva
