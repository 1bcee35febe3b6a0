#include "control/Ausgabe.h"

#include "base/console.h"
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <sstream>
#include <streambuf>
#include <string>

using namespace kva;

using kva_test::StdoutCapture;

namespace {

std::string printed(int code, const char* text) {
    StdoutCapture console;
    AUSGABE(code, text);
    return console.text();
}

std::string printed(int code, int wert) {
    StdoutCapture console;
    AUSGABE(code, wert);
    return console.text();
}

std::string printed(double wert, int code = 0) {
    StdoutCapture console;
    AUSGABE(code, wert);
    return console.text();
}

// Stands in for the console and keeps what had come by the last flush.
class FlushWatch : public std::stringbuf {
  public:
    FlushWatch() : stream(this), console(&stream) {}
    ~FlushWatch() override = default;
    FlushWatch(const FlushWatch&) = delete;
    FlushWatch& operator=(const FlushWatch&) = delete;

    std::string flushed;

  private:
    int sync() override {
        flushed = str();
        return 0;
    }

    std::ostream stream;
    ConsoleTo console;
};

struct Row {
    int code;
    const char* expected; // with the argument "X"
};

// The whole catalogue, in order. The rows of a line end alone close a line of marks.
constexpr Row kCatalogue[] = {
    {-1, "\n"},
    {1, "\nCreate Errorreport of Loci dataset\n"},
    {7, "\nCount Allels\n"},
    {8, "\n!! ERROR Can't change into Subfolder Allelcount! ERROR !!\n"},
    {9, "\n!! ERROR Can't create Subfolder Allelcount! ERROR !!\n"},
    {10, "."},
    {11, "\nRead Loci/Pop Information!\n"},
    {12, "\n"},
    {13, "\n"},
    {14, "\n!! ERROR Can't change into result folder ERROR !!\n"},
    {15, "\n!! FATAL ERROR Incorrect Row-Format FATAL ERROR !!\n"},
    {16, "\n!! FATAL ERROR Incorrect Colum-Format FATAL ERROR !!\n"},
    {17, "\n!! This Class has already Checked a Datafile !!\n"
         "\t Please try this to load with a new Class\n"
         "Errorcode: 1-1\n"},
    {18, "\n!! ERROR Can't allocate memory! ERROR !!\n"
         "\t Please close other programs or increase memory for KVAnalyser \n"
         "Errorcode: 1-2\n"},
    {19, "\n!! ERROR Can't change into Subfolder Single_data! ERROR !!\nErrorcode: 2-2\n"},
    {20, "\n"},
    {21, "\nCalculate Stat's and create single data files\n"},
    {22, "\n!! ERROR Can't create Subfolder Single_data! ERROR !!\nErrorcode: 2-1\n"},
    {23, "\nCalculate Het's:\n"},
    {24, "\n"},
    {25, "\nCalculate Var's and Mean's:\n"},
    {26, "\n"},
    {28, "\nWrite Min- and Max- Allels:\n"},
    {29, "\n"},
    {31, "\nFind Num.Chromosomes and Num.of Allels\n"},
    {32, "\n"},
    {34, "\nStart creating overview sheet!\n"},
    {35, "\n"},
    {36, "\nLOCI: "},
    {37, "X "},
    {40, "\n"},
    {41, "\n!! ERROR Can't create Subfolder Group_data! ERROR !!\nErrorcode: 3-2\n"},
    {42, "\n!! ERROR Can't change into Subfolder Group_data! ERROR !!\nErrorcode: 3-1\n"},
    {43, "\nMaking now group overview!\n"},
    {44, "\n"},
    {46, "\n!! ERROR Can't create Subfolder Distance_data! ERROR !!\nErrorcode: 4-2\n"},
    {47, "\n!! ERROR Can't change into Subfolder Distance_data! ERROR !!\nErrorcode: 4-1\n"},
    {48, "\nCalculate Population Distance: X\n! Please wait...\n"},
    {49, "\n... Finished Population Distance!\n"},
    {51, "\n!! ERROR Can't create Resultfile for Distance! ERROR !!\nErrorcode: 4-3\n"},
    {52, "\nCalculate FST Distance: X\n! Please wait...\n"},
    {53, "\n... Finished FST Distance!\n"},
    {55, "\n!! ERROR Can't create Resultfile for Distance! ERROR !!\n"
         "Lost of Fst-Result (X)!\n"
         "Errorcode: 4-4\n"},
    {56, "\nCalculate FST p-Value: X\n! This will need a lot of time...\n"},
    {58, "\n... Finished FST p-Value calculation!\n"},
    {59, "\n!! ERROR Can't create Resultfile for Distance! ERROR !!\n"
         "Lost of Fst-Result (X)!\n"
         "Errorcode: 4-5\n"},
    {60, "\n!! FATAL-ERROR Can't read one line into memory !!\n"
         "Please reduce number of loci and/or contact the programmer!\n"
         "Errorcode: 1-3\n"},
    {61, "\n\nMake Genepop formated files\nand Randomdiscarded datafiles!"},
    {62, "\nAll Lines generated!\n"},
    {65, "\nAnimal per Population:"},
    {68, "\n\nMake Beaumont, Arlequin and Migrate/Lamarc"},
    {70, "\nAll Lines generated!\n"},
    {71, "\nCalculate global FST: X\n! Please wait...\n"},
    {72, "\n... Finished global FST calculation!\n"},
    {74, "\n!! ERROR Can't create Resultfile for global Fst! ERROR !!\n"
         "Lost of global Fst-Result (X)!\n"
         "Errorcode: 6-4\n"},
    {75, "\nCalculate global FST p-Value: X\n! This may take a long time...\n"},
    {77, "\n... Finished Global FST p-Value calculation!\n"},
    {78, "\nCalculate random heterozygosity range\n! This may take a long time...\n"},
    {80, "\n... Finished random heterozygosity range calculation!\n"},
    {81, "\n!! ERROR Can't create Subfolder Resampling_data! ERROR !!\nErrorcode: 7-2\n"},
    {82, "\n!! ERROR Can't change into Subfolder Resampling_data! ERROR !!\nErrorcode: 7-1\n"},
    {90, "\nStart with F-beta-value calculation!\n"},
    {91, "\n... Finished F-beta calculation!\n"},
    {100, "\n\nMake IM formated files"},
    {102, "\nAll IM-Pairs generated!\n"},
    {103, "\n!! ERROR Can't create Files for IM Format!!\nErrorcode: 8-1\n"},
    {104, "\nCan't create X\nbecause the populations has no common locus!"},
    {110, "\nStart with G ST calculation!\n"},
    {112, "\n... Finished GST calculation!\n"},
};

// The codes that print their argument.
bool takesArgument(int code) {
    constexpr int kCodes[] = {37, 48, 52, 55, 56, 59, 71, 74, 75, 104};
    return std::ranges::find(kCodes, code) != std::end(kCodes);
}

bool inCatalogue(int code) {
    return std::ranges::find(kCatalogue, code, &Row::code) != std::end(kCatalogue);
}

class Catalogue : public testing::TestWithParam<Row> {};

std::string codeName(const testing::TestParamInfo<Row>& info) {
    return info.param.code < 0 ? "Minus" : "Code" + std::to_string(info.param.code);
}

} // namespace

TEST_P(Catalogue, PrintsItsWords) {
    EXPECT_EQ(printed(GetParam().code, "X"), GetParam().expected);
}

TEST_P(Catalogue, LooksAtTheArgumentOnlyWhereItIsPartOfTheMessage) {
    const std::string expected = GetParam().expected;
    const std::string other = printed(GetParam().code, "another text");
    EXPECT_EQ(other == expected, !takesArgument(GetParam().code));
}

TEST_P(Catalogue, NullArgumentLeavesItsPlaceEmpty) {
    std::string expected = GetParam().expected;
    if (takesArgument(GetParam().code)) {
        expected.erase(expected.find('X'), 1);
    }
    EXPECT_EQ(printed(GetParam().code, nullptr), expected);
}

INSTANTIATE_TEST_SUITE_P(Ausgabe, Catalogue, testing::ValuesIn(kCatalogue), codeName);

// --- Marks ----------------------------------------------------------------------

TEST(Ausgabe, UnknownCodeWithNullTextPrintsOneLineEnd) {
    EXPECT_EQ(printed(4711, nullptr), "\n");
}

TEST(Ausgabe, CodesOfFoldersWithoutWordsPrintOneLineEnd) {
    EXPECT_EQ(printed(63, nullptr), "\n");
    EXPECT_EQ(printed(64, nullptr), "\n");
}

TEST(Ausgabe, AllOtherCodesAreMarks) {
    for (int code = -20; code <= 300; ++code) {
        if (!inCatalogue(code)) {
            EXPECT_EQ(printed(code, "1#"), "1#") << code;
            EXPECT_EQ(printed(code, nullptr), "\n") << code;
        }
    }
}

TEST(Ausgabe, EmptyMarkPrintsNothing) {
    EXPECT_EQ(printed(2, ""), "");
}

TEST(Ausgabe, EveryMessageIsFlushed) {
    for (const int code : {2, 10, 36, 37, 61, 41, 104, 4711}) {
        FlushWatch console;
        AUSGABE(code, "*");
        EXPECT_FALSE(console.str().empty()) << code;
        EXPECT_EQ(console.flushed, console.str()) << code;
    }
}

TEST(AusgabeNumber, EveryNumberIsFlushed) {
    FlushWatch console;
    AUSGABE(57, 3);
    EXPECT_EQ(console.flushed, "\nCalc Replica: 3");
    AUSGABE(0, 0.5);
    EXPECT_EQ(console.flushed, "\nCalc Replica: 30.5");
}

// --- Numbers --------------------------------------------------------------------

TEST(AusgabeNumber, TestGroup) {
    EXPECT_EQ(printed(45, 3), "\nTest Group: 3");
}

TEST(AusgabeNumber, Replica) {
    EXPECT_EQ(printed(57, 1), "\nCalc Replica: 1");
    EXPECT_EQ(printed(76, 10000), "\nCalc Replica: 10000");
}

TEST(AusgabeNumber, Population) {
    EXPECT_EQ(printed(66, 17), "\nPop 17:");
}

TEST(AusgabeNumber, Animals) {
    EXPECT_EQ(printed(67, 0), "0 animal(s)");
}

TEST(AusgabeNumber, AnyOtherCodePrintsTheNumberAlone) {
    for (int code = -20; code <= 300; ++code) {
        if (code != 45 && code != 57 && code != 66 && code != 67 && code != 76) {
            EXPECT_EQ(printed(code, -7), "-7") << code;
        }
    }
}

// The default format of a stream is "%g": six significant digits, no trailing zeros.
TEST(AusgabeNumber, DoubleTakesTheDefaultFormat) {
    EXPECT_EQ(printed(0.1), "0.1");
    EXPECT_EQ(printed(2.0), "2");
    EXPECT_EQ(printed(1.0 / 3.0), "0.333333");
    EXPECT_EQ(printed(1234567.0), "1.23457e+06");
    EXPECT_EQ(printed(-0.00001), "-1e-05");
}

TEST(AusgabeNumber, CodeOfADoubleDoesNotMatter) {
    for (const int code : {-1, 10, 12, 45, 57, 66, 67, 4711}) {
        EXPECT_EQ(printed(0.5, code), "0.5") << code;
    }
}
