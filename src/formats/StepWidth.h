// The step widths of the loci: the unit in which the exports express allele lengths.
#ifndef KVA_FORMATS_STEPWIDTH_H
#define KVA_FORMATS_STEPWIDTH_H

#include "data/allelcount.h"

#include <cstdint>
#include <vector>

namespace kva {

class Datensatz;

// The step width of one locus, in base pairs, at least 1. `pool`: the sorted table of the whole
// data set at the locus. `repeat`: the repeat length, in base pairs; below 1 it is unknown.
// A greedy common divisor of the gaps between neighbouring alleles, not the greatest one: a gap
// that does not fit makes it fall to the largest smaller divisor of that gap. At most `repeat`,
// and at most 10000. With fewer than 2 alleles: 1.
int32_t stepWidth(const AllelCount& pool, int32_t repeat);

// The step widths of all loci, in base pairs, in locus order (entry 0: locus 1); `pool` is entry 0
// of PopAllele, with as many tables as `data` has loci.
std::vector<int32_t> stepWidths(const Datensatz& data, const LocusTables& pool);

// The length, in base pairs, that the exports for msvar, Migrate and Arlequin divide by: the repeat
// length if `repeatSteps` (bit RepeatSteps of GeneralMask) is on and the length is known, else the
// step width.
constexpr int32_t stepDivisor(bool repeatSteps, int32_t repeat, int32_t width) {
    return repeatSteps && repeat >= 1 ? repeat : width;
}

} // namespace kva

#endif
