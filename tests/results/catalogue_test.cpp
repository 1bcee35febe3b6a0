// The catalogue of sheets, and the page that tells it.
#include "results/catalogue.h"

#include "distance/measures.h"
#include "support/support.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>

using namespace kva;

namespace {

// The words in ` of a cell of a table.
std::vector<std::string> wordsInCode(const std::string& cell) {
    std::vector<std::string> words;
    std::istringstream in(cell);
    std::string word;
    for (bool inside = false; std::getline(in, word, '`'); inside = !inside) {
        if (inside) {
            words.push_back(word);
        }
    }
    return words;
}

// Statistic to its sheets, as docs/results-table.md has them: the rows whose first two cells are
// code. A statistic that stands there twice is a failure.
std::map<std::string, std::set<std::string>> pageOfStatistics() {
    std::map<std::string, std::set<std::string>> page;
    std::istringstream in(kva_test::readFile(KVA_RESULTS_PAGE));
    for (std::string line; std::getline(in, line);) {
        std::istringstream cells(line);
        std::string empty;
        std::string statistic;
        std::string sheets;
        std::getline(std::getline(std::getline(cells, empty, '|'), statistic, '|'), sheets, '|');
        if (line.starts_with("| `") && sheets.starts_with(" `")) {
            const auto words = wordsInCode(sheets);
            EXPECT_TRUE(
                page.try_emplace(wordsInCode(statistic).at(0), words.begin(), words.end()).second)
                << statistic;
        }
    }
    return page;
}

std::string pathOf(const SheetRule& rule) {
    return std::string(rule.folder).append(rule.folder.empty() ? "" : "/").append(rule.name);
}

const SheetRule& ruleOf(std::string_view name) {
    const auto rules = catalogue();
    const auto found = std::find_if(rules.begin(), rules.end(),
                                    [name](const SheetRule& rule) { return rule.name == name; });
    EXPECT_NE(found, rules.end()) << name;
    return *found;
}

} // namespace

TEST(Catalogue, PageHasEachStatisticWithItsSheetsAndNoOther) {
    std::map<std::string, std::set<std::string>> expected;
    for (const SheetRule& rule : catalogue()) {
        for (const std::string_view statistic : statisticsOf(rule)) {
            expected[std::string(statistic)].insert(pathOf(rule));
        }
    }
    EXPECT_EQ(pageOfStatistics(), expected);
}

TEST(Catalogue, StatisticsAreInSnakeCase) {
    for (const std::string_view name : catalogueStatistics()) {
        EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz_"), std::string_view::npos)
            << name;
        EXPECT_FALSE(name.empty());
    }
}

TEST(Catalogue, EachStatisticStandsOnce) {
    const auto names = catalogueStatistics();
    EXPECT_EQ(std::set(names.begin(), names.end()).size(), names.size());
}

TEST(Catalogue, EachSheetStandsOnce) {
    std::set<std::string> paths;
    for (const SheetRule& rule : catalogue()) {
        EXPECT_TRUE(paths.insert(pathOf(rule)).second) << pathOf(rule);
    }
}

// Three sheets for each distance, named after its stem in small letters.
TEST(Catalogue, HasTheSheetsOfEachDistance) {
    for (const Measure& measure : allMeasures()) {
        const std::string stem = measure.Stem;
        std::string name = "distance_" + stem;
        std::transform(name.begin(), name.end(), name.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c | ' ') : c;
        });
        EXPECT_EQ(ruleOf(stem + "_Pop.txt").statistic, name);
        EXPECT_EQ(ruleOf(stem + "_Pop_Loci.xls").statistic, name + "_locus");
        EXPECT_EQ(ruleOf(stem + "_Ind.txt").statistic, name + "_individuals");
    }
}

TEST(Catalogue, PartIsWhatTheStarStandsFor) {
    EXPECT_EQ(partOf(ruleOf("SumGrp*.xls"), "SumGrp01.xls"), "01");
    EXPECT_EQ(partOf(ruleOf("*_HetRange.xls"), "a_b_HetRange.xls"), "a_b");
    EXPECT_EQ(partOf(ruleOf("*_HetRange.xls"), "_HetRange.xls"), "");
    EXPECT_EQ(partOf(ruleOf("Var.xls"), "Var.xls"), "");
}

TEST(Catalogue, OtherNamesAreOfNoRule) {
    EXPECT_EQ(partOf(ruleOf("SumGrp*.xls"), "SumGrp01.txt"), std::nullopt);
    EXPECT_EQ(partOf(ruleOf("SumGrp*.xls"), "SumGr.xls"), std::nullopt);
    EXPECT_EQ(partOf(ruleOf("*_HetRange.xls"), "HetRangeMin.xls"), std::nullopt);
    EXPECT_EQ(partOf(ruleOf("Var.xls"), "VarRD.xls"), std::nullopt);
}
