#include "fstat/PairTerms.h"

#include <gtest/gtest.h>

using namespace kva;

// Two samples of 2 individuals, the allele once in the first and three times in the second:
// p1 = 1/4, p2 = 3/4, pbar = 1/2, S = 4, nc = 2; s2 = 2 (2/16 + 2/16) / 4 = 1/8,
// x = 1/4 - 1/16 = 3/16; a = 4 (1/8 - 2 (3/16) / 2) / 4 = -1/16, b = 4 (3/16) / 2 = 3/8.
TEST(PairTerms, ATermIsThatOfTheEquations) {
    PairTerms terms;
    const PairTerms::Page& page = terms.page(4, 4);
    ASSERT_TRUE(page.Sizes);
    EXPECT_EQ(page.Sizes->S, 4.0);
    EXPECT_EQ(page.Sizes->nc, 2.0);
    const TwoDoubles term = page.Terms[static_cast<std::size_t>(1 * page.Step + 1 + 3)].OfAB;
    EXPECT_EQ(term[0], -0.0625);
    EXPECT_EQ(term[1], 0.375);
    EXPECT_EQ(&terms.page(4, 4), &page) << "computed once";
}

TEST(PairTerms, SamplesWithoutComponentsHaveTermsOfZero) {
    PairTerms terms;
    EXPECT_FALSE(terms.page(0, 8).Sizes);
    const PairTerms::Page& page = terms.page(2, 2); // two individuals together
    EXPECT_FALSE(page.Sizes);
    ASSERT_EQ(page.Terms.size(), 9U);
    EXPECT_EQ(page.Terms[8].OfAB[0], 0.0);
    EXPECT_EQ(terms.page(0, 0).Terms.size(), 1U);
}

TEST(PairTerms, TheLargestPageHasATermForAllCopies) {
    PairTerms terms;
    const int32_t n = PairTerms::kMostCopies;
    const PairTerms::Page& page = terms.page(n, n);
    EXPECT_EQ(page.Terms.size(), static_cast<std::size_t>((n + 1) * (n + 1)));
    EXPECT_EQ(page.Terms.back().OfAB[1], 0.0) << "fixed in both samples";
}
