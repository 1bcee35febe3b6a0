#include "control/CMenuEingabe.h"

#include "control/menuscreens.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <sstream>
#include <string>

using namespace kva;

using kva_test::Typed;

namespace {

// A row of a table goes by what is typed in it.
template <class Row>
concept TypedRow = requires(const Row& row) {
    row.typed;
};

template <TypedRow Row> std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << testing::PrintToString(std::string(row.typed));
}

// --- Whole numbers -------------------------------------------------------------------------

struct Whole {
    const char* typed;
    long value;
    const char* rest; // what stays for the keys
};

class WholeNumber : public testing::TestWithParam<Whole> {};

const Whole kWholes[] = {
    {"5\n", 5, "\n"},
    {"0\n", 0, "\n"},
    {"-7\n", -7, "\n"},
    {"+7\n", 7, "\n"},
    {"007\n", 7, "\n"},
    {"\n \t\n 12\nq", 12, "\nq"}, // white space in front, also line ends, is passed over
    {"12", 12, ""},               // the input ends behind it
    {"12abc\n", 12, "abc\n"},     // letters stay
    {"12 b\n", 12, " b\n"},
    {"12-3\n", 12, "-3\n"},
    {"1.5\n", 1, ".5\n"},
    {"0x1F\n", 0, "x1F\n"},
    {"1e3\n", 1, "e3\n"},
    {"2147483648\n", 2147483648L, "\n"},
    {"99999999999999999999\n", LONG_MAX, "\n"},
    {"-99999999999999999999\n", LONG_MIN, "\n"},
};

struct Word {
    const char* typed;
    const char* word;
    const char* rest;
};

class NoWholeNumber : public testing::TestWithParam<Word> {};

const Word kNoWholes[] = {
    {"abc\nq", "abc", "q"},
    {"abc def 12\nq", "abc", "q"}, // the rest of the line goes
    {"\n\n  abc\tx\nq", "abc", "q"},
    {"-\nq", "-", "q"},
    {"+ 5\nq", "+", "q"},
    {"-x5 7\nq", "-x5", "q"},
    {"--5\nq", "--5", "q"},
    {".5\nq", ".5", "q"},
    {"abc", "abc", ""}, // without a line end
    {"-", "-", ""},
    {"", "", ""}, // end of input: no word
    {" \n\n", "", ""},
};

} // namespace

TEST_P(WholeNumber, IsTakenAndTheRestStays) {
    Typed typed(GetParam().typed);
    const Zahleingabe<long> answer = LiesGanzzahl();
    ASSERT_TRUE(answer.Wert.has_value());
    EXPECT_EQ(*answer.Wert, GetParam().value);
    EXPECT_EQ(answer.Wort, "");
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, WholeNumber, testing::ValuesIn(kWholes));

TEST_P(NoWholeNumber, GivesTheWordAndDropsTheLine) {
    Typed typed(GetParam().typed);
    const Zahleingabe<long> answer = LiesGanzzahl();
    EXPECT_FALSE(answer.Wert.has_value());
    EXPECT_EQ(answer.Wort, GetParam().word);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, NoWholeNumber, testing::ValuesIn(kNoWholes));

TEST(LiesGanzzahl, ReadsOnBehindAWord) {
    const Typed typed("abc\n5\n");
    EXPECT_FALSE(LiesGanzzahl().Wert.has_value());
    EXPECT_EQ(LiesGanzzahl().Wert, 5);
}

// Formatted input of a stream takes the same characters and gives the same number.
TEST(LiesGanzzahl, AgreesWithFormattedInput) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        std::mt19937 random(seed);
        std::string text;
        for (int i = 0; i < 6; ++i) {
            text += "0019+- \nx."[random() % 10];
        }
        std::istringstream formatted(text);
        long expected = 0;
        const bool isNumber = static_cast<bool>(formatted >> expected);
        formatted.clear();
        const std::string rest{std::istreambuf_iterator<char>(formatted), {}};

        Typed typed(text);
        const Zahleingabe<long> answer = LiesGanzzahl();
        ASSERT_EQ(answer.Wert.has_value(), isNumber) << text << " of seed " << seed;
        if (isNumber) {
            ASSERT_EQ(*answer.Wert, expected) << text << " of seed " << seed;
            ASSERT_EQ(typed.rest(), rest) << text << " of seed " << seed;
        }
    }
}

// --- Numbers with a fraction -------------------------------------------------------------------

namespace {

struct Decimal {
    const char* typed;
    double value;
    const char* rest;
};

class DecimalNumber : public testing::TestWithParam<Decimal> {};

const Decimal kDecimals[] = {
    {"5\n", 5.0, "\n"},
    {"2.5\n", 2.5, "\n"},
    {"-1\n", -1.0, "\n"},
    {"+.5\n", 0.5, "\n"},
    {"5.\n", 5.0, "\n"},
    {"25e-1\n", 2.5, "\n"},
    {"1E+2\n", 100.0, "\n"},
    {"\n  4\nq", 4.0, "\nq"},
    {"2.5abc\n", 2.5, "abc\n"},
    {"2.5.5\n", 2.5, ".5\n"},
    {"2,5\n", 2.0, ",5\n"},
    {"0x10\n", 0.0, "x10\n"},
    {"1e5e5\n", 100000.0, "e5\n"},
    {"1e999\n", HUGE_VAL, "\n"},
    {"-1e999\n", -HUGE_VAL, "\n"},
};

class NoDecimalNumber : public testing::TestWithParam<Word> {};

const Word kNoDecimals[] = {
    {"x y z\nq", "x", "q"}, {".\nq", ".", "q"},         {"-.e5\nq", "-.e5", "q"},
    {"1e\nq", "1e", "q"},   {"1e+x 3\nq", "1e+x", "q"}, {"inf\nq", "inf", "q"},
    {"nan\nq", "nan", "q"}, {"e5\nq", "e5", "q"},       {"", "", ""},
};

} // namespace

TEST_P(DecimalNumber, IsTakenAndTheRestStays) {
    Typed typed(GetParam().typed);
    const Zahleingabe<double> answer = LiesKommazahl();
    ASSERT_TRUE(answer.Wert.has_value());
    EXPECT_EQ(*answer.Wert, GetParam().value);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, DecimalNumber, testing::ValuesIn(kDecimals));

TEST_P(NoDecimalNumber, GivesTheWordAndDropsTheLine) {
    Typed typed(GetParam().typed);
    const Zahleingabe<double> answer = LiesKommazahl();
    EXPECT_FALSE(answer.Wert.has_value());
    EXPECT_EQ(answer.Wort, GetParam().word);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, NoDecimalNumber, testing::ValuesIn(kNoDecimals));

TEST(LiesKommazahl, AgreesWithFormattedInput) {
    for (unsigned seed = 0; seed < 4000; ++seed) {
        std::mt19937 random(seed);
        std::string text;
        for (int i = 0; i < 6; ++i) {
            text += "0129+-.eE x"[random() % 11];
        }
        std::istringstream formatted(text);
        double expected = 0.0;
        const bool isNumber = static_cast<bool>(formatted >> expected);
        formatted.clear();
        const std::string rest{std::istreambuf_iterator<char>(formatted), {}};

        Typed typed(text);
        const Zahleingabe<double> answer = LiesKommazahl();
        const bool isHuge = answer.Wert && std::isinf(*answer.Wert); // a failure of the stream
        ASSERT_EQ(answer.Wert.has_value() && !isHuge, isNumber) << text << " of seed " << seed;
        if (isNumber) {
            ASSERT_EQ(*answer.Wert, expected) << text << " of seed " << seed;
            ASSERT_EQ(typed.rest(), rest) << text << " of seed " << seed;
        }
    }
}

// --- File names --------------------------------------------------------------------------------

namespace {

class FileName : public testing::TestWithParam<Word> {};

const Word kNames[] = {
    {"data.txt\nq", "data.txt", "\nq"},
    {"\n  data.txt b\n", "data.txt", " b\n"}, // one word; the rest of the line stays
    {"\"my cats.txt\"\nq", "my cats.txt", "\nq"},
    {"\"my  cats\n of\ttown.txt\" q", "my cats of town.txt", " q"}, // any space is one blank
    {"\"my cats.txt\"qqq v", "my cats.txt", " v"}, // what is joined to the quote goes with it
    {"\"my cats \" q", "my cats ", " q"},          // a quote alone ends a name with a blank
    {"\"a.txt\"\nb\"\nq", "a.txt\" b", "\nq"},     // a quoted single word waits for more
    {"x\"y z\" q", "\"y z", " q"},                 // not the quote goes but the first character
    {"\" a\" q", " a", " q"},
    {"'my cats.txt' q", "my cats.txt", " q"},
    {"'my \"cats\" here' q", "my \"cats\" here", " q"}, // the kind is settled by the first word
    {"\"bird's nest\" q", "bird's nest", " q"},
    {"'it\"s my cats\" q", "it\"s my cats", " q"}, // a double quote goes before a single one
    {"bird's nest' q", "ird's nest", " q"},        // a quote anywhere in the word counts
    {"\"my cats", "my cats", ""},                  // the input ends within the quotes
    {"\"\n", "", ""},
    {"", "", ""},
};

} // namespace

TEST_P(FileName, IsAWordOrStandsInQuotes) {
    Typed typed(GetParam().typed);
    EXPECT_EQ(LiesDateiName(), GetParam().word);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, FileName, testing::ValuesIn(kNames));

TEST(LiesDateiName, TakesAtMost255BytesAndDropsTheRestOfTheWord) {
    Typed typed(std::string(5000, 'x') + " q");
    EXPECT_EQ(LiesDateiName(), std::string(255, 'x'));
    EXPECT_EQ(typed.rest(), " q");
}

TEST(LiesDateiName, A255ByteNameFits) {
    const Typed typed(std::string(255, 'x'));
    EXPECT_EQ(LiesDateiName().size(), 255U);
}

// 1 + 200 + 1 + 53 characters are taken of the two words, the last 47 of the second go.
TEST(LiesDateiName, WordsInQuotesAreCutAltogether) {
    Typed typed(std::string("\"a") + std::string(200, 'b') + " " + std::string(100, 'c') + "\" q");
    EXPECT_EQ(LiesDateiName(),
              std::string("a") + std::string(200, 'b') + " " + std::string(53, 'c'));
    EXPECT_EQ(typed.rest(), " q");
}

// The quote behind the limit still opens the name and closes it.
TEST(LiesDateiName, QuotesCountBehindTheLimitToo) {
    Typed typed(std::string(300, 'x') + "\" y z\" q");
    EXPECT_EQ(LiesDateiName(), std::string(255, 'x'));
    EXPECT_EQ(typed.rest(), " q");
}

TEST(LiesDateiName, EndsAtANulByte) {
    const Typed typed(std::string("data.txt\0more\nq", 15));
    EXPECT_EQ(LiesDateiName(), "data.txt");
}

TEST(LiesDateiName, PassesControlCharactersOn) {
    const Typed typed("a\x01\x1b\xff.txt\nq");
    EXPECT_EQ(LiesDateiName(), "a\x01\x1b\xff.txt");
}

TEST(LiesWort, KnowsNoQuotes) {
    Typed typed("  \"im file\" q");
    EXPECT_EQ(LiesWort(), "\"im");
    EXPECT_EQ(typed.rest(), " file\" q");
}

TEST(LiesWort, TakesAtMost255Bytes) {
    Typed typed(std::string(256, 'x') + "\nq");
    EXPECT_EQ(LiesWort(), std::string(255, 'x'));
    EXPECT_EQ(typed.rest(), "\nq");
}

TEST(LiesWort, IsEmptyAtTheEndOfInput) {
    const Typed typed(" \n");
    EXPECT_EQ(LiesWort(), "");
}
