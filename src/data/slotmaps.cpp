#include "data/slotmaps.h"

namespace kva {

long sheetSlot(const SlotSheet& sheet, int32_t locus, int32_t pop, int32_t slot) {
    const std::vector<long>& slots = sheet[locus][pop];
    return slot >= 0 && slot < static_cast<long>(slots.size()) ? slots[slot] : -1;
}

} // namespace kva
