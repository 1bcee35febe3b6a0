// All findings in a data file, and what the reader understood of it.
#ifndef KVA_CHECK_CHECKFILE_H
#define KVA_CHECK_CHECKFILE_H

#include "check/findings.h"
#include "check/summary.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace kva {

struct CheckReport {
    std::string file;              // as it was typed
    std::string failure;           // why it cannot be read; empty if it can
    std::vector<Finding> findings; // errors, warnings, notes
    bool read = false;             // the reader takes the file, and the summary holds it
    DataSummary summary;
    int64_t errors = 0;   // findings, not kinds
    int64_t warnings = 0; // findings, not kinds
    int64_t notes = 0;    // findings, not kinds
};

// Reads the stream as a run does, three times from its start; nothing goes to the console.
CheckReport checkStream(std::FILE* stream);

// The same of a file; a folder, a pipe and what else kva does not open is a failure.
CheckReport checkFile(const std::string& file);

} // namespace kva

#endif
