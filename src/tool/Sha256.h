// The SHA-256 of a file (FIPS 180-4).
#ifndef KVA_TOOL_SHA256_H
#define KVA_TOOL_SHA256_H

#include <string>

namespace kva {

// In 64 hexadecimal digits; empty if the file cannot be read.
std::string sha256OfFile(const std::string& file);

} // namespace kva

#endif
