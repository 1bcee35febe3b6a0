#include "distance/locussheets.h"

#include "data/lociclass.h"
#include "output/numberformat.h"

#include <optional>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kMaxKeptBytes = std::size_t{1} << 28U; // of all rows together

void appendCell(std::string& text, double value) {
    constexpr int kDecimals = 6; // of "%f"
    char bytes[kFixedBufferSize + 1];
    bytes[0] = '\t';
    text.append(bytes, 1 + formatDecimals<kDecimals>(bytes + 1, value));
}

} // namespace

LocusSheets::LocusSheets(const Datensatz& daten, int dataFormat, CellRules rules, bool keepRows)
    : Daten(&daten), Format(dataFormat), Rules(rules), KeepRows(keepRows) {}

void LocusSheets::add(ResultFile sheet, const Measure& measure) {
    bool values = sheet.isOpen();
    for (std::size_t s = 0; s < Sheets.size(); ++s) {
        if (Measures[s].Bit == measure.Bit) {
            values = Sheets[s].Values;
        }
    }
    Sheets.push_back({std::move(sheet), values});
    Measures.push_back(measure);
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

void LocusSheets::writeRow(std::size_t locus, RowSummer& sums) {
    if (Sheets.empty()) {
        return;
    }
    const std::string rowLabel = label(locus);
    const Row& row = keptCells(locus, sums);
    for (std::size_t s = 0; s < Sheets.size(); ++s) {
        Sheets[s].File.text(rowLabel);
        Sheets[s].File.text(row[s]);
        Sheets[s].File.character('\n');
    }
}

void LocusSheets::flush() {
    for (Sheet& sheet : Sheets) {
        sheet.File.flush();
    }
}

void LocusSheets::close() {
    for (Sheet& sheet : Sheets) {
        sheet.File.close();
    }
}

std::string LocusSheets::label(std::size_t locus) const {
    const int number = static_cast<int>(locus) + 1;
    std::string text = orEmpty(Daten->GetLociName(number));
    if (Format == 2) {
        text += '\t' + orEmpty(Daten->GetLociName2OrFirst(number));
    }
    return text;
}

LocusSheets::Row LocusSheets::cells(std::size_t locus, RowSummer& sums) const {
    Row row(Sheets.size());
    if (sums.samples().Loci[locus].Pool < 1) {
        return row;
    }
    const QuantitySet asked = quantitiesOf(Measures);
    for (std::size_t i = 0; i + 1 < sums.samples().Count; ++i) {
        addCells(i, sums.sum(i, {&locus, 1}, asked), sums.samples().Count, row);
    }
    return row;
}

void LocusSheets::addCells(std::size_t i, const RowSums& sums, std::size_t samples,
                           Row& row) const {
    for (std::size_t s = 0; s < Sheets.size(); ++s) {
        const Sheet& sheet = Sheets[s];
        for (std::size_t j = i + 1; j < samples && sheet.File.isOpen(); ++j) {
            const std::optional<double> cell =
                sheetCell(Measures[s], pairSums(Measures[s], sums, j), Rules);
            if (!cell) {
                row[s] += "\tn.d.";
            } else if (sheet.Values) {
                appendCell(row[s], *cell);
            }
        }
    }
}

const LocusSheets::Row& LocusSheets::keptCells(std::size_t locus, RowSummer& sums) {
    if (KeepRows && Rows.empty()) {
        Rows.resize(sums.samples().Loci.size());
    }
    if (KeepRows && !Rows[locus].empty()) {
        return Rows[locus];
    }
    Spare = cells(locus, sums);
    std::size_t bytes = 0;
    for (const std::string& text : Spare) {
        bytes += text.size();
    }
    if (!KeepRows || KeptBytes + bytes > kMaxKeptBytes) {
        return Spare;
    }
    KeptBytes += bytes;
    Rows[locus] = Spare;
    return Rows[locus];
}

} // namespace kva
