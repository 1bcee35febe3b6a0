// All passes: the bytes make a valid data set and the settings of a run, which is made in a folder
// of its own.
#include "harness.h"

#include "support/datasets.h"
#include "support/randomdata.h"

using namespace kva;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    std::size_t at = 0;
    const kva_test::ByteSource bytes = [&]() -> uint8_t { return at < size ? data[at++] : 0; };
    const auto word = [&bytes] {
        uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8U | bytes();
        }
        return value;
    };
    const AnalyseSettings settings{word(), word(), word(), word(), word()};
    const int columns = 1 + bytes() % 2;
    const char* const lineEnds[] = {"\n", "\r\n", "\r"};
    const char* const lineEnd = lineEnds[bytes() % 3];
    const kva_test::RandomDataSet set = kva_test::randomDataSet(bytes, {});
    kva_test::LoadedRun run(kva_test::dataFile(set, columns, lineEnd));
    ScalarSettings scalars;
    scalars.RichnessRef = bytes() % 8 - 1;
    scalars.HetRandomisierungen = bytes() % 4;
    scalars.ReplikaLoci = bytes() % 5 - 2;
    scalars.Replikate = 200;
    run->TakeSettings(settings, scalars);
    kva_fuzz::require(run->WriteOutput(bytes() % 4, bytes() % 4) == 0, "the passes end");
    kva_fuzz::require(run->PopAllele.size() == set.populations.size() + 1, "tables are there");
    return 0;
}
