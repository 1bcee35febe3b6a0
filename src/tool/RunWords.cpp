#include "tool/RunWords.h"

#include <CLI/CLI.hpp>

#include <random>

namespace kva {

namespace {

constexpr uint64_t kLargestSeed = (1ULL << 53U) - 1; // whole in JSON and in R
constexpr int64_t kMost = 2147483647;                // replicates and permutations
constexpr unsigned kMostThreads = 1024;

// --- The options -------------------------------------------------------------------------

void addPlaces(CLI::App& command, RunWords& words) {
    command.add_option("DATA", words.Data, "Data files as kva reads them")->required();
    command.add_option(
        "-o,--output", words.Output,
        "Folder of the results; of several data files the folder that takes a folder "
        "for each (default: DATA_kvatool, beside each data file)");
    command.add_flag("--force", words.Force, "Replaces a result folder that is there");
    command.add_option("--tidy", words.Tidy, "Also writes all numbers as one long table");
    command.add_option("--json", words.JsonFile,
                       "Also writes the record of the run, run.json, to this file");
    command.add_flag("-q,--quiet", words.Quiet, "Tells nothing but what went wrong");
}

void addFstOptions(CLI::App& command, RunWords& words) {
    command.add_option("--fst", words.Fst, "F-statistics: pairs, global, beta")
        ->delimiter(',')
        ->allow_extra_args(false);
    command
        .add_option("--permutations", words.Permutations,
                    "Of the tests of F-statistics; 0: no tests")
        ->check(CLI::Range(int64_t{0}, kMost))
        ->capture_default_str();
    command
        .add_option("--sequential", words.Sequential,
                    "Ends the test of a pair after so many hits (Besag and Clifford 1991)")
        ->check(CLI::Range(int64_t{1}, kMost));
    command.add_option("--resample", words.Resample, "What permutations move: genotypes, alleles")
        ->capture_default_str();
    command
        .add_option("--heterozygosity", words.Heterozygosity,
                    "Of the F-statistics: observed, expected, inbred (expected in inbred "
                    "populations only)")
        ->capture_default_str();
    command.add_flag("--fst-loci", words.FstLoci, "Also Fst of each locus and pair");
    command.add_flag("--thin", words.Thin,
                     "Thins inbred data at random before the tests of pairs; on one thread");
}

void addDistanceOptions(CLI::App& command, RunWords& words) {
    command
        .add_option("--distances", words.Distances,
                    "Genetic distances: all, population, individual; the last two with measures "
                    "behind a colon (population:CAS,DAN), all nine without")
        ->delimiter(',')
        ->allow_extra_args(false);
    command.add_option("--bootstrap", words.Bootstrap, "Replicates of the distances over loci")
        ->check(CLI::Range(int64_t{1}, kMost))
        ->capture_default_str();
    command.add_flag("--minus-log", words.MinusLog,
                     "Distances are the negative logarithm of similarities, not 1 minus them");
    command.add_flag("--distance-loci", words.DistanceLoci,
                     "Also the distances of populations by each locus");
    command.add_flag("--nexus", words.Nexus,
                     "Matrices of individuals as NEXUS, without a bootstrap");
}

void addOtherOptions(CLI::App& command, RunWords& words) {
    words.HetRangeGiven = command
                              .add_option("--het-range", words.HetRange,
                                          "Range of heterozygosity by sampling, from so many draws")
                              ->check(CLI::Range(int64_t{0}, kMost));
    command.add_flag("--het-linked", words.HetLinked, "... with linked loci");
    command.add_flag("--het-individuals", words.HetIndividuals, "... draws whole individuals");
    command.add_flag("--het-thin", words.HetThin, "... thins inbred data at random");
    command.add_flag("--het-uncorrected", words.HetUncorrected,
                     "... leaves a heterozygosity of 0 or 1 as it is");
    command
        .add_option("--formats", words.Formats,
                    "Data for other programs: all, msvar, arlequin, migrate, im")
        ->delimiter(',')
        ->allow_extra_args(false);
    command.add_option("--im-info", words.IMFile, "Information file of the IM format");
    command
        .add_option("--rarefy", words.Rarefy,
                    "Reference of the allelic richness in individuals (default: the smallest "
                    "sample of each locus); 0: no richness")
        ->check(CLI::Range(0.0, 1e9));
    words.SeedGiven =
        command
            .add_option("--seed", words.Seed,
                        "Of the random numbers, 0 to 2^53 - 1 (default: from the system's entropy)")
            ->check(CLI::Range(uint64_t{0}, kLargestSeed));
    command
        .add_flag("--clock-seed", words.ClockSeed,
                  "Draws kva's very stream, seeded from the clock, on one thread")
        ->excludes(words.SeedGiven);
    command.add_option("--threads", words.Threads, "The results are the same for any number")
        ->check(CLI::Range(1U, kMostThreads))
        ->capture_default_str();
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kvatool run data.txt\n"
    "  kvatool run data.txt -o results --fst pairs,global --permutations 100000 --seed 1 --threads "
    "2\n"
    "  kvatool run data.txt --distances population:CAS,DAN --bootstrap 1000 --tidy all.tsv\n"
    "  kvatool run a.txt b.txt -o results --fst pairs --sequential 20 --json runs.json";

// --- The plan ------------------------------------------------------------------------------

uint64_t entropySeed() {
    std::random_device entropy;
    return ((uint64_t{entropy()} << 32U) | entropy()) & kLargestSeed;
}

void refuse(bool wrong, const char* what) {
    if (wrong) {
        throw WrongWord(what);
    }
}

// Options that say nothing without another one, or against it.
void checkWords(const RunWords& words, const RunPlan& plan) {
    const bool pairs = hasBit(plan.Masks.GeneralMask, GeneralBit::FStatistics) &&
                       !hasBit(plan.Masks.FstMask, FstBit::NoPairs);
    const bool ranges = words.HetRangeGiven->count() > 0;
    const bool hetWords =
        words.HetLinked || words.HetIndividuals || words.HetThin || words.HetUncorrected;
    refuse(hetWords && !ranges, "--het-linked, --het-individuals, --het-thin and --het-uncorrected "
                                "need --het-range N");
    refuse((words.Sequential > 0 || words.FstLoci || words.Thin) && !pairs,
           "--sequential, --fst-loci and --thin need --fst pairs");
    refuse(words.Sequential > 0 && words.ClockSeed, "--sequential needs --seed, not --clock-seed");
    refuse(words.Sequential > 0 && words.Thin, "--sequential and --thin do not go together");
    refuse(words.ClockSeed && words.Threads > 1,
           "--clock-seed draws one stream in order: it needs --threads 1");
    refuse(words.Bootstrap > 1 && words.Distances.empty(), "--bootstrap needs --distances");
    refuse(!words.IMFile.empty() && !hasBit(plan.Masks.GeneralMask, GeneralBit::IMFormat),
           "--im-info needs --formats im");
}

void setBit(uint32_t& mask, uint32_t bit, bool on) {
    mask = on ? mask | bit : mask & ~bit;
}

} // namespace

void RunWords::addTo(CLI::App& command) {
    addPlaces(command, *this);
    addFstOptions(command, *this);
    addDistanceOptions(command, *this);
    addOtherOptions(command, *this);
    command.footer(kExamples);
}

RunPlan RunWords::plan() const {
    RunPlan plan;
    AnalyseSettings& masks = plan.Masks;
    if (!Fst.empty()) {
        plan.addFst(Fst);
    }
    plan.setResampling(Resample);
    plan.setHeterozygosity(Heterozygosity);
    plan.addDistances(Distances);
    plan.addFormats(Formats);
    setBit(masks.FstMask, FstBit::PerLocus, FstLoci);
    setBit(masks.FstMask, FstBit::RandomDiscard, Thin);
    setBit(masks.GeneralMask, GeneralBit::MinusLog, MinusLog);
    setBit(masks.PopDistMask, DistBit::PerLocus, DistanceLoci);
    setBit(masks.PopDistMask, DistBit::Nexus, Nexus);
    setBit(masks.GeneralMask, GeneralBit::HetRange, HetRangeGiven->count() > 0);
    setBit(masks.HetRangeMask, HetRangeBit::Linked, HetLinked);
    setBit(masks.HetRangeMask, HetRangeBit::Individuals, HetIndividuals);
    setBit(masks.HetRangeMask, HetRangeBit::RandomDiscard, HetThin);
    setBit(masks.HetRangeMask, HetRangeBit::CorrectZero, !HetUncorrected);
    plan.Scalars.Permutationen = static_cast<int32_t>(Permutations);
    plan.Scalars.Bootstraps = static_cast<int32_t>(Bootstrap);
    plan.Scalars.HetRandomisierungen = static_cast<int32_t>(HetRange);
    plan.Scalars.RichnessRef = Rarefy < 0 ? -1 : static_cast<int32_t>(2 * Rarefy);
    plan.IMFile = IMFile;
    plan.Threads = Threads;
    plan.SequentialHits = static_cast<int32_t>(Sequential);
    checkWords(*this, plan);
    if (!ClockSeed) {
        plan.Seed = SeedGiven->count() > 0 ? Seed : entropySeed();
    }
    return plan;
}

} // namespace kva
