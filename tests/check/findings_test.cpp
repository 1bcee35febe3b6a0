#include "check/findings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace kva;

TEST(FindingKinds, EachHasANameOfItsOwnAndAllTexts) {
    std::set<std::string> names;
    for (const FindingKind& kind : allFindingKinds()) {
        EXPECT_TRUE(names.insert(kind.name).second) << kind.name;
        EXPECT_EQ(&kindOf(kind.code), &kind) << kind.name;
        for (const char* text : {kind.title, kind.meaning, kind.advice}) {
            EXPECT_GT(std::string(text).size(), 4U) << kind.name;
        }
        EXPECT_EQ(std::string(kind.meaning).back(), '.') << kind.name;
        EXPECT_EQ(std::string(kind.advice).back(), '.') << kind.name;
    }
}

TEST(Findings, ManyOfAKindAreACountAndTheFirstPlaces) {
    Findings findings;
    for (int row = 1; row <= 7; ++row) {
        findings.add(FindingCode::Decimal, row, 4, "1.5");
    }
    const auto sorted = findings.sorted();
    ASSERT_EQ(sorted.size(), 1U);
    EXPECT_EQ(sorted[0].count, 7);
    ASSERT_EQ(sorted[0].places.size(), kFirstPlaces);
    EXPECT_EQ(sorted[0].places.back().row, 5);
}

TEST(Findings, ErrorsStandBeforeWarningsAndNotes) {
    Findings findings;
    findings.add(FindingCode::NoLengths);  // note
    findings.add(FindingCode::Letters);    // error
    findings.add(FindingCode::ZeroAllele); // warning
    findings.add(FindingCode::OddRows);    // error, before Letters in the catalogue
    std::string order;
    for (const Finding& finding : findings.sorted()) {
        order += std::string(kindOf(finding.code).name) + " ";
    }
    EXPECT_EQ(order, "odd-rows letters zero-allele no-lengths ");
    EXPECT_TRUE(findings.has(FindingCode::OddRows));
    EXPECT_FALSE(findings.has(FindingCode::Decimal));
}

TEST(ShownText, ControlCharactersAndLongTextsAreMadeFitToShow) {
    EXPECT_EQ(shownText("a\x1b[31m\tb"), "a?[31m?b");
    EXPECT_EQ(shownText(std::string(40, 'x')), std::string(40, 'x'));
    EXPECT_EQ(shownText(std::string(41, 'x')), std::string(40, 'x') + "...");
}

TEST(ShownText, NoCharacterIsCutInTwo) {
    // 39 letters and an umlaut of two bytes, of which the cut would leave one.
    EXPECT_EQ(shownText(std::string(39, 'x') + "\xc3\xa4"
                                               "yz"),
              std::string(39, 'x') + "...");
}
