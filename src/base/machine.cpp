#include "base/machine.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <limits>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace kva {

namespace {

constexpr uint64_t kUnknown = std::numeric_limits<uint64_t>::max();

// What the limit of the address space leaves.
uint64_t addressesLeft() {
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return kUnknown;
    }
    uint64_t pages = 0; // of the process
    std::ifstream("/proc/self/statm") >> pages;
    const uint64_t used = pages * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
    return limit.rlim_cur - std::min<uint64_t>(used, limit.rlim_cur);
}

uint64_t diskLeft(const std::string& folder) {
    struct statvfs told {};
    return statvfs(folder.c_str(), &told) == 0 ? uint64_t{told.f_bavail} * told.f_frsize : kUnknown;
}

} // namespace

uint64_t availableMemory(std::istream& meminfo) {
    constexpr uint64_t kKilo = 1024;
    uint64_t available = kUnknown;
    uint64_t swap = 0;
    std::string name;
    uint64_t size = 0;
    std::string unit;
    while (meminfo >> name >> size && std::getline(meminfo, unit)) {
        if (name == "MemAvailable:") {
            available = size * kKilo;
        } else if (name == "SwapFree:") {
            swap = size * kKilo;
        }
    }
    return available == kUnknown ? kUnknown : available + swap;
}

Room roomLeft(const std::string& folder) {
    std::ifstream meminfo("/proc/meminfo");
    return {std::min(availableMemory(meminfo), addressesLeft()), diskLeft(folder)};
}

} // namespace kva
