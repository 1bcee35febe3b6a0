#include "control/AnalyseDataObj.h"

#include <unistd.h>

namespace kva {

namespace {

bool always(const AnalyseDataObj& /*run*/) {
    return true;
}

// A pass that needs no numbers.
template <auto Pass> void call(AnalyseDataObj& run, long /*bootstraps*/, long /*permutations*/) {
    (run.*Pass)();
}

constexpr PassStep kPassSteps[] = {
    {0, "allele counts", always, call<&AnalyseDataObj::CountAllels>},
    {1, "descriptive statistics", always, call<&AnalyseDataObj::Uebersicht>},
    {2, "error report", always, call<&AnalyseDataObj::GenErrorReport>},
    {3, "summary", always, call<&AnalyseDataObj::TABAusgabe>},
    {4, "group means", always, call<&AnalyseDataObj::GruppenAusgabe>},
    {5, "Genepop files", always, call<&AnalyseDataObj::MakeGenePop>},
    {6, "files for other programs", always, call<&AnalyseDataObj::MakeNextFormates>},
    {7, "IM files", always, call<&AnalyseDataObj::MakeIMFormat>},
    {8, "distances of populations",
     [](const AnalyseDataObj& run) {
         return hasBit(run.GeneralMask, GeneralBit::PopDistances) && run.PopDistMask != 0;
     },
     [](AnalyseDataObj& run, long bootstraps, long) { run.CalcDistancesPop(bootstraps); }},
    {kIndividualDistancesStep, "distances of individuals",
     [](const AnalyseDataObj& run) {
         return hasBit(run.GeneralMask, GeneralBit::IndDistances) && run.IndDistMask != 0;
     },
     [](AnalyseDataObj& run, long bootstraps, long) { run.CalcDistancesInd(bootstraps); }},
    {10, "F-statistics",
     [](const AnalyseDataObj& run) {
         return hasBit(run.GeneralMask, GeneralBit::FStatistics) && run.FstMask != 0;
     },
     [](AnalyseDataObj& run, long, long permutations) { run.CalcDistancesSpecial(permutations); }},
    {11, "heterozygosity range",
     [](const AnalyseDataObj& run) { return hasBit(run.GeneralMask, GeneralBit::HetRange); },
     call<&AnalyseDataObj::CalcHetRange>},
};

} // namespace

std::span<const PassStep> allPassSteps() {
    return kPassSteps;
}

int AnalyseDataObj::LinkResultNew() {
    if (!Daten || StartPfad.empty()) {
        return 1;
    }
    (void)!chdir(StartPfad.c_str()); // InitPath tells of a folder that cannot be made
    InitPath();                      // its failure stands in FolderMissing
    return 0;
}

int AnalyseDataObj::WriteOutput(long bootstraps, long permutations, const PassBegin& begin) {
    if (FolderMissing) { // the passes would write into the folder of an earlier run
        return 0;
    }
    if (!LogDatei.isOpen()) { // closed, or nothing was loaded: then it lies in the current folder
        LogDatei = OpenResult("KVA.log", "ab"); // what cannot be appended to cannot be made anew
    }
    if (LogDatei.isOpen()) {
        WriteDataLog(bootstraps, permutations);
    }
    if (bootstraps == 0) {
        PopDistMask = 0;
    }
    for (const PassStep& step : allPassSteps()) {
        if (step.Wanted(*this)) {
            if (begin) {
                begin(step);
            }
            step.Do(*this, bootstraps, permutations);
        }
    }
    return 0;
}

int AnalyseDataObj::ReadDataFile(std::FILE* stream) {
    InitPath();          // its failure stands in FolderMissing
    GetDataFile(stream); // what it refuses stays without individuals
    return 0;
}

} // namespace kva
