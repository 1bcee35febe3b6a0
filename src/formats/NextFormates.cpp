// The pass that writes the files of msvar, Migrate/LAMARC and Arlequin into "Formats&Data".
#include "formats/NextFormates.h"

#include "control/Ausgabe.h"
#include "formats/StepWidth.h"
#include "formats/exports.h"
#include "formats/passes.h"
#include "run/passframe.h"
#include "run/run.h"

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

// Result as writeOtherFormats().
int writeFiles(Run& run) {
    if (run.PopAllele.empty()) {
        return 1;
    }
    const std::vector<int32_t> schrittweite = stepWidths(*run.Daten, run.PopAllele.front());
    if (hasBit(run.GeneralMask, GeneralBit::Msvar)) {
        writeMsvarFiles(run, schrittweite);
    }
    // Either bit alone gives both files: wanted.
    if ((run.GeneralMask & (GeneralBit::Arlequin | GeneralBit::Migrate)) != 0) {
        const int result = writeMigrateAndArlequin(run, schrittweite);
        if (result != 0) {
            return result;
        }
    }
    writeLog(run.LogDatei, run.GeneralMask);
    return 0;
}

} // namespace

long writeOtherFormats(Run& run) {
    constexpr PassFrame kFrame{.Folder = &Folder::FormatsData,
                               .Begin = Message::FormatsBegin,
                               .End = Message::FormatsEnd,
                               .NeedsTables = false};
    return runInFrame(run, kFrame, [&run] { return writeFiles(run); });
}

} // namespace kva
