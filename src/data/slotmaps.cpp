#include "data/slotmaps.h"

namespace kva {

long sheetSlot(const SlotSheet& sheet, int32_t locus, int32_t pop, int32_t slot) {
    const std::vector<long>& slots =
        sheet[static_cast<std::size_t>(locus)][static_cast<std::size_t>(pop)];
    return slot >= 0 && slot < static_cast<long>(slots.size())
               ? slots[static_cast<std::size_t>(slot)]
               : -1;
}

} // namespace kva
