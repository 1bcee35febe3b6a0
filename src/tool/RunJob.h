// RunJob: one data file run as a RunPlan says, in the process that it is called in: it changes the
// current folder.
#ifndef KVA_TOOL_RUNJOB_H
#define KVA_TOOL_RUNJOB_H

#include "api/RunPlan.h"
#include "tool/Progress.h"

#include <filesystem>
#include <string>

namespace kva {

struct RunJob {
    RunPlan Plan;
    std::string Data;             // the data file, as it was named
    std::filesystem::path Folder; // absolute; of the results, not there yet
    Telling Told = Telling::Lines;
    bool Tidy = false; // the long table is written, too
};

// Files that a job adds to the sheets.
constexpr const char* kRunRecordName = "run.json";
constexpr const char* kTidyName = "tidy.tsv";

// Runs all passes into the folder, then writes the record of the run (run.json) and, where it is
// asked for, the long table. Exit status: 0; 1 if the data cannot be used or a file cannot be
// written, as standard error tells.
int doJob(const RunJob& job);

} // namespace kva

#endif
