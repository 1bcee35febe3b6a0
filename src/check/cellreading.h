// What stands in a cell of a data file where a number is wanted, beside the number that the reader
// takes from it.
#ifndef KVA_CHECK_CELLREADING_H
#define KVA_CHECK_CELLREADING_H

#include <cstdint>
#include <string_view>

namespace kva {

enum class CellContent {
    Empty,
    Number,       // a whole number, as it is read
    LeadingZeros, // 007
    Negative,     // -9
    ZeroMissing,  // a blank or a sign in front of 0, which is read as missing
    TooLarge,     // beyond 32 bits
    Decimal,      // 104.5 or 104,5, but not 104.0
    TwoAlleles,   // 104/106, 104,106, 104106
    Letters,      // 104a
    Quoted,       // "104"
    Word,         // NA, ?, - and other words for a missing value
    Text,         // any other text without a number in front
};

struct CellReading {
    CellContent kind;
    int32_t value; // what the reader takes; negative: missing
};

// `cell`: without tab and line end.
CellReading readCell(std::string_view cell);

} // namespace kva

#endif
