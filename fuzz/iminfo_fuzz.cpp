// The IM information file: the bytes are read into a small data set of one or two columns per
// locus.
#include "harness.h"

#include "data/lociclass.h"
#include "formats/passes.h"
#include "run/run.h"

#include <cstring>
#include <iterator>

using namespace kva;

namespace {

constexpr const char* kData[] = {
    "1\t\t\t2\t4\n\t\t\t50\t60\n\t\t\tL1\tL2\nA\td\t0\t100\t200\nA\td\t0\t102\t200\n",
    "2\t\t\t2\t\t4\t\n\t\t\t50\t\t60\t\n\t\t\tL1\tL1b\tL2\tL2b\nA\td\t0\t100\t102\t200\t200\n",
    "1\t\t\t2\t4\n\t\t\tL1\tL2\nA\td\t0\t100\t200\nA\td\t0\t102\t200\n",
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    if (size < 2) {
        return 0;
    }
    const char* const text = kData[data[0] % std::size(kData)];
    Run run;
    {
        const kva_fuzz::Stream file =
            kva_fuzz::streamOf(reinterpret_cast<const uint8_t*>(text), std::strlen(text));
        kva_fuzz::require(run.CheckDataFile(file.get()) == 0, "the data set is taken");
        kva_fuzz::require(run.GetDataFile(file.get()) == 0, "the data set is read");
    }
    const kva_fuzz::Stream stream = kva_fuzz::streamOf(data + 1, size - 1);
    const long result = readIMInfo(run, stream.get());
    kva_fuzz::require(result == 0 || result == -1 || result == -3, "a result that is known");
    return 0;
}
