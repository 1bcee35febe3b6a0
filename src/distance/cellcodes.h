// CellCodes: the cells of a matrix, " %8.5f", as numbers of 32 bits, so that a cell is rounded once
// and written twice, above and below the diagonal.
//
//      0 to 999999999     the value in units of 0.00001
//      10^9 + 0 to 999999 a value with a minus sign, its absolute in the same units
//      from 2^30 on       the place of a value that fits neither
#ifndef KVA_DISTANCE_CELLCODES_H
#define KVA_DISTANCE_CELLCODES_H

#include "output/digits.h"
#include "output/numberformat.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace kva {

class CellCodes {
  public:
    // The room that a cell needs to be written; most take 9 bytes.
    static constexpr std::size_t kRoom = kFixedBufferSize + 1;

    // The code of a cell.
    uint32_t encode(double value) {
        constexpr double kBelowTenThousand = 9999.5; // no more than four digits before the point
        return isPositiveBelow(value, kBelowTenThousand) ? unitsOf(value) : encodeOther(value);
    }

    // Writes the cell of a code to a place with kRoom. Result: the place behind it.
    char* write(char* out, uint32_t code) const {
        if (code >= 10 * kUnits) {
            return writeOther(out, code);
        }
        std::memcpy(out, "  ", 2);
        std::memcpy(out + 2, &kPointed[std::size_t{4} * (code / 1000)], 4);
        return writeDigits<3>(out + 6, code % 1000);
    }

    // Forgets the values that it keeps: codes from before may not be written then.
    void clear() { Others.clear(); }

  private:
    static constexpr int kDecimals = 5;
    static constexpr auto kUnits = static_cast<uint32_t>(powerOfTen(kDecimals)); // that make 1

    static uint32_t unitsOf(double value) {
        return static_cast<uint32_t>(roundFixed(value, double{kUnits}));
    }
    uint32_t encodeOther(double value);
    char* writeOther(char* out, uint32_t code) const;

    std::vector<double> Others; // values by place
};

} // namespace kva

#endif
