#include "api/RunPlan.h"

#include "base/nearestword.h"
#include "distance/measures.h"
#include "formats/exports.h"

#include <set>
#include <vector>

namespace kva {

namespace {

// --- Names -------------------------------------------------------------------------------

// A name and the bits that it stands for.
struct BitName {
    std::string Text;
    uint32_t Bits;
};

// The names, and "all" of them.
std::vector<BitName> measureNames() {
    std::vector<BitName> known;
    for (const Measure& measure : allMeasures()) {
        known.push_back({measure.Stem, measure.Bit});
    }
    return known;
}

std::vector<BitName> exportNames() {
    std::vector<BitName> known;
    for (const Export& row : allExports()) {
        known.push_back({row.Keyword, row.Bit});
    }
    return known;
}

uint32_t bitsOf(const char* what, const std::string& name, const std::vector<BitName>& known) {
    uint32_t bits = 0;
    for (const BitName& each : known) {
        bits |= name == kAllNames || name == each.Text ? each.Bits : 0;
    }
    if (bits == 0) {
        std::vector<std::string> names;
        names.reserve(known.size());
        for (const BitName& each : known) {
            names.push_back(each.Text);
        }
        throw WrongWord(unknownWord(what, name, names));
    }
    return bits;
}

uint32_t bitsOf(const char* what, const std::set<std::string>& names,
                const std::vector<BitName>& known) {
    uint32_t bits = 0;
    for (const std::string& name : names) {
        bits |= bitsOf(what, name, known);
    }
    return bits;
}

// --- What does not go together --------------------------------------------------------------

void checkNumbers(const api::Settings& settings) {
    refuseIf(settings.permutations < 0, "permutations: 0 or more");
    refuseIf(settings.sequentialHits < 0, "sequentialHits: 0 or more");
    refuseIf(settings.bootstrap < 1, "bootstrap: 1 or more");
    refuseIf(settings.hetRange.value_or(0) < 0, "hetRange: 0 or more");
    refuseIf(settings.threads < 1 || settings.threads > kMostThreads, "threads: 1 to 1024");
    refuseIf(!(settings.rarefy <= kMostIndividuals), "rarefy: up to 1e9");
}

// Settings that say nothing without another one, or against it, and how that is told.
struct Meaning {
    bool (*isWrong)(const api::Settings& settings);
    const char* fields;
    const char* options;
};

constexpr Meaning kMeanings[] = {
    {[](const api::Settings& s) {
         return (s.hetLinked || s.hetIndividuals || s.hetThin || s.hetUncorrected) && !s.hetRange;
     },
     "hetLinked, hetIndividuals, hetThin and hetUncorrected need hetRange",
     "--het-linked, --het-individuals, --het-thin and --het-uncorrected need --het-range N"},
    {[](const api::Settings& s) {
         return (s.sequentialHits > 0 || s.fstLoci || s.thin) && !s.fstPairs;
     },
     "sequentialHits, fstLoci and thin need fstPairs",
     "--sequential, --fst-loci and --thin need --fst pairs"},
    {[](const api::Settings& s) { return s.sequentialHits > 0 && s.thin; },
     "sequentialHits and thin do not go together", "--sequential and --thin do not go together"},
    {[](const api::Settings& s) {
         return s.bootstrap > 1 && s.populationDistances.empty() && s.individualDistances.empty();
     },
     "bootstrap needs populationDistances or individualDistances", "--bootstrap needs --distances"},
};

void checkMeanings(const api::Settings& settings, SettingNames names) {
    for (const Meaning& meaning : kMeanings) {
        refuseIf(meaning.isWrong(settings),
                 names == SettingNames::Fields ? meaning.fields : meaning.options);
    }
}

// --- Parts of the plan ------------------------------------------------------------------------

void setBit(uint32_t& mask, uint32_t bit, bool on) {
    mask = on ? mask | bit : mask & ~bit;
}

void planFst(const api::Settings& settings, AnalyseSettings& masks) {
    if (settings.fstPairs || settings.fstGlobal || settings.fstBeta) {
        setBit(masks.GeneralMask, GeneralBit::FStatistics, true);
        setBit(masks.FstMask, FstBit::NoPairs, !settings.fstPairs);
        setBit(masks.FstMask, FstBit::Global, settings.fstGlobal);
        setBit(masks.FstMask, FstBit::Beta, settings.fstBeta);
    }
    setBit(masks.FstMask, FstBit::Genotypes | FstBit::Linked,
           settings.resample == api::Resample::Genotypes);
    using api::Heterozygosity;
    setBit(masks.FstMask, FstBit::HObs, settings.heterozygosity == Heterozygosity::Observed);
    setBit(masks.FstMask, FstBit::HExp, settings.heterozygosity == Heterozygosity::Expected);
    setBit(masks.FstMask, FstBit::HAuto, settings.heterozygosity == Heterozygosity::Inbred);
    setBit(masks.FstMask, FstBit::PerLocus, settings.fstLoci);
    setBit(masks.FstMask, FstBit::RandomDiscard, settings.thin);
}

void planDistances(const api::Settings& settings, RunPlan& plan) {
    const std::vector<BitName> known = measureNames();
    const uint32_t ofPopulations = bitsOf("distance", settings.populationDistances, known);
    plan.IndividualMeasures = bitsOf("distance", settings.individualDistances, known);
    AnalyseSettings& masks = plan.Masks;
    masks.PopDistMask |= ofPopulations;
    setBit(masks.PopDistMask, DistBit::PerLocus, settings.distanceLoci);
    setBit(masks.PopDistMask, DistBit::Nexus, settings.nexus);
    setBit(masks.GeneralMask, GeneralBit::PopDistances, ofPopulations != 0);
    setBit(masks.GeneralMask, GeneralBit::IndDistances, plan.IndividualMeasures != 0);
    setBit(masks.GeneralMask, GeneralBit::MinusLog, settings.minusLog);
}

void planHetRange(const api::Settings& settings, AnalyseSettings& masks) {
    setBit(masks.GeneralMask, GeneralBit::HetRange, settings.hetRange.has_value());
    setBit(masks.HetRangeMask, HetRangeBit::Linked, settings.hetLinked);
    setBit(masks.HetRangeMask, HetRangeBit::Individuals, settings.hetIndividuals);
    setBit(masks.HetRangeMask, HetRangeBit::RandomDiscard, settings.hetThin);
    setBit(masks.HetRangeMask, HetRangeBit::CorrectZero, !settings.hetUncorrected);
}

} // namespace

void refuseIf(bool wrong, const char* words) {
    if (wrong) {
        throw WrongWord(words);
    }
}

RunPlan planOf(const api::Settings& settings, SettingNames names) {
    checkNumbers(settings);
    checkMeanings(settings, names);
    RunPlan plan;
    planFst(settings, plan.Masks);
    planDistances(settings, plan);
    planHetRange(settings, plan.Masks);
    plan.Masks.GeneralMask |= bitsOf("format", settings.formats, exportNames());
    refuseIf(!settings.imInformation.empty() &&
                 !hasBit(plan.Masks.GeneralMask, GeneralBit::IMFormat),
             "imInformation needs the format im");
    plan.Scalars.Permutationen = settings.permutations;
    plan.Scalars.Bootstraps = settings.bootstrap;
    plan.Scalars.HetRandomisierungen = settings.hetRange.value_or(0);
    plan.Scalars.RichnessRef = settings.rarefy < 0 ? -1 : static_cast<int32_t>(2 * settings.rarefy);
    plan.Seed = settings.seed;
    plan.Threads = settings.threads;
    plan.SequentialHits = settings.sequentialHits;
    return plan;
}

} // namespace kva
