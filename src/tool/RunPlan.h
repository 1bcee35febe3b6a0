// RunPlan: what a run is to do, and how the words of an option are read into it.
#ifndef KVA_TOOL_RUNPLAN_H
#define KVA_TOOL_RUNPLAN_H

#include "base/settings.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kva {

// A word of an option that is not known, or missing; what() tells which is near.
class WrongWord : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

struct RunPlan {
    AnalyseSettings Masks = kCommandLineDefaults; // PopDistMask: of populations
    uint32_t IndividualMeasures = 0;              // bits of DistBit; 0: no distances of individuals
    ScalarSettings Scalars = {};
    std::string IMFile;           // IM information file; empty: none
    std::optional<uint64_t> Seed; // nothing: kva's very stream, seeded from the clock
    unsigned Threads = 1;
    int32_t SequentialHits = 0; // 0: all permutations are made

    // "pairs", "global", "beta".
    void addFst(const std::vector<std::string>& words);
    // "all", "population", "individual"; the last two with measures behind a colon:
    // "population:CAS", then "DAN" and so on, all of them without. Measures of kva: POSA, FSS, ...
    void addDistances(const std::vector<std::string>& words);
    // "all", or the exports of kva: "msvar", "arlequin", "migrate", "im".
    void addFormats(const std::vector<std::string>& words);
    // "genotypes", "alleles": what the permutations move.
    void setResampling(const std::string& word);
    // "observed", "expected", "inbred": the heterozygosity that the F-statistics take.
    void setHeterozygosity(const std::string& word);
};

} // namespace kva

#endif
