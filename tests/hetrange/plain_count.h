// The counts of the heterozygosity range beside an AllelCount that takes entry by entry.
#ifndef KVA_TESTS_HETRANGE_PLAIN_COUNT_H
#define KVA_TESTS_HETRANGE_PLAIN_COUNT_H

#include "hetrange/HetReplika.h"

#include <cstdint>
#include <span>
#include <string>

namespace kva_test {

// Adds a row to the empty table of population `pop` (from 1) at a locus. Result: the statistics
// that are others than those of an AllelCount of the same entries, by name; empty if there are
// none. Doubles are compared as they are. seed: of the random stream, for both.
std::string countDifference(kva::HetTable& table, const kva::LociObj& locus, int pop,
                            std::span<const int32_t> row, bool randomDiscard, long seed);

} // namespace kva_test

#endif
