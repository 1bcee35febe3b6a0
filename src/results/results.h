// Reads a result folder of the program and gives all its numbers one by one.
#ifndef KVA_RESULTS_RESULTS_H
#define KVA_RESULTS_RESULTS_H

#include "output/resultfolder.h"
#include "results/sheetreading.h"
#include "results/tidy.h"

#include <filesystem>
#include <istream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// Hands the rows of all sheets of a result folder to `sink`: sheet by sheet in the order of
// catalogue(), those of one rule by name, each in the order of its lines. A sheet that is not there
// gives none: its pass was not run. Files that no rule names are passed over. Memory: a line of a
// sheet; a table where it is square; the names.
// Result: a line for each sheet that is not as the program writes it, and for a folder that is
// none or has no sheet, with the path in the folder, the line and what is wrong. The rows up to
// there are handed out, the later ones of the sheet are not.
std::vector<std::string> readResults(const std::filesystem::path& folder, const RowSink& sink);

// The same for a result folder that lies in memory.
// statistic: only the sheets that have it are read; empty: all.
std::vector<std::string> readResults(const ResultTexts& texts, const RowSink& sink,
                                     std::string_view statistic = {});

// The same for the text of a single sheet. populations: names in their order, or empty. part: what
// "*" in the rule's name stands for. Result: "line 3: ..."; empty where all is well.
std::string readSheet(std::istream& in, const SheetRule& rule,
                      std::span<const std::string> populations, std::string_view part,
                      const RowSink& sink);

} // namespace kva

#endif
