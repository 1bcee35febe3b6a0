// The IM information file: inheritance scalars and mutation rates of the loci, laid out like the
// data file. The head is skipped, and lines end with CR LF:
//
//      2			2		4
//      			100		80
//      			LocA	LocA_2	LocB	LocB_2
//      mutation			0.0005		0,0012
//      inherit			1		0.25
//
// A row whose first cell begins with "m" holds mutation rates, any other inheritance scalars. The
// second and third cells are not read, nor the second one of a locus. A later row of the same kind
// replaces an earlier one as a whole, also one that is cut short: a cell that it lacks is -1.0.
#include "formats/IMInfo.h"

#include "control/Ausgabe.h"
#include "data/datarows.h"
#include "formats/passes.h"
#include "run/run.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace kva {

namespace {

constexpr double kNoValue = -1.0;
constexpr int kLeadingCells = 3; // cells of a row in front of the values

double toValue(std::string_view cell) {
    if (cell.empty()) {
        return kNoValue;
    }
    std::string number(cell);
    std::replace(number.begin(), number.end(), ',', '.');
    const double value = std::strtod(number.c_str(), nullptr);
    return value == 0.0 && cell.front() != '0' ? kNoValue : value;
}

// What stands behind the third tab of a row; empty if the row ends before it.
std::string_view valueCells(std::string_view row) {
    for (int cell = 0; cell < kLeadingCells; ++cell) {
        takeCell(row);
    }
    return row;
}

// The offset of the byte in front of the first row, the last byte of the head's line end; nothing
// if the head does not end in `block`. Wanted: exactly one byte is stepped over behind the line
// end of the row before the names, and one in front of each row, as CR LF needs it. With a lone LF
// the first byte of the rows is lost.
std::optional<std::size_t> beforeFirstRow(std::string_view block, int headRows, int headColumns,
                                          int lociCells) {
    std::size_t place = 0;
    for (int row = 1; row < headRows; ++row) {
        const std::size_t lineEnd = block.find_first_of("\r\n", place + 1);
        if (lineEnd == std::string_view::npos) {
            return std::nullopt;
        }
        place = lineEnd + 1;
    }
    place += static_cast<std::size_t>(headColumns) + 1;
    const std::size_t rowEnd = block.find_first_of("\r\n", place);
    if (rowEnd == std::string_view::npos) {
        return std::nullopt;
    }
    for (int cell = 0; cell < lociCells; ++cell) {
        place = std::min(block.find('\t', place), rowEnd) + 1;
        if (place > rowEnd) {
            break;
        }
    }
    return place;
}

// Reads the rows, the first of which begins behind the byte at `position`.
void readRows(Run& run, DataWindow& window, int64_t position) {
    std::string_view block = window.block(position);
    while (block.size() > 1) {
        const DataRow row = findRow(window, block, position, 1, 1);
        if (!row.text.empty()) { // an empty line is no row
            GetIMData(*run.Daten, run.AnzLoci, valueCells(row.text),
                      row.text.starts_with('m') ? 0 : 1, run.DatenFormat);
        }
        const int64_t next = row.lineEnd + 1;
        if (!row.hasLineEnd || next == position + static_cast<int64_t>(block.size()) - 1) {
            return;
        }
        position = next;
        block = window.block(position);
    }
}

} // namespace

int GetIMData(Datensatz& daten, long anzLoci, std::string_view zeile, int vererbung, int format) {
    zeile = zeile.substr(0, zeile.find_first_of("\r\n"));
    for (int locus = 1; locus <= anzLoci; ++locus) {
        const double value = toValue(takeCell(zeile));
        if (format == 2) {
            takeCell(zeile); // the locus's second column
        }
        (vererbung != 0 ? daten.AccessInheritanceScalar(locus) : daten.AccessMutationRate(locus)) =
            value;
    }
    return 0;
}

long readIMInfo(Run& run, std::FILE* stream) {
    if (stream == nullptr || !run.Daten) {
        return -1;
    }
    DataWindow window(stream);
    std::string_view block = window.hasBuffer() ? window.block(0) : std::string_view();
    if (block.empty()) {
        return -1;
    }
    if (run.KopfZeilen == 3 && run.KopfSpalten != 3) {
        AUSGABE(Message::WrongRows);
        return -3;
    }
    const std::optional<std::size_t> position =
        beforeFirstRow(block.substr(0, block.find('\0')), run.KopfZeilen, run.KopfSpalten,
                       run.AnzLoci * run.DatenFormat);
    if (!position || window.block(static_cast<int64_t>(*position)).empty()) {
        return -1;
    }
    if (rowTooLong(run.AnzLoci, run.DatenFormat)) {
        AUSGABE(Message::RowTooLong);
        return -1;
    }
    readRows(run, window, static_cast<int64_t>(*position));
    return 0;
}

} // namespace kva
