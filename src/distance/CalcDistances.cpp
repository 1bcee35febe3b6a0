// The two passes of the genetic distances. All that differs between populations and
// individuals stands in this file, and in the SampleRules that it names.
#include "base/console.h"
#include "control/Ausgabe.h"
#include "distance/distancerun.h"
#include "distance/measures.h"
#include "distance/needs.h"
#include "distance/passes.h"
#include "run/passframe.h"
#include "run/run.h"
#include "stats/passes.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace kva {

namespace {

constexpr DistanceKind kPopulations{"Proportion of shared allels & others",
                                    "Calculate Distances...",
                                    "_Pop.txt",
                                    "_Pop_Loci.xls",
                                    "?",
                                    true,
                                    false,
                                    kPopulationRules,
                                    UnitKind::PopulationBootstrap};

constexpr DistanceKind kIndividuals{"Distances per individuals",
                                    "Calculate Individual Distances...",
                                    "_Ind.txt",
                                    nullptr,
                                    "!",
                                    false,
                                    true,
                                    kIndividualRules,
                                    UnitKind::IndividualBootstrap};

constexpr long kRefused = 3; // the pass takes more than the machine has

// The repeat lengths of all loci, 1 where there is none; 1 everywhere for individuals.
std::vector<double> repeatLengths(const Run& run, bool asGiven) {
    std::vector<double> repeats(run.Daten->Loci.size(), 1.0);
    for (std::size_t l = 0; asGiven && l < repeats.size(); ++l) {
        repeats[l] = std::max(run.Daten->GetLociRepeatMuster(static_cast<int>(l) + 1), 1);
    }
    return repeats;
}

const LocusTables& poolOf(const Run& run) {
    static const LocusTables none; // the counting pass could not enter its folder
    return run.PopAllele.empty() ? none : run.PopAllele[0];
}

// Whether a pass over so many samples takes more than the machine has left: then the console and
// the log are told what it would take.
bool isRefused(Run& run, const char* what, std::size_t samples, bool countsTables,
               long bootstraps) {
    DistanceExtent extent;
    extent.Rows = samples;
    extent.Loci = run.Daten ? run.Daten->Loci.size() : 0;
    const bool engine = hasBit(run.PopDistMask, DistBit::Engine);
    extent.Measures = engine ? selectedMeasures(run.PopDistMask).size() : 0;
    extent.Replicates = static_cast<std::size_t>(std::max(bootstraps, 1L));
    extent.CountsTables = countsTables;
    DistanceNeeds needs = needsOf(extent);
    if (run.InMemory()) { // its files, too
        needs = {needs.Memory + needs.Disk, 0};
    }
    if (extent.Measures == 0 || !isLarge(needs)) {
        return false;
    }
    const std::string reason = refusal(what, needs, roomLeft(run.ResultPfad));
    if (!reason.empty()) {
        console() << '\n' << reason << std::endl;
        run.LogFailure(reason);
    }
    return !reason.empty();
}

// Half the slots of all populations.
std::size_t individualsOf(const Run& run) {
    std::size_t slots = 0;
    for (int pop = 1; run.Daten && pop <= run.Daten->GetPopAnzahl(); ++pop) {
        slots += static_cast<std::size_t>(run.Daten->GetAnzDatenChromosome(pop));
    }
    return slots / 2;
}

// The pass of one kind. Without tables it goes on: the samples count as not typed.
long runPass(Run& run, const DistanceKind& kind, long bootstraps, long (*engine)(Run&)) {
    const PassFrame frame{
        .Folder = &Folder::DistanceData, .LogText = kind.LogText, .NeedsTables = false};
    return runInFrame(run, frame, [&] {
        constexpr long kMost = std::numeric_limits<int32_t>::max();
        run.Bootstraps = static_cast<int32_t>(std::clamp(bootstraps, -kMost, kMost));
        if (hasBit(run.PopDistMask, DistBit::Engine)) {
            AUSGABE(Message::DistanceBegin, kind.Announcement);
            engine(run); // without a selected measure there is nothing to tell
            AUSGABE(Message::DistanceEnd);
        }
        return 0;
    });
}

} // namespace

long populationDistances(Run& run, long bootstraps) {
    if (run.PopDistMask == 0) {
        return 2;
    }
    if (isRefused(run, "Distances of populations", static_cast<std::size_t>(run.AnzPop), false,
                  bootstraps)) {
        return kRefused;
    }
    return runPass(run, kPopulations, bootstraps, writePopulationMatrices);
}

long individualDistances(Run& run, long bootstraps) {
    if (run.PopDistMask == 0) { // wanted: not run.IndDistMask, which only lets WriteOutput call
        return 2;
    }
    if (isRefused(run, "Distances of individuals", individualsOf(run), run.IndAllele.empty(),
                  bootstraps)) {
        return kRefused;
    }
    if (run.Daten && run.IndAllele.empty()) { // its marks stand in front of the pass's own messages
        tablesReady(run);
        countIndividualAlleles(run);
    }
    return runPass(run, kIndividuals, bootstraps, writeIndividualMatrices);
}

long writePopulationMatrices(Run& run) {
    tablesReady(run);
    // Entry 0 of the tables is the pool.
    Samples samples = prepareSamples(run.PopAllele, 1, static_cast<std::size_t>(run.AnzPop),
                                     poolOf(run), repeatLengths(run, true), kPopulations.Rules);
    return DistanceRun(run, kPopulations, std::move(samples),
                       populationLabels(*run.Daten, run.AnzPop))
        .run();
}

long writeIndividualMatrices(Run& run) {
    Samples samples = prepareSamples(run.IndAllele, 0, static_cast<std::size_t>(run.AnzInd),
                                     poolOf(run), repeatLengths(run, false), kIndividuals.Rules);
    return DistanceRun(run, kIndividuals, std::move(samples),
                       individualLabels(*run.Daten, run.AnzInd))
        .run();
}

} // namespace kva
