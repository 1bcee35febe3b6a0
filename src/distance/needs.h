// What a pass of the distances takes, told before it begins: matrices of very many individuals can
// take more memory or disk than the machine has.
#ifndef KVA_DISTANCE_NEEDS_H
#define KVA_DISTANCE_NEEDS_H

#include "base/machine.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kva {

// The size of a pass.
struct DistanceExtent {
    std::size_t Rows = 0;       // of each matrix: samples
    std::size_t Loci = 0;       // of each sample
    std::size_t Measures = 0;   // matrices of a replicate
    std::size_t Replicates = 1; // of the bootstrap, at least 1
    bool CountsTables = false;  // an allele table of each sample and locus is made first
};

// How many matrices of so many rows are written side by side; their cells wait in memory.
std::size_t matricesAtOnce(std::size_t rows, std::size_t measures);

// What a pass takes at least, in bytes.
struct DistanceNeeds {
    uint64_t Memory; // cells that wait, samples, allele tables
    uint64_t Disk;   // cells of the matrices
};
DistanceNeeds needsOf(const DistanceExtent& extent);

// Why a pass cannot take place, as a line without its end; empty if there is room. what: its
// samples, as the line begins. Needs that any machine meets are not looked at: the system is not
// asked for those.
std::string refusal(const char* what, const DistanceNeeds& needs, const Room& room);
bool isLarge(const DistanceNeeds& needs); // whether the system is asked

} // namespace kva

#endif
