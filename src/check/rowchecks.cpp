#include "check/rowchecks.h"

#include "check/cellreading.h"
#include "check/headerchecks.h"
#include "data/datarows.h"
#include "output/sheet.h"

#include <algorithm>
#include <optional>
#include <set>
#include <tuple>

namespace kva {

namespace {

using Code = FindingCode;

bool isBlankRow(std::string_view row) {
    return row.find_first_not_of("\t \v\f") == std::string_view::npos;
}

// The finding of a cell that reads otherwise than it stands, if it does.
std::optional<Code> codeOf(CellContent kind) {
    switch (kind) {
    case CellContent::LeadingZeros:
        return Code::LeadingZeros;
    case CellContent::Negative:
        return Code::NegativeMissing;
    case CellContent::ZeroMissing:
        return Code::ZeroMissing;
    case CellContent::TooLarge:
        return Code::NumberTooLarge;
    case CellContent::Decimal:
        return Code::Decimal;
    case CellContent::TwoAlleles:
        return Code::TwoAlleles;
    case CellContent::Letters:
        return Code::Letters;
    case CellContent::Quoted:
        return Code::Quoted;
    case CellContent::Word:
        return Code::WordMissing;
    case CellContent::Text:
        return Code::TextMissing;
    case CellContent::Empty:
    case CellContent::Number:
        break;
    }
    return std::nullopt;
}

// A locus whose repeat length most copies follow, so that the others stand out.
bool hasGrid(const LocusSummary& locus) {
    return locus.repeat > 1 && locus.onGrid * 4 >= locus.copies * 3;
}

int64_t columnOf(std::size_t place) {
    return kHeadCells + static_cast<int64_t>(place) + 1;
}

// Small letters without blanks.
std::string withoutForm(const std::string& name) {
    std::string form;
    for (const char c : name) {
        if (c != ' ') {
            form += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return form;
}

std::string bothNames(const std::string& first, const std::string& second) {
    return "\"" + first + "\" and \"" + second + "\"";
}

std::string ofPopulation(const std::string& name) {
    return "population \"" + name + "\"";
}

} // namespace

RowChecks::RowChecks(const DataSummary& summary, int64_t headerCells, Findings& findings)
    : Summary(summary), Found(findings), HeaderCells(headerCells),
      Cells(summary.loci.size() * static_cast<std::size_t>(summary.columns)),
      Number(summary.headerRows) {}

// --- Populations ---------------------------------------------------------------------

void RowChecks::openPopulation(const std::string& name) {
    Population = name;
    Rows = 0;
    if (!Known.emplace(name, true).second) {
        Found.add(Code::SplitPopulation, Number, 1, name);
        return;
    }
    Names.emplace_back(name, Number);
}

void RowChecks::closePopulation() {
    if (Summary.columns == 1 && Rows % 2 == 1) {
        Found.add(Code::OddRows, Number, 0,
                  ofPopulation(Population) + ", " + std::to_string(Rows) +
                      (Rows == 1 ? " row" : " rows"));
        checkIndividual(Before);
    }
}

void RowChecks::checkPopulationNames() {
    std::map<std::string, std::string> forms;
    std::map<std::string, std::string> labels;
    for (const auto& [name, row] : Names) {
        const auto form = forms.emplace(withoutForm(name), name);
        if (!form.second) {
            Found.add(Code::NamesAlike, row, 1, bothNames(form.first->second, name));
        }
        if (name.find('/') != std::string::npos) {
            Found.add(Code::NameSlash, row, 1, name);
        }
        if (name.size() > kPopulationLabel) {
            Found.add(Code::NameLong, row, 1, name);
        }
        const auto label = labels.emplace(name.substr(0, kPopulationLabel), name);
        if (!label.second) {
            Found.add(Code::NamesCutAlike, row, 1, bothNames(label.first->second, name));
        }
    }
}

// --- Rows ------------------------------------------------------------------------------

void RowChecks::checkGroup(const Row& row, int64_t cells) {
    const CellReading group = readCell(row.group);
    if (group.kind == CellContent::Empty) {
        if (cells >= kHeadCells) {
            Found.add(Code::GroupEmpty, row.number, kHeadCells);
        }
    } else if (group.kind != CellContent::Number && group.kind != CellContent::LeadingZeros &&
               group.kind != CellContent::Negative && group.kind != CellContent::ZeroMissing) {
        Found.add(Code::GroupText, row.number, kHeadCells, row.group);
    }
    if (Rows == 1) {
        Group = row.group;
    } else if (row.group != Group) {
        Found.add(Code::GroupMixed, row.number, kHeadCells, row.group + " after " + Group);
    }
}

void RowChecks::checkHead(const Row& row, int64_t cells) {
    if (row.name.empty()) {
        Found.add(Code::NameEmpty, row.number, 1);
    }
    const char type = row.type.empty() ? 'd' : row.type.front();
    if (type != 'd' && type != 'h' && type != 'D') {
        Found.add(Code::TypeUnknown, row.number, 2, row.type);
    }
    checkGroup(row, cells);
}

// `row`: behind the alleles that count.
void RowChecks::checkLength(std::string_view row, int64_t cells) {
    const auto wanted = kHeadCells + static_cast<int64_t>(Cells);
    if (cells < wanted) {
        Found.add(Code::RowShort, Number, 0,
                  std::to_string(cells) + " of " + std::to_string(wanted) + " cells");
    }
    for (int64_t column = wanted + 1; column <= cells; ++column) {
        const std::string_view cell = takeCell(row);
        if (column > HeaderCells && !isBlankRow(cell)) {
            Found.add(Code::RowLong, Number, column, cell);
            return;
        }
    }
}

void RowChecks::checkAllele(int32_t allele, std::size_t place, std::string_view cell,
                            int64_t number) {
    const LocusSummary& locus = Summary.loci[place / static_cast<std::size_t>(Summary.columns)];
    if (allele == 0) {
        Found.add(Code::ZeroAllele, number, columnOf(place), cell);
        return;
    }
    if (hasGrid(locus) && allele % locus.repeat != locus.remainder) {
        Found.add(Code::OffGrid, number, columnOf(place), cell);
    }
    if (allele < locus.rest) {
        Found.add(Code::BelowRest, number, columnOf(place), cell);
    }
}

void RowChecks::checkCell(std::string_view cell, std::size_t place, Row& row) {
    const CellReading reading = readCell(cell);
    row.alleles.push_back(reading.value);
    if (const std::optional<Code> code = codeOf(reading.kind)) {
        Found.add(*code, row.number, columnOf(place), cell);
    }
    const bool asItStands =
        reading.kind == CellContent::Number || reading.kind == CellContent::LeadingZeros;
    if (asItStands && reading.value >= 0) {
        checkAllele(reading.value, place, cell, row.number);
    }
}

// The two gene copies of an individual, which stand in one row or in two.
void RowChecks::checkHalves(const Row& first, const Row& second) {
    const bool oneRow = &first == &second;
    const std::size_t step = oneRow ? 2 : 1;
    for (std::size_t place = 0; place + step <= Cells; place += step) {
        const int32_t a = first.alleles[place];
        const int32_t b = second.alleles[oneRow ? place + 1 : place];
        if ((a < 0) != (b < 0)) {
            const bool secondMissing = b < 0;
            Found.add(Code::HalfMissing, secondMissing ? second.number : first.number,
                      columnOf(place + (oneRow && secondMissing ? 1 : 0)),
                      Summary.loci[place / step].name);
        }
    }
}

void RowChecks::checkIndividual(const Row& row) {
    const bool none = std::all_of(row.alleles.begin(), row.alleles.end(),
                                  [](int32_t allele) { return allele < 0; });
    if (none) {
        Found.add(Code::IndividualWithoutData, row.number, 0, ofPopulation(row.name));
    }
}

// Whether the first row behind two header rows is a row of names: text in all cells that are not
// empty, and not one for a missing value.
bool RowChecks::readsAsNames(std::string_view row) const {
    if (Any || Summary.headerRows != 2) {
        return false;
    }
    for (int cell = 0; cell < kHeadCells; ++cell) {
        takeCell(row);
    }
    bool text = false;
    for (std::size_t place = 0; place < Cells; ++place) {
        const CellContent kind = readCell(takeCell(row)).kind;
        if (kind != CellContent::Empty && kind != CellContent::Text) {
            return false;
        }
        text = text || kind == CellContent::Text;
    }
    return text;
}

void RowChecks::add(std::string_view text) {
    ++Number;
    Row row;
    row.number = Number;
    const int64_t cells = cellCount(text);
    const bool names = readsAsNames(text);
    std::string_view rest = text;
    row.name = takeCell(rest);
    row.type = takeCell(rest);
    row.group = takeCell(rest);
    if (!Any || row.name != Population) {
        if (Any) {
            --Number; // the row before is the last one of its population
            closePopulation();
            ++Number;
        }
        openPopulation(row.name);
    }
    Any = true;
    ++Rows;
    if (names) {
        Found.add(Code::NamesAsIndividual, Number, 1, text);
        row.alleles.assign(Cells, -1);
        Before = row;
        return;
    }
    if (isBlankRow(text)) {
        Found.add(Code::EmptyLine, Number);
        row.alleles.assign(Cells, -1);
        Before = row;
        return;
    }
    checkHead(row, cells);
    for (std::size_t place = 0; place < Cells; ++place) {
        checkCell(takeCell(rest), place, row);
    }
    checkLength(rest, cells);
    if (Summary.columns == 2) {
        checkHalves(row, row);
        checkIndividual(row);
    } else if (Rows % 2 == 0) {
        checkHalves(Before, row);
        if (Before.type != row.type || Before.group != row.group) {
            Found.add(Code::PairDiffers, Number, 2);
        }
        Row both = row;
        std::transform(row.alleles.begin(), row.alleles.end(), Before.alleles.begin(),
                       both.alleles.begin(), [](int32_t a, int32_t b) { return std::max(a, b); });
        checkIndividual(both);
    }
    Before = std::move(row);
}

void RowChecks::finish() {
    if (Any) {
        closePopulation();
        checkPopulationNames();
    }
}

// --- The summary -----------------------------------------------------------------------

namespace {

void checkLocus(const LocusSummary& locus, int64_t column, int headerRows, bool several,
                Findings& findings) {
    if (locus.copies == 0) {
        findings.add(Code::LocusWithoutData, headerRows, column, locus.name);
        return;
    }
    if (several && locus.populations == 1) {
        findings.add(Code::LocusOnePopulation, headerRows, column, locus.name);
    }
    if (locus.repeat <= 1) {
        return;
    }
    if (!hasGrid(locus)) {
        findings.add(Code::OffGrid, 1, column,
                     locus.name + ": repeat length " + std::to_string(locus.repeat) + " fits " +
                         std::to_string(locus.onGrid) + " of " + std::to_string(locus.copies));
    } else if (locus.rest >= 0 && locus.rest % locus.repeat != locus.remainder) {
        findings.add(Code::RestOffGrid, 2, column, locus.name);
    }
}

void checkGroups(const DataSummary& summary, Findings& findings) {
    std::set<int32_t> groups;
    for (const PopulationSummary& population : summary.populations) {
        groups.insert(population.group);
    }
    const int32_t largest = *groups.rbegin();
    for (int32_t group = 1; group < largest; ++group) {
        if (groups.count(group) == 0) {
            findings.add(Code::GroupGap, 0, 0,
                         "group " + std::to_string(group) + " is missing, the largest is " +
                             std::to_string(largest));
            return; // the groups behind the first gap are all left out
        }
    }
}

} // namespace

void checkSummary(const DataSummary& summary, Findings& findings) {
    const bool several = summary.populations.size() > 1;
    if (!several) {
        findings.add(Code::OnePopulation);
    }
    for (std::size_t locus = 0; locus < summary.loci.size(); ++locus) {
        const std::size_t place = locus * static_cast<std::size_t>(summary.columns);
        checkLocus(summary.loci[locus], columnOf(place), summary.headerRows, several, findings);
    }
    if (!summary.populations.empty()) {
        checkGroups(summary, findings);
    }
}

} // namespace kva
