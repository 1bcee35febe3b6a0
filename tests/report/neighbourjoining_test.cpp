#include "report/neighbourjoining.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace kva {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;

constexpr double kClose = 1e-12; // rounding of a few sums

// A tree of five tips, a to e:
//
//      a --2--+                  +--2-- d
//             u --3-- v --2-- w -+
//      b --3--+       |          +--1-- e
//                     4
//                     c
//
// so that ab = 2 + 3, ac = 2 + 3 + 4, bc = 3 + 3 + 4, ad = 2 + 3 + 2 + 2, and so on.
const std::vector<double> kFive = {5,            // ab
                                   9, 10,        // ac, bc
                                   9, 10, 8,     // ad, bd, cd
                                   8, 9,  7, 3}; // ae, be, ce, de

// The same tree with b and c in each other's place.
const std::vector<double> kExchanged = {9, 5, 10, 9, 8, 10, 8, 7, 9, 3};

// Lengths by hand: Q(a, b) = 3 * 5 - 31 - 34 = -50 is the least, so a and b are joined first, a at
// 5/2 + (31 - 34)/6 = 2 and b at 5 - 2 = 3; then u and c, at 3 and 4; v, d and e are left.
TEST(NeighbourJoining, FindsTheTreeThatTheDistancesAreMadeOf) {
    const Tree tree = neighbourJoining(kFive, 5);
    ASSERT_EQ(tree.nodes.size(), 8U);
    std::vector<double> lengths;
    for (const Tree::Node& node : tree.nodes) {
        lengths.push_back(node.length);
    }
    EXPECT_THAT(lengths,
                ElementsAre(DoubleNear(2, kClose), DoubleNear(3, kClose), DoubleNear(4, kClose),
                            DoubleNear(2, kClose), DoubleNear(1, kClose), DoubleNear(3, kClose),
                            DoubleNear(2, kClose), 0));
    EXPECT_THAT(tree.nodes[5].children, ElementsAre(0U, 1U));
    EXPECT_THAT(tree.nodes[6].children, ElementsAre(5U, 2U));
    EXPECT_THAT(tree.nodes[7].children, ElementsAre(6U, 3U, 4U));
    EXPECT_EQ(tree.root, 7U);
}

// Three tips: a at (ab + ac - bc)/2 = (3 + 4 - 5)/2 = 1, b at 2, c at 3.
TEST(NeighbourJoining, OfThreeTipsIsAStar) {
    const std::vector<double> distances = {3, 4, 5};
    const Tree tree = neighbourJoining(distances, 3);
    EXPECT_EQ(tree.root, 3U);
    EXPECT_THAT(tree.nodes[3].children, ElementsAre(0U, 1U, 2U));
    EXPECT_DOUBLE_EQ(tree.nodes[0].length, 1);
    EXPECT_DOUBLE_EQ(tree.nodes[1].length, 2);
    EXPECT_DOUBLE_EQ(tree.nodes[2].length, 3);
}

// ab|cde is in two of the three trees, the third has ac|bde; abc|de is in all.
TEST(SplitSupport, CountsTheTreesWithTheSplit) {
    const std::vector<Tree> trees = {neighbourJoining(kFive, 5), neighbourJoining(kExchanged, 5),
                                     neighbourJoining(kFive, 5)};
    EXPECT_THAT(splitSupport(trees[0], trees), ElementsAre(0, 0, 0, 0, 0, 2, 3, 0));
}

// With a branch u to v of 1, not 3, d and e are joined first: Q(d, e) = 3 * 3 - 26 - 23 = -40 and
// Q(a, b) = 3 * 5 - 25 - 28 = -38. The root lies elsewhere, the splits are the same.
TEST(SplitSupport, DoesNotDependOnTheRoot) {
    const std::vector<double> shortened = {5, 7, 8, 7, 8, 8, 6, 7, 7, 3};
    const std::vector<Tree> trees = {neighbourJoining(shortened, 5)};
    EXPECT_THAT(trees[0].nodes[5].children, ElementsAre(3U, 4U));
    EXPECT_THAT(splitSupport(neighbourJoining(kFive, 5), trees),
                ElementsAre(0, 0, 0, 0, 0, 1, 1, 0));
}

// More than 64 tips take a second word. On a comb each inner branch splits off the first k tips.
TEST(SplitSupport, TakesManyTips) {
    constexpr std::size_t kTips = 70;
    std::vector<double> distances;
    for (std::size_t i = 1; i < kTips; ++i) {
        for (std::size_t j = 0; j < i; ++j) { // teeth of length 1 a unit apart
            distances.push_back(2 + static_cast<double>(i - j));
        }
    }
    const std::vector<Tree> trees = {neighbourJoining(distances, kTips)};
    const std::vector<std::size_t> times = splitSupport(trees[0], trees);
    for (std::size_t v = kTips; v < trees[0].nodes.size(); ++v) {
        EXPECT_EQ(times[v], v == trees[0].root ? 0U : 1U) << v;
    }
}

TEST(Newick, QuotesNamesAndGivesLengthsAndSupport) {
    const std::vector<std::string> labels = {"O'Hara", "b (1)", "c", "d", "e"};
    const std::vector<std::string> percents = {"", "", "", "", "", "67", "100", ""};
    EXPECT_EQ(newick(neighbourJoining(kFive, 5), labels, percents),
              "((('O''Hara':2,'b (1)':3)67:3,'c':4)100:2,'d':2,'e':1);");
}

} // namespace
} // namespace kva
