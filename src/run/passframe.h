// The frame that the passes share: the tables are counted, the start is told, the folder entered,
// the work done, the folder left, the log given its entry and the end told.
#ifndef KVA_RUN_PASSFRAME_H
#define KVA_RUN_PASSFRAME_H

#include "output/passfolder.h"

#include <functional>
#include <optional>

namespace kva {

class Run;

// The frame of one pass. What is left out of a row the pass does not have, or does itself.
struct PassFrame {
    const FolderRule* Folder = nullptr;        // null: the result folder itself
    const FolderRule* Inner = nullptr;         // a folder in that folder
    std::optional<Message> Begin = {};         // on the console, before the folder is entered
    std::optional<Message> BeginInFolder = {}; // ... in the folder instead
    std::optional<Message> End = {};           // ... after all
    const char* LogText = nullptr;             // the entry of the log
    bool NeedsTables = true;                   // without tables nothing at all is done
    bool StaysInFolder = false;                // the process stays where the work was done
};

// Runs `work` in its frame. 0; -4 without a data set; 1 if the alleles cannot be counted (where the
// frame needs them) or the result folder cannot be entered; what PassFolder::status() gives for a
// folder that cannot be entered; or what `work` gives, not 0, if it cannot go on: then the process
// stays in the folder, and neither log nor console are told of an end. A folder that cannot be
// entered is told on the console.
int runInFrame(Run& run, const PassFrame& frame, const std::function<int()>& work);

// The same of work on the run that always goes on.
int runInFrame(Run& run, const PassFrame& frame, void (*work)(Run&));

} // namespace kva

#endif
