// The sheets read back: the first byte chooses a sheet, one of each layout, the second how many
// populations are known, and the others are its text.
#include "harness.h"

#include "results/catalogue.h"
#include "results/cellvalue.h"
#include "results/results.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

using namespace kva;

namespace {

constexpr std::string_view kSheets[] = {
    "Allelecount.xls",
    "Hetexp.xls",
    "HetRangeMin.xls",
    "*_AlleleRange.xls",
    "AllelicRichness.xls",
    "GST.xls",
    "Summary.xls",
    "SumGrp*.xls",
    "FST_WC84.txt",
    "DAN_Pop.txt",
    "DAN_Ind.txt",
    "DAN_Pop_Loci.xls",
    "Fst_per_locus.xls",
    "FST_WC84_UG.xls",
    "FST_WC84-pValue.xls",
    "Beta_POP.xls",
    "LocusFHeterogeneity.xls",
    "GlobFst.xls",
    "Errorreport.txt",
};

const SheetRule& ruleOf(std::string_view name) {
    const auto rules = catalogue();
    const auto found = std::find_if(rules.begin(), rules.end(),
                                    [name](const SheetRule& rule) { return rule.name == name; });
    kva_fuzz::require(found != rules.end(), "the sheet is of the catalogue");
    return *found;
}

// What holds for each row, whatever the sheet.
void holdRow(const TidyRow& row, const std::vector<std::string_view>& statistics) {
    kva_fuzz::require(std::find(statistics.begin(), statistics.end(), row.statistic) !=
                          statistics.end(),
                      "the statistic is one of the sheet");
    const bool word =
        row.value.empty() || row.value == "NaN" || row.value == "Inf" || row.value == "-Inf";
    kva_fuzz::require(word || cellValue(row.value) == row.value, "the value is a number or none");
    for (const std::string_view name :
         {row.place.population1, row.place.population2, row.place.locus, row.place.replicate}) {
        kva_fuzz::require(name.find_first_of("\t\n") == std::string_view::npos,
                          "a name is of one cell");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const SheetRule& rule = ruleOf(kSheets[data[0] % std::size(kSheets)]);
    const std::vector<std::string_view> statistics = statisticsOf(rule);
    const std::vector<std::string> populations = {"North", "South", "Long name of it", "North"};
    const std::span known(populations.data(), data[1] % (populations.size() + 1));
    std::istringstream in(std::string(reinterpret_cast<const char*>(data) + 2, size - 2));
    std::ostringstream out;
    TidyWriter table(out);
    const std::string fault = readSheet(in, rule, known, "North", [&](const TidyRow& row) {
        holdRow(row, statistics);
        table.write(row);
    });
    kva_fuzz::require(fault.empty() || fault.starts_with("line "), "a fault tells its line");
    return 0;
}
