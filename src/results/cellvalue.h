// Cells of the sheets as values of the long table.
#ifndef KVA_RESULTS_CELLVALUE_H
#define KVA_RESULTS_CELLVALUE_H

#include <optional>
#include <string_view>

namespace kva {

// The value of a cell: the number without the blanks in front; "NaN", "Inf" or "-Inf", as R reads
// them; empty for "n.d.", "n.s." and -32767 with or without decimals. Nothing where the cell is
// none of these.
std::optional<std::string_view> cellValue(std::string_view cell);

// Whether a text is a whole number without a sign.
bool isWholeNumber(std::string_view text);

// What is no value in some sheets alone. They take a value that cellValue() gave.
bool isNegative(std::string_view value);           // a number with a sign, but not -0.000000
bool isUnreachedLimit(std::string_view value);     // 100000 or -100000
bool isUnreachedReference(std::string_view value); // 500000

} // namespace kva

#endif
