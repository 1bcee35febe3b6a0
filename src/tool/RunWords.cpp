#include "tool/RunWords.h"

#include "base/nearestword.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <random>
#include <vector>

namespace kva {

namespace {

using api::Settings;

constexpr uint64_t kLargestSeed = (1ULL << 53U) - 1; // whole in JSON and in R
constexpr int64_t kMost = 2147483647;                // replicates and permutations

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
        ->check(CLI::Range(0.0, kMostIndividuals));
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

// Throws for a word that is none of the known ones.
void checkWord(const char* what, const std::string& word, const std::vector<std::string>& known) {
    if (const std::string unknown = unknownWord(what, word, known); !unknown.empty()) {
        throw WrongWord(unknown);
    }
}

void takeFst(const std::vector<std::string>& words, Settings& settings) {
    for (const std::string& word : words) {
        checkWord("F-statistic", word, {"pairs", "global", "beta"});
        settings.fstPairs = settings.fstPairs || word == "pairs";
        settings.fstGlobal = settings.fstGlobal || word == "global";
        settings.fstBeta = settings.fstBeta || word == "beta";
    }
}

void takeResampling(const std::string& word, Settings& settings) {
    checkWord("unit of resampling", word, {"genotypes", "alleles"});
    settings.resample = word == "genotypes" ? api::Resample::Genotypes : api::Resample::Alleles;
}

void takeHeterozygosity(const std::string& word, Settings& settings) {
    using api::Heterozygosity;
    checkWord("heterozygosity", word, {"observed", "expected", "inbred"});
    settings.heterozygosity = word == "observed"   ? Heterozygosity::Observed
                              : word == "expected" ? Heterozygosity::Expected
                                                   : Heterozygosity::Inbred;
}

// The name of a measure; small letters do as well.
std::string measureName(const std::string& word) {
    std::vector<std::string> known;
    for (const Measure& measure : allMeasures()) {
        known.emplace_back(measure.Stem);
    }
    std::string name = word;
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (std::ranges::find(known, name) == known.end()) {
        checkWord("distance", word, known);
    }
    return name;
}

// "all", "population", "individual"; the last two with measures behind a colon: "population:CAS",
// then "DAN" and so on, all of them without.
void takeDistances(const std::vector<std::string>& words, Settings& settings) {
    const std::vector<std::string> kinds = {kAllNames, "population", "individual"};
    std::string whose; // of the word before
    for (const std::string& word : words) {
        const std::size_t colon = word.find(':');
        std::string measure = kAllNames;
        if (!whose.empty() && colon == std::string::npos &&
            std::ranges::find(kinds, word) == kinds.end()) {
            measure = measureName(word);
        } else {
            whose = word.substr(0, colon);
            checkWord("kind of distances", whose, kinds);
            measure = colon == std::string::npos ? kAllNames : measureName(word.substr(colon + 1));
        }
        if (whose != "individual") {
            settings.populationDistances.insert(measure);
        }
        if (whose != "population") {
            settings.individualDistances.insert(measure);
        }
    }
}

void takeFormats(const std::vector<std::string>& words, Settings& settings) {
    std::vector<std::string> known = {kAllNames};
    for (const Export& row : allExports()) {
        known.emplace_back(row.Keyword);
    }
    for (const std::string& word : words) {
        checkWord("format", word, known);
        settings.formats.insert(word);
    }
}

// Options that have no place in Settings, without another one or against it.
void checkWords(const RunWords& words, const Settings& settings) {
    refuseIf(settings.sequentialHits > 0 && words.ClockSeed,
             "--sequential needs --seed, not --clock-seed");
    refuseIf(words.ClockSeed && words.Threads > 1,
             "--clock-seed draws one stream in order: it needs --threads 1");
    refuseIf(!words.IMFile.empty() && !settings.formats.contains("im") &&
                 !settings.formats.contains(kAllNames),
             "--im-info needs --formats im");
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
    Settings settings;
    takeFst(Fst, settings);
    takeResampling(Resample, settings);
    takeHeterozygosity(Heterozygosity, settings);
    takeDistances(Distances, settings);
    takeFormats(Formats, settings);
    settings.permutations = static_cast<int32_t>(Permutations);
    settings.sequentialHits = static_cast<int32_t>(Sequential);
    settings.fstLoci = FstLoci;
    settings.thin = Thin;
    settings.bootstrap = static_cast<int32_t>(Bootstrap);
    settings.minusLog = MinusLog;
    settings.distanceLoci = DistanceLoci;
    settings.nexus = Nexus;
    if (HetRangeGiven->count() > 0) {
        settings.hetRange = static_cast<int32_t>(HetRange);
    }
    settings.hetLinked = HetLinked;
    settings.hetIndividuals = HetIndividuals;
    settings.hetThin = HetThin;
    settings.hetUncorrected = HetUncorrected;
    settings.rarefy = Rarefy;
    settings.threads = Threads;
    RunPlan plan = planOf(settings, SettingNames::Options);
    checkWords(*this, settings);
    plan.IMFile = IMFile;
    plan.Seed.reset(); // kva's very stream
    if (!ClockSeed) {
        plan.Seed = SeedGiven->count() > 0 ? Seed : entropySeed();
    }
    return plan;
}

} // namespace kva
