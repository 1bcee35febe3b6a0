// Rounding of a decimal number as printf rounds it, in doubles alone.
//
// The product p = value x 10^k is a double near the true product x. A half h is a double, too, as
// long as p is below 2^52, and rounding keeps the order: from p > h follows x > h, from p < h
// follows x < h. So p tells the whole number next to x, but where p is a half. There x - h is
// summed from two exact parts, and its sign decides; an x that is the half goes to the even number.
#ifndef KVA_OUTPUT_FIXEDPOINT_H
#define KVA_OUTPUT_FIXEDPOINT_H

#include <bit>
#include <cstdint>

namespace kva {

constexpr double kFixedPointLimit = 0x1p52; // the products are below it

// Whether value x power lies above `half`, the double nearest to it. power: 10^0 to 10^9.
inline bool isAboveHalf(double value, double power, double half, bool oddBelow) {
    constexpr uint64_t kLowBits = (uint64_t{1} << 27U) - 1;
    // 26 and 27 bits; times the 21 odd bits of a power either is exact, and so is the difference
    // of two neighbours.
    const auto high = std::bit_cast<double>(std::bit_cast<uint64_t>(value) & ~kLowBits);
    const double low = value - high;
    const double above = (high * power - half) + low * power; // of the right sign
    return above > 0.0 || (above == 0.0 && oddBelow);
}

// value x power as a whole number, rounded exactly, halves to even. value: at least 0; power: 10^0
// to 10^9; their product: below kFixedPointLimit.
inline uint64_t roundFixed(double value, double power) {
    const double product = value * power;
    const auto below = static_cast<int64_t>(product);
    const double rest = product - static_cast<double>(below);
    if (rest == 0.5) [[unlikely]] {
        const bool up = isAboveHalf(value, power, product, below % 2 == 1);
        return static_cast<uint64_t>(below) + (up ? 1 : 0);
    }
    return static_cast<uint64_t>(below) + (rest > 0.5 ? 1 : 0);
}

} // namespace kva

#endif
