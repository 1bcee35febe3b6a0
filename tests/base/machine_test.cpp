#include "base/machine.h"

#include "support/support.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

using namespace kva;
using namespace kva_test;

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

namespace {

// A file below a folder, with the folders up to it.
void put(const TempFolder& root, const std::string& file, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(root / file).parent_path());
    writeFile(root / file, text);
}

} // namespace

TEST(GroupMemoryLeft, IsTheLeastOverTheGroupAndThoseAbove) {
    const TempFolder root;
    put(root, "proc/self/cgroup", "0::/job/step\n");
    put(root, "sys/fs/cgroup/job/memory.max", "1000\n");
    put(root, "sys/fs/cgroup/job/memory.current", "400\n");
    put(root, "sys/fs/cgroup/job/memory.stat", "anon 250\nfile 150\ninactive_file 50\n");
    put(root, "sys/fs/cgroup/job/step/memory.max", "max\n");
    put(root, "sys/fs/cgroup/job/step/memory.current", "400\n");
    EXPECT_EQ(groupMemoryLeft(root.path()), 650U); // 1000 - (400 - 50)
    put(root, "sys/fs/cgroup/job/step/memory.max", "500\n");
    EXPECT_EQ(groupMemoryLeft(root.path()), 100U); // 500 - 400
    put(root, "sys/fs/cgroup/job/step/memory.max", "300\n");
    EXPECT_EQ(groupMemoryLeft(root.path()), 0U);
}

TEST(GroupMemoryLeft, OfTheFirstVersionStandsInItsOwnFolder) {
    const TempFolder root;
    put(root, "proc/self/cgroup", "5:cpu,memory:/docker/1\n4:cpuset:/\n0::/\n");
    put(root, "sys/fs/cgroup/memory/memory.limit_in_bytes", "9223372036854771712\n");
    EXPECT_EQ(groupMemoryLeft(root.path()), 9223372036854771712U);
    put(root, "sys/fs/cgroup/memory/docker/1/memory.limit_in_bytes", "1000\n");
    put(root, "sys/fs/cgroup/memory/docker/1/memory.usage_in_bytes", "900\n");
    put(root, "sys/fs/cgroup/memory/docker/1/memory.stat", "cache 7\ntotal_inactive_file 300\n");
    EXPECT_EQ(groupMemoryLeft(root.path()), 400U); // 1000 - (900 - 300)
}

TEST(GroupMemoryLeft, IsUnlimitedWithoutGroups) {
    const TempFolder root;
    EXPECT_EQ(groupMemoryLeft(root.path()), kUnknown);
    put(root, "proc/self/cgroup", "no line of a group\n0::/job\n");
    EXPECT_EQ(groupMemoryLeft(root.path()), kUnknown);
}

TEST(RoomLeft, IsToldOfTheRootFolder) {
    const Room room = roomLeft("/");
    EXPECT_GT(room.Memory, 0U);
    EXPECT_LT(room.Disk, kUnknown);
}

TEST(RoomLeft, OfAFolderThatIsNotThereIsUnknown) {
    EXPECT_EQ(roomLeft("/no such folder").Disk, kUnknown);
}
