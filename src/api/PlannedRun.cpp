#include "api/PlannedRun.h"

#include "fstat/randsci.h"

#include <string>

namespace kva {

namespace {

TestNames namesOf(const Run& run) {
    TestNames names;
    for (int pop = 1; pop <= run.AnzPop; ++pop) {
        names.Populations.push_back(orEmpty(run.Daten->GetPopName(pop)));
    }
    for (int locus = 1; locus <= run.AnzLoci; ++locus) {
        names.Loci.push_back(orEmpty(run.Daten->GetLociName(locus)));
    }
    return names;
}

// Goes over to the distances of individuals, whose measures may be others, and to the random
// numbers of the pass.
void beginPass(const RunPlan& plan, AnalyseDataObj& run, const PassStep& step) {
    constexpr uint32_t kNoMeasures = DistBit::Engine | DistBit::PerLocus | DistBit::Nexus;
    if (step.Number == kIndividualDistancesStep) {
        run.PopDistMask = (run.PopDistMask & kNoMeasures) | plan.IndividualMeasures;
    }
    if (run.Spreading != nullptr) {
        startUnit(run.Spreading->seed(), {UnitKind::Pass, step.Number});
    }
}

} // namespace

std::vector<TestRow> runPlan(AnalyseDataObj& run, const RunPlan& plan, const PassBegin& begin,
                             const Spread::Progress& share) {
    const Spread spread(plan.Seed.value_or(0), plan.Threads, share);
    TestRecord tests;
    run.Spreading = plan.Seed ? &spread : nullptr;
    run.SequentialHits = plan.SequentialHits;
    run.Tests = &tests;
    run.TakeSettings(plan.Masks, plan.Scalars);
    run.WriteOutput(plan.Scalars.Bootstraps, plan.Scalars.Permutationen, [&](const PassStep& step) {
        beginPass(plan, run, step);
        if (begin) {
            begin(step);
        }
    });
    if (plan.Seed) {
        run.LogEntry(("Random seed: " + std::to_string(*plan.Seed)).c_str());
    }
    run.LogDatei.close();
    run.Tests = nullptr;
    run.Spreading = nullptr;
    return testRows(tests, namesOf(run));
}

} // namespace kva
