// The standard streams of a process.
#ifndef KVA_BASE_STANDARDSTREAMS_H
#define KVA_BASE_STANDARDSTREAMS_H

namespace kva {

// Opens those of the three standard streams that are closed on /dev/null. A program started without
// them would get their numbers for its own files, and what goes to the console would land there.
void holdStandardStreams();

} // namespace kva

#endif
