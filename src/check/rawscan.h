// The bytes of a whole file, before anything is read from them.
#ifndef KVA_CHECK_RAWSCAN_H
#define KVA_CHECK_RAWSCAN_H

#include <cstdint>
#include <cstdio>
#include <string>

namespace kva {

struct RawScan {
    int64_t bytes = 0;
    int64_t lf = 0;   // line ends of LF alone
    int64_t crLf = 0; // of CR LF
    int64_t cr = 0;   // of CR alone
    // The row (from 1) of the first line end that is of another kind than the first; 0: none.
    int64_t otherLineEnd = 0;
    int64_t nulRow = 0; // row of the first NUL byte, from 1; 0: none
    int failure = 0;    // the system's error number where reading failed; 0: it did not
    std::string front;  // the first kFrontBytes bytes
};

constexpr std::size_t kFrontBytes = 4096;

// Reads the stream from its start to its end.
RawScan scanBytes(std::FILE* stream);

} // namespace kva

#endif
