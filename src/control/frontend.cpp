#include "control/frontend.h"

#include "base/console.h"
#include "control/AnalyseDataObj.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <limits>
#include <new>
#include <system_error>

namespace kva {

namespace {

// A pipe without a writer would hold the program for ever, and none can be read twice.
bool isPipe(const std::string& name) {
    std::error_code unknown; // a name that tells nothing does not open either
    return std::filesystem::is_fifo(name, unknown);
}

InputFile openInput(const std::string& name) {
    if (isPipe(name)) {
        return nullptr;
    }
    InputFile file(std::fopen(name.c_str(), "rb"));
    if (!file && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return file;
}

InputFile openDataFile(const std::string& name) {
    return name.size() < kFileNameLimit ? openInput(name) : nullptr;
}

} // namespace

LoadResult LoadFirst(AnalyseDataObj& run, const std::string& dataFile, const std::string& imName,
                     SideFileReport imMissing, InputFile& daten) {
    run.DateiName = dataFile;
    // Both are opened before the reader leaves the folder that their names start from.
    daten = openDataFile(dataFile);
    const InputFile im = imName.empty() ? nullptr : openInput(imName);
    if (!daten) {
        console() << std::endl << "Wrong Filename or Path!" << std::endl;
        return LoadResult::NoFile;
    }
    const int refusal = run.CheckDataFile(daten.get()); // told by the reader itself
    if (refusal == 1 || refusal == 2) {
        throw std::bad_alloc(); // no room to read into: the program's end, not an empty data set
    }
    run.ReadDataFile(daten.get());
    if (run.FolderMissing) {
        return LoadResult::NoFolder;
    }
    if (im) {
        run.ReadIMInfo(im.get()); // a refusal leaves the loci without values
    } else if (!imName.empty()) {
        imMissing(imName);
    }
    return LoadResult::Done;
}

void StartRun(AnalyseDataObj& run, const AnalyseSettings& masks, const ScalarSettings& scalars) {
    run.TakeSettings(masks, scalars);
    run.WriteOutput(scalars.Bootstraps, scalars.Permutationen); // always 0
}

int32_t NearestInt32(long value) {
    using Limits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(std::clamp<long>(value, Limits::min(), Limits::max()));
}

int32_t TruncatedInt32(double value) {
    using Limits = std::numeric_limits<int32_t>;
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int32_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

} // namespace kva
