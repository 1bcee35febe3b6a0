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
    const NumberInput<long> answer = ReadWholeNumber();
    ASSERT_TRUE(answer.Value.has_value());
    EXPECT_EQ(*answer.Value, GetParam().value);
    EXPECT_EQ(answer.Word, "");
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, WholeNumber, testing::ValuesIn(kWholes));

TEST_P(NoWholeNumber, GivesTheWordAndDropsTheLine) {
    Typed typed(GetParam().typed);
    const NumberInput<long> answer = ReadWholeNumber();
    EXPECT_FALSE(answer.Value.has_value());
    EXPECT_EQ(answer.Word, GetParam().word);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, NoWholeNumber, testing::ValuesIn(kNoWholes));

TEST(ReadWholeNumber, ReadsOnBehindAWord) {
    const Typed typed("abc\n5\n");
    EXPECT_FALSE(ReadWholeNumber().Value.has_value());
    EXPECT_EQ(ReadWholeNumber().Value, 5);
}

// Formatted input of a stream takes the same characters and gives the same number.
TEST(ReadWholeNumber, AgreesWithFormattedInput) {
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
        const NumberInput<long> answer = ReadWholeNumber();
        ASSERT_EQ(answer.Value.has_value(), isNumber) << text << " of seed " << seed;
        if (isNumber) {
            ASSERT_EQ(*answer.Value, expected) << text << " of seed " << seed;
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
    const NumberInput<double> answer = ReadDecimal();
    ASSERT_TRUE(answer.Value.has_value());
    EXPECT_EQ(*answer.Value, GetParam().value);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, DecimalNumber, testing::ValuesIn(kDecimals));

TEST_P(NoDecimalNumber, GivesTheWordAndDropsTheLine) {
    Typed typed(GetParam().typed);
    const NumberInput<double> answer = ReadDecimal();
    EXPECT_FALSE(answer.Value.has_value());
    EXPECT_EQ(answer.Word, GetParam().word);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, NoDecimalNumber, testing::ValuesIn(kNoDecimals));

TEST(ReadDecimal, AgreesWithFormattedInput) {
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
        const NumberInput<double> answer = ReadDecimal();
        const bool isHuge = answer.Value && std::isinf(*answer.Value); // a failure of the stream
        ASSERT_EQ(answer.Value.has_value() && !isHuge, isNumber) << text << " of seed " << seed;
        if (isNumber) {
            ASSERT_EQ(*answer.Value, expected) << text << " of seed " << seed;
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
    EXPECT_EQ(ReadFileName(), GetParam().word);
    EXPECT_EQ(typed.rest(), GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(Typed, FileName, testing::ValuesIn(kNames));

TEST(ReadFileName, TakesAtMost255BytesAndDropsTheRestOfTheWord) {
    Typed typed(std::string(5000, 'x') + " q");
    EXPECT_EQ(ReadFileName(), std::string(255, 'x'));
    EXPECT_EQ(typed.rest(), " q");
}

TEST(ReadFileName, A255ByteNameFits) {
    const Typed typed(std::string(255, 'x'));
    EXPECT_EQ(ReadFileName().size(), 255U);
}

// 1 + 200 + 1 + 53 characters are taken of the two words, the last 47 of the second go.
TEST(ReadFileName, WordsInQuotesAreCutAltogether) {
    Typed typed(std::string("\"a") + std::string(200, 'b') + " " + std::string(100, 'c') + "\" q");
    EXPECT_EQ(ReadFileName(),
              std::string("a") + std::string(200, 'b') + " " + std::string(53, 'c'));
    EXPECT_EQ(typed.rest(), " q");
}

// The quote behind the limit still opens the name and closes it.
TEST(ReadFileName, QuotesCountBehindTheLimitToo) {
    Typed typed(std::string(300, 'x') + "\" y z\" q");
    EXPECT_EQ(ReadFileName(), std::string(255, 'x'));
    EXPECT_EQ(typed.rest(), " q");
}

TEST(ReadFileName, EndsAtANulByte) {
    const Typed typed(std::string("data.txt\0more\nq", 15));
    EXPECT_EQ(ReadFileName(), "data.txt");
}

TEST(ReadFileName, PassesControlCharactersOn) {
    const Typed typed("a\x01\x1b\xff.txt\nq");
    EXPECT_EQ(ReadFileName(), "a\x01\x1b\xff.txt");
}

TEST(ReadWord, KnowsNoQuotes) {
    Typed typed("  \"im file\" q");
    EXPECT_EQ(ReadWord(), "\"im");
    EXPECT_EQ(typed.rest(), " file\" q");
}

TEST(ReadWord, TakesAtMost255Bytes) {
    Typed typed(std::string(256, 'x') + "\nq");
    EXPECT_EQ(ReadWord(), std::string(255, 'x'));
    EXPECT_EQ(typed.rest(), "\nq");
}

TEST(ReadWord, IsEmptyAtTheEndOfInput) {
    const Typed typed(" \n");
    EXPECT_EQ(ReadWord(), "");
}
