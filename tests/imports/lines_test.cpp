#include "imports/lines.h"

#include <gtest/gtest.h>

using namespace kva;

TEST(Lines, AllLineEndsAndNoBlankLines) {
    const std::string text = "\xef\xbb\xbf"
                             "a\r\n\r\n b \rc\n \t\nd";
    const std::vector<Line> lines = linesOf(text);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].text, "a");
    EXPECT_EQ(lines[1].text, " b ");
    EXPECT_EQ(lines[1].number, 3U);
    EXPECT_EQ(lines[2].text, "c");
    EXPECT_EQ(lines[3].text, "d");
    EXPECT_EQ(lines[3].number, 6U);
    EXPECT_TRUE(linesOf("").empty());
}

TEST(Lines, WordsStandBetweenBlanksAndTabs) {
    const std::vector<std::string_view> words = wordsOf(" a\t\tb  c ");
    EXPECT_EQ(words, (std::vector<std::string_view>{"a", "b", "c"}));
    EXPECT_TRUE(wordsOf("  ").empty());
}

TEST(Lines, CellsAreTrimmedAndMayStandInQuotes) {
    EXPECT_EQ(cellsOf("a, b ,,\"c,d\", \"e \"\"f\"\"\"", ','),
              (std::vector<std::string>{"a", "b", "", "c,d", "e \"f\""}));
    EXPECT_EQ(cellsOf("", ','), std::vector<std::string>{""});
    EXPECT_EQ(cellsOf("5\" long,x", ','), (std::vector<std::string>{"5\" long", "x"}));
}

TEST(Lines, SeparatorIsTheFirstOfTabSemicolonComma) {
    EXPECT_EQ(separatorOf("a,b;c\td"), '\t');
    EXPECT_EQ(separatorOf("a,b;c"), ';');
    EXPECT_EQ(separatorOf("a,b"), ',');
    EXPECT_EQ(separatorOf("a b"), '\0');
}

TEST(Lines, WholeNumbersAreDigitsAlone) {
    EXPECT_EQ(wholeNumber("007"), 7);
    EXPECT_EQ(wholeNumber("2147483647"), 2147483647);
    EXPECT_EQ(wholeNumber("12", 12), 12);
    for (const char* text : {"", "-1", "+1", "1.0", " 1", "2147483648", "99999999999999999999"}) {
        EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
    }
    EXPECT_EQ(wholeNumber("13", 12), std::nullopt);
}

TEST(Lines, QuotedTextIsFitToShow) {
    EXPECT_EQ(quotedText("a\tb"), "'a?b'");
    EXPECT_EQ(quotedText(std::string(31, 'x')), "'" + std::string(30, 'x') + "...'");
}
