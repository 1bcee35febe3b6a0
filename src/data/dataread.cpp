// The data file: tab-separated cells, as a spreadsheet saves them. CheckDataFile finds its
// shape, GetDataFile fills the loci. With three header rows and two columns per locus:
//
//     2\t\t\t2\t\t4\t                            columns per locus; repeat length of each locus
//     \t\t\t100\t\t80\t                          rest length of each locus
//     \t\t\tLocA\tLocA_2\tLocB\tLocB_2           names
//     North\td\t1\t104\t106\t88\t92              population, type, group; alleles
//     South\th\t2\t110\t110\t\t                  "h": haploid; empty: missing
//
// With two header rows there are no lengths: row 1 tells the number of columns alone. The third
// row tells the layouts apart: it is the row of names if it begins with a tab.
#include "data/dataread.h"

#include "base/console.h"
#include "control/Ausgabe.h"
#include "data/datarows.h"
#include "data/loadeddata.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace kva {

namespace {

constexpr int32_t kMissing = -1; // allele or length without a number
constexpr int kHeadColumns = 3;  // cells in front of the loci: population, type, group

constexpr int64_t kIntMax = std::numeric_limits<int32_t>::max();
constexpr int64_t kIntMin = std::numeric_limits<int32_t>::min();

// --- Numbers ---------------------------------------------------------------

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// White space inside a cell: what strtol skips, without the tab and the line ends.
bool isBlankInCell(char c) {
    return c == ' ' || c == '\v' || c == '\f';
}

bool isWhite(char c) {
    return isBlankInCell(c) || c == '\t' || c == '\r' || c == '\n';
}

// A decimal number, digit by digit, that stays at the ends of the range of int32.
struct Decimal {
    int64_t magnitude = 0;
    bool negative = false;

    void add(char digit) { magnitude = std::min(magnitude * 10 + (digit - '0'), -kIntMin); }
    int32_t value() const {
        return static_cast<int32_t>(negative ? -magnitude : std::min(magnitude, kIntMax));
    }
};

// The number that stands behind the white space from a place on, wherever that may be in the
// block. It remembers how far it read: many blank rows one after the other lead to one number,
// which is not looked for again from each of them.
class NumberAhead {
  public:
    // `text`: from the place at `offset` of the file to the end of the block. Offsets and ends
    // of blocks rise from call to call.
    int32_t read(int64_t offset, std::string_view text) {
        if (offset > Begin) {
            *this = NumberAhead();
            Begin = Next = offset;
        }
        const int64_t end = offset + static_cast<int64_t>(text.size());
        while (!Complete && Next < end) {
            take(text[Next - offset]);
        }
        return Number.value();
    }

  private:
    void take(char c) {
        if (Next == Begin && isWhite(c)) {
            ++Begin;
        } else if (Next == Begin && (c == '-' || c == '+')) {
            Number.negative = c == '-';
        } else if (isDigit(c)) {
            Number.add(c);
        } else {
            Complete = true;
        }
        ++Next;
    }

    int64_t Begin = -1; // offset of the first byte that is not white, as far as read
    int64_t Next = -1;  // offset of the byte to read next
    Decimal Number;
    bool Complete = false; // the number's end was seen
};

// --- Cells -----------------------------------------------------------------

// Takes a locus name off the front of `rest`. One control character behind it is cut: in a
// file with CR LF the last name has its CR there.
std::string takeName(std::string_view& rest) {
    std::string_view name = takeCell(rest);
    if (!name.empty() && (static_cast<unsigned char>(name.back()) < 0x20 || name.back() == 0x7f)) {
        name.remove_suffix(1);
    }
    return std::string(name);
}

// The text behind the head columns.
std::string_view lociCells(std::string_view row) {
    for (int column = 0; column < kHeadColumns; ++column) {
        takeCell(row);
    }
    return row;
}

const char* rowEnd(const char* zeile) {
    return zeile + std::strcspn(zeile, "\r\n");
}

// --- Header rows -----------------------------------------------------------

// The header rows of a file. With two rows `names` is the second, with three the third.
struct Header {
    DataRow first;      // columns per locus, repeat lengths
    DataRow second;     // rest lengths, or the names
    DataRow names;      // names of the loci
    int rows = 0;       // 2 or 3; 0 if a row has no line end in the first block
    int unfinished = 0; // number of that row, from 1
    int64_t end = 0;    // offset of the byte at which that row stops
};

DataRow headerRow(const DataWindow& window, std::string_view block, int64_t begin) {
    const auto from = static_cast<std::size_t>(begin);
    return findRow(window, block, 0, from, from);
}

Header readHeader(const DataWindow& window, std::string_view block) {
    Header header;
    const auto isWhole = [&header](const DataRow& row, int number) {
        header.unfinished = row.hasLineEnd ? 0 : number;
        header.end = row.lineEnd;
        return row.hasLineEnd;
    };
    header.first = headerRow(window, block, 0);
    if (!isWhole(header.first, 1)) {
        return header;
    }
    header.second = headerRow(window, block, header.first.lastByte + 1);
    if (!isWhole(header.second, 2)) {
        return header;
    }
    const bool three = window.byteAt(header.second.lastByte + 1) == '\t';
    header.names = three ? headerRow(window, block, header.second.lastByte + 1) : header.second;
    if (isWhole(header.names, 3)) {
        header.rows = three ? 3 : 2;
    }
    return header;
}

bool endsInCrLf(const DataRow& row) {
    return row.lastByte > row.lineEnd;
}

// Wanted: the second pass knows CR LF in files with three header rows alone. With two, CR ends
// the row, and the LF stands in front of the next one. The results of such files depend on it, and
// the console warns of them.
bool losesAlignment(const Header& header) {
    return header.rows == 2 && endsInCrLf(header.first);
}

// The cells of the names: three bytes behind the row before them are skipped, whatever they are.
std::string_view nameCells(const Header& header, std::string_view block) {
    const DataRow& before = header.rows == 3 ? header.second : header.first;
    const bool crOnly = losesAlignment(header);
    const int64_t end = crOnly ? header.names.lineEnd : header.names.lastByte;
    const int64_t begin = (crOnly ? before.lineEnd : before.lastByte) + 1 + kHeadColumns;
    return block.substr(static_cast<std::size_t>(std::min(begin, end)),
                        static_cast<std::size_t>(std::max<int64_t>(end - begin, 0)));
}

// --- Refused files ---------------------------------------------------------

enum class CatalogueWords { None, NoMemory, NoLineEnd };

// Why CheckDataFile refuses a file.
struct Refusal {
    int status = 0; // result of CheckDataFile; 0: the file is taken
    CatalogueWords words = CatalogueWords::None;
    int row = 0; // of the file, from 1
    std::string found;
    std::string expected;
};

void tell(const std::string& file, const Refusal& refusal) {
    if (refusal.words == CatalogueWords::NoMemory) {
        AUSGABE(Message::NoMemory); // speaks of memory, also where nothing could be read
    } else if (refusal.words == CatalogueWords::NoLineEnd) {
        console() << "Error to detect NEWLINE" << std::endl;
    } else {
        console() << std::endl;
    }
    console() << file << ", row " << refusal.row << ": found " << refusal.found << ", expected "
              << refusal.expected << std::endl;
}

// What is read of the file may not be all of it.
void tellLost(const std::string& file, const std::string& reason) {
    console() << "\nCannot read data file " << file << ": " << reason << std::endl;
}

// Of a read or seek that failed; empty if none did.
std::string failureOf(const DataWindow& window) {
    return window.failure() != 0 ? std::strerror(window.failure()) : "";
}

std::string shownByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte < 0x7f ? std::string("\"") + c + '"'
                                      : "byte " + std::to_string(byte);
}

Refusal refuseFirstByte(char c) {
    return {4, CatalogueWords::None, 1, shownByte(c) + " as first byte",
            "\"1\" or \"2\", the number of columns per locus"};
}

// What stands where a header row should have its line end.
std::string shownEnd(std::string_view block, int64_t end) {
    if (end >= kBlockSize) {
        return "no line end in the first " + std::to_string(kBlockSize) + " bytes";
    }
    const bool nul = end < std::ssize(block);
    return (nul ? "a NUL byte after " : "the end of the file after ") + std::to_string(end) +
           " bytes";
}

Refusal refuseUnfinished(const Header& header, std::string_view block) {
    return {4, header.unfinished == 1 ? CatalogueWords::NoLineEnd : CatalogueWords::None,
            header.unfinished, shownEnd(block, header.end),
            "two or three header rows that end with LF, CR LF or CR"};
}

Refusal checkHeader(const DataWindow& window, const Header& header, std::string_view block) {
    if (header.rows == 0) {
        return refuseUnfinished(header, block);
    }
    if (header.rows == 3 && window.byteAt(header.names.lastByte + 1) == '\t') {
        return {5, CatalogueWords::None, 4, "a tab as first byte, as in row 3",
                "the name of a population"};
    }
    return {};
}

// Columns of all loci together; negative if the head columns are not all there.
long lociColumns(const Header& header) {
    const std::string_view row = header.first.text;
    return std::count(row.begin(), row.end(), '\t') + 1 - kHeadColumns;
}

std::string shownCells(const Header& header) {
    const long cells = lociColumns(header) + kHeadColumns;
    return std::to_string(cells) + (cells == 1 ? " cell" : " cells");
}

std::string cellsWanted(int columns) {
    return "at least " + std::to_string(kHeadColumns + columns) + ": 3 and " +
           std::to_string(columns) + " per locus";
}

Refusal refuseLoci(const Header& header, int columns) {
    return {6, CatalogueWords::None, 1, shownCells(header), cellsWanted(columns)};
}

Refusal refuseWithoutRows(const Header& header) {
    return {5, CatalogueWords::None, header.rows + 1, "the end of the data",
            "the first individual"};
}

void warnOfNoLocus(const std::string& file, const Header& header, int columns) {
    console() << '\n'
              << "Warning: " << file << ", row 1: " << shownCells(header)
              << " name no locus, expected " << cellsWanted(columns)
              << ". The sheets hold their heads alone." << std::endl;
}

void warnOfAlignment(const std::string& file) {
    console() << '\n'
              << "Warning: " << file
              << " has two header rows and CR LF line ends: locus names and first row are "
                 "misaligned. Please save it with LF line ends or with three header rows."
              << std::endl;
}

// --- Populations -----------------------------------------------------------

int32_t toSlots(int64_t individuals, int columns, int spare) {
    return static_cast<int32_t>(std::min(individuals * columns + spare, kIntMax));
}

// Counts rows into populations: consecutive rows of one name are one population.
class PopulationCount {
  public:
    PopulationCount(Datensatz& daten, int columns) : Daten(daten), Columns(columns) {}

    void add(std::string_view name) {
        if (Rows == 0 || name != Name) {
            finish();
            Name = name;
            ++Populations;
        }
        ++Rows;
    }

    // Adds the population of the last row to the data set, with room for two slots to spare.
    void finish() {
        if (Rows > 0) {
            Daten.AddPopulation(Name, toSlots(Rows, Columns, 2));
        }
        Largest = std::max(Largest, Rows);
        Rows = 0;
    }

    int32_t populations() const { return Populations; }
    int32_t largestInSlots() const { return toSlots(Largest, Columns, 0); }

  private:
    Datensatz& Daten;
    int Columns;
    std::string Name;
    int64_t Rows = 0;    // of the population of the last row
    int64_t Largest = 1; // rows of the largest population so far
    int32_t Populations = 0;
};

// --- Data rows -------------------------------------------------------------

// A data row taken apart.
struct Individual {
    std::string_view name;    // of the population
    std::string_view alleles; // the cells behind the head columns
    int32_t info = 0;         // group x 2 + haploid bit
};

// Place behind the next tab from `from` on, npos if there is none.
std::size_t behindTab(std::string_view text, std::size_t from) {
    const std::size_t tab = text.find('\t', from);
    return tab == std::string_view::npos ? tab : tab + 1;
}

Individual takeApart(const DataRow& row, NumberAhead& groups) {
    constexpr std::size_t none = std::string_view::npos;
    const std::size_t type = behindTab(row.text, 0);
    const std::size_t group = behindTab(row.text, type);
    const std::size_t alleles = behindTab(row.text, group);
    // Wanted: an empty group cell takes the number that comes next, as a rule the first allele.
    // The group sheets of such files depend on it.
    const int32_t number = group == none ? 0
                                         : groups.read(row.begin + static_cast<int64_t>(group),
                                                       row.behind.substr(group));
    const bool haploid = type < row.text.size() && row.text[type] == 'h';
    return {row.text.substr(0, type == none ? none : type - 1),
            alleles == none ? std::string_view() : row.text.substr(alleles),
            infoValue(number, haploid)};
}

// Adds individuals to the data set some rows at a time, locus by locus. A data set lies locus by
// locus, so that a row at a time goes to far places of memory for every cell. The plain way, a
// call a row: GetOneCData, GetTwoCData.
class RowBatch {
  public:
    RowBatch(Datensatz& daten, int columns)
        : Daten(daten), Columns(static_cast<std::size_t>(columns)),
          Cells(static_cast<std::size_t>(daten.AnzLoci) * Columns) {}

    void add(std::string_view alleles, int32_t info, int pop) {
        if (pop != Pop || Infos.size() == kRows) {
            flush();
            Pop = pop;
        }
        Infos.push_back(info);
        const char* cell = alleles.data();
        const char* const end = cell + alleles.size();
        for (std::size_t i = 0; i < Cells; ++i) {
            Alleles.push_back(takeNumber(cell, end));
        }
    }

    void flush() {
        for (int locus = 1; locus <= Daten.AnzLoci; ++locus) {
            LociObj& place = *Daten.Locus(locus);
            std::size_t cell = static_cast<std::size_t>(locus - 1) * Columns;
            for (const int32_t info : Infos) {
                (void)(Columns == 2 ? place.AddTier(Pop, Alleles[cell], Alleles[cell + 1], info)
                                    : place.AddTier(Pop, Alleles[cell], info));
                cell += Cells;
            }
        }
        Infos.clear();
        Alleles.clear();
    }

  private:
    static constexpr std::size_t kRows = 32;

    Datensatz& Daten;
    std::size_t Columns;          // allele cells of a locus
    std::size_t Cells;            // allele cells of a row
    int Pop = 0;                  // population of the rows held
    std::vector<int32_t> Infos;   // info value of each row held
    std::vector<int32_t> Alleles; // Cells of the first row, then of the next
};

// --- The two passes --------------------------------------------------------

// Finds the shape of the file, makes the loci and adds the populations, still empty.
Refusal findShape(LoadedData& data, DataWindow& window) {
    const std::string_view block = window.block(0);
    if (block.empty()) {
        return {3, CatalogueWords::NoMemory, 1, "nothing to read",
                "the number of columns per locus"};
    }
    const int columns = block.front() - '0';
    if (columns != 1 && columns != 2) {
        return refuseFirstByte(block.front());
    }
    data.DatenFormat = static_cast<char>(columns);
    const Header header = readHeader(window, block);
    if (Refusal refusal = checkHeader(window, header, block); refusal.status != 0) {
        return refusal;
    }
    data.KopfZeilen = header.rows;
    data.KopfSpalten = kHeadColumns;
    const auto loci = static_cast<int32_t>(lociColumns(header) / columns);
    if (loci < 0 || data.Daten->init(loci) != loci) {
        return refuseLoci(header, columns);
    }
    RowWalk walk(window, header.names.lastByte, CrLf::LineEnd);
    PopulationCount populations(*data.Daten, columns);
    while (walk.next()) {
        const std::string_view row = walk.row().text;
        populations.add(row.substr(0, row.find('\t')));
    }
    populations.finish();
    if (populations.populations() == 0) {
        return refuseWithoutRows(header);
    }
    if (loci == 0) {
        warnOfNoLocus(data.DateiName, header, columns);
    }
    if (losesAlignment(header)) {
        warnOfAlignment(data.DateiName);
    }
    data.AnzLoci = loci;
    data.AnzPop = populations.populations();
    data.MaxChromosomen = populations.largestInSlots();
    return {};
}

// Reads one length per locus from a header row, in each locus's first column.
void readLengths(Datensatz& daten, int columns, std::string_view row,
                 int (Datensatz::*store)(int, int)) {
    const std::string_view cells = lociCells(row);
    const char* cell = cells.data();
    const char* const end = cell + cells.size();
    for (int locus = 1; locus <= daten.AnzLoci; ++locus) {
        (void)(daten.*store)(locus, takeNumber(cell, end));
        if (columns == 2) {
            takeNumber(cell, end);
        }
    }
}

void readNames(Datensatz& daten, int columns, std::string_view cells) {
    for (int locus = 1; locus <= daten.AnzLoci; ++locus) {
        daten.SetLociName(locus, takeName(cells));
        if (columns == 2) {
            daten.SetLociName2(locus, takeName(cells));
        }
    }
}

// Fills the loci from the row on which the walk stands and all behind it.
void readRows(LoadedData& data, RowWalk& walk) {
    NumberAhead groups;
    RowBatch batch(*data.Daten, data.DatenFormat);
    std::string name;
    int pop = 0;
    do {
        const Individual tier = takeApart(walk.row(), groups);
        if (pop == 0 || tier.name != name) {
            name = tier.name;
            ++pop;
        }
        AUSGABE(Message::RowRead);
        batch.add(tier.alleles, tier.info, pop);
        // Wanted: this pass, unlike the first, also stops at a line end in a block's last place: a
        // row that fills its block is the last one of the results.
    } while (!walk.endsBlock() && walk.next());
    batch.flush();
}

// The number of a cell of nothing but digits, few enough for 32 bits, as nearly all are; the cell
// and the tab behind it are taken then.
std::optional<int32_t> takePlainNumber(const char*& cell, const char* rowEnd) {
    constexpr std::ptrdiff_t mostDigits = 9;
    uint32_t value = 0;
    const char* place = cell;
    for (; place != rowEnd && isDigit(*place); ++place) {
        value = value * 10 + static_cast<uint32_t>(*place - '0');
    }
    const std::ptrdiff_t digits = place - cell;
    const bool whole = place == rowEnd || *place == '\t';
    if (digits == 0 || digits > mostDigits || !whole) {
        return std::nullopt;
    }
    cell = place == rowEnd ? place : place + 1;
    return static_cast<int32_t>(value);
}

} // namespace

// --- Cells of one row ------------------------------------------------------

int32_t takeNumber(const char*& cell, const char* rowEnd) {
    if (const std::optional<int32_t> plain = takePlainNumber(cell, rowEnd)) {
        return *plain;
    }
    const char* const first = cell;
    while (cell != rowEnd && isBlankInCell(*cell)) {
        ++cell;
    }
    Decimal number;
    if (cell != rowEnd && (*cell == '-' || *cell == '+')) {
        number.negative = *cell == '-';
        ++cell;
    }
    for (; cell != rowEnd && isDigit(*cell); ++cell) {
        number.add(*cell);
    }
    const int32_t value = number.value();
    const bool isNumber = value != 0 || (first != rowEnd && *first == '0');
    while (cell != rowEnd && *cell != '\t') {
        ++cell;
    }
    if (cell != rowEnd) {
        ++cell;
    }
    return isNumber ? value : kMissing;
}

int GetOneCData(Datensatz* daten, long anzLoci, const char* zeile, int info, int pop) {
    const char* const end = rowEnd(zeile);
    for (int locus = 1; locus <= anzLoci; ++locus) {
        daten->AddTier(locus, pop, takeNumber(zeile, end), info);
    }
    return 0;
}

int GetTwoCData(Datensatz* daten, long anzLoci, const char* zeile, int info, int pop) {
    const char* const end = rowEnd(zeile);
    for (int locus = 1; locus <= anzLoci; ++locus) {
        const int32_t first = takeNumber(zeile, end);
        daten->AddTier(locus, pop, first, takeNumber(zeile, end), info);
    }
    return 0;
}

// --- LoadedData --------------------------------------------------------

int LoadedData::CheckDataFile(std::FILE* stream) {
    if (stream == nullptr) {
        return -1;
    }
    if (Daten) {
        AUSGABE(Message::AlreadyChecked);
    }
    AnzLoci = AnzPop = MaxChromosomen = 0;
    DataWindow window(stream);
    if (!window.hasBuffer()) {
        return 1;
    }
    Daten.reset(new (std::nothrow) Datensatz);
    if (!Daten) {
        return 2;
    }
    const Refusal refusal = findShape(*this, window);
    DataBytes = window.size();
    Unread = failureOf(window);
    if (refusal.status != 0) {
        Daten->init(0);
        tell(DateiName, refusal);
    } else if (!Unread.empty()) {
        tellLost(DateiName, Unread);
    }
    return refusal.status;
}

int LoadedData::GetDataFile(std::FILE* stream) {
    if (stream == nullptr || !Daten || AnzPop < 1) { // a refused file has no population to fill
        return -1;
    }
    DataWindow window(stream);
    if (!window.hasBuffer()) {
        throw std::bad_alloc();
    }
    const int status = fillLoci(window);
    std::string failure = failureOf(window);
    if (failure.empty() && window.size() != DataBytes) {
        failure = "it changed while it was read";
    }
    if (!failure.empty()) {
        tellLost(DateiName, failure);
    }
    if (Unread.empty()) {
        Unread = std::move(failure);
    }
    return status;
}

int LoadedData::fillLoci(DataWindow& window) {
    const std::string_view block = window.block(0);
    const Header header = readHeader(window, block);
    if (header.rows == 0 || header.rows != KopfZeilen) { // not the file that was checked
        return -1;
    }
    if (KopfZeilen == 3) {
        const struct {
            std::string_view row;
            Message message;
            int (Datensatz::*store)(int, int);
        } lengths[] = {{header.first.text, Message::WrongRows, &Datensatz::SetLociRepeatMuster},
                       {header.second.text, Message::WrongColumns, &Datensatz::SetLociRepeatRest}};
        for (const auto& length : lengths) {
            if (KopfSpalten != kHeadColumns) {
                AUSGABE(length.message);
                return -3;
            }
            readLengths(*Daten, DatenFormat, length.row, length.store);
        }
    }
    readNames(*Daten, DatenFormat, nameCells(header, block));
    const bool crOnly = losesAlignment(header);
    RowWalk walk(window, crOnly ? header.names.lineEnd : header.names.lastByte,
                 crOnly ? CrLf::CrOnly : CrLf::LineEnd);
    if (!walk.next()) {
        return -1;
    }
    if (rowTooLong(AnzLoci, DatenFormat)) {
        AUSGABE(Message::RowTooLong);
        return -1;
    }
    AUSGABE(Message::ReadingBegin);
    readRows(*this, walk);
    AUSGABE(Message::ReadingEnd);
    return 0;
}

} // namespace kva
