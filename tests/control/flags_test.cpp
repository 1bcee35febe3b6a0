#include "control/flags.h"

#include "control/CMenu.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

using namespace kva;

TEST(Flags, EachBitOfAWordHasOneRow) {
    std::set<std::pair<FlagWord, uint32_t>> seen;
    for (const Flag& flag : allFlags()) {
        EXPECT_TRUE(seen.emplace(flag.Word, flag.Bit).second) << flag.Bit;
        EXPECT_EQ(&flagOf(flag.Word, flag.Bit), &flag);
    }
}

TEST(Flags, AKeyOfAMenuMeansOneThing) {
    std::set<std::pair<int32_t, char>> seen;
    const auto take = [&seen](int32_t menu, char key) {
        EXPECT_TRUE(seen.emplace(menu, key).second) << "menu " << menu << ", key " << key;
    };
    for (const Flag& flag : allFlags()) {
        for (const char key : flag.Keys) {
            take(flag.MenuNumber, key);
        }
    }
    for (const Measure& measure : allMeasures()) {
        take(Menu::DistanceSettings, measure.Key);
    }
    for (const Export& row : allExports()) {
        take(Menu::Conversion, row.Key);
    }
}

TEST(Flags, NoKeywordHidesALaterOneOfItsOption) {
    const std::span<const Flag> flags = allFlags();
    for (std::size_t i = 0; i < flags.size(); ++i) {
        for (std::size_t k = i + 1; k < flags.size(); ++k) {
            if (flags[i].Option.empty() || flags[i].Option != flags[k].Option) {
                continue;
            }
            for (const std::string_view early : flags[i].On) {
                for (const std::string_view late : flags[k].On) {
                    EXPECT_FALSE(!early.empty() && late.starts_with(early)) << early << " " << late;
                }
            }
        }
    }
}

TEST(Flags, EachWordIsAFieldOfTheSettings) {
    AnalyseSettings settings{1, 2, 4, 8, 16};
    EXPECT_EQ(settings.*maskOf(FlagWord::General), 1U);
    EXPECT_EQ(settings.*maskOf(FlagWord::Distances), 2U);
    EXPECT_EQ(settings.*maskOf(FlagWord::FStatistics), 8U);
    EXPECT_EQ(settings.*maskOf(FlagWord::HetRange), 16U);
}
