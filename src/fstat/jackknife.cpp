#include "fstat/jackknife.h"

namespace kva {

namespace {

constexpr long kJackknifeFrom = 6;      // slots from which a population is jackknifed
constexpr double kJackknifeShare = 0.1; // of the individuals; JackknifeAnteil has no say here
constexpr double kJackknifeMost = 80.0; // from here on the number left out is fixed
constexpr long kJackknifeLimit = 158;   // slots left out then

} // namespace

long jackknifedSlots(long slots) {
    if (slots < kJackknifeFrom) {
        return slots;
    }
    const long individuals = slots / 2;
    const double r = static_cast<double>(individuals) * kJackknifeShare;
    if (r < 1.0) {
        return slots - 2;
    }
    return slots - (r < kJackknifeMost ? 2 * static_cast<long>(r) : kJackknifeLimit);
}

} // namespace kva
