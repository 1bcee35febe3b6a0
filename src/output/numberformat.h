// Decimal output of doubles, byte for byte what printf's "%*.*f" prints.
#ifndef KVA_OUTPUT_NUMBERFORMAT_H
#define KVA_OUTPUT_NUMBERFORMAT_H

#include <cstddef>

namespace kva {

// Room for any double with up to 9 decimals and a width of at most 32.
constexpr std::size_t kFixedBufferSize = 352;

// Writes `value` with `precision` decimals (0 to 9), padded on the left with
// blanks to `width` (0 to 32), into `buffer` (at least kFixedBufferSize bytes).
// Not finite values come out as "inf", "-inf", "nan" and "-nan".
// Result: the number of bytes; no zero byte is added.
std::size_t formatFixed(char* buffer, double value, int precision, int width = 0);

} // namespace kva

#endif
