// The grammar of the command line: each line of the bytes is an option with its values.
#include "harness.h"

#include "control/cczkva.h"

#include <string>

using namespace kva;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const kva_fuzz::Quiet quiet;
    CCommandZeileKVA command;
    std::string option;
    for (std::size_t i = 0; i <= size; ++i) {
        if (i < size && data[i] != '\n' && data[i] != '\0') {
            option += static_cast<char>(data[i]);
            continue;
        }
        const int result = command.AnalyseCommando(option.c_str());
        kva_fuzz::require(result >= -1 && result <= 1, "a result that is known");
        option.clear();
    }
    kva_fuzz::require(command.Bootstraps >= 1, "at least one bootstrap");
    kva_fuzz::require(command.Permutationen >= 0, "no negative number of permutations");
    kva_fuzz::require(command.HetRandomisierungen >= 0, "no negative number of replicates");
    return 0;
}
