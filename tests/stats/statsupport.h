// What the statistics tests share: tables made by hand, and sheets as cells.
#ifndef KVA_TESTS_STATS_STATSUPPORT_H
#define KVA_TESTS_STATS_STATSUPPORT_H

#include "data/allelcount.h"
#include "support/datasets.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace kva_test {

using namespace kva;

// A sorted table that was fed with `Anzahl` copies of each allele, one allele after the other;
// `haploid` as in AddAllel.
AllelCount tableOf(const std::vector<AllelEintrag>& rows, int haploid = 0);

// A sheet: its lines, cut into cells at the tabs.
std::vector<std::vector<std::string>> cellsOf(const std::string& sheet);

// Cell `column` (from 0: the label) of the first line that begins with the cell `label`. Throws
// if there is none.
std::string cellOf(const std::string& sheet, const std::string& label, std::size_t column);

// "%f", for expectations worked out as numbers.
std::string fixed6(double value);

} // namespace kva_test

#endif
