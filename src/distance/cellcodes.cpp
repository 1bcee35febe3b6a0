#include "distance/cellcodes.h"

#include <bit>

namespace kva {

namespace {

constexpr uint32_t kMinus = 1000000000;        // begin of the negative values
constexpr uint32_t kKept = uint32_t{1} << 30U; // the first place of a value that is kept

// The two to four digits before the point. Result: the place behind them.
char* writeWhole(char* out, uint32_t whole) {
    if (whole < 100) {
        return writeDigits<2>(out, whole);
    }
    return whole < 1000 ? writeDigits<3>(out, whole) : writeDigits<4>(out, whole);
}

} // namespace

uint32_t CellCodes::encodeOther(double value) {
    constexpr double kBelowTen = 9.5; // one digit before the point, behind the sign
    if (isPositiveBelow(-value, kBelowTen)) {
        return kMinus + unitsOf(-value);
    }
    // Many cells in a row can be those of pairs without a common locus: they share a place.
    if (Others.empty() ||
        std::bit_cast<uint64_t>(Others.back()) != std::bit_cast<uint64_t>(value)) {
        Others.push_back(value);
    }
    return kKept + static_cast<uint32_t>(Others.size() - 1);
}

char* CellCodes::writeOther(char* out, uint32_t code) const {
    if (code >= kKept) {
        constexpr int kWidth = 8;
        *out = ' ';
        return out + 1 + formatFixed(out + 1, Others[code - kKept], kDecimals, kWidth);
    }
    if (code >= kMinus) {
        char* const end = write(out, code - kMinus);
        out[1] = '-';
        return end;
    }
    *out = ' ';
    out = writeWhole(out + 1, code / kUnits);
    *out = '.';
    return writeDigits<kDecimals>(out + 1, code % kUnits);
}

} // namespace kva
