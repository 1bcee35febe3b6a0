// The text of the long table.
#include "results/tidy.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace kva;

namespace {

const std::string kHead = "statistic\tpopulation1\tpopulation2\tlocus\treplicate\tvalue\n";

std::string written(const std::vector<TidyRow>& rows) {
    std::ostringstream out;
    {
        TidyWriter table(out);
        for (const TidyRow& row : rows) {
            table.write(row);
        }
    }
    return out.str();
}

} // namespace

TEST(TidyWriter, TableWithoutRowsHasItsHead) {
    EXPECT_EQ(written({}), kHead);
}

TEST(TidyWriter, RowHasAllItsCells) {
    EXPECT_EQ(written({{"fst_pairwise", {"A", "B", "L1", "7"}, "0.5"}}),
              kHead + "fst_pairwise\tA\tB\tL1\t7\t0.5\n");
}

TEST(TidyWriter, EmptyCellsStayEmpty) {
    EXPECT_EQ(written({{"gst", {}, ""}}), kHead + "gst\t\t\t\t\t\n");
}

TEST(TidyWriter, PlainNamesHaveNoQuotes) {
    EXPECT_EQ(written({{"x", {"aZ09_-+."}, "1"}}), kHead + "x\taZ09_-+.\t\t\t\t1\n");
}

TEST(TidyWriter, OtherNamesHaveQuotesAndDoubleTheirOwn) {
    EXPECT_EQ(written({{"x", {"a b", "#", "say \"hi\"", "\""}, "1"}}),
              kHead + "x\t\"a b\"\t\"#\"\t\"say \"\"hi\"\"\"\t\"\"\"\"\t1\n");
}

TEST(TidyWriter, BytesBeyondAsciiStay) {
    EXPECT_EQ(written({{"x", {"\xc3\xa4", "\xff"}, "1"}}),
              kHead + "x\t\"\xc3\xa4\"\t\"\xff\"\t\t\t1\n");
}

TEST(TidyWriter, RowsBeyondTheBufferAreAllThere) {
    const std::vector<TidyRow> rows(10000, {"x", {"A"}, "1"}); // 9 bytes each, 90000 in all
    EXPECT_EQ(written(rows).size(), kHead.size() + 10000 * 9);
}
