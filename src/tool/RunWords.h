// RunWords: the options of kvatool run as they are typed, and the plan that they make.
#ifndef KVA_TOOL_RUNWORDS_H
#define KVA_TOOL_RUNWORDS_H

#include "api/RunPlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace kva {

// The words of the command line.
struct RunWords {
    std::vector<std::string> Data;
    std::string Output;
    bool Force = false;
    std::vector<std::string> Fst;
    int64_t Permutations = 10000;
    int64_t Sequential = 0;
    std::string Resample = "genotypes";
    std::string Heterozygosity = "observed";
    bool FstLoci = false;
    bool Thin = false;
    std::vector<std::string> Distances;
    int64_t Bootstrap = 1;
    bool MinusLog = false;
    bool DistanceLoci = false;
    bool Nexus = false;
    int64_t HetRange = 0;
    bool HetLinked = false;
    bool HetIndividuals = false;
    bool HetThin = false;
    bool HetUncorrected = false;
    std::vector<std::string> Formats;
    std::string IMFile;
    double Rarefy = -1;
    uint64_t Seed = 0;
    bool ClockSeed = false;
    unsigned Threads = 1;
    std::string Tidy;
    std::string JsonFile;
    bool Quiet = false;

    // Of the command, once addTo() was called; NOT OWNED.
    CLI::Option* SeedGiven = nullptr;
    CLI::Option* HetRangeGiven = nullptr;

    // Adds the options to a command, which reads into this object; it must outlive the command.
    void addTo(CLI::App& command);

    // What the words ask for. Throws WrongWord for a word that is not known, and for one that says
    // nothing without another, or against it. A seed that is not given is drawn.
    RunPlan plan() const;
};

} // namespace kva

#endif
