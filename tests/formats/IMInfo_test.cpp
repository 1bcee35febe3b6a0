#include "formats/IMInfo.h"

#include "formats/formats_support.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

using namespace kva;

using namespace kva_test;

namespace {

// --- Helpers -----------------------------------------------------------------------------

constexpr const char* kHead2 = "2 . . 2 . 4 .\n. . . 50 . 60 .\n. . . L1 L1b L2 L2b\n";
constexpr const char* kHead1 = "1 . . 2 4\n. . . 50 60\n. . . L1 L2\n";

std::string crLf(const std::string& text) {
    std::string bytes;
    for (const char c : text) {
        bytes += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    return bytes;
}

// Has the object read `bytes` as its IM information file.
long readInfo(AnalyseDataObj& obj, const std::string& bytes) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
    EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file.get()), bytes.size());
    return obj.ReadIMInfo(file.get());
}

// Scalar and rate of each locus.
using Values = std::vector<double>;

Values scalarsOf(const AnalyseDataObj& obj) {
    Values values;
    for (const LociObj& locus : obj.Daten->Loci) {
        values.push_back(locus.InheritanceScalar);
    }
    return values;
}

Values ratesOf(const AnalyseDataObj& obj) {
    Values values;
    for (const LociObj& locus : obj.Daten->Loci) {
        values.push_back(locus.MutationRate);
    }
    return values;
}

// The rates that one row of value cells gives; `row` as tabbed() takes it.
Values ratesOfRow(const std::string& row, int format = 1, int loci = 3) {
    Datensatz data;
    data.init(loci);
    EXPECT_EQ(GetIMData(data, loci, tabbed(row), 0, format), 0);
    Values values;
    for (int l = 1; l <= loci; ++l) {
        values.push_back(data.AccessMutationRate(l));
    }
    return values;
}

} // namespace

// --- One row -----------------------------------------------------------------------------

TEST(IMData, EachCellIsALocus) {
    EXPECT_EQ(ratesOfRow("0.5 0.25 2"), (Values{0.5, 0.25, 2}));
}

TEST(IMData, CommaIsADecimalPoint) {
    EXPECT_EQ(ratesOfRow("0,0005 1,5 2"), (Values{0.0005, 1.5, 2}));
}

TEST(IMData, EmptyCellIsMinusOne) {
    EXPECT_EQ(ratesOfRow(". 0.25 2"), (Values{-1, 0.25, 2}));
    EXPECT_EQ(ratesOfRow("0.5 . 2"), (Values{0.5, -1, 2}));
    EXPECT_EQ(ratesOfRow("0.5 0.25 ."), (Values{0.5, 0.25, -1}));
}

TEST(IMData, TextIsMinusOneAndZeroIsZero) {
    EXPECT_EQ(ratesOfRow("abc 0 0.0"), (Values{-1, 0, 0}));
    // A zero counts only if the first byte is "0".
    EXPECT_EQ(ratesOfRow(".0 -0 +0"), (Values{-1, -1, -1}));
    EXPECT_EQ(ratesOfRow("0x .5 n.d."), (Values{0, 0.5, -1}));
}

TEST(IMData, NumberInFrontOfTextCounts) {
    EXPECT_EQ(ratesOfRow("1e-4x 2;3 5%"), (Values{1e-4, 2, 5}));
}

TEST(IMData, BlankCellIsMinusOneWhateverStandsBehind) {
    Datensatz data;
    data.init(2);
    GetIMData(data, 2, " \t7", 0, 1);
    EXPECT_EQ(data.AccessMutationRate(1), -1.0);
    EXPECT_EQ(data.AccessMutationRate(2), 7.0);
}

TEST(IMData, CellsBehindTheRowsEndAreMinusOne) {
    EXPECT_EQ(ratesOfRow("0.5"), (Values{0.5, -1, -1}));
    EXPECT_EQ(ratesOfRow("0.5\r\n7 8 9"), (Values{0.5, -1, -1}));
    EXPECT_EQ(ratesOfRow("0.5 .\n7 8 9"), (Values{0.5, -1, -1}));
    EXPECT_EQ(ratesOfRow("\r\n7 8 9"), (Values{-1, -1, -1}));
}

TEST(IMData, SurplusCellsAreIgnored) {
    EXPECT_EQ(ratesOfRow("1 2 3 4 5"), (Values{1, 2, 3}));
}

TEST(IMData, SecondColumnOfALocusIsSkipped) {
    EXPECT_EQ(ratesOfRow("1 9 2 . 3 9", 2), (Values{1, 2, 3}));
    EXPECT_EQ(ratesOfRow(". 9 2 9 3", 2), (Values{-1, 2, 3}));
    EXPECT_EQ(ratesOfRow("1 9 2", 2), (Values{1, 2, -1}));
}

TEST(IMData, KindOfValueIsChosenByTheCaller) {
    Datensatz data;
    data.init(1);
    GetIMData(data, 1, "0.25", 1, 1);
    EXPECT_EQ(data.AccessInheritanceScalar(1), 0.25);
    EXPECT_EQ(data.AccessMutationRate(1), -1.0);
}

// --- Whole files ---------------------------------------------------------------------------

TEST(ReadIMInfo, BothKindsOfRowsInCrLf) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(readInfo(*run, crLf(tabbed(std::string(kHead2) + "m . . 0.0005 . 0.001 .\n" +
                                         "i . . 1 . 0.25 .\n"))),
              0);
    EXPECT_EQ(ratesOf(*run), (Values{0.0005, 0.001}));
    EXPECT_EQ(scalarsOf(*run), (Values{1, 0.25}));
}

TEST(ReadIMInfo, OneColumnPerLocus) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "i x y 1 0.25\nmutation x y 0.5 0,7\n")));
    EXPECT_EQ(ratesOf(*run), (Values{0.5, 0.7}));
    EXPECT_EQ(scalarsOf(*run), (Values{1, 0.25}));
}

TEST(ReadIMInfo, TwoHeaderRows) {
    LoadedRun run("1 . . . .\n. . . L1 L2\nA d 0 100 200\nA d 0 100 200\n");
    readInfo(*run, crLf(tabbed("1 . . . .\n. . . L1 L2\nm . . 0.5 0.7\n")));
    EXPECT_EQ(ratesOf(*run), (Values{0.5, 0.7}));
}

TEST(ReadIMInfo, HeadIsSkippedAndNotCompared) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed("x\n7 7 7 7\n. . . Other Names\nm . . 0.5 0.7\n")));
    EXPECT_EQ(ratesOf(*run), (Values{0.5, 0.7}));
}

TEST(ReadIMInfo, WithALoneLfTheFirstByteOfTheWordIsLost) {
    LoadedRun run(kTwoPopsOneColumn);
    const std::string head = kHead1;
    // "m" has no second letter; "im" begins with m where it is looked at.
    readInfo(*run, tabbed(head + "m . . 0.5 0.7\n"));
    EXPECT_EQ(ratesOf(*run), (Values{-1, -1}));
    EXPECT_EQ(scalarsOf(*run), (Values{0.5, 0.7}));
    readInfo(*run, tabbed(head + "im . . 0.1 0.2\nmi . . 3 4\n"));
    EXPECT_EQ(ratesOf(*run), (Values{0.1, 0.2}));
    EXPECT_EQ(scalarsOf(*run), (Values{3, 4}));
}

TEST(ReadIMInfo, LoneCrCountsAsOneByteToo) {
    LoadedRun run(kTwoPopsOneColumn);
    std::string bytes = tabbed(std::string(kHead1) + "mm . . 0.1 0.2\n");
    std::replace(bytes.begin(), bytes.end(), '\n', '\r');
    readInfo(*run, bytes);
    EXPECT_EQ(ratesOf(*run), (Values{0.1, 0.2}));
}

TEST(ReadIMInfo, LaterRowOfAKindReplacesAllValues) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "m . . 0.5 0.7\nm2 . . 0.1 .\n")));
    EXPECT_EQ(ratesOf(*run), (Values{0.1, -1}));
}

TEST(ReadIMInfo, LastRowWithoutALineEndIsRead) {
    LoadedRun run(kTwoPopsOneColumn);
    EXPECT_EQ(readInfo(*run, crLf(tabbed(std::string(kHead1) + "i . . 1 1\nm . . 0.5 0.7"))), 0);
    EXPECT_EQ(ratesOf(*run), (Values{0.5, 0.7}));
}

TEST(ReadIMInfo, EmptyLinesAtTheEndChangeNothing) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "i . . 2 3\n\n\n")));
    EXPECT_EQ(scalarsOf(*run), (Values{2, 3}));
}

TEST(ReadIMInfo, RowCutShortLacksAllCells) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "i . . 2 3\nm . . 4 5\ni .\n")));
    EXPECT_EQ(scalarsOf(*run), (Values{-1, -1}));
    EXPECT_EQ(ratesOf(*run), (Values{4, 5}));
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "i . . 2 3\nm . . 4 5\nm\n")));
    EXPECT_EQ(scalarsOf(*run), (Values{2, 3}));
    EXPECT_EQ(ratesOf(*run), (Values{-1, -1}));
}

TEST(ReadIMInfo, EmptyLineBetweenRowsChangesNothing) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "i . . 2 3\n\nm . . 4 5\n")));
    EXPECT_EQ(scalarsOf(*run), (Values{2, 3}));
    EXPECT_EQ(ratesOf(*run), (Values{4, 5}));
}

TEST(ReadIMInfo, WordIsCaseSensitive) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + "Mutation . . 2 3\n")));
    EXPECT_EQ(scalarsOf(*run), (Values{2, 3}));
    EXPECT_EQ(ratesOf(*run), (Values{-1, -1}));
}

TEST(ReadIMInfo, EmptyWordIsAnInheritanceRow) {
    LoadedRun run(kTwoPopsOneColumn);
    readInfo(*run, crLf(tabbed(std::string(kHead1) + ". . . 2 3\n")));
    EXPECT_EQ(scalarsOf(*run), (Values{2, 3}));
}

TEST(ReadIMInfo, NulByteEndsTheReading) {
    LoadedRun run(kTwoPopsOneColumn);
    std::string bytes = crLf(tabbed(std::string(kHead1) + "m . . 0.5 #\nm . . 7 8\n"));
    bytes[bytes.find('#')] = '\0';
    readInfo(*run, bytes);
    EXPECT_EQ(ratesOf(*run), (Values{0.5, -1}));
}

TEST(ReadIMInfo, StreamThatIsNullIsRefused) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(run->ReadIMInfo(nullptr), -1);
}

TEST(ReadIMInfo, FileWithoutARowIsRefused) {
    LoadedRun run(kTwoPopsOneColumn);
    EXPECT_EQ(readInfo(*run, ""), -1);
    EXPECT_EQ(readInfo(*run, "\n"), -1);
    EXPECT_EQ(readInfo(*run, "1"), -1);
    EXPECT_EQ(readInfo(*run, tabbed("1 . . 2 4\n. . . 50 60\n")), -1);
    EXPECT_EQ(readInfo(*run, tabbed("1 . . 2 4\n. . . 50 60\n. . . L1 L2")), -1);
    EXPECT_EQ(readInfo(*run, std::string(1000, '\t')), -1);
}

TEST(ReadIMInfo, WithoutADataSetThereIsNothingToReadInto) {
    AnalyseDataObj empty;
    EXPECT_EQ(readInfo(empty, crLf(tabbed(kHead1))), -1);
}

TEST(ReadIMInfo, WrongNumberOfHeadColumnsIsMinusThree) {
    LoadedRun run(kTwoPops);
    run->KopfSpalten = 2;
    long result = 0;
    EXPECT_EQ(printed([&] { return result = readInfo(*run, "x"); }),
              "\n!! FATAL ERROR Incorrect Row-Format FATAL ERROR !!\n");
    EXPECT_EQ(result, -3);
}

TEST(ReadIMInfo, TooManyLociForABlockAreRefused) {
    // Two columns: (24973 x 4 + 4) x 2 + 211 = 200003 is above 200000, 24972 give 199995.
    const std::string bytes = crLf(tabbed(std::string(kHead2) + "m . . 1 . 2 .\n"));
    LoadedRun run(kTwoPops);
    run->AnzLoci = 24972;
    EXPECT_EQ(printed([&] { return readInfo(*run, bytes); }), "");
    EXPECT_EQ(ratesOf(*run), (Values{1, 2}));
    LoadedRun refused(kTwoPops);
    refused->AnzLoci = 24973;
    long result = 0;
    const std::string console = printed([&] { return result = readInfo(*refused, bytes); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(console, "\n!! FATAL-ERROR Can't read one line into memory !!\nPlease reduce number "
                       "of loci and/or contact the programmer!\nErrorcode: 1-3\n");
    EXPECT_EQ(ratesOf(*refused), (Values{-1, -1}));
}

TEST(ReadIMInfo, ManyRowsAreReadToTheLast) {
    LoadedRun run(kTwoPopsOneColumn);
    std::string rows = kHead1;
    for (int row = 0; row < 100000; ++row) {
        rows += numbered("m . . ", row) + " 1\n";
    }
    EXPECT_EQ(readInfo(*run, crLf(tabbed(rows))), 0);
    EXPECT_EQ(ratesOf(*run), (Values{99999, 1}));
}

TEST(ReadIMInfo, RowWhoseLineEndEndsItsBlockIsTheLast) {
    // The block begins at the LF in front of the row: with a row of 199997 bytes its CR and LF are
    // the bytes 199998 and 199999, the last of the block.
    const std::string head = crLf(tabbed(kHead1));
    const std::string next = crLf(tabbed("m . . 3 4\n"));
    std::string row = "m\t\t\t0.5\t0.";
    row.resize(199997, '0');
    LoadedRun run(kTwoPopsOneColumn);
    EXPECT_EQ(readInfo(*run, head + row + "\r\n" + next), 0);
    EXPECT_EQ(ratesOf(*run), (Values{0.5, 0}));
    row.pop_back();
    EXPECT_EQ(readInfo(*run, head + row + "\r\n" + next), 0);
    EXPECT_EQ(ratesOf(*run), (Values{3, 4}));
}

TEST(ReadIMInfo, RowLongerThanABlockIsReadAsFarAsTheBlock) {
    LoadedRun run(kTwoPopsOneColumn);
    // The block begins at the LF in front of the row, so it holds 199999 bytes of it.
    std::string row = "m\t\t\t0.5\t7";
    row.append(300000, '1');
    EXPECT_EQ(readInfo(*run, crLf(tabbed(kHead1)) + row + "\r\n" + tabbed("m . . 3 4")), 0);
    EXPECT_EQ(ratesOf(*run)[0], 0.5);
    EXPECT_TRUE(std::isinf(ratesOf(*run)[1])); // 7111... with 199,990 digits
}

// --- Against a plain reading -------------------------------------------------------------------

namespace {

// The reading in its plain form: for each row a block of at most 200000 bytes is copied out of the
// file, and walked as zero-terminated text.
class PlainReading {
  public:
    PlainReading(const AnalyseDataObj& obj, std::string bytes)
        : file(std::move(bytes)), headRows(obj.KopfZeilen), loci(obj.AnzLoci),
          columns(obj.DatenFormat), scalars(scalarsOf(obj)), rates(ratesOf(obj)), result(read()) {}

  private:
    std::string blockAt(std::size_t position) const {
        if (position >= file.size()) {
            return {};
        }
        const std::string block = file.substr(position, 200000);
        return block.substr(0, block.find('\0'));
    }

    long read() {
        const std::string head = blockAt(0);
        std::size_t place = 0;
        for (int row = 1; row < headRows; ++row) {
            place = head.find_first_of("\r\n", place + 1);
            if (place == std::string::npos) {
                return -1;
            }
            ++place;
        }
        place += 4;
        const std::size_t end = head.find_first_of("\r\n", place);
        if (end == std::string::npos) {
            return -1;
        }
        for (int cell = 0; cell < loci * columns; ++cell) {
            const std::size_t tab = place > end ? std::string::npos : head.find('\t', place);
            place = tab == std::string::npos || tab > end ? end + 1 : tab + 1;
        }
        return file.size() <= place ? -1 : readRows(place);
    }

    long readRows(std::size_t position) {
        while (position + 1 < file.size()) {
            const std::string block = blockAt(position);
            // A NUL in the first place closes the block, but the row's first byte is not looked at.
            const std::string row = block.empty() ? blockAt(position + 1) : block.substr(1);
            const std::size_t end = std::min(row.find_first_of("\r\n"), row.size());
            readRow(row.substr(0, end));
            const std::size_t bytes = std::min<std::size_t>(200000, file.size() - position);
            if (end == row.size() || end + 2 == bytes - 1) {
                return 0;
            }
            position += end + 2;
        }
        return 0;
    }

    void readRow(const std::string& row) {
        if (row.empty()) {
            return;
        }
        std::size_t place = 0;
        for (int tabs = 0; tabs < 3 && place < row.size(); ++tabs) {
            place = std::min(row.find('\t', place), row.size() - 1) + 1;
        }
        Values& values = row[0] == 'm' ? rates : scalars;
        for (double& value : values) {
            value = -1.0;
            if (place < row.size() && row[place] != '\t') {
                std::string cell = row.substr(place, row.find('\t', place) - place);
                for (char& c : cell) {
                    c = c == ',' ? '.' : c;
                }
                const double number = std::strtod(cell.c_str(), nullptr);
                value = number == 0 && cell[0] != '0' ? -1.0 : number;
            }
            for (int column = 0; column < columns; ++column) {
                const std::size_t tab = row.find('\t', place);
                place = tab == std::string::npos ? row.size() : tab + 1;
            }
        }
    }

    std::string file;
    int headRows;
    int loci;
    int columns;

  public:
    Values scalars;
    Values rates;
    long result; // of the whole reading
};

std::string randomBytes(int count) {
    static const std::string alphabet("\t\t\t\t\r\n\r\n\n\0m0123456789.,-+eExi naf", 33);
    std::string bytes;
    for (int i = 0; i < count; ++i) {
        bytes +=
            alphabet[static_cast<std::size_t>(drawIndex(static_cast<int32_t>(alphabet.size())))];
    }
    return bytes;
}

bool sameValues(const Values& a, const Values& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) {
        return x == y || (std::isnan(x) && std::isnan(y));
    });
}

} // namespace

TEST(ReadIMInfo, AnyBytesGiveWhatThePlainReadingGives) {
    LoadedRun two(kTwoPops);
    LoadedRun one(kTwoPopsOneColumn);
    for (long seed = 1; seed <= 4000; ++seed) {
        srand2(seed);
        LoadedRun& run = seed % 2 == 0 ? two : one;
        run->KopfZeilen = 2 + drawIndex(2);
        const std::string head = tabbed(run->DatenFormat == 2 ? kHead2 : kHead1);
        std::string bytes = drawIndex(3) == 0 ? "" : drawIndex(2) == 0 ? head : crLf(head);
        bytes += randomBytes(drawIndex(120));
        const PlainReading plain(*run, bytes);
        EXPECT_EQ(readInfo(*run, bytes), plain.result) << "seed " << seed;
        EXPECT_TRUE(sameValues(ratesOf(*run), plain.rates)) << "seed " << seed;
        EXPECT_TRUE(sameValues(scalarsOf(*run), plain.scalars)) << "seed " << seed;
    }
}

TEST(ReadIMInfo, LongFilesGiveWhatThePlainReadingGives) {
    LoadedRun run(kTwoPopsOneColumn);
    for (long seed = 1; seed <= 5; ++seed) {
        srand2(seed);
        std::string rows = kHead1;
        for (int row = 0; row < 40; ++row) { // rows of about 20000 bytes
            rows += numbered(drawIndex(2) == 0 ? "m . . " : "i . . ", drawIndex(1000)) + " 0.";
            rows.append(static_cast<std::size_t>(drawIndex(40000)), '5');
            rows += '\n';
        }
        const std::string bytes = crLf(tabbed(rows));
        const PlainReading plain(*run, bytes);
        EXPECT_EQ(readInfo(*run, bytes), 0);
        EXPECT_EQ(ratesOf(*run), plain.rates) << "seed " << seed;
        EXPECT_EQ(scalarsOf(*run), plain.scalars) << "seed " << seed;
    }
}
