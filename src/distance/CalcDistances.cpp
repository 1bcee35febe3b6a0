// The two passes of the genetic distances. All that differs between populations and
// individuals stands in this file, and in the SampleRules that it names.
#include "control/AnalyseDataObj.h"
#include "control/Ausgabe.h"
#include "data/passfolder.h"
#include "distance/distancerun.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr DistanceKind kPopulations{"Proportion of shared allels & others",
                                    "Calculate Distances...",
                                    "_Pop.txt",
                                    "_Pop_Loci.xls",
                                    "?",
                                    true,
                                    false,
                                    kPopulationRules};

constexpr DistanceKind kIndividuals{"Distances per individuals",
                                    "Calculate Individual Distances...",
                                    "_Ind.txt",
                                    nullptr,
                                    "!",
                                    false,
                                    true,
                                    kIndividualRules};

// The repeat lengths of all loci, 1 where there is none; 1 everywhere for individuals.
std::vector<double> repeatLengths(const AnalyseDataObj& lauf, bool asGiven) {
    std::vector<double> repeats(lauf.Daten->Loci.size(), 1.0);
    for (std::size_t l = 0; asGiven && l < repeats.size(); ++l) {
        repeats[l] = std::max(lauf.Daten->GetLociRepeatMuster(static_cast<int>(l) + 1), 1);
    }
    return repeats;
}

const AllelTabelle& poolOf(const AnalyseDataObj& lauf) {
    static const AllelTabelle none; // the counting pass could not enter its folder
    return lauf.PopAllele.empty() ? none : lauf.PopAllele[0];
}

// The pass itself, once the tables are there.
long runPass(AnalyseDataObj& lauf, const DistanceKind& kind, long bootstraps,
             long (AnalyseDataObj::*engine)()) {
    PassFolder folder(lauf, Ordner::DistanceData);
    if (!folder.entered()) {
        return folder.status();
    }
    constexpr long kMost = std::numeric_limits<int32_t>::max();
    lauf.Bootstraps = static_cast<int32_t>(std::clamp(bootstraps, -kMost, kMost));
    if (hasBit(lauf.PopDistMask, DistBit::Engine)) {
        AUSGABE(48, kind.Announcement);
        (void)(lauf.*engine)(); // without a selected measure there is nothing to tell
        AUSGABE(49, nullptr);
    }
    lauf.LogEntry(kind.LogText);
    return 0;
}

} // namespace

long AnalyseDataObj::CalcDistancesPop(long bootstraps) {
    if (PopDistMask == 0) {
        return 2;
    }
    if (!Daten) {
        return -4;
    }
    if (PopAllele.empty()) {
        (void)CountAllels(); // without tables the samples count as not typed
    }
    return runPass(*this, kPopulations, bootstraps, &AnalyseDataObj::POP_DIST_POSA);
}

long AnalyseDataObj::CalcDistancesInd(long bootstraps) {
    if (PopDistMask == 0) { // wanted: not IndDistMask, which only lets WriteOutput call
        return 2;
    }
    if (!Daten) {
        return -4;
    }
    if (PopAllele.empty()) {
        (void)CountAllels();
    }
    if (IndAllele.empty()) {
        (void)CountIAllels();
    }
    return runPass(*this, kIndividuals, bootstraps, &AnalyseDataObj::IND_DIST_POSA);
}

long AnalyseDataObj::POP_DIST_POSA() {
    if (PopAllele.empty()) {
        (void)CountAllels();
    }
    // Entry 0 of the tables is the pool.
    Samples samples = prepareSamples(PopAllele, 1, AnzPop, poolOf(*this),
                                     repeatLengths(*this, true), kPopulations.Rules);
    return DistanceRun(*this, kPopulations, std::move(samples), populationLabels(*Daten, AnzPop))
        .run();
}

long AnalyseDataObj::IND_DIST_POSA() {
    Samples samples = prepareSamples(IndAllele, 0, AnzInd, poolOf(*this),
                                     repeatLengths(*this, false), kIndividuals.Rules);
    return DistanceRun(*this, kIndividuals, std::move(samples), individualLabels(*Daten, AnzInd))
        .run();
}
