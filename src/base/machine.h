// What is left on the machine: asked before a pass that takes much begins.
#ifndef KVA_BASE_MACHINE_H
#define KVA_BASE_MACHINE_H

#include <cstdint>
#include <iosfwd>
#include <string>

namespace kva {

// In bytes; the largest number where the system does not tell.
struct Room {
    uint64_t Memory; // what the process can still get
    uint64_t Disk;   // what this user can still write
};

// The room for files in a folder, and for the memory of this process: what the system has
// available, swap included, and no more than the limits of its address space and of its control
// groups leave, by which containers and schedulers hold it.
Room roomLeft(const std::string& folder);

// The memory that is available, by the lines "MemAvailable" and "SwapFree" of a file like
// /proc/meminfo.
uint64_t availableMemory(std::istream& meminfo);

// What the control groups of the process leave it, of both versions (Linux): the least over its
// group and those above, where pages of files that can be dropped do not count as taken. root: the
// folder that has proc and sys, "/" on a machine. The largest number without a limit.
uint64_t groupMemoryLeft(const std::string& root);

} // namespace kva

#endif
