// Files that are read or written whole.
#ifndef KVA_BASE_NEWFILE_H
#define KVA_BASE_NEWFILE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace kva {

// The bytes of a file of at most `most` bytes into `bytes`. A folder, a pipe or a device is none.
// Result: why it cannot be read, fit to stand behind its name; empty if it is read.
std::string readWholeFile(const std::string& file, std::string& bytes, int64_t most);

// Writes the bytes into a new file beside `file`, which gets its name when all of it is on the
// disk: the name never stands for a part of them. `replace`: whether a file of that name may go.
// Result: why nothing is written, fit to stand behind its name; empty if it is done.
std::string writeWholeFile(const std::string& file, std::string_view bytes, bool replace);

} // namespace kva

#endif
