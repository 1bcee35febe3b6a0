// Look-ups, in sheets that are written here.
#include "api/Result.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>

using namespace kva::api;

using testing::ElementsAre;
using testing::NanSensitiveDoubleEq;

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// Three populations, the last two of one name; a matrix of F-statistics and two replicates of a
// distance.
Result threePopulations() {
    auto content = std::make_shared<Result::Content>();
    content->Sheets = {
        {"Single_data/Hetexp.xls",
         "\tL1\tL2\t\nTotal\t0.5\tn.d.\t\nA\t0.25\t1\t\nB\t0.75\t0\t\nB\t0.125\t0\t\n"},
        {"F-Statistic/FST_WC84.txt", "3\n         A  0.00000  0.10000  0.20000\n"
                                     "         B  0.10000  0.00000  -32767.00000\n"
                                     "         B  0.20000  -32767.00000  0.00000\n\n"},
        {"Distance_data/DAN_Pop.txt", "3\n         A  0.00000  0.10000  0.20000\n"
                                      "         B  0.10000  0.00000  0.30000\n"
                                      "         B  0.20000  0.30000  0.00000\n\n"
                                      "3\n         A  0.00000  0.40000  0.50000\n"
                                      "         B  0.40000  0.00000  0.60000\n"
                                      "         B  0.50000  0.60000  0.00000\n\n"}};
    const auto test = [&](const char* first, const char* second, double p) {
        content->Tests.push_back(
            {"fst_pairwise", first, second, "", 0, 9, false, p, 0, kNone, kNone});
    };
    test("A", "B", 0.1);
    test("A", "B", 0.2);
    test("B", "B", kNone);
    content->Tests.push_back({"fst_global", "", "", "", 0, 9, false, 0.5, 0, kNone, kNone});
    return Result(content);
}

} // namespace

TEST(Result, RowsOfAStatisticAreThoseOfItsSheet) {
    const auto rows = threePopulations().rows("heterozygosity_expected");
    ASSERT_EQ(rows.size(), 8U);
    EXPECT_EQ(rows[0].population1, "Total");
    EXPECT_EQ(rows[1].locus, "L2");
    EXPECT_TRUE(std::isnan(rows[1].value)); // n.d.
    EXPECT_EQ(rows[2].value, 0.25);
}

TEST(Result, RowsAreThoseOfAllSheets) {
    EXPECT_EQ(threePopulations().rows().size(), 8U + 3U + 6U);
}

TEST(Result, RowsOfAnUnknownStatisticAreNone) {
    EXPECT_TRUE(threePopulations().rows("fst").empty());
}

TEST(Result, ValueIsThatOfThePopulationAndLocus) {
    const Result result = threePopulations();
    EXPECT_EQ(result.value("heterozygosity_expected", "A", "L2"), 1);
    EXPECT_EQ(result.value("heterozygosity_expected", "B", "L1"), 0.75); // the first of two
    EXPECT_TRUE(std::isnan(result.value("heterozygosity_expected", "Total", "L2")));
    EXPECT_TRUE(std::isnan(result.value("heterozygosity_expected", "C", "L1")));
    EXPECT_TRUE(std::isnan(result.value("heterozygosity_expected", "A")));
}

TEST(Result, MatrixIsSymmetricAlsoWithNamesThatComeTwice) {
    const Matrix fst = threePopulations().fst();
    EXPECT_THAT(fst.names, ElementsAre("A", "B", "B"));
    EXPECT_THAT(fst.cells, testing::Pointwise(NanSensitiveDoubleEq(),
                                              {0.0, 0.1, 0.2, 0.1, 0.0, kNone, 0.2, kNone, 0.0}));
    EXPECT_EQ(fst.at(2, 0), 0.2);
}

TEST(Result, MatrixOfDistancesIsThatOfTheFirstReplicate) {
    EXPECT_THAT(threePopulations().distances("DAN").cells,
                ElementsAre(0, 0.1, 0.2, 0.1, 0, 0.3, 0.2, 0.3, 0));
}

TEST(Result, MatrixOfAReplicateIsThatOfItsNumber) {
    EXPECT_THAT(threePopulations().matrix("distance_dan", "2", 1).cells,
                ElementsAre(1, 0.4, 0.5, 0.4, 1, 0.6, 0.5, 0.6, 1));
}

TEST(Result, MatrixOfWhatWasNotComputedIsEmpty) {
    EXPECT_EQ(threePopulations().distances("POSA").size(), 0U);
    EXPECT_EQ(threePopulations().pValues("fit_pairwise").size(), 0U);
}

TEST(Result, PValuesComeFromTheTestsOfPairs) {
    const Matrix p = threePopulations().pValues();
    EXPECT_THAT(p.names, ElementsAre("A", "B", "B"));
    EXPECT_THAT(p.cells, testing::Pointwise(NanSensitiveDoubleEq(), {kNone, 0.1, 0.2, 0.1, kNone,
                                                                     kNone, 0.2, kNone, kNone}));
}
