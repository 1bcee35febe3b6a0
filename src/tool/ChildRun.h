// A piece of work in a process of its own, so that it can be ended at any time, and what it changes
// of the process (current folder, console) ends with it.
#ifndef KVA_TOOL_CHILDRUN_H
#define KVA_TOOL_CHILDRUN_H

#include <functional>

namespace kva {

// How a piece of work ended.
struct ChildEnd {
    int Status = 0;  // that it gave, from 0 to 255; only without the two signals
    int Signal = 0;  // that ended it by itself, as a crash or want of memory; 0: none
    int Stopped = 0; // SIGINT, SIGTERM or SIGHUP that came to this process and ended it; 0: none
};

// Does `work` in a child process, which must have no other thread, and waits for it. SIGINT,
// SIGTERM and SIGHUP end it at once. Throws std::system_error if there is no such process to be
// had.
ChildEnd runInChild(const std::function<int()>& work);

} // namespace kva

#endif
