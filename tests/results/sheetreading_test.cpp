// Heads and numbers that layouts read in common.
#include "results/sheetreading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

using namespace kva;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The loci of a head, and the line that is current behind it.
struct HeadOf {
    explicit HeadOf(const std::string& text, std::size_t labels = 1) : in(text), lines(in, false) {
        head = readLocusHead(lines, labels);
    }

    std::istringstream in;
    SheetLines lines;
    LocusHead head;
};

} // namespace

TEST(LocusHead, OneLineOfNames) {
    const HeadOf read("\tL1\tL2\t\nTotal\t1\t2\t\n");
    EXPECT_THAT(read.head.loci, ElementsAre("L1", "L2"));
    EXPECT_TRUE(read.head.more);
    EXPECT_EQ(read.lines.line(), "Total\t1\t2\t");
}

TEST(LocusHead, SecondNamesArePassedOver) {
    const HeadOf read("\tL1\t\n\tL1b\t\nTotal\t1\t\n");
    EXPECT_THAT(read.head.loci, ElementsAre("L1"));
    EXPECT_EQ(read.lines.line(), "Total\t1\t");
}

// A row of a population without a name begins with a tab, but no tab ends it.
TEST(LocusHead, RowWithoutANameIsNoHead) {
    const HeadOf read("\tL1\tL2\t\n\t0.5\t0.5\n");
    EXPECT_TRUE(read.head.more);
    EXPECT_EQ(read.lines.line(), "\t0.5\t0.5");
}

TEST(LocusHead, EmptyNamesCount) {
    EXPECT_THAT(HeadOf("\tL1\t\t\n").head.loci, ElementsAre("L1", ""));
}

TEST(LocusHead, DataWithoutLociHaveAnEmptyHead) {
    const HeadOf read("\t\n");
    EXPECT_THAT(read.head.loci, IsEmpty());
    EXPECT_FALSE(read.head.more);
    EXPECT_TRUE(read.lines.sound());
}

TEST(LocusHead, TwoLabelsStandInFront) {
    EXPECT_THAT(HeadOf("\t\tL1\tL2\t\n", 2).head.loci, ElementsAre("L1", "L2"));
}

TEST(LocusHead, SheetWithoutAHeadIsTold) {
    EXPECT_EQ(HeadOf("").lines.faultText(), "line 1: the sheet has no head");
    EXPECT_EQ(HeadOf("Total\t1\t\n").lines.faultText(), "line 1: no head of locus names");
    EXPECT_EQ(HeadOf("\t\n", 2).lines.faultText(), "line 1: no head of locus names");
}

TEST(NumberBetween, StandsBetweenBothTexts) {
    EXPECT_EQ(numberBetween("KVA made 20 replikas.", "KVA made ", " replikas."), "20");
    EXPECT_EQ(numberBetween("gap:-3", "gap:", ""), "-3");
}

TEST(NumberBetween, NothingWhereATextOrTheNumberIsAnotherOne) {
    EXPECT_EQ(numberBetween("KVA made 20", "KVA made ", " replikas."), std::nullopt);
    EXPECT_EQ(numberBetween("KVA made x replikas.", "KVA made ", " replikas."), std::nullopt);
    EXPECT_EQ(numberBetween("KVA made  replikas.", "KVA made ", " replikas."), std::nullopt);
    EXPECT_EQ(numberBetween("ab", "ab", "b"), std::nullopt); // the texts would share a letter
}

TEST(CountOf, TakesUpToNineDigits) {
    EXPECT_EQ(countOf("0"), 0U);
    EXPECT_EQ(countOf("999999999"), 999999999U);
    EXPECT_EQ(countOf("1000000000"), std::nullopt);
    EXPECT_EQ(countOf(""), std::nullopt);
    EXPECT_EQ(countOf("-1"), std::nullopt);
}
