#include "results/layouts.h"

#include "output/sheet.h"

#include <algorithm>

namespace kva {

namespace {

using Cells = std::span<const std::string_view>;

// --- Matrices ------------------------------------------------------------------------------

// Calls cell(text) for each text between the blanks of a row; gives their number.
template <class Cell> std::size_t forEachCell(std::string_view row, Cell&& cell) {
    std::size_t cells = 0;
    for (std::size_t at = row.find_first_not_of(' '); at != std::string_view::npos;) {
        const std::size_t end = std::min(row.find(' ', at), row.size());
        cell(row.substr(at, end - at));
        ++cells;
        at = row.find_first_not_of(' ', end);
    }
    return cells;
}

constexpr std::size_t kIndividualName = 5; // of the name in the label of an individual

std::string withoutBlanksInFront(std::string_view label) {
    return std::string(label.substr(std::min(label.find_first_not_of(' '), label.size())));
}

// Reads the matrices of a sheet. A pair is taken from below the diagonal, so that both labels are
// known where its cell comes, and no cell is kept.
class Matrices {
  public:
    // labelSize: gives the bytes of the label in front of a row; 0: there is none. numbered: the
    // matrices are of replicates, which their rows tell.
    Matrices(SheetReading& sheet, std::size_t (*labelSize)(std::string_view row), bool numbered)
        : Sheet(sheet), Lines(sheet.lines()), LabelSize(labelSize), Numbered(numbered) {}

    // The matrices of the replicates, to the end of the sheet. Needs a current line.
    void readReplicates() {
        do {
            ++Replicate;
            const std::optional<std::size_t> rows = countOf(Lines.line());
            if (!rows) {
                return Lines.fault("the number of rows should stand here");
            }
            if (!readRows(*rows) || !Sheet.nextOf("an empty line") ||
                !Sheet.hasCells(Lines.line().size(), 0)) {
                return;
            }
        } while (Lines.next());
    }

    // The one matrix of a NEXUS file, of which the first line is current.
    void readNexus() {
        std::optional<std::size_t> rows;
        while (Lines.line() != "matrix") {
            if (!Sheet.nextOf("the matrix")) {
                return;
            }
            if (const auto found = numberBetween(Lines.line(), "Dimensions ntax=", ";")) {
                rows = countOf(*found);
            }
        }
        if (!rows) {
            return Lines.fault("the number of individuals is not told");
        }
        ++Replicate;
        if (readRows(*rows)) {
            Sheet.nextOf("the end of the block");
        }
        if (Lines.sound() && Lines.line() != "end;") {
            Lines.fault("more rows than told");
        }
    }

  private:
    bool readRows(std::size_t rows) {
        Labels.clear();
        Rows = rows;
        Number = Numbered ? std::to_string(Replicate) : "";
        for (std::size_t i = 0; i < rows; ++i) {
            if (!Sheet.nextOf("row " + std::to_string(i + 1) + " of " + std::to_string(rows)) ||
                !readRow(i)) {
                return false;
            }
        }
        return true;
    }

    bool readRow(std::size_t i) {
        const std::string_view line = Lines.line(); // the last one of a NEXUS matrix ends in ";"
        const std::size_t width = LabelSize(line);
        if (width == 0 || line.substr(0, width).find('\t') != std::string_view::npos) {
            Lines.fault("no label in front");
            return false;
        }
        Labels.push_back(labelOf(i, line.substr(0, width)));
        std::size_t j = 0;
        const std::size_t cells = forEachCell(line.substr(width), [&](std::string_view cell) {
            if (j < i && Lines.sound()) {
                Sheet.row({.population1 = Labels[j], .population2 = Labels[i], .replicate = Number},
                          cell);
            }
            ++j;
        });
        return Lines.sound() && Sheet.hasCells(cells, Rows);
    }

    // The whole name of a population, where it is known and the label is made of it.
    std::string labelOf(std::size_t i, std::string_view label) const {
        const auto names = Sheet.populations();
        if (names.size() == Rows && populationLabel(names[i]) == label) {
            return names[i];
        }
        return withoutBlanksInFront(label);
    }

    SheetReading& Sheet;
    SheetLines& Lines;
    std::size_t (*LabelSize)(std::string_view row);
    bool Numbered;
    std::vector<std::string> Labels; // of the rows so far
    std::size_t Rows = 0;            // of the matrix
    std::size_t Replicate = 0;       // number of the matrix, from 1
    std::string Number;              // the same as text, or empty
};

std::size_t populationLabelSize(std::string_view row) {
    return row.size() < kPopulationLabel ? 0 : kPopulationLabel;
}

// Five bytes of the name, and three digits or more up to a blank.
std::size_t individualLabelSize(std::string_view row) {
    const std::size_t end = row.find_first_not_of("0123456789", kIndividualName);
    const std::size_t size = std::min(end, row.size());
    return size < kIndividualName + 3 ? 0 : size;
}

template <bool Numbered> void readPopulationMatrix(SheetReading& sheet) {
    if (sheet.nextOf("the number of populations")) {
        Matrices(sheet, populationLabelSize, Numbered).readReplicates();
    }
}

void readIndividualMatrices(SheetReading& sheet) {
    if (!sheet.nextOf("the number of individuals")) {
        return;
    }
    Matrices matrices(sheet, individualLabelSize, true);
    if (sheet.lines().line() == "#NEXUS") {
        matrices.readNexus();
    } else {
        matrices.readReplicates();
    }
}

// --- Blocks of loci and pairs -----------------------------------------------------------------

bool isNumberOfPairs(std::size_t pairs) {
    std::size_t triangle = 0;
    for (std::size_t n = 1; triangle < pairs; ++n) {
        triangle += n;
    }
    return triangle == pairs;
}

// The two lines of a head, which name the first and the second population of each pair.
struct PairHead {
    std::string first;
    std::string second;
    std::vector<std::string_view> firstNames;
    std::vector<std::string_view> secondNames;
    std::size_t front = 0; // cells before the pairs: an empty one for each name of a locus
};

// Finds out how many cells stand before the pairs: of 1 and 2 it is the one that leaves a possible
// number of pairs. A tab alone can be both. It is a single population then, since of two the names
// would differ.
bool shapePairHead(PairHead& head) {
    splitCells(head.first, head.firstNames);
    splitCells(head.second, head.secondNames);
    const std::size_t cells = head.firstNames.size();
    if (cells != head.secondNames.size() || (cells > 1 && !head.firstNames[0].empty())) {
        return false;
    }
    const bool nothing = cells == 2 && head.first == head.second;
    head.front = isNumberOfPairs(cells - 1) && !nothing ? 1 : 2;
    return isNumberOfPairs(cells - head.front);
}

bool readPairRow(SheetReading& sheet, const PairHead& head, std::string_view replicate) {
    const Cells cells = sheet.lines().cells();
    if (cells.size() == head.front) {
        return true; // a locus without any allele: its names alone
    }
    if (!sheet.hasCells(cells.size(), head.firstNames.size())) {
        return false;
    }
    for (std::size_t c = head.front; c < cells.size(); ++c) {
        const TidyPlace place{head.firstNames[c], head.secondNames[c], cells[0], replicate};
        if (!sheet.row(place, cells[c])) {
            return false;
        }
    }
    return true;
}

// The second line of a further head, of which the first one is current.
bool readHeadAgain(SheetReading& sheet, const PairHead& head) {
    if (sheet.nextOf("the second populations of the pairs") &&
        sheet.lines().line() != head.second) {
        sheet.lines().fault("another head than the first one");
    }
    return sheet.lines().sound();
}

bool hasLoci(SheetReading& sheet, std::size_t loci, std::size_t expected) {
    if (loci != expected && sheet.lines().sound()) {
        sheet.lines().fault("a block of " + std::to_string(loci) + " loci, not of " +
                            std::to_string(expected));
    }
    return sheet.lines().sound();
}

// The blocks of the replicates, all with as many loci; the head of the first one was read.
void readBlocks(SheetReading& sheet, const PairHead& head) {
    SheetLines& lines = sheet.lines();
    std::size_t replicate = 1;
    std::string number = "1";
    std::size_t lociOfFirst = 0;
    std::size_t loci = 0; // of the current block
    while (lines.next()) {
        if (lines.line() != head.first) {
            if (!readPairRow(sheet, head, number)) {
                return;
            }
            ++loci;
            continue;
        }
        lociOfFirst = replicate == 1 ? loci : lociOfFirst;
        if (!hasLoci(sheet, loci, lociOfFirst) || !readHeadAgain(sheet, head)) {
            return;
        }
        number = std::to_string(++replicate);
        loci = 0;
    }
    if (replicate > 1) {
        hasLoci(sheet, loci, lociOfFirst);
    }
}

void readPairColumns(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    PairHead head;
    if (!sheet.nextOf("the first populations of the pairs")) {
        return;
    }
    head.first = lines.line();
    if (!sheet.nextOf("the second populations of the pairs")) {
        return;
    }
    head.second = lines.line();
    if (!shapePairHead(head)) {
        return lines.fault("no head of pairs of populations");
    }
    if (head.firstNames.size() == head.front) {
        return; // a single population
    }
    readBlocks(sheet, head);
}

void readPairRows(SheetReading& sheet) {
    SheetLines& lines = sheet.lines();
    constexpr std::size_t kNames = 2;
    const LocusHead head = readLocusHead(lines, kNames);
    for (bool more = head.more; more; more = lines.next()) {
        const Cells cells = lines.cells();
        if (!sheet.hasCells(cells.size(), kNames + head.loci.size())) {
            return;
        }
        for (std::size_t l = 0; l < head.loci.size(); ++l) {
            const TidyPlace place{
                .population1 = cells[0], .population2 = cells[1], .locus = head.loci[l]};
            if (!sheet.row(place, cells[kNames + l])) {
                return;
            }
        }
    }
}

// --- Squares ----------------------------------------------------------------------------------

struct Square {
    std::vector<std::string> names;              // of the rows
    std::vector<std::vector<std::string>> cells; // by row
};

// Reads rows of a name and as many cells as there are rows, up to an empty line or the end. The
// first row is the line after the current one. rows: their number; nothing: as the first row has.
Square readSquare(SheetReading& sheet, std::optional<std::size_t> rows) {
    Square square;
    SheetLines& lines = sheet.lines();
    while (lines.next() && !lines.line().empty()) {
        const Cells cells = lines.cells();
        if (!rows) {
            rows = cells.size() - 1;
        }
        if (!sheet.hasCells(cells.size(), 1 + *rows)) {
            return square;
        }
        square.names.emplace_back(cells[0]);
        square.cells.emplace_back(cells.begin() + 1, cells.end());
    }
    const std::size_t found = square.names.size();
    if (lines.sound() && found != rows.value_or(0)) {
        lines.fault("the table ends with row " + std::to_string(found) + " of " +
                    std::to_string(rows.value_or(0)));
    }
    return square;
}

// Hands out the cells below the diagonal, or for `above` those above it, pair by pair.
void rowsOfPairs(SheetReading& sheet, std::string_view statistic, const Square& square,
                 bool above = false) {
    for (std::size_t i = 1; i < square.names.size(); ++i) {
        for (std::size_t j = 0; j < i && sheet.lines().sound(); ++j) {
            sheet.row(statistic,
                      {.population1 = square.names[j],
                       .population2 = square.names[i],
                       .replicate = sheet.rule().replicate},
                      above ? square.cells[j][i] : square.cells[i][j], sheet.rule().none);
        }
    }
}

void readSquareSheet(SheetReading& sheet) {
    if (!sheet.nextOf("the number of populations")) {
        return;
    }
    const std::optional<std::size_t> rows = countOf(sheet.lines().line());
    if (!rows) {
        return sheet.lines().fault("the number of populations should stand here");
    }
    const Square square = readSquare(sheet, rows);
    rowsOfPairs(sheet, sheet.rule().statistic, square);
}

constexpr std::string_view kTestedFst = "fst_pairwise_tested";
constexpr std::string_view kPlainP = "fst_pairwise_p";
constexpr std::string_view kCorrectedP = "fst_pairwise_p_bonferroni";

bool nextIs(SheetReading& sheet, std::string_view text) {
    if (sheet.nextOf("\"" + std::string(text) + "\"") && sheet.lines().line() != text) {
        sheet.lines().fault("\"" + std::string(text) + "\" should stand here");
    }
    return sheet.lines().sound();
}

void readPValues(SheetReading& sheet) {
    if (!nextIs(sheet, "Fst-values:")) {
        return;
    }
    const Square fst = readSquare(sheet, std::nullopt);
    rowsOfPairs(sheet, kTestedFst, fst);
    if (!sheet.lines().sound() || !nextIs(sheet, "") || !nextIs(sheet, "P-values:")) {
        return;
    }
    const Square p = readSquare(sheet, fst.names.size());
    rowsOfPairs(sheet, kPlainP, p, true);
    rowsOfPairs(sheet, kCorrectedP, p);
}

constexpr std::string_view kBetaOfPopulation = "beta_population";
constexpr std::string_view kBetaOfPair = "beta_pairwise";

void readBeta(SheetReading& sheet) {
    if (!sheet.nextOf("the names of the populations")) {
        return;
    }
    const Square square = readSquare(sheet, sheet.lines().cells().size() - 1);
    for (std::size_t i = 0; i < square.names.size() && sheet.lines().sound(); ++i) {
        sheet.row(kBetaOfPopulation, {.population1 = square.names[i]}, square.cells[i][i]);
    }
    rowsOfPairs(sheet, kBetaOfPair, square);
}

} // namespace

const Layout kPopulationMatrix = {readPopulationMatrix<false>, nullptr};
const Layout kPopulationMatrices = {readPopulationMatrix<true>, nullptr};
const Layout kIndividualMatrices = {readIndividualMatrices, nullptr};
const Layout kPairColumns = {readPairColumns, nullptr};
const Layout kPairRows = {readPairRows, nullptr};
const Layout kSquareSheet = {readSquareSheet, nullptr};
const Layout kPValues = {readPValues, [] { return std::vector{kTestedFst, kPlainP, kCorrectedP}; }};
const Layout kBeta = {readBeta, [] { return std::vector{kBetaOfPopulation, kBetaOfPair}; }};

} // namespace kva
