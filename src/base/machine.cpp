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

// Where a version of control groups tells of memory.
struct GroupFiles {
    const char* Folder;    // of the groups
    const char* Limit;     // in bytes, or a word for none
    const char* Usage;     // in bytes
    const char* Droppable; // name of the pages of files in "memory.stat"
};

constexpr GroupFiles kFirstVersion = {"sys/fs/cgroup/memory", "memory.limit_in_bytes",
                                      "memory.usage_in_bytes", "total_inactive_file"};
constexpr GroupFiles kSecondVersion = {"sys/fs/cgroup", "memory.max", "memory.current",
                                       "inactive_file"};

// The number in a file; `otherwise` where there is none.
uint64_t numberIn(const std::string& file, uint64_t otherwise) {
    uint64_t number = 0;
    return std::ifstream(file) >> number ? number : otherwise;
}

// The number behind a name in a file of such rows; 0 where it is not there.
uint64_t numberBehind(const std::string& name, const std::string& file) {
    std::ifstream rows(file);
    std::string word;
    uint64_t number = 0;
    while (rows >> word >> number) {
        if (word == name) {
            return number;
        }
    }
    return 0;
}

uint64_t leftInGroup(const GroupFiles& files, const std::string& group) {
    const uint64_t limit = numberIn(group + "/" + files.Limit, kUnknown);
    const uint64_t usage = numberIn(group + "/" + files.Usage, 0);
    const uint64_t droppable = numberBehind(files.Droppable, group + "/memory.stat");
    const uint64_t taken = usage - std::min(usage, droppable);
    return limit == kUnknown ? kUnknown : limit - std::min(limit, taken);
}

// The least of a group, "/a/b", and those above it.
uint64_t leftUpwards(const GroupFiles& files, const std::string& root, std::string group) {
    const std::string folder = root + "/" + files.Folder;
    uint64_t left = leftInGroup(files, folder);
    while (group.size() > 1) {
        left = std::min(left, leftInGroup(files, folder + group));
        group.erase(group.rfind('/'));
    }
    return left;
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

uint64_t groupMemoryLeft(const std::string& root) {
    std::ifstream groups(root + "/proc/self/cgroup");
    uint64_t left = kUnknown;
    for (std::string line; std::getline(groups, line);) { // "4:memory:/a/b", "0::/a/b"
        const std::size_t controllers = line.find(':') + 1;
        const std::size_t group = line.find(':', controllers) + 1;
        if (controllers == 0 || group == 0) {
            continue;
        }
        const std::string names = "," + line.substr(controllers, group - 1 - controllers) + ",";
        if (names == ",,") {
            left = std::min(left, leftUpwards(kSecondVersion, root, line.substr(group)));
        } else if (names.find(",memory,") != std::string::npos) {
            left = std::min(left, leftUpwards(kFirstVersion, root, line.substr(group)));
        }
    }
    return left;
}

Room roomLeft(const std::string& folder) {
    std::ifstream meminfo("/proc/meminfo");
    return {std::min({availableMemory(meminfo), addressesLeft(), groupMemoryLeft("/")}),
            diskLeft(folder)};
}

} // namespace kva
