#include "run/passframe.h"

#include "run/run.h"
#include "stats/passes.h"

namespace kva {

namespace {

void tell(const std::optional<Message>& message) {
    if (message) {
        AUSGABE(*message);
    }
}

// What is done between entering the folder and leaving it.
int workInFolder(Run& run, const PassFrame& frame, const std::function<int()>& work) {
    tell(frame.BeginInFolder);
    const int result = work();
    if (result == 0 && frame.LogText != nullptr) {
        run.LogEntry(frame.LogText);
    }
    return result;
}

// The same in a folder under the result folder.
int workInPassFolder(Run& run, const PassFrame& frame, const std::function<int()>& work) {
    PassFolder folder(run, *frame.Folder);
    int result = folder.status();
    if (result != 0) {
        return result;
    }
    result = frame.Inner == nullptr ? 0 : folder.enterInner(*frame.Inner);
    result = result == 0 ? workInFolder(run, frame, work) : result;
    if (frame.StaysInFolder || result != 0) {
        folder.stay();
    }
    return result;
}

} // namespace

int runInFrame(Run& run, const PassFrame& frame, const std::function<int()>& work) {
    if (!run.Daten) {
        return -4;
    }
    if (!tablesReady(run) && frame.NeedsTables) {
        return 1;
    }
    tell(frame.Begin);
    int result = 1;
    if (frame.Folder != nullptr) {
        result = workInPassFolder(run, frame, work);
    } else if (run.Enter()) {
        result = workInFolder(run, frame, work);
    }
    if (result == 0) {
        tell(frame.End);
    }
    return result;
}

int runInFrame(Run& run, const PassFrame& frame, void (*work)(Run&)) {
    return runInFrame(run, frame, [&run, work] {
        work(run);
        return 0;
    });
}

} // namespace kva
