// The rows that a text gives when it is read as a sheet, as lines, and what is wrong with it.
#ifndef KVA_TESTS_RESULTS_ROWS_H
#define KVA_TESTS_RESULTS_ROWS_H

#include "results/results.h"

#include <string>
#include <string_view>
#include <vector>

namespace kva_test {

using namespace kva;

// "statistic population1 population2 locus replicate value" with "|" between.
std::string asLine(const TidyRow& row);

struct ReadSheet {
    std::vector<std::string> rows; // asLine()
    std::string fault;             // of readSheet()
};

// `path` in the result folder, of a sheet of the catalogue; "*" of its rule is what the path has
// there. In `text` each "|" is a tab.
ReadSheet readAs(std::string_view path, std::string text,
                 const std::vector<std::string>& populations = {});

// The same where nothing is wrong.
std::vector<std::string> rowsOf(std::string_view path, const std::string& text,
                                const std::vector<std::string>& populations = {});

// What is wrong.
std::string faultOf(std::string_view path, const std::string& text,
                    const std::vector<std::string>& populations = {});

} // namespace kva_test

#endif
