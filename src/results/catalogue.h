// Which sheets the long table is made of.
#ifndef KVA_RESULTS_CATALOGUE_H
#define KVA_RESULTS_CATALOGUE_H

#include "results/sheetreading.h"

#include <span>
#include <string_view>
#include <vector>

namespace kva {

// All sheets, in the order in which they are read.
std::span<const SheetRule> catalogue();

// The statistics of a sheet.
std::vector<std::string_view> statisticsOf(const SheetRule& rule);

// All statistics, each once, in the order of the sheets.
std::vector<std::string_view> catalogueStatistics();

// What "*" of a rule's name stands for in a file name; nothing where the name is not of the rule.
std::optional<std::string_view> partOf(const SheetRule& rule, std::string_view fileName);

} // namespace kva

#endif
