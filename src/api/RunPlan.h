// RunPlan: what a run is to do, as the passes are told it. It is made of the settings of the
// library's public header, which kvatool fills from its words.
#ifndef KVA_API_RUNPLAN_H
#define KVA_API_RUNPLAN_H

#include "base/settings.h"

#include <cstdint>
#include <kva/kva.h>
#include <optional>
#include <stdexcept>
#include <string>

namespace kva {

// A setting, or a word of an option, that is not known, out of its range or missing; what() tells
// which.
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
};

constexpr unsigned kMostThreads = 1024;
constexpr double kMostIndividuals = 1e9; // of the reference of the allelic richness
constexpr const char* kAllNames = "all"; // of the measures, or of the formats

// What a user is told by: the fields of Settings, or the options of kvatool run.
enum class SettingNames { Fields, Options };

// Throws WrongWord with the words, if it is wrong.
void refuseIf(bool wrong, const char* words);

// The plan of settings, without IMFile. Throws WrongWord.
RunPlan planOf(const api::Settings& settings, SettingNames names = SettingNames::Fields);

} // namespace kva

#endif
