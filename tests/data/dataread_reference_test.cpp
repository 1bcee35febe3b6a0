// The reader against a plain one that goes through the file with a seek and a fresh read of a
// block for every row, and takes the block apart with the C library, on seeded random files.
#include "control/AnalyseDataObj.h"
#include "support/support.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <vector>

using namespace kva;

using namespace kva_test;

namespace {

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// --- The plain reader ---------------------------------------------------------------

struct PlainReader {
    std::FILE* file;
    std::vector<char> buffer = std::vector<char>(200'010);
    long read = 0;     // bytes of the block
    long size = 0;     // bytes of the file
    long contents = 0; // bytes without the empty lines at its end
    int format = 0;
    int headerRows = 2;
    int loci = 0;
    std::ostringstream result;

    explicit PlainReader(std::FILE* stream, const std::string& bytes)
        : file(stream), size(static_cast<long>(bytes.size())),
          contents(static_cast<long>(bytes.find_last_not_of(" \r\n") + 1)) {}

    void block(long place) {
        std::fseek(file, place, SEEK_SET);
        read = static_cast<long>(std::fread(buffer.data(), 1, 200'000, file));
        buffer[static_cast<std::size_t>(read)] = '\0';
    }

    static char* lineEnd(char* from) {
        char* const end = std::strpbrk(from, "\r\n");
        return end != nullptr ? end : from + std::strlen(from);
    }

    static bool crLf(const char* end) { return end[0] == '\r' && end[1] == '\n'; }

    static int number(const std::string& cell) {
        const long value =
            std::clamp(std::strtol(cell.c_str(), nullptr, 10), long{INT_MIN}, long{INT_MAX});
        return value == 0 && cell.substr(0, 1) != "0" ? -1 : static_cast<int>(value);
    }

    // The cells of a row from the fourth on, as many as there are columns.
    std::vector<std::string> cells(const std::string& row) const {
        std::vector<std::string> all{""};
        for (const char c : row) {
            if (c == '\t') {
                all.emplace_back();
            } else {
                all.back() += c;
            }
        }
        all.resize(std::size_t{3} + columns());
        all.erase(all.begin(), all.begin() + 3);
        return all;
    }

    std::size_t columns() const {
        return static_cast<std::size_t>(loci) * static_cast<std::size_t>(format);
    }

    void lengths(const std::string& row) {
        const std::vector<std::string> all = cells(row);
        for (std::size_t i = 0; i < columns(); i += static_cast<std::size_t>(format)) {
            result << number(all[i]) << ' ';
        }
        result << '\n';
    }

    // The names: three bytes behind `last`, the row ends before `end`.
    void names(const char* last, const char* end) {
        const char* const begin = std::min(last + 4, end);
        const std::vector<std::string> all = cells(std::string("\t\t\t").append(begin, end));
        for (std::string name : all) {
            if (!name.empty() && std::iscntrl(static_cast<unsigned char>(name.back())) != 0) {
                name.pop_back();
            }
            result << '<' << name << '>';
        }
        result << '\n';
    }

    // Both passes: the shape with the place of the rows, then the rows.
    std::string readAll() {
        block(0);
        format = buffer[0] - '0';
        char* const row1 = buffer.data();
        char* const end1 = lineEnd(row1);
        const int two = crLf(end1) ? 1 : 0; // the flag: line ends are CR LF
        loci = static_cast<int>(std::count(row1, end1, '\t') + 1 - 3) / format;
        char* const end2 = lineEnd(end1 + two + 1);
        char* end = end2;
        const char* before = end1 + two;
        if (end2[two + 1] == '\t') {
            headerRows = 3;
            lengths(std::string(row1, end1));
            lengths(std::string(std::min(end1 + two + 1, end2), end2));
            before = end2 + two;
            end = lineEnd(end2 + two + 1);
        }
        const int seen = headerRows == 3 ? two : 0; // the flag of the second pass
        names(headerRows == 3 ? before : end1, end + seen);
        const long place = end - buffer.data();
        shape(place + two, two);
        rows(place + seen, seen);
        return result.str();
    }

    // True if the walk ends before a row: only empty lines follow, or the block's text is blank.
    bool noRow(long place, const char* row, const char* end) const {
        return place + 1 >= contents || (*end == '\0' && std::all_of(row, end, [](char c) {
                   return std::strchr(" \r\n", c);
               }));
    }

    void shape(long place, int two) {
        std::string name;
        int pops = 0;
        int count = 0;
        int largest = 1;
        const auto close = [&] {
            largest = std::max(largest, count);
            result << "pop <" << name << "> " << count * format + 2 << '\n';
        };
        for (block(place);; block(place)) {
            char* const row = buffer.data() + 1;
            char* const end = lineEnd(row);
            if (noRow(place, row, end)) {
                break;
            }
            const std::string cell(row, std::find(row, end, '\t'));
            if (pops == 0 || cell != name) {
                if (pops > 0) {
                    close();
                }
                name = cell;
                count = 0;
                ++pops;
            }
            ++count;
            if (*end == '\0') {
                break;
            }
            place += end - buffer.data() + two;
        }
        close();
        result << pops << ' ' << largest * format << '\n';
    }

    void rows(long place, int two) {
        std::string name;
        int pop = 0;
        for (block(place);; block(place)) {
            char* const row = buffer.data() + 1;
            // With CR LF unseen, the end of the row before stands in front of the row.
            char* const end = lineEnd(buffer[0] == '\r' && row[0] == '\n' ? row + 1 : row);
            if (noRow(place, row, end)) {
                return;
            }
            const std::string cell(row, std::find(row, end, '\t'));
            pop += pop == 0 || cell != name ? 1 : 0;
            name = cell;
            individual(row, end, pop);
            const long last = end - buffer.data() + two;
            if (*end == '\0' || last >= read - 1) {
                return;
            }
            place += last;
        }
    }

    void individual(const char* row, const char* end, int pop) {
        const std::string text(row, end);
        const std::size_t tab1 = text.find('\t');
        const std::size_t tab2 = tab1 == std::string::npos ? tab1 : text.find('\t', tab1 + 1);
        const bool haploid = tab1 != std::string::npos && row[tab1 + 1] == 'h';
        const long group = tab2 == std::string::npos ? 0 : std::strtol(row + tab2 + 1, nullptr, 10);
        result << pop << ' '
               << std::clamp(group, -(1L << 30), (1L << 30) - 1) * 2 + (haploid ? 1 : 0) << ':';
        for (const std::string& cell : cells(text)) {
            result << ' ' << number(cell);
        }
        result << '\n';
    }
};

// --- What the program read, in the same words ---------------------------------------

std::string told(const AnalyseDataObj& obj) {
    const Datensatz& daten = *obj.Daten;
    std::ostringstream result;
    if (obj.KopfZeilen == 3) {
        for (const LociObj& locus : daten.Loci) {
            result << locus.LociRepeatMuster << ' ';
        }
        result << '\n';
        for (const LociObj& locus : daten.Loci) {
            result << locus.LociRepeatRest << ' ';
        }
        result << '\n';
    }
    for (const LociObj& locus : daten.Loci) {
        result << '<' << *locus.GetLociName() << '>';
        if (obj.DatenFormat == 2) {
            result << '<' << *locus.GetLociName2() << '>';
        }
    }
    result << '\n';
    for (int pop = 1; pop <= obj.AnzPop; ++pop) {
        result << "pop <" << *daten.GetPopName(pop) << "> "
               << daten.Locus(1)->DataChromosom[static_cast<std::size_t>(pop - 1)].Kapazitaet
               << '\n';
    }
    result << obj.AnzPop << ' ' << obj.MaxChromosomen << '\n';
    for (int pop = 1; pop <= obj.AnzPop; ++pop) {
        for (int i = 0; i < daten.GetAnzDatenChromosome(pop); i += obj.DatenFormat) {
            result << pop << ' ' << daten.Locus(1)->GetInfoChromosom(pop, i) << ':';
            for (const LociObj& locus : daten.Loci) {
                for (int column = 0; column < obj.DatenFormat; ++column) {
                    result << ' ' << locus.GetDataChromosom(pop, i + column);
                }
            }
            result << '\n';
        }
    }
    return result.str();
}

// --- Random files -----------------------------------------------------------------------

class RandomFile {
  public:
    explicit RandomFile(unsigned seed) : Random(seed) {}

    // `limit`: some rows are about as long as a block.
    std::string make(bool limit) {
        const char* const kinds[] = {"\n", "\r\n", "\r"};
        LineEnd = kinds[upTo(2)];
        Columns = 1 + upTo(1);
        Loci = 1 + upTo(3);
        header();
        const int rows = 1 + upTo(12);
        for (int row = 0; row < rows; ++row) {
            dataRow(limit && upTo(3) == 0);
        }
        if (upTo(2) == 0) {
            Bytes.resize(Bytes.size() - LineEnd.size()); // no line end behind the last row
        } else if (upTo(2) == 0) {
            Bytes += upTo(1) == 0 ? LineEnd + LineEnd : "  ";
        }
        return Bytes;
    }

  private:
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(Random); }

    template <std::size_t N> std::string oneOf(const char* const (&words)[N]) {
        return words[upTo(static_cast<int>(N) - 1)];
    }

    void header() {
        const bool three = upTo(3) > 0;
        const int cells = Loci * Columns + (Columns == 2 ? upTo(1) : 0);
        Bytes = std::to_string(Columns) + "\t\t";
        headerCells(cells);
        if (three) {
            Bytes += upTo(9) == 0 ? "" : "\t\t";
            headerCells(upTo(cells));
        }
        Bytes += "\t\t";
        for (int i = upTo(cells + 1); i >= 0; --i) {
            Bytes.append("\t").append(oneOf(kNames));
        }
        Bytes += LineEnd;
    }

    void headerCells(int cells) {
        for (int i = 0; i < cells; ++i) {
            Bytes.append("\t").append(oneOf(kCells));
        }
        Bytes += LineEnd;
    }

    void dataRow(bool longRow) {
        std::string row = oneOf(kNames);
        if (row.empty()) {
            row += 'E'; // a tab in front of row 4 refuses the file
        }
        if (upTo(15) > 0) {
            row.append("\t").append(oneOf(kTypes)).append("\t").append(oneOf(kGroups));
            for (int i = upTo(7) > 0 ? Loci * Columns : upTo(Loci * Columns + 2); i > 0; --i) {
                row.append("\t").append(oneOf(kCells));
            }
        }
        if (upTo(40) == 0) {
            row[static_cast<std::size_t>(upTo(static_cast<int>(row.size()) - 1))] = '\0';
        }
        if (longRow) { // around 199998 bytes: the padding stands before the last cells or behind
            const std::size_t bytes = 199'990 + static_cast<std::size_t>(upTo(15));
            const std::size_t at = upTo(1) == 0 ? row.size() : row.find('\t') + 1;
            row.insert(at, bytes - row.size(), upTo(1) == 0 ? ' ' : '4');
        }
        Bytes += row + LineEnd;
    }

    static constexpr const char* kNames[] = {"A", "A", "A", "B", "12B", "", "C c", "D\x01"};
    static constexpr const char* kTypes[] = {"d", "h", "", "haploid", " h", "H"};
    static constexpr const char* kGroups[] = {"0", "1",  "2",          "",
                                              "x", "-3", "9999999999", "1073741824"};
    static constexpr const char* kCells[] = {"",   "104", "106", "0",   " 0",          "007", "12x",
                                             "x",  "-4",  "+5",  "-0",  "99999999999", "1 2", "  7",
                                             "0x", "8",   "?",   "1.5", "-99999999999"};

    std::mt19937 Random;
    std::string LineEnd;
    int Columns = 1;
    int Loci = 1;
    std::string Bytes;
};

// Reads the bytes in both ways. True if the file was taken.
bool readBoth(const std::string& bytes, unsigned seed) {
    const Stream stream(std::tmpfile(), &std::fclose);
    std::fwrite(bytes.data(), 1, bytes.size(), stream.get());
    AnalyseDataObj obj;
    {
        const StdoutCapture swallowed;
        if (obj.CheckDataFile(stream.get()) != 0) {
            return false;
        }
        obj.GetDataFile(stream.get());
    }
    EXPECT_EQ(told(obj), PlainReader(stream.get(), bytes).readAll()) << "seed " << seed;
    return true;
}

} // namespace

TEST(DataFileReference, SmallRandomFilesReadAlike) {
    int taken = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        taken += readBoth(RandomFile(seed).make(false), seed) ? 1 : 0;
    }
    EXPECT_GT(taken, 1800);
}

TEST(DataFileReference, RandomFilesWithRowsAboutTheBlockReadAlike) {
    int taken = 0;
    for (unsigned seed = 1; seed <= 150; ++seed) {
        taken += readBoth(RandomFile(seed).make(true), seed) ? 1 : 0;
    }
    EXPECT_GT(taken, 130);
}
