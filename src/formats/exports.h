// The catalogue of exports: the files for other programs that a user can ask for.
#ifndef KVA_FORMATS_EXPORTS_H
#define KVA_FORMATS_EXPORTS_H

#include <cstdint>
#include <span>

namespace kva {

// A row of the catalogue, which the command line, the menu, its screen and the log read. A new
// export is a row here, a bit of GeneralBit, and a pass or a part of writeOtherFormats().
struct Export {
    uint32_t Bit;         // of GeneralBit
    const char* Keyword;  // of -format
    char Key;             // in the menu of the data conversion
    const char* MenuLine; // what the screen shows in front of the state
    const char* LogLine;  // in the log's entry of writeOtherFormats(); null: has its own entry
};

// All of them in the order of the log.
std::span<const Export> allExports();

} // namespace kva

#endif
