// Maps of slots for shuffles and thinned data sets. Loci, populations and slots count from 0.
#ifndef KVA_DATA_SLOTMAPS_H
#define KVA_DATA_SLOTMAPS_H

#include <array>
#include <cstdint>
#include <vector>

namespace kva {

// A drawn sample: for place c, [0][c] is the source slot and [1][c] its population.
// Slot -1: nothing was dealt to the place, or the source has no such slot; it reads
// as missing data.
using SampleMap = std::array<std::vector<int32_t>, 2>;

// Redirects slots before a shuffle: [locus][population][slot] is the source slot in
// the same population; -1: the slot counts as missing.
using SlotSheet = std::vector<std::vector<std::vector<long>>>;

// The source of `slot` in a sheet; -1 if it counts as missing, or for a slot outside the
// population. The sheet has the locus and the population.
long sheetSlot(const SlotSheet& sheet, int32_t locus, int32_t pop, int32_t slot);

} // namespace kva

#endif
