#include "formats/StepWidth.h"

#include "data/lociclass.h"

#include <algorithm>

namespace kva {

namespace {

constexpr int32_t kStart = 10000; // step width before the first gap

// The largest divisor of `gap` below `bound`, at least 1.
int32_t divisorBelow(int32_t gap, int32_t bound) {
    int32_t u = bound - 1;
    if (u < 2) {
        return 1;
    }
    while (gap % u != 0) {
        --u;
    }
    return u;
}

// What the gap between two neighbouring alleles contributes, given the step width so far.
int32_t stepOfGap(int32_t gap, int32_t step, int32_t repeat) {
    if (step >= kStart || gap % step == 0) {
        return gap;
    }
    if (repeat < 1) {
        return step < gap ? divisorBelow(gap, step) : gap;
    }
    return gap % repeat != 0 ? divisorBelow(gap, std::min(repeat, step)) : gap;
}

} // namespace

int32_t stepWidth(const AllelCount& pool, int32_t repeat) {
    if (pool.AnzAllele < 2) {
        return 1;
    }
    int32_t step = kStart;
    int32_t previous = pool.MinAllel;
    for (int32_t x = 1; x < pool.AnzAllele; ++x) {
        const int32_t allele = pool.Allele[x].Nummer;
        step = std::min(step, stepOfGap(allele - previous, step, repeat));
        previous = allele;
    }
    return repeat < 1 ? step : std::min(repeat, step);
}

std::vector<int32_t> stepWidths(const Datensatz& data, const LocusTables& pool) {
    std::vector<int32_t> widths;
    widths.reserve(data.Loci.size());
    for (std::size_t l = 0; l < data.Loci.size(); ++l) {
        widths.push_back(stepWidth(pool[l], data.Loci[l].LociRepeatMuster));
    }
    return widths;
}

} // namespace kva
