// What the command line and the menu have in common: the first load of a data file,
// the run of the pipeline, and the bounds of the numbers that a user enters.
#ifndef KVA_CONTROL_FRONTEND_H
#define KVA_CONTROL_FRONTEND_H

#include "base/settings.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace kva {

class AnalyseDataObj;

// Closes an input file.
struct InputCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

// A file open for reading, owned; null: it did not open.
using InputFile = std::unique_ptr<std::FILE, InputCloser>;

// A data file name of so many bytes or more counts as a file that cannot be opened.
constexpr std::size_t kFileNameLimit = 1024;

// How a first load ended.
enum class LoadResult {
    Done,     // the pipeline can run, also if the reader refused the file
    NoFile,   // the data file does not open, as the console says; nothing else was done
    NoFolder, // no result folder could be made, as the console says; no pass may run
};

// Tells, on the console and in the words of the front end, of an IM information file `name` that
// cannot be opened.
using SideFileReport = void (*)(const std::string& name);

// First load: stores `dataFile` in `run`, opens the data file into `daten` and, if
// `imName` is not empty, the IM information file, and reads them. Both names start from the
// current folder. A pipe counts as a file that does not open. The results of the
// reader are not looked at: a refused file goes on to the pipeline. The data file stays
// open, for the front end to close after the run. Leaves the process in the result folder.
LoadResult LoadFirst(AnalyseDataObj& run, const std::string& dataFile, const std::string& imName,
                     SideFileReport imMissing, InputFile& daten);

// Hands the settings to `run` and runs all passes, which write into its result folder.
void StartRun(AnalyseDataObj& run, const AnalyseSettings& masks, const ScalarSettings& scalars);

// The int32 nearest to `value`.
int32_t NearestInt32(long value);

// `value` without its fraction, or the nearest int32 beyond its range; 0 for what is not a number.
int32_t TruncatedInt32(double value);

} // namespace kva

#endif
