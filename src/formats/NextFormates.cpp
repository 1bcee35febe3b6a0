// The pass that writes the files of msvar, Migrate/LAMARC and Arlequin into "Formats&Data".
#include "formats/NextFormates.h"

#include "control/Ausgabe.h"
#include "formats/StepWidth.h"
#include "formats/exports.h"
#include "formats/passes.h"
#include "output/passfolder.h"
#include "run/run.h"
#include "stats/passes.h"

namespace kva {

namespace {

// The line of the log for each file that was asked for. Without any a bare line end is left:
// wanted.
void writeLog(ResultFile& log, uint32_t generalMask) {
    for (const Export& row : allExports()) {
        if (row.LogLine != nullptr && hasBit(generalMask, row.Bit)) {
            log.text(row.LogLine);
        }
    }
    log.character('\n');
    log.flush();
}

} // namespace

long writeOtherFormats(Run& run) {
    if (!run.Daten) {
        return -4;
    }
    const bool counted = tablesReady(run);
    AUSGABE(Message::FormatsBegin);
    PassFolder folder(run, Folder::FormatsData);
    if (!folder.entered()) {
        return folder.status();
    }
    if (!counted) {
        return 1;
    }
    const std::vector<int32_t> schrittweite = stepWidths(*run.Daten, run.PopAllele.front());
    if (hasBit(run.GeneralMask, GeneralBit::Msvar)) {
        writeMsvarFiles(run, schrittweite);
    }
    // Either bit alone gives both files: wanted.
    if ((run.GeneralMask & (GeneralBit::Arlequin | GeneralBit::Migrate)) != 0) {
        const long result = writeMigrateAndArlequin(run, schrittweite);
        if (result != 0) {
            folder.stay();
            return result;
        }
    }
    writeLog(run.LogDatei, run.GeneralMask);
    AUSGABE(Message::FormatsEnd);
    return 0;
}

} // namespace kva
