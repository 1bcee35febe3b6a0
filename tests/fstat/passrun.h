// An F-statistics pass that has run under a clock that stands still, for the tests of its
// console and its files.
#ifndef KVA_TESTS_FSTAT_PASSRUN_H
#define KVA_TESTS_FSTAT_PASSRUN_H

#include "fstat/fstatsupport.h"

#include <filesystem>
#include <set>
#include <string>

namespace kva_test {

using namespace kva;

// Flags of passes.
constexpr uint32_t kPairs = 0x39;    // pairs alone
constexpr uint32_t kGlobal = 0x1839; // all populations alone
constexpr uint32_t kBoth = 0x839;
constexpr uint32_t kBeta = 0x9039; // F-beta alone

// Three populations of two individuals at one locus, two of them fixed for the same allele.
constexpr const char* kThreePops = "2 . . 2 .\n"
                                   ". . . 0 .\n"
                                   ". . . L1 L1b\n"
                                   "North d 0 5 5\n"
                                   "North d 0 5 5\n"
                                   "South d 0 5 5\n"
                                   "South d 0 5 5\n"
                                   "Farthest_East d 0 5 6\n"
                                   "Farthest_East d 0 6 6\n";

constexpr const char* kOnePop = "2 . . 2 .\n"
                                ". . . 0 .\n"
                                ". . . L1 L1b\n"
                                "A d 0 5 6\n"
                                "A d 0 5 5\n";

struct PassRun {
    PassRun(const std::string& text, uint32_t mask, int permutations, int replikate = 1000)
        : run(text) {
        run.counted();
        run->FstMask = mask;
        run->Replikate = replikate;
        const FrozenClock clock(1);
        StdoutCapture capture;
        result = run->CalcDistancesSpecial(permutations);
        console = capture.text();
    }
    // The bytes of a file of the pass.
    std::string file(const std::string& name) const {
        return run.resultFile("F-Statistic/" + name);
    }
    // The names of all files of the pass.
    std::set<std::string> files() {
        std::set<std::string> names;
        const std::filesystem::path folder(run->ResultPfad);
        for (const auto& entry : std::filesystem::directory_iterator(folder / "F-Statistic")) {
            names.insert(entry.path().filename());
        }
        return names;
    }

    LoadedRun run;
    int result = -1;
    std::string console;
};

} // namespace kva_test

#endif
