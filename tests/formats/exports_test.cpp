#include "formats/exports.h"

#include "base/settings.h"

#include <gtest/gtest.h>

#include <string>

using namespace kva;

TEST(Exports, StandInTheOrderOfTheLogWithTheirKeysAndKeywords) {
    std::string keys;
    std::string words;
    uint32_t bits = 0;
    for (const Export& row : allExports()) {
        keys += row.Key;
        words += std::string(row.Keyword) + " ";
        EXPECT_EQ(bits & row.Bit, 0U);
        bits |= row.Bit;
    }
    EXPECT_EQ(keys, "1324");
    EXPECT_EQ(words, "msvar arlequin migrate im ");
    EXPECT_EQ(bits, GeneralBit::Msvar | GeneralBit::Arlequin | GeneralBit::Migrate |
                        GeneralBit::IMFormat);
}
