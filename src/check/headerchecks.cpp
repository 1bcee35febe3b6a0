#include "check/headerchecks.h"

#include "check/cellreading.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

namespace kva {

namespace {

// The cells of a row behind its head, filled up with empty ones to `count`.
std::vector<std::string> lociCells(std::string_view row, std::size_t count) {
    for (int cell = 0; cell < kHeadCells; ++cell) {
        takeCell(row);
    }
    std::vector<std::string> cells;
    while (cells.size() < count) {
        cells.emplace_back(takeCell(row));
    }
    return cells;
}

bool isNumberOfAtLeast(const std::string& cell, int32_t least) {
    const CellReading reading = readCell(cell);
    return (reading.kind == CellContent::Number || reading.kind == CellContent::LeadingZeros) &&
           reading.value >= least;
}

struct LengthRow {
    int64_t row;      // of the file, from 1
    FindingCode code; // of a length that is none
    int32_t least;    // smallest length
};

void checkLengths(const std::string& text, const LengthRow& length, const LoadedData& data,
                  Findings& findings) {
    const auto columns = static_cast<unsigned char>(data.DatenFormat);
    const std::vector<std::string> cells =
        lociCells(text, static_cast<std::size_t>(data.AnzLoci) * columns);
    for (int locus = 0; locus < data.AnzLoci; ++locus) {
        const std::size_t place = static_cast<std::size_t>(locus) * columns;
        const int64_t column = kHeadCells + static_cast<int64_t>(place) + 1;
        const bool second = columns == 2 && !cells[place + 1].empty();
        if (cells[place].empty() && second) {
            findings.add(FindingCode::LengthColumn, length.row, column + 1, cells[place + 1]);
        } else if (!isNumberOfAtLeast(cells[place], length.least)) {
            findings.add(length.code, length.row, column, cells[place]);
        }
    }
}

bool isNumber(const std::string& name) {
    return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

// One column per locus is told, but each second name belongs to the one before it.
bool standInPairs(const std::vector<std::string>& names) {
    if (names.size() < 2 || names.size() % 2 != 0) {
        return false;
    }
    for (std::size_t i = 0; i < names.size(); i += 2) {
        if (names[i].empty() || (!names[i + 1].empty() && !names[i + 1].starts_with(names[i]))) {
            return false;
        }
    }
    return true;
}

void checkNames(const HeaderRows& header, const LoadedData& data, Findings& findings) {
    const auto columns = static_cast<unsigned char>(data.DatenFormat);
    const int64_t row = data.KopfZeilen;
    const std::vector<std::string> names =
        lociCells(header.names, static_cast<std::size_t>(data.AnzLoci) * columns);
    if (!header.names.starts_with("\t\t\t")) {
        findings.add(FindingCode::NamesShifted, row, 1, header.names);
    }
    const bool numbers = data.KopfZeilen == 3 && std::all_of(names.begin(), names.end(), isNumber);
    if (numbers) {
        findings.add(FindingCode::IndividualAsNames, row, kHeadCells + 1, names.front());
    }
    if (columns == 1 && standInPairs(names)) {
        findings.add(FindingCode::ColumnsDoubtful, 1, 1, names[0] + ", " + names[1]);
    }
    std::map<std::string, int64_t> known; // column of each name
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto column = kHeadCells + static_cast<int64_t>(i) + 1;
        const bool second = columns == 2 && i % 2 == 1;
        if (names[i].empty()) {
            findings.add(second ? FindingCode::SecondNameMissing : FindingCode::LocusNameMissing,
                         row, column);
        } else if (!second && !known.emplace(names[i], column).second) {
            findings.add(FindingCode::LocusNameTwice, row, column, names[i]);
        }
        if (!numbers && isNumber(names[i])) {
            findings.add(FindingCode::LocusNameNumber, row, column, names[i]);
        }
    }
}

} // namespace

int64_t cellCount(std::string_view row) {
    return std::count(row.begin(), row.end(), '\t') + 1;
}

HeaderRows headerRowsOf(DataWindow& window, int rows) {
    const std::string_view block = window.block(0);
    std::vector<DataRow> found;
    std::size_t from = 0;
    for (int row = 0; row < rows; ++row) {
        found.push_back(findRow(window, block, 0, from, from));
        from = static_cast<std::size_t>(found.back().lastByte) + 1;
    }
    return {std::string(found[0].text), std::string(found[1].text), std::string(found.back().text),
            found.back().lastByte};
}

void checkHeader(const HeaderRows& header, const LoadedData& data, Findings& findings) {
    std::string_view row = header.first;
    const std::string_view columns = takeCell(row);
    if (columns.size() != 1) {
        findings.add(FindingCode::ColumnsCell, 1, 1, columns);
    }
    const int64_t cells = cellCount(header.first);
    if ((cells - kHeadCells) % data.DatenFormat != 0) {
        findings.add(FindingCode::SurplusColumn, 1, cells);
    }
    if (data.AnzLoci == 0) {
        findings.add(FindingCode::NoLocus, 1, 0, std::to_string(cells) + " cells");
        return;
    }
    if (data.KopfZeilen == 2) {
        findings.add(FindingCode::NoLengths);
    } else {
        checkLengths(header.first, {1, FindingCode::RepeatLength, 1}, data, findings);
        checkLengths(header.second, {2, FindingCode::RestLength, 0}, data, findings);
    }
    checkNames(header, data, findings);
}

} // namespace kva
