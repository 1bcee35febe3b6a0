#include "distance/needs.h"

#include "data/allelcount.h"
#include "distance/lowertriangle.h"
#include "distance/samples.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::size_t kMirrorBytes = std::size_t{160} << 20U; // of matrices written side by side
constexpr uint64_t kLarge = uint64_t{1} << 28U;               // bytes of memory or disk
constexpr uint64_t kCellBytes = 9;                            // of a cell in its file

// What a sample takes at a locus: a field of each column of LocusSamples and two shares.
constexpr uint64_t kSampleBytes =
    7 * sizeof(double) + sizeof(std::size_t) + 2 * sizeof(AlleleShare);

// The same of its allele table.
constexpr uint64_t kTableBytes = sizeof(AllelCount);

std::string megabytes(uint64_t bytes) {
    constexpr uint64_t kMega = 1000000;
    return std::to_string(bytes / kMega) + " MB";
}

} // namespace

std::size_t matricesAtOnce(std::size_t rows, std::size_t measures) {
    const std::size_t room = kMirrorBytes / (LowerTriangle::bytes(rows) + 1);
    return std::min(std::max<std::size_t>(room, 1), measures);
}

DistanceNeeds needsOf(const DistanceExtent& extent) {
    const uint64_t cells = uint64_t{extent.Rows} * extent.Rows;
    const uint64_t matrices = matricesAtOnce(extent.Rows, extent.Measures);
    const uint64_t ofSample = kSampleBytes + (extent.CountsTables ? kTableBytes : 0);
    return {matrices * LowerTriangle::bytes(extent.Rows) +
                uint64_t{extent.Rows} * extent.Loci * ofSample,
            cells * kCellBytes * extent.Measures * extent.Replicates};
}

bool isLarge(const DistanceNeeds& needs) {
    return std::max(needs.Memory, needs.Disk) >= kLarge;
}

std::string refusal(const char* what, const DistanceNeeds& needs, const Room& room) {
    if (needs.Memory <= room.Memory && needs.Disk <= room.Disk) {
        return {};
    }
    return std::string(what) + " are not computed: they take " + megabytes(needs.Memory) +
           " of memory, where " + megabytes(room.Memory) + " are left, and " +
           megabytes(needs.Disk) + " on the disk, where " + megabytes(room.Disk) + " are left";
}

} // namespace kva
