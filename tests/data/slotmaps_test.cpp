#include "data/slotmaps.h"

#include <gtest/gtest.h>

using namespace kva;

TEST(SheetSlot, SlotsOutsideAreMissing) {
    const SlotSheet sheet{{{4, 5}, {6}}};
    EXPECT_EQ(sheetSlot(sheet, 0, 0, 1), 5);
    EXPECT_EQ(sheetSlot(sheet, 0, 1, 1), -1);
    EXPECT_EQ(sheetSlot(sheet, 0, 1, -1), -1);
}
