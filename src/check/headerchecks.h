// Findings in the header rows of a data file.
#ifndef KVA_CHECK_HEADERCHECKS_H
#define KVA_CHECK_HEADERCHECKS_H

#include "check/findings.h"
#include "data/datarows.h"
#include "data/loadeddata.h"

#include <cstdint>
#include <string>

namespace kva {

constexpr int kHeadCells = 3; // cells of a row in front of the loci

// The header rows of a file that the reader takes.
struct HeaderRows {
    std::string first;    // columns per locus, repeat lengths
    std::string second;   // rest lengths; the names where there are two rows
    std::string names;    // names of the loci
    int64_t lastByte = 0; // offset of the last byte of their line ends
};

// `rows`: 2 or 3, as the reader counted them.
HeaderRows headerRowsOf(DataWindow& window, int rows);

// `data`: the file as the reader takes it.
void checkHeader(const HeaderRows& header, const LoadedData& data, Findings& findings);

// Cells of a row, empty ones too.
int64_t cellCount(std::string_view row);

} // namespace kva

#endif
