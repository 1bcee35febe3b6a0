// The check of a data file: the bytes are the file. It understands what the reader understands.
#include "harness.h"

#include "check/checkfile.h"
#include "check/reporttext.h"
#include "data/loadeddata.h"

#include <sstream>

using namespace kva;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    const kva_fuzz::Stream stream = kva_fuzz::streamOf(data, size);
    if (!stream) {
        return 0;
    }
    const CheckReport report = checkStream(stream.get());
    std::ostringstream text;
    writeReport(text, report);
    kva_fuzz::require(!text.str().empty(), "a report says something");
    for (const Finding& finding : report.findings) {
        kva_fuzz::require(finding.count >= std::ssize(finding.places), "places are counted");
    }
    LoadedData read;
    const bool taken = read.CheckDataFile(stream.get()) == 0 && read.GetDataFile(stream.get()) == 0;
    kva_fuzz::require(taken || report.errors > 0, "a refused file has an error");
    if (report.read) {
        kva_fuzz::require(std::ssize(report.summary.populations) ==
                              (read.AnzLoci == 0 ? 0 : read.AnzPop),
                          "the populations are those of the reader");
    }
    return 0;
}
