#include "imports/lengths.h"

#include "imports/genotypes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kva;
using testing::StartsWith;

namespace {

std::string refusalOf(const std::string& table) {
    try {
        lengthsOfTable(table, {"LocA", "LocB"});
    } catch (const ImportRefusal& refusal) {
        return refusal.what();
    }
    return "";
}

} // namespace

TEST(Lengths, OneWordForAllLoci) {
    EXPECT_EQ(lengthsOfWord("4").repeat, 4);
    EXPECT_EQ(lengthsOfWord("4").rest, -1);
    EXPECT_EQ(lengthsOfWord("unknown").repeat, -1);
    for (const char* word : {"0", "-2", "two", "2.5"}) {
        EXPECT_THROW(lengthsOfWord(word), ImportRefusal) << word;
    }
}

TEST(Lengths, TablesInAnyOrderWithAndWithoutHead) {
    for (const char* table : {"LocB\t4\t80\nLocA\t2\n", "locus repeat rest\nLocB 4 80\nLocA 2 ?\n",
                              "LocB,4,80\r\nLocA,2,unknown\r\n", "LocA;2;\nLocB;4;80\n"}) {
        const std::vector<LocusLengths> lengths = lengthsOfTable(table, {"LocA", "LocB"});
        ASSERT_EQ(lengths.size(), 2U);
        EXPECT_EQ(lengths[0].repeat, 2) << table;
        EXPECT_EQ(lengths[0].rest, -1) << table;
        EXPECT_EQ(lengths[1].repeat, 4) << table;
        EXPECT_EQ(lengths[1].rest, 80) << table;
    }
}

TEST(Lengths, RefusalsTellWhatIsWrong) {
    EXPECT_EQ(refusalOf("LocA 2\n"), "no line for locus 'LocB'");
    EXPECT_EQ(refusalOf("LocA 2\nLocX 2\n"),
              "line 2: 'LocX' is no locus of the file, the nearest one is 'LocA'");
    EXPECT_EQ(refusalOf("LocA 2\nLocA 2\n"), "line 2: locus 'LocA' stands there twice");
    EXPECT_THAT(refusalOf("LocA 0\n"), StartsWith("line 1: '0' is no repeat length"));
    EXPECT_THAT(refusalOf("LocA 2 -1\n"), StartsWith("line 1: '-1' is no rest length"));
    EXPECT_THAT(refusalOf("LocA\n"), StartsWith("line 1: not the cells of a locus"));
}
