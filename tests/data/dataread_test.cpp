#include "data/dataread.h"

#include "support/datasets.h"

#include <gtest/gtest.h>
#include <sstream>
#include <vector>

using namespace kva;

using namespace kva_test;

namespace {

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
using Values = std::vector<int>;

Stream fileOf(std::string_view bytes) {
    Stream stream(std::tmpfile(), &std::fclose);
    std::fwrite(bytes.data(), 1, bytes.size(), stream.get());
    return stream;
}

// Bytes read by both passes, without a result folder.
struct Reading {
    explicit Reading(std::string_view bytes) {
        const Stream stream = fileOf(bytes);
        obj.DateiName = "data.txt";
        StdoutCapture checking;
        checked = obj.CheckDataFile(stream.get());
        told = checking.text();
        StdoutCapture getting;
        got = obj.GetDataFile(stream.get());
        marks = getting.text();
    }

    const Datensatz& daten() const { return *obj.Daten; }
    std::string name(int pop) const { return *daten().GetPopName(pop); }

    // The slots of a population at a locus.
    Values alleles(int locus, int pop) const {
        const auto slots = daten().Locus(locus)->DataSlots(pop);
        return {slots.begin(), slots.end()};
    }
    Values infos(int pop) const {
        const auto slots = daten().Locus(1)->InfoSlots(pop);
        return {slots.begin(), slots.end()};
    }

    AnalyseDataObj obj;
    int checked = 0;   // result of CheckDataFile
    int got = 0;       // result of GetDataFile
    std::string told;  // what CheckDataFile printed
    std::string marks; // what GetDataFile printed
};

// The same text with other line ends.
std::string withLineEnds(std::string text, const std::string& lineEnd) {
    for (std::size_t at = text.find('\n'); at != std::string::npos;
         at = text.find('\n', at + lineEnd.size())) {
        text.replace(at, 1, lineEnd);
    }
    return text;
}

// All that reading gives, as text: shape, loci, populations, slots.
std::string everything(const AnalyseDataObj& obj) {
    std::ostringstream all;
    all << int{obj.DatenFormat} << ' ' << obj.KopfZeilen << ' ' << obj.AnzLoci << ' ' << obj.AnzPop
        << ' ' << obj.MaxChromosomen << '\n';
    for (const LociObj& locus : obj.Daten->Loci) {
        all << "locus <" << locus.LociName << "> <" << locus.LociName2 << "> "
            << locus.LociRepeatMuster << ' ' << locus.LociRepeatRest << '\n';
        for (int pop = 1; pop <= locus.AnzPop; ++pop) {
            all << '<' << *locus.GetPopName(pop) << "> "
                << locus.DataChromosom[static_cast<std::size_t>(pop - 1)].Kapazitaet << ':';
            const auto infos = locus.InfoSlots(pop);
            std::size_t i = 0;
            for (const int32_t allel : locus.DataSlots(pop)) {
                all << ' ' << allel << '/' << infos[i++];
            }
            all << '\n';
        }
    }
    return all.str();
}

// One locus, one column: header and the data rows given.
std::string oneColumn(const std::string& rows) {
    return "1\t\t\t2\n\t\t\t50\n\t\t\tL\n" + rows;
}

// One locus, two columns.
std::string twoColumns(const std::string& rows) {
    return "2\t\t\t2\t\n\t\t\t50\t\n\t\t\tL\tL_2\n" + rows;
}

// The value of a single allele cell.
int alleleOf(const std::string& cell) {
    return Reading(oneColumn("A\td\t0\t" + cell + "\n")).alleles(1, 1).at(0);
}

// The info value of the first individual with the given type and group cells.
int infoOf(const std::string& typeAndGroup) {
    return Reading(oneColumn("A\t" + typeAndGroup + "\t7\n")).infos(1).at(0);
}

} // namespace

// --- Shape of the file -----------------------------------------------------

TEST(CheckDataFile, ThreeHeaderRowsTellShapeLengthsAndNames) {
    Reading file(tabbed(kTwoPops));
    EXPECT_EQ(file.checked, 0);
    EXPECT_EQ(file.obj.DatenFormat, 2);
    EXPECT_EQ(file.obj.KopfZeilen, 3);
    EXPECT_EQ(file.obj.KopfSpalten, 3);
    EXPECT_EQ(file.obj.AnzLoci, 2); // (7 cells - 3) / 2
    EXPECT_EQ(file.obj.AnzPop, 2);
    EXPECT_EQ(file.obj.MaxChromosomen, 4); // 2 rows x 2 columns
    EXPECT_EQ(file.told, "");
}

TEST(CheckDataFile, TwoHeaderRowsHaveNoLengths) {
    Reading file("1\t\t\t2\t4\n\t\t\tL1\tL2\nA\td\t0\t100\t200\n");
    EXPECT_EQ(file.obj.KopfZeilen, 2);
    EXPECT_EQ(file.daten().GetLociRepeatMuster(1), -1); // the text of row 1 is not read
    EXPECT_EQ(file.daten().GetLociRepeatRest(2), -1);
    EXPECT_EQ(*file.daten().GetLociName(2), "L2");
    EXPECT_EQ(file.alleles(2, 1), Values{200});
}

TEST(CheckDataFile, PopulationHasRoomForTwoSlotsToSpare) {
    Reading one(oneColumn("A\td\t0\t7\n"));
    EXPECT_EQ(one.daten().Locus(1)->DataChromosom[0].Kapazitaet, 3); // 1 row x 1 column + 2
    EXPECT_EQ(one.obj.MaxChromosomen, 1);
    Reading two(twoColumns("A\td\t0\t7\t7\n"));
    EXPECT_EQ(two.daten().Locus(1)->DataChromosom[0].Kapazitaet, 4); // 1 row x 2 columns + 2
    EXPECT_EQ(two.obj.MaxChromosomen, 2);
}

TEST(CheckDataFile, SurplusColumnOfTheLastPairIsIgnored) {
    // 3 + 5 cells in row 1: 5 / 2 = 2 loci.
    Reading file(
        "2\t\t\t2\t\t4\t\t6\n\t\t\t\n\t\t\tL1\tL1b\tL2\tL2b\tL3\nA\td\t0\t1\t2\t3\t4\t5\n");
    EXPECT_EQ(file.obj.AnzLoci, 2);
    EXPECT_EQ(file.alleles(2, 1), (Values{3, 4}));
}

TEST(CheckDataFile, EmptyCellsOfRow1Count) {
    EXPECT_EQ(Reading("1\t\t\t\t\n\t\t\t\n\t\t\tL1\tL2\nA\td\t0\t1\t2\n").obj.AnzLoci, 2);
}

TEST(CheckDataFile, NameThatComesBackIsAPopulationOfItsOwn) {
    Reading file(oneColumn("A\td\t0\t1\nB\td\t0\t2\nA\td\t0\t3\nA\td\t0\t4\n"));
    EXPECT_EQ(file.obj.AnzPop, 3);
    EXPECT_EQ(file.name(1), "A");
    EXPECT_EQ(file.name(3), "A");
    EXPECT_EQ(file.alleles(1, 1), Values{1});
    EXPECT_EQ(file.alleles(1, 3), (Values{3, 4}));
    EXPECT_EQ(file.obj.MaxChromosomen, 2);
}

TEST(CheckDataFile, NamesAreComparedWhole) {
    Reading file(oneColumn("Pop\td\t0\t1\nPop1\td\t0\t2\npop\td\t0\t3\n"));
    EXPECT_EQ(file.obj.AnzPop, 3);
}

TEST(CheckDataFile, NamesHaveNoLengthLimit) {
    const std::string longName(5000, 'n');
    Reading file("1\t\t\t2\n\t\t\t50\n\t\t\t" + longName + "L\n" + longName + "\td\t0\t1\n");
    EXPECT_EQ(file.name(1), longName);
    EXPECT_EQ(*file.daten().GetLociName(1), longName + "L");
}

TEST(CheckDataFile, SecondFileOnOneObjectIsToldAndTaken) {
    AnalyseDataObj obj;
    const Stream first = fileOf(tabbed(kTwoPops));
    const Stream second = fileOf(oneColumn("A\td\t0\t1\n"));
    obj.CheckDataFile(first.get());
    StdoutCapture capture;
    EXPECT_EQ(obj.CheckDataFile(second.get()), 0);
    EXPECT_EQ(capture.text(), "\n!! This Class has already Checked a Datafile !!\n"
                              "\t Please try this to load with a new Class\nErrorcode: 1-1\n");
    EXPECT_EQ(obj.AnzLoci, 1);
    EXPECT_EQ(obj.Daten->AnzLoci, 1);
}

// --- Line ends and the end of the file -------------------------------------

TEST(LineEnds, CrLfAndCrGiveTheDataOfLf) {
    for (const char* const text : {kTwoPops, kTwoPopsOneColumn, kInbredPop, kWithGaps}) {
        const Reading lf(tabbed(text));
        const Reading crLf(withLineEnds(tabbed(text), "\r\n"));
        const Reading cr(withLineEnds(tabbed(text), "\r"));
        EXPECT_EQ(everything(crLf.obj), everything(lf.obj));
        EXPECT_EQ(everything(cr.obj), everything(lf.obj));
        EXPECT_EQ(crLf.marks, lf.marks);
        EXPECT_EQ(cr.marks, lf.marks);
    }
}

TEST(LineEnds, TwoHeaderRowsTakeCrLikeLf) {
    const std::string text = "1\t\t\t2\n\t\t\tL\nA\td\t0\t1\nB\td\t0\t2\n";
    EXPECT_EQ(everything(Reading(withLineEnds(text, "\r")).obj), everything(Reading(text).obj));
}

TEST(LineEnds, LastRowNeedsNoLineEnd) {
    for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
        const std::string whole = withLineEnds(tabbed(kTwoPops), lineEnd);
        const Reading cut(whole.substr(0, whole.size() - std::string(lineEnd).size()));
        EXPECT_EQ(everything(cut.obj), everything(Reading(whole).obj));
        EXPECT_EQ(cut.marks, "\nRead Loci/Pop Information!\n....\n");
    }
}

TEST(LineEnds, EmptyLinesAtTheEndAreNoIndividuals) {
    for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
        const std::string text = withLineEnds(tabbed(kTwoPops), lineEnd);
        const std::string expected = everything(Reading(text).obj);
        for (const char* const tail : {"\n", "\n\n\n", "   ", "  \n", "\n \n"}) {
            const Reading file(text + withLineEnds(tail, lineEnd));
            EXPECT_EQ(everything(file.obj), expected);
            EXPECT_EQ(file.marks, "\nRead Loci/Pop Information!\n....\n");
        }
    }
}

TEST(LineEnds, MixedLineEndsAreReadAsTheyCome) {
    const std::string rows = "A\td\t0\t1\r\nA\td\t0\t2\nB\td\t0\t3\r\nB\td\t0\t4\n";
    for (const char* const header : {"\n", "\r\n", "\r"}) {
        Reading file(withLineEnds(oneColumn(""), header) + rows);
        EXPECT_EQ(file.obj.AnzPop, 2);
        EXPECT_EQ(file.alleles(1, 1), (Values{1, 2}));
        EXPECT_EQ(file.alleles(1, 2), (Values{3, 4}));
    }
}

// --- Rows ------------------------------------------------------------------

TEST(Rows, CellsBehindTheEndOfAShortRowAreMissing) {
    Reading file("1\t\t\t\t\n\t\t\t\n\t\t\tL1\tL2\nA\td\t3\t7\nA\td\t3\t\t8\n");
    EXPECT_EQ(file.alleles(1, 1), (Values{7, -1}));
    EXPECT_EQ(file.alleles(2, 1), (Values{-1, 8}));
    EXPECT_EQ(file.infos(1), (Values{6, 6}));
}

TEST(Rows, ShortRowTakesNothingFromTheRowBehindIt) {
    Reading file("1\t\t\t\t\n\t\t\t\n\t\t\tL1\tL2\n1A\td\t3\t\n2B\td\t3\t7\t8\n");
    EXPECT_EQ(file.alleles(1, 1), Values{-1});
    EXPECT_EQ(file.alleles(2, 1), Values{-1});
}

TEST(Rows, SurplusCellsAreIgnored) {
    Reading file(oneColumn("A\td\t0\t7\t8\t9\nB\td\t0\t5\n"));
    EXPECT_EQ(file.alleles(1, 1), Values{7});
    EXPECT_EQ(file.alleles(1, 2), Values{5});
}

TEST(Rows, RowInTheMiddleWithoutATabIsAnIndividualWithoutAlleles) {
    Reading file(twoColumns("A\td\t1\t7\t8\nLonely\nB\td\t2\t5\t6\n"));
    EXPECT_EQ(file.obj.AnzPop, 3);
    EXPECT_EQ(file.name(2), "Lonely");
    EXPECT_EQ(file.alleles(1, 2), (Values{-1, -1}));
    EXPECT_EQ(file.infos(2), (Values{0, 0}));
    EXPECT_EQ(file.alleles(1, 3), (Values{5, 6}));
}

TEST(Rows, EmptyLineInTheMiddleIsAnIndividualWithoutAName) {
    Reading file(oneColumn("A\td\t1\t7\n\nA\td\t1\t8\n"));
    EXPECT_EQ(file.obj.AnzPop, 3);
    EXPECT_EQ(file.name(2), "");
    EXPECT_EQ(file.alleles(1, 2), Values{-1});
}

TEST(Rows, RowThatEndsInItsHeadKeepsWhatItHas) {
    Reading file(oneColumn("A\nA\th\nA\th\t4\nA\td\t5\t\n"));
    EXPECT_EQ(file.obj.AnzPop, 1);
    EXPECT_EQ(file.alleles(1, 1), (Values{-1, -1, -1, -1}));
    EXPECT_EQ(file.infos(1), (Values{0, 1, 9, 10})); // group x 2 + haploid
}

TEST(Rows, EachIsMarkedOnTheConsole) {
    const Reading file(oneColumn("A\td\t0\t1\nA\td\t0\t2\nB\td\t0\t3\n"));
    EXPECT_EQ(file.got, 0);
    EXPECT_EQ(file.marks, "\nRead Loci/Pop Information!\n...\n");
}

TEST(Rows, NulEndsTheRowAndTheWalk) {
    const std::string bytes = oneColumn("A\td\t0\t1\nSo") + '\0' + "uth\td\t0\t2\nC\td\t0\t3\n";
    Reading file(bytes);
    EXPECT_EQ(file.obj.AnzPop, 2);
    EXPECT_EQ(file.name(2), "So");
    EXPECT_EQ(file.alleles(1, 2), Values{-1});
}

TEST(Rows, NulInACellEndsTheNumber) {
    Reading file(oneColumn("A\td\t0\t12") + '\0' + "34\nB\td\t0\t3\n");
    EXPECT_EQ(file.obj.AnzPop, 1);
    EXPECT_EQ(file.alleles(1, 1), Values{12});
}

// --- Type and group --------------------------------------------------------

TEST(TypeCell, FirstLetterHMarksAHaploid) {
    EXPECT_EQ(infoOf("h\t3"), 7); // 3 x 2 + 1
    EXPECT_EQ(infoOf("haploid\t3"), 7);
    EXPECT_EQ(infoOf("d\t3"), 6);
    EXPECT_EQ(infoOf("H\t3"), 6);
    EXPECT_EQ(infoOf(" h\t3"), 6);
    EXPECT_EQ(infoOf("\t3"), 6);
}

TEST(TypeCell, HaploidHasBothItsAllelesAndTheBitInBothSlots) {
    Reading file(twoColumns("A\th\t3\t7\t8\n"));
    EXPECT_EQ(file.alleles(1, 1), (Values{7, 8}));
    EXPECT_EQ(file.infos(1), (Values{7, 7}));
}

TEST(GroupCell, IsADecimalInteger) {
    EXPECT_EQ(infoOf("d\t12x"), 24);
    EXPECT_EQ(infoOf("d\t007"), 14);
    EXPECT_EQ(infoOf("d\t+2"), 4);
    EXPECT_EQ(infoOf("d\tx"), 0);
    EXPECT_EQ(infoOf("d\t- 3"), 0);
}

TEST(GroupCell, NegativeGroupIsTakenAsRead) {
    EXPECT_EQ(infoOf("d\t-3"), -6);
    EXPECT_EQ(infoOf("h\t-3"), -5);
    EXPECT_EQ(infoGroup(-5), -3);
}

TEST(GroupCell, NumberBeyondTheInfoValueTakesTheNearest) {
    EXPECT_EQ(infoOf("h\t99999999999999999999"), 2147483647); // (2^30 - 1) x 2 + 1
    EXPECT_EQ(infoOf("d\t1073741824"), 2147483646);           // 2^30 does not fit
    EXPECT_EQ(infoOf("d\t-99999999999999999999"), -2147483647 - 1);
}

TEST(GroupCell, EmptyCellTakesTheFirstAllele) {
    Reading file(oneColumn("A\td\t\t104\n"));
    EXPECT_EQ(file.infos(1), Values{208});
    EXPECT_EQ(file.alleles(1, 1), Values{104});
}

TEST(GroupCell, EmptyCellTakesTheNumberThatComesNext) {
    // Row 1: the second allele. Row 2: all its cells are empty, the name of row 3 begins with a
    // number. Row 3: nothing behind it. (Groups 104, 12 and 0.)
    Reading file(twoColumns("A\td\t\t\t104\nA\td\t\t\t\n12B\td\t \t\t\n"));
    EXPECT_EQ(file.infos(1), (Values{208, 208, 24, 24}));
    EXPECT_EQ(file.infos(2), (Values{0, 0}));
}

TEST(GroupCell, EmptyCellMeetsAWord) {
    Reading file(oneColumn("A\td\t\tx\n"));
    EXPECT_EQ(file.infos(1), Values{0});
}

TEST(GroupCell, ManyBlankRowsLeadToOneNumber) {
    std::string rows = "A\td\t4\t1\n";
    for (int i = 0; i < 30'000; ++i) {
        rows += "\t\t\t\n";
    }
    // Every blank row sees the 00005 behind all of them, through 120000 bytes of white space.
    Reading file(oneColumn(rows + "00005\td\t1\t1\n"));
    ASSERT_EQ(file.obj.AnzPop, 3);
    EXPECT_EQ(file.infos(2), Values(30'000, 10));
    EXPECT_EQ(file.infos(3), Values{2});
}

TEST(GroupCell, NumberAheadEndsWithTheBlock) {
    // The block of row 1 ends behind byte 199998 of the rows, that of row 2 six bytes later. The
    // digits stand at bytes 199997 to 200001: row 1 sees 12, row 2 sees 12345.
    std::string rows = "A\td\t\t\n\t\t\t\n";
    rows += std::string(199'997 - rows.size(), '\t') + "12345\n";
    Reading file(oneColumn(rows));
    EXPECT_EQ(file.infos(1), Values{24});
    EXPECT_EQ(file.infos(2), (Values{24690, 24690})); // row 3 begins with the tabs
}

// --- Cells -----------------------------------------------------------------

TEST(AlleleCell, NumberInFrontCounts) {
    EXPECT_EQ(alleleOf("120"), 120);
    EXPECT_EQ(alleleOf("007"), 7);
    EXPECT_EQ(alleleOf("12x"), 12);
    EXPECT_EQ(alleleOf("12 13"), 12);
    EXPECT_EQ(alleleOf("  120"), 120);
    EXPECT_EQ(alleleOf("+5"), 5);
    EXPECT_EQ(alleleOf("1.9"), 1);
}

TEST(AlleleCell, ZeroCountsOnlyWithTheDigitInFront) {
    EXPECT_EQ(alleleOf("0"), 0);
    EXPECT_EQ(alleleOf("00"), 0);
    EXPECT_EQ(alleleOf("0x1F"), 0);
    EXPECT_EQ(alleleOf(" 0"), -1);
    EXPECT_EQ(alleleOf("+0"), -1);
    EXPECT_EQ(alleleOf("-0"), -1);
}

TEST(AlleleCell, TextAndEmptinessAreMissing) {
    EXPECT_EQ(alleleOf(""), -1);
    EXPECT_EQ(alleleOf("x"), -1);
    EXPECT_EQ(alleleOf("-"), -1);
    EXPECT_EQ(alleleOf("- 5"), -1);
    EXPECT_EQ(alleleOf("?"), -1);
}

TEST(AlleleCell, NegativeNumberIsStoredAsItIs) {
    EXPECT_EQ(alleleOf("-5"), -5);
}

TEST(AlleleCell, NumberBeyond32BitsTakesTheNearest) {
    EXPECT_EQ(alleleOf("2147483647"), 2147483647);
    EXPECT_EQ(alleleOf("2147483648"), 2147483647);
    EXPECT_EQ(alleleOf("99999999999999999999999"), 2147483647);
    EXPECT_EQ(alleleOf("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(alleleOf("-99999999999999999999999"), -2147483647 - 1);
}

TEST(AlleleCell, WhiteSpaceOfAllKindsInFrontIsSkipped) {
    EXPECT_EQ(alleleOf(" \v\f5"), 5);
}

TEST(AlleleCell, CellOfBlanksIsMissingWhateverStandsBehindIt) {
    Reading inRow("1\t\t\t\t\n\t\t\t\n\t\t\tL1\tL2\nA\td\t0\t  \t8\n");
    EXPECT_EQ(inRow.alleles(1, 1), Values{-1});
    EXPECT_EQ(inRow.alleles(2, 1), Values{8});
    Reading atRowEnd(oneColumn("A\td\t0\t \n12B\td\t0\t8\n"));
    EXPECT_EQ(atRowEnd.alleles(1, 1), Values{-1});
}

TEST(AlleleCell, SecondCellOfAPairCanBeMissingAlone) {
    Reading file(twoColumns("A\td\t0\t120\t\nA\td\t0\t120\nA\td\t0\t\t120\n"));
    EXPECT_EQ(file.alleles(1, 1), (Values{120, -1, 120, -1, -1, 120}));
}

TEST(GetOneCData, ReadsUpToTheRowsLineEnd) {
    Datensatz daten;
    daten.init(3);
    daten.AddPopulation("A", 3);
    EXPECT_EQ(GetOneCData(&daten, 3, "7\t8\r\n9\t10\n", 5, 1), 0);
    EXPECT_EQ(daten.Locus(1)->GetDataChromosom(1, 0), 7);
    EXPECT_EQ(daten.Locus(2)->GetDataChromosom(1, 0), 8);
    EXPECT_EQ(daten.Locus(3)->GetDataChromosom(1, 0), -1);
    EXPECT_EQ(daten.Locus(3)->GetInfoChromosom(1, 0), 5);
}

TEST(GetTwoCData, ReadsPairsUpToTheRowsLineEnd) {
    Datensatz daten;
    daten.init(2);
    daten.AddPopulation("A", 4);
    EXPECT_EQ(GetTwoCData(&daten, 2, "7\t8\t9\n10\t11\n", 5, 1), 0);
    EXPECT_EQ(daten.Locus(1)->GetDataChromosom(1, 1), 8);
    EXPECT_EQ(daten.Locus(2)->GetDataChromosom(1, 0), 9);
    EXPECT_EQ(daten.Locus(2)->GetDataChromosom(1, 1), -1);
}

TEST(GetTwoCData, RowByRowGivesWhatTheReaderGivesInBatches) {
    Datensatz plain;
    plain.init(3);
    plain.AddPopulation("A", 202);
    plain.AddPopulation("B", 12);
    std::string text = "2\t\t\t\t\t\t\t\t\n\t\t\t\n\t\t\tL1\tL1b\tL2\tL2b\tL3\tL3b\n";
    for (int row = 0; row < 105; ++row) { // 100 rows of A, 5 of B
        const int pop = row < 100 ? 1 : 2;
        std::ostringstream cells;
        cells << row << '\t' << row % 7 << "\t\t" << row * 3 << (row % 2 == 0 ? "\t5\t6\n" : "\n");
        GetTwoCData(&plain, 3, cells.str().c_str(), pop * 2, pop);
        text += (pop == 1 ? "A\td\t1\t" : "B\td\t2\t") + cells.str();
    }
    Reading file(text);
    ASSERT_EQ(file.obj.AnzLoci, 3);
    ASSERT_EQ(file.obj.AnzPop, 2);
    for (int locus = 1; locus <= 3; ++locus) {
        for (int pop = 1; pop <= 2; ++pop) {
            const auto slots = plain.Locus(locus)->DataSlots(pop);
            EXPECT_EQ(file.alleles(locus, pop), Values(slots.begin(), slots.end()));
        }
    }
    EXPECT_EQ(file.infos(2), Values(10, 4));
}

TEST(TakeNumber, StepsFromCellToCellAndStaysAtTheEnd) {
    const std::string row = "7\t\t9";
    const char* cell = row.data();
    const char* const end = cell + row.size();
    EXPECT_EQ(takeNumber(cell, end), 7);
    EXPECT_EQ(takeNumber(cell, end), -1);
    EXPECT_EQ(takeNumber(cell, end), 9);
    EXPECT_EQ(takeNumber(cell, end), -1);
    EXPECT_EQ(cell, end);
}

// --- Header cells ----------------------------------------------------------

TEST(HeaderCells, LengthsComeFromTheFirstColumnOfEachPair) {
    Reading file(
        "2\t\t\t2\t3\t4\t5\n\t\t\t50\t51\t60\t61\n\t\t\ta\tb\tc\td\nA\td\t0\t1\t2\t3\t4\n");
    EXPECT_EQ(file.daten().GetLociRepeatMuster(1), 2);
    EXPECT_EQ(file.daten().GetLociRepeatMuster(2), 4);
    EXPECT_EQ(file.daten().GetLociRepeatRest(1), 50);
    EXPECT_EQ(file.daten().GetLociRepeatRest(2), 60);
}

TEST(HeaderCells, LengthWithoutANumberIsMinusOne) {
    Reading file("1\t\t\t\tx\t \t0\t9\n\t\t\t7\n\t\t\ta\tb\tc\td\te\nA\td\t0\t1\n");
    const Values repeats{-1, -1, -1, 0, 9};
    const Values rests{7, -1, -1, -1, -1}; // the row ends behind the first
    for (int locus = 1; locus <= 5; ++locus) {
        const auto i = static_cast<std::size_t>(locus - 1);
        EXPECT_EQ(file.daten().GetLociRepeatMuster(locus), repeats[i]) << locus;
        EXPECT_EQ(file.daten().GetLociRepeatRest(locus), rests[i]) << locus;
    }
}

TEST(HeaderCells, RestRowWithoutTabsHasNoLengths) {
    Reading file("1\t\t\t2\nx\n\t\t\tL\nA\td\t0\t1\n");
    EXPECT_EQ(file.obj.KopfZeilen, 3);
    EXPECT_EQ(file.daten().GetLociRepeatRest(1), -1);
}

TEST(HeaderCells, LengthBeyond32BitsTakesTheNearest) {
    Reading file("1\t\t\t99999999999\n\t\t\t-99999999999\n\t\t\tL\nA\td\t0\t1\n");
    EXPECT_EQ(file.daten().GetLociRepeatMuster(1), 2147483647);
    EXPECT_EQ(file.daten().GetLociRepeatRest(1), -2147483647 - 1);
}

TEST(HeaderCells, PairHasTwoNames) {
    Reading file(tabbed(kTwoPops));
    EXPECT_EQ(*file.daten().GetLociName(2), "L2");
    EXPECT_EQ(*file.daten().GetLociName2(2), "L2b");
    Reading one(tabbed(kTwoPopsOneColumn));
    EXPECT_EQ(one.daten().GetLociName2(1), nullptr);
}

TEST(HeaderCells, ThreeBytesInFrontOfTheNamesAreSkippedUnread) {
    Reading file("1\t\t\t2\n\t\t\t50\n\txyL\nA\td\t0\t1\n");
    EXPECT_EQ(*file.daten().GetLociName(1), "L");
    Reading two("1\t\t\t2\nxyzL\nA\td\t0\t1\n");
    EXPECT_EQ(*two.daten().GetLociName(1), "L");
}

TEST(HeaderCells, NamesMissingInTheRowAreEmpty) {
    Reading file("2\t\t\t2\t\t4\t\n\t\t\t\n\t\t\tL1\tL1b\tL2\nA\td\t0\t1\t2\t3\t4\n");
    EXPECT_EQ(*file.daten().GetLociName(2), "L2");
    EXPECT_EQ(*file.daten().GetLociName2(2), "");
    Reading none("1\t\t\t2\n\t\t\t50\n\t\nA\td\t0\t1\n");
    EXPECT_EQ(*none.daten().GetLociName(1), "");
    EXPECT_EQ(none.name(1), "A");
    EXPECT_EQ(none.alleles(1, 1), Values{1});
}

TEST(HeaderCells, SurplusNamesAreIgnored) {
    Reading file("1\t\t\t2\n\t\t\t50\n\t\t\tL1\tL2\tL3\nA\td\t0\t1\n");
    EXPECT_EQ(*file.daten().GetLociName(1), "L1");
    EXPECT_EQ(file.alleles(1, 1), Values{1});
}

TEST(HeaderCells, OneControlCharacterBehindANameIsCut) {
    Reading lf("1\t\t\t2\t2\n\t\t\t\n\t\t\tL1\x01\x02\tL2\x7f\nA\td\t0\t1\t2\n");
    EXPECT_EQ(*lf.daten().GetLociName(1), "L1\x01");
    EXPECT_EQ(*lf.daten().GetLociName(2), "L2");
    // With CR LF the last name's control character is the CR.
    Reading crLf("1\t\t\t2\t2\r\n\t\t\t\r\n\t\t\tL1\x01\tL2\x01\r\nA\td\t0\t1\t2\r\n");
    EXPECT_EQ(*crLf.daten().GetLociName(1), "L1");
    EXPECT_EQ(*crLf.daten().GetLociName(2), "L2\x01");
}

// --- Two header rows with CR LF --------------------------------------------

static const std::string kTwoHeadersCrLf = "2\t\t\t\t\t\t\r\n"
                                           "\t\t\tL1\tL1b\tL2\tL2b\r\n"
                                           "North\td\t1\t1\t2\t3\t4\r\n"
                                           "North\td\t1\t5\t6\t7\t8\r\n"
                                           "South\th\t2\t9\t10\t11\t12\r\n";

TEST(TwoHeadersCrLf, NamesShiftByOne) {
    Reading file(kTwoHeadersCrLf);
    EXPECT_EQ(file.obj.KopfZeilen, 2);
    EXPECT_EQ(*file.daten().GetLociName(1), "");
    EXPECT_EQ(*file.daten().GetLociName2(1), "L1");
    EXPECT_EQ(*file.daten().GetLociName(2), "L1b");
    EXPECT_EQ(*file.daten().GetLociName2(2), "L2");
}

TEST(TwoHeadersCrLf, LineEndInFrontOfARowChangesNoPopulation) {
    // The second pass sees the names "\nNorth", "\nNorth", "\nSouth": the populations of the first.
    Reading file(kTwoHeadersCrLf);
    EXPECT_EQ(file.obj.AnzPop, 2);
    EXPECT_EQ(file.name(1), "North");
    EXPECT_EQ(file.alleles(1, 1), (Values{1, 2, 5, 6}));
    EXPECT_EQ(file.alleles(2, 2), (Values{11, 12}));
    EXPECT_EQ(file.infos(2), (Values{5, 5}));
    EXPECT_EQ(file.marks, "\nRead Loci/Pop Information!\n...\n");
}

TEST(TwoHeadersCrLf, IsToldInOneLine) {
    EXPECT_EQ(Reading(kTwoHeadersCrLf).told,
              "\nWarning: data.txt has two header rows and CR LF line ends: locus names and first "
              "row are misaligned. Please save it with LF line ends or with three header rows.\n");
    EXPECT_EQ(Reading(withLineEnds(tabbed(kTwoPops), "\r\n")).told, "");
}

TEST(TwoHeadersCrLf, RowsOfBlocksLoseAByteOfRoom) {
    // A block begins with CR LF here: a row of 199998 bytes has its CR behind the block.
    const std::string row = "A\td\t0\t7" + std::string(199'998 - 7, ' ');
    Reading file("1\t\t\t\r\n\t\t\tL\r\n" + row + "\r\nA\td\t0\t8\r\n");
    EXPECT_EQ(file.obj.MaxChromosomen, 2);
    EXPECT_EQ(file.alleles(1, 1), Values{7});
}

// --- The block of 200000 bytes ---------------------------------------------

// A row of `bytes` bytes without its line end: name, head, allele 7, and a long last cell.
static std::string rowOf(const std::string& name, std::size_t bytes) {
    const std::string head = name + "\td\t0\t7\t";
    return head + std::string(bytes - head.size(), 'x');
}

TEST(Block, RowsBelowTheLimitAreReadInBothPasses) {
    Reading file(oneColumn(rowOf("A", 199'997) + "\n" + rowOf("B", 199'997) + "\nC\td\t0\t8\n"));
    EXPECT_EQ(file.obj.AnzPop, 3);
    EXPECT_EQ(file.alleles(1, 2), Values{7});
    EXPECT_EQ(file.alleles(1, 3), Values{8});
}

TEST(Block, LineEndInTheLastPlaceEndsTheSecondPassAlone) {
    Reading file(oneColumn(rowOf("A", 199'998) + "\nB\td\t0\t8\n"));
    EXPECT_EQ(file.obj.AnzPop, 2);
    EXPECT_EQ(file.name(2), "B");
    EXPECT_EQ(file.alleles(1, 1), Values{7});
    EXPECT_EQ(file.alleles(1, 2), Values{});
}

TEST(Block, RowWithoutALineEndInItsBlockIsTheLast) {
    Reading file(oneColumn("A\td\t0\t6\n" + rowOf("A", 199'999) + "\nB\td\t0\t8\n"));
    EXPECT_EQ(file.checked, 0);
    EXPECT_EQ(file.obj.AnzPop, 1);
    EXPECT_EQ(file.alleles(1, 1), (Values{6, 7}));
}

TEST(Block, CellIsCutAtTheEndOfTheBlock) {
    // The line end before the row, its 6 bytes of head, the blanks, and 2 digits: 200000 bytes.
    const std::string row = "A\td\t0\t" + std::string(200'000 - 1 - 6 - 2, ' ') + "12345";
    Reading file(oneColumn(row + "\nB\td\t0\t8\n"));
    EXPECT_EQ(file.obj.AnzPop, 1);
    EXPECT_EQ(file.alleles(1, 1), Values{12});
}

TEST(Block, FirstRowHasABlockOfItsOwn) {
    const std::string header = "1\t\t\t2\n\t\t\t50\n\t\t\t" + std::string(150'000, 'L') + "\n";
    Reading file(header + rowOf("A", 100'000) + "\nB\td\t0\t8\n");
    EXPECT_EQ(file.obj.AnzPop, 2);
    EXPECT_EQ(file.alleles(1, 1), Values{7});
    EXPECT_EQ(file.alleles(1, 2), Values{8});
}

TEST(Block, HeaderMayFillTheFirstBlock) {
    const std::string before = "1\t\t\t2\n\t\t\t50\n\t\t\t";
    const std::string name(200'000 - 1 - before.size(), 'L'); // its LF is byte 199999
    Reading file(before + name + "\nA\td\t0\t8\n");
    EXPECT_EQ(file.obj.KopfZeilen, 3);
    EXPECT_EQ(*file.daten().GetLociName(1), name);
    EXPECT_EQ(file.alleles(1, 1), Values{8});
}

TEST(Block, HeaderBeyondTheFirstBlockIsRefused) {
    const std::string before = "1\t\t\t2\n\t\t\t50\n\t\t\t";
    Reading file(before + std::string(200'000 - before.size(), 'L') + "\nA\td\t0\t8\n");
    EXPECT_EQ(file.checked, 4);
    EXPECT_EQ(file.told, "\ndata.txt, row 3: found no line end in the first 200000 bytes, expected "
                         "two or three header rows that end with LF, CR LF or CR\n");
}

TEST(Block, FirstRowBeyondTheFirstBlockIsRefused) {
    Reading file("1\t\t\t" + std::string(200'000 - 4, '2') + "\n\t\t\tL\nA\td\t0\t8\n");
    EXPECT_EQ(file.checked, 4);
    EXPECT_EQ(file.told, "Error to detect NEWLINE\n"
                         "data.txt, row 1: found no line end in the first 200000 bytes, expected "
                         "two or three header rows that end with LF, CR LF or CR\n");
}

// A file of `loci` loci, all its cells but one empty.
static std::string wideFile(int columns, int loci) {
    return std::to_string(columns) + "\t\t" +
           std::string(static_cast<std::size_t>(columns * loci), '\t') +
           "\n\n\t\t\tL\nA\td\t0\t7\n";
}

TEST(Block, TooManyLociAreRefusedByTheSecondPass) {
    // (49947 x 4 + 4) x 1 + 211 = 200003 and (24973 x 4 + 4) x 2 + 211 = 200003.
    for (const std::string& bytes : {wideFile(1, 49947), wideFile(2, 24973)}) {
        Reading file(bytes);
        EXPECT_EQ(file.checked, 0);
        EXPECT_EQ(file.got, -1);
        EXPECT_EQ(file.marks, "\n!! FATAL-ERROR Can't read one line into memory !!\n"
                              "Please reduce number of loci and/or contact the programmer!\n"
                              "Errorcode: 1-3\n");
        EXPECT_EQ(file.alleles(1, 1), Values{});
    }
}

TEST(Block, OneLocusLessIsRead) {
    EXPECT_EQ(Reading(wideFile(1, 49946)).alleles(1, 1), Values{7});
    EXPECT_EQ(Reading(wideFile(2, 24972)).alleles(1, 1), (Values{7, -1}));
}

TEST(Block, FileOfManyBlocksIsReadWhole) {
    std::ostringstream rows;
    for (int i = 0; i < 60'000; ++i) {
        rows << 'P' << i / 1000 << "\td\t1\t" << i << '\n';
    }
    Reading file(oneColumn(rows.str())); // about 0.9 MB
    EXPECT_EQ(file.obj.AnzPop, 60);
    for (int i = 0; i < 60'000; ++i) {
        ASSERT_EQ(file.daten().Locus(1)->GetDataChromosom(i / 1000 + 1, i % 1000), i);
    }
}

// --- Refused files ---------------------------------------------------------

namespace {

struct RefusedFile {
    const char* name;
    std::string bytes;
    int status;
    std::string told;
};

class Refused : public testing::TestWithParam<RefusedFile> {};

const std::vector<RefusedFile> kRefusedFiles{
    {"NothingToRead", "", 3,
     "\n!! ERROR Can't allocate memory! ERROR !!\n"
     "\t Please close other programs or increase memory for KVAnalyser \nErrorcode: 1-2\n"
     "data.txt, row 1: found nothing to read, expected the number of columns per locus\n"},
    {"FirstByte", "3\t\t\t2\n", 4,
     "\ndata.txt, row 1: found \"3\" as first byte, expected \"1\" or \"2\", the number of columns "
     "per locus\n"},
    {"ByteOrderMark", "\xef\xbb\xbf" + oneColumn("A\td\t0\t1\n"), 4,
     "\ndata.txt, row 1: found byte 239 as first byte, expected \"1\" or \"2\", the number of "
     "columns per locus\n"},
    {"NoLineEnd", "1\t\t\t2", 4,
     "Error to detect NEWLINE\ndata.txt, row 1: found the end of the file after 5 bytes, "
     "expected two or three header rows that end with LF, CR LF or CR\n"},
    {"OneRowAlone", "1\t\t\t2\n", 4,
     "\ndata.txt, row 2: found the end of the file after 6 bytes, "
     "expected two or three header rows that end with LF, CR LF or CR\n"},
    {"SecondRowCutShort", "1\t\t\t2\n\t\t\tL", 4,
     "\ndata.txt, row 2: found the end of the file after 10 bytes, "
     "expected two or three header rows that end with LF, CR LF or CR\n"},
    {"ThirdRowCutShort", "1\t\t\t2\r\n\t\t\t50\r\n\t\t\tL", 4,
     "\ndata.txt, row 3: found the end of the file after 18 bytes, "
     "expected two or three header rows that end with LF, CR LF or CR\n"},
    {"NulInTheFirstRow", std::string("1\t\t\0\n\t\t\tL\nA\td\t0\t1\n", 18), 4,
     "Error to detect NEWLINE\ndata.txt, row 1: found a NUL byte after 3 bytes, "
     "expected two or three header rows that end with LF, CR LF or CR\n"},
    {"NulInTheHeader", "1\t\t\t2\n\t\t\t" + std::string(1, '\0') + "\n\t\t\tL\nA\td\t0\t1\n", 4,
     "\ndata.txt, row 2: found a NUL byte after 9 bytes, "
     "expected two or three header rows that end with LF, CR LF or CR\n"},
    {"Rows3And4BeginWithATab", oneColumn("\td\t0\t1\n"), 5,
     "\ndata.txt, row 4: found a tab as first byte, as in row 3, expected the name of a "
     "population\n"},
    {"TwoCells", "1\t\n\t\t\n\t\t\tL\nA\td\t0\t1\n", 6,
     "\ndata.txt, row 1: found 2 cells, expected at least 4: 3 and 1 per locus\n"},
    {"OneCell", "2\n\nA\td\t0\t1\n", 6,
     "\ndata.txt, row 1: found 1 cell, expected at least 5: 3 and 2 per locus\n"},
    {"NeitherALocusNorARow", "1\t\t\n\t\t\tL\n", 5,
     "\ndata.txt, row 3: found the end of the data, expected the first individual\n"},
    {"NoRowBehindThreeHeaderRows", oneColumn(""), 5,
     "\ndata.txt, row 4: found the end of the data, expected the first individual\n"},
    {"BlankLinesBehindTheHeader", oneColumn("\n  \n"), 5,
     "\ndata.txt, row 4: found the end of the data, expected the first individual\n"},
    {"NoRowBehindTwoHeaderRows", "1\t\t\t2\n\t\t\tL\n", 5,
     "\ndata.txt, row 3: found the end of the data, expected the first individual\n"},
};

INSTANTIATE_TEST_SUITE_P(Files, Refused, testing::ValuesIn(kRefusedFiles),
                         [](const auto& file) { return std::string(file.param.name); });

} // namespace

TEST_P(Refused, GivesItsStatusAndOneLineOfReason) {
    const Reading file(GetParam().bytes);
    EXPECT_EQ(file.checked, GetParam().status);
    EXPECT_EQ(file.told, GetParam().told);
}

TEST_P(Refused, LeavesNoLociAndNoPopulations) {
    const Reading file(GetParam().bytes);
    EXPECT_EQ(file.obj.AnzLoci, 0);
    EXPECT_EQ(file.obj.AnzPop, 0);
    ASSERT_NE(file.obj.Daten, nullptr);
    EXPECT_EQ(file.obj.Daten->AnzLoci, 0);
    EXPECT_EQ(file.got, -1);
    EXPECT_EQ(file.marks, "");
}

TEST_P(Refused, RunGoesThroughWithoutACrash) {
    const TempFolder folder(TempFolder::Enter::yes);
    const Stream stream = fileOf(GetParam().bytes);
    const StdoutCapture swallowed;
    AnalyseDataObj obj;
    obj.DateiName = "data.txt";
    obj.CheckDataFile(stream.get());
    EXPECT_EQ(obj.ReadDataFile(stream.get()), 0);
    EXPECT_EQ(obj.WriteOutput(1, 0), 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "data.txt_KVAresult00/KVA.log"));
}

// --- Files without loci ----------------------------------------------------

namespace {

// (3 - 3) / 1, (4 - 3) / 2 and (2 - 3) / 2 are 0 loci: the division truncates.
struct NoLocusFile {
    const char* name;
    std::string bytes;
    std::string cells; // as they are told
};

class NoLocus : public testing::TestWithParam<NoLocusFile> {};

const std::string kRowsOfTwoPopulations = "\t\t\n\t\t\tL\nA\td\t0\t1\nA\td\t0\t1\nB\td\t0\t1\n";

const std::vector<NoLocusFile> kNoLocusFiles{
    {"ThreeCells", "1\t\t\n" + kRowsOfTwoPopulations,
     "3 cells name no locus, expected at least 4: "
     "3 and 1 per locus"},
    {"HalfAPair", "2\t\t\t2\n" + kRowsOfTwoPopulations,
     "4 cells name no locus, expected at least 5: "
     "3 and 2 per locus"},
    {"TwoCellsOfTwoColumns", "2\t\n" + kRowsOfTwoPopulations,
     "2 cells name no locus, expected at "
     "least 5: 3 and 2 per locus"},
};

INSTANTIATE_TEST_SUITE_P(Files, NoLocus, testing::ValuesIn(kNoLocusFiles),
                         [](const auto& file) { return std::string(file.param.name); });

} // namespace

TEST_P(NoLocus, IsReadWithOneLineThatSaysSo) {
    const Reading file(GetParam().bytes);
    EXPECT_EQ(file.checked, 0);
    EXPECT_EQ(file.told, "\nWarning: data.txt, row 1: " + GetParam().cells +
                             ". The sheets hold their heads alone.\n");
    EXPECT_EQ(file.got, 0);
    EXPECT_EQ(file.marks, "\nRead Loci/Pop Information!\n...\n");
    EXPECT_EQ(file.obj.AnzLoci, 0);
    EXPECT_EQ(file.obj.AnzPop, 2);
    EXPECT_EQ(file.obj.MaxChromosomen, 2 * file.obj.DatenFormat); // A has two rows
}

// All passes, on no locus at all.
TEST_P(NoLocus, RunGoesThroughWithoutACrash) {
    const TempFolder folder(TempFolder::Enter::yes);
    const Stream stream = fileOf(GetParam().bytes);
    const StdoutCapture swallowed;
    AnalyseDataObj obj;
    obj.DateiName = "data.txt";
    EXPECT_EQ(obj.CheckDataFile(stream.get()), 0);
    EXPECT_EQ(obj.ReadDataFile(stream.get()), 0);
    obj.GeneralMask = 0xFFFFFFFF;
    obj.PopDistMask = obj.IndDistMask = 0x5FF;
    obj.FstMask = 0xEA79;
    obj.HetRangeMask = 0x1803;
    obj.Replikate = obj.HetRandomisierungen = 3;
    EXPECT_EQ(obj.WriteOutput(2, 3), 0);
    const std::filesystem::path results = folder / "data.txt_KVAresult00";
    EXPECT_TRUE(std::filesystem::exists(results / "Resampling_data/HetRangeMin.xls"));
    EXPECT_EQ(readFile(results / "Single_data/Hetexp.xls").find('\t'), 0U);
}

// --- Results of the passes -------------------------------------------------

TEST(CheckDataFile, NullStreamIsMinusOne) {
    AnalyseDataObj obj;
    EXPECT_EQ(obj.CheckDataFile(nullptr), -1);
    EXPECT_EQ(obj.Daten, nullptr);
}

TEST(GetDataFile, NullStreamIsMinusOne) {
    AnalyseDataObj obj;
    EXPECT_EQ(obj.GetDataFile(nullptr), -1);
}

TEST(GetDataFile, ObjectWithoutACheckedFileIsMinusOne) {
    AnalyseDataObj obj;
    const Stream stream = fileOf(tabbed(kTwoPops));
    EXPECT_EQ(obj.GetDataFile(stream.get()), -1);
}

TEST(GetDataFile, FileThatIsEmptyByNowIsMinusOne) {
    AnalyseDataObj obj;
    const Stream stream = fileOf(tabbed(kTwoPops));
    obj.CheckDataFile(stream.get());
    EXPECT_EQ(obj.GetDataFile(fileOf("").get()), -1);
}

TEST(GetDataFile, FileWithoutRowsByNowIsMinusOne) {
    AnalyseDataObj obj;
    const Stream stream = fileOf(oneColumn("A\td\t0\t1\n"));
    const StdoutCapture swallowed;
    obj.CheckDataFile(stream.get());
    EXPECT_EQ(obj.GetDataFile(fileOf(oneColumn("")).get()), -1);
}

TEST(GetDataFile, FileWithOtherHeaderRowsByNowIsMinusOne) {
    AnalyseDataObj obj;
    const Stream stream = fileOf(oneColumn("A\td\t0\t1\n"));
    const StdoutCapture swallowed;
    obj.CheckDataFile(stream.get());
    EXPECT_EQ(obj.GetDataFile(fileOf("1\n\t\t\tL1\nA\td\t0\t1\n").get()), -1);
}

TEST(GetDataFile, FileThatGrewMeanwhileFillsNoMoreThanItsRoom) {
    AnalyseDataObj obj;
    const Stream small = fileOf(oneColumn("A\td\t0\t1\n"));
    const Stream large =
        fileOf(oneColumn("A\td\t0\t1\nA\td\t0\t2\nA\td\t0\t3\nA\td\t0\t4\nB\td\t0\t5\n"));
    const StdoutCapture swallowed;
    obj.CheckDataFile(small.get());
    EXPECT_EQ(obj.GetDataFile(large.get()), 0);
    EXPECT_EQ(obj.AnzPop, 1);
    EXPECT_EQ(obj.Daten->GetAnzDatenChromosome(1), 3); // 1 + 2 slots
}

TEST(GetDataFile, AFileThatChangedMeanwhileIsTold) {
    const std::string row = "A\td\t0\t1\n";
    for (const std::string& now : {oneColumn(row + row + row), oneColumn(row)}) {
        AnalyseDataObj obj;
        obj.DateiName = "data.txt";
        const Stream before = fileOf(oneColumn(row + row));
        StdoutCapture console;
        obj.CheckDataFile(before.get());
        obj.GetDataFile(fileOf(now).get());
        EXPECT_NE(
            console.text().find("\nCannot read data file data.txt: it changed while it was read\n"),
            std::string::npos);
    }
}

TEST(GetDataFile, AFileThatStayedIsReadWithoutAWord) {
    const Reading reading(oneColumn("A\td\t0\t1\nA\td\t0\t2\n"));
    EXPECT_EQ((reading.told + reading.marks).find("Cannot read"), std::string::npos);
}

TEST(GetDataFile, OtherThanThreeHeadColumnsIsMinusThree) {
    AnalyseDataObj obj;
    const Stream stream = fileOf(tabbed(kTwoPops));
    obj.CheckDataFile(stream.get());
    obj.KopfSpalten = 4;
    StdoutCapture capture;
    EXPECT_EQ(obj.GetDataFile(stream.get()), -3);
    EXPECT_EQ(capture.text(), "\n!! FATAL ERROR Incorrect Row-Format FATAL ERROR !!\n");
}

TEST(ReadDataFile, MakesTheFolderAndFillsTheLoci) {
    LoadedRun run(kTwoPops);
    EXPECT_EQ(run->ResultPfad, std::filesystem::current_path().string());
    EXPECT_EQ(run->Daten->Locus(1)->GetDataChromosom(2, 1), 104);
}
