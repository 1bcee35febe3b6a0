#include "base/machine.h"

#include <gtest/gtest.h>
#include <limits>
#include <sstream>

using namespace kva;

namespace {

constexpr uint64_t kUnknown = std::numeric_limits<uint64_t>::max();

uint64_t availableIn(const char* text) {
    std::istringstream meminfo(text);
    return availableMemory(meminfo);
}

} // namespace

TEST(AvailableMemory, IsWhatIsAvailableAndFreeSwap) {
    // (3000 + 500) x 1024
    EXPECT_EQ(availableIn("MemTotal:       8000 kB\n"
                          "MemFree:        1000 kB\n"
                          "MemAvailable:   3000 kB\n"
                          "SwapTotal:       900 kB\n"
                          "SwapFree:        500 kB\n"),
              3584000U);
}

TEST(AvailableMemory, LinesWithoutAUnitAreReadOver) {
    EXPECT_EQ(availableIn("HugePages_Total:   0\nMemAvailable:   3 kB\n"), 3072U);
}

TEST(AvailableMemory, IsUnknownWithoutItsLine) {
    EXPECT_EQ(availableIn(""), kUnknown);
    EXPECT_EQ(availableIn("SwapFree:        500 kB\n"), kUnknown);
}

TEST(RoomLeft, IsToldOfTheRootFolder) {
    const Room room = roomLeft("/");
    EXPECT_GT(room.Memory, 0U);
    EXPECT_LT(room.Disk, kUnknown);
}

TEST(RoomLeft, OfAFolderThatIsNotThereIsUnknown) {
    EXPECT_EQ(roomLeft("/no such folder").Disk, kUnknown);
}
