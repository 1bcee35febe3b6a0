// AnalyseDataObj: the analysis object, a Run with its passes as operations. Each pass is a function
// of its subsystem's folder, declared in the header that heads its group here. Arguments, results,
// index bases, files and random draws are told there; the operation only calls it and hands its
// result on.
//
// Life: created (Daten null); loaded (CheckDataFile made Daten, InitPath the result folder); run,
// any number of times. The current folder of the process is part of the object's state: passes go
// from ResultPfad into their folder and back. Its end takes the process back to StartPfad.
#ifndef KVA_CONTROL_ANALYSEDATAOBJ_H
#define KVA_CONTROL_ANALYSEDATAOBJ_H

#include "distance/passes.h"
#include "formats/passes.h"
#include "fstat/passes.h"
#include "hetrange/passes.h"
#include "run/run.h"
#include "stats/passes.h"

#include <cstdint>
#include <cstdio>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace kva {

class AnalyseDataObj;

// A pass among those of a run.
struct PassStep {
    uint32_t Number;  // its own for good: random streams are numbered by it
    const char* Name; // for a user
    bool (*Wanted)(const AnalyseDataObj& run);
    void (*Do)(AnalyseDataObj& run, long bootstraps, long permutations);
};

constexpr uint32_t kIndividualDistancesStep = 9; // the Number of that pass

// All of them in their order.
std::span<const PassStep> allPassSteps();

// Is told of a pass before it begins.
using PassBegin = std::function<void(const PassStep& step)>;

// The operations of a group stand in the order of the functions in its header. One whose pass
// always goes on gives 0.
class AnalyseDataObj : public Run {
  public:
    // --- Run control: AnalyseDataObj.cpp -------------------------------------------------

    // Prepares a further run on the loaded data: the next numbered folder, where the process goes,
    // and its log. 0, also if the folder cannot be made, which sets FolderMissing and leaves the
    // process in StartPfad; 1, and nothing done, if nothing is loaded.
    int LinkResultNew();

    // Runs all passes in their fixed order, after the log's head; the distances, F-statistics and
    // heterozygosity range only where GeneralMask asks for them. Nothing stops the pipeline: a pass
    // that fails tells so and returns. Without a result folder (FolderMissing) no pass runs.
    // `bootstraps`: replicates of the distances; 0 sets PopDistMask to 0. `permutations`: of the
    // tests of the F-statistics, 0: none. `begin`: null: nobody is told. 0.
    int WriteOutput(long bootstraps, long permutations, const PassBegin& begin = nullptr);

    // InitPath(), then GetDataFile() from `stream`, which stays the caller's and was checked with
    // CheckDataFile; 0 whatever they returned.
    int ReadDataFile(std::FILE* stream);

    // --- Run log: datalog.cpp ------------------------------------------------------------

    // Writes the head of the log: data and settings, with the numbers given; flushes it. The log
    // must be open. 0.
    int WriteDataLog(long bootstraps, long permutations);

    // --- Result folder: output/resultfolder.h ----------------------------------------------

    // The next result folder of DateiName. 0, 1: see MakeNext.
    int InitPath() { return MakeNext(DateiName); }

    // --- Counting and descriptive statistics: stats/passes.h --------------------------------

    // Build the allele tables and write the sheets of single populations and of groups. CountAllels
    // comes before calcGST; the other passes count first if need be. Uebersicht draws random
    // numbers for inbred samples.
    int CountAllels() { return countAlleles(*this); }
    int CountIAllels() { return countIndividualAlleles(*this), 0; }
    int Uebersicht() { return writeOverview(*this); }
    int calcGST() { return writeGst(*this), 0; }
    long GenErrorReport() { return writeErrorReport(*this); }
    int TABAusgabe() { return writeSummary(*this); }
    int GruppenAusgabe() { return writeGroupData(*this); }

    // --- Genetic distances: distance/passes.h -----------------------------------------------

    // The passes, which store `bootstraps` (replicates), seed the random stream and work in
    // "Distance_data"; then their engines, which work in the current folder.
    long CalcDistancesPop(long bootstraps) { return populationDistances(*this, bootstraps); }
    long CalcDistancesInd(long bootstraps) { return individualDistances(*this, bootstraps); }
    long POP_DIST_POSA() { return writePopulationMatrices(*this); }
    long IND_DIST_POSA() { return writeIndividualMatrices(*this); }

    // --- F-statistics: fstat/passes.h -------------------------------------------------------

    // The pass, which stores `permutationen` and works in "F-Statistic"; pairs; all populations;
    // F-beta. Populations count from 0; DistFehlerwert: no value. FST_P_, FST_RD_ and FST_GLOBAL_P_
    // seed the random stream and draw from it, CreateNewDataSheetMix draws.
    int CalcDistancesSpecial(long permutationen) { return fStatistics(*this, permutationen); }
    int FST_ALLG() { return pairwiseFst(*this); }
    int FST_ALLGGLOBAL() { return globalFst(*this), 0; }
    int FST_SINGLE_WC84(long i, long j, FTriple& f, const SampleTables& tab, long nLoci, long idx1,
                        long idx2, ResultFile* locusFile, CMatrix& locusTable) const {
        return estimatePair(*this, i, j, f, tab, nLoci, idx1, idx2, locusFile, locusTable), 0;
    }
    int FST_PAIR_WC84(FTriple& f, const SampleTables& tab, CMatrix& locusTable) {
        return estimatePairs(*this, f, tab, locusTable);
    }
    static int LOGG_SINGLE_WC84(long i, long j, FTriple& f, const SampleTables& tab, long nLoci,
                                long idx1, long idx2) {
        return logLikelihoodRatio(i, j, f, tab, nLoci, idx1, idx2), 0;
    }
    int FST_P_WC84(FTriple& p, const FTriple& f, const SampleTables& tab,
                   CMatrix& locusTable) const {
        return testPairs(*this, p, f, tab, locusTable), 0;
    }
    int FST_RD_WC84(FTriple& p, FTriple& f, const SampleTables& tab, CMatrix& untergrenze,
                    CMatrix& obergrenze, CMatrix& locusTable) const {
        return testThinnedPairs(*this, p, f, tab, untergrenze, obergrenze, locusTable), 0;
    }
    int CreateNewDataSheetMix(SlotSheet& sheet) const { return drawThinnedSheet(*this, sheet), 0; }
    int FST_GLOBAL_WC84(double& fst, double& fit, double& fis, double& gst, double& gstStrich,
                        CMatrix& locus, const SampleTables& tab, int nLoci, int nPop) const {
        return estimateGlobal(*this, fst, fit, fis, gst, gstStrich, locus, tab, nLoci, nPop);
    }
    int FST_GLOBAL_P_WC84(double fst, double gst, double gstStrich, const CMatrix& locus,
                          double& pFst, double& pGst, double& pGstStrich, CMatrix& pLocus) const {
        return testGlobal(*this, fst, gst, gstStrich, locus, pFst, pGst, pGstStrich, pLocus), 0;
    }
    int F_BETA_ALLG() { return fBeta(*this), 0; }
    int F_HELPER(CMatrix& betaN, CMatrix& betaW, CMatrix& betaQ) const {
        return betaReferences(*this, betaN, betaW, betaQ), 0;
    }
    int F_Betai_SINGLE(int i, CMatrix& beta, const CMatrix& betaN, const CMatrix& betaW,
                       const CMatrix& betaQ, bool mittel) const {
        return betaOfPopulation(*this, i, beta, betaN, betaW, betaQ, mittel), 0;
    }
    int F_Betaij_SINGLE(int i, int j, CMatrix& beta, const CMatrix& betaN, const CMatrix& betaW,
                        const CMatrix& betaQ, bool mittel) const {
        return betaOfPair(*this, i, j, beta, betaN, betaW, betaQ, mittel);
    }

    // --- Heterozygosity range: hetrange/passes.h --------------------------------------------

    // The pass, which works in "Resampling_data"; its loop over populations (from 0); the draw and
    // the evaluation of one replicate (from 0). All but the evaluation draw random numbers.
    long CalcHetRange() { return heterozygosityRange(*this); }
    long MakeHetRangeAnalyse() { return writeHeterozygosityRanges(*this), 0; }
    int MakeHetReplika(int replikat, int pop, HetStichprobe& stichprobe) const {
        return drawReplicate(*this, replikat, pop, stichprobe), 0;
    }
    int AnalyseHetReplika(int replikat, const HetStichprobe& stichprobe,
                          std::vector<HetBereich>& bereich, std::vector<HetTable>& tabellen,
                          HetReplicateSheets& sheets) const {
        return evaluateReplicate(*this, replikat, stichprobe, bereich, tabellen, sheets);
    }

    // --- Format conversion: formats/passes.h ------------------------------------------------

    // The passes MakeGenePop, which seeds the random stream and draws, MakeNextFormates and
    // MakeIMFormat work in "Formats&Data"; the parts of the Arlequin and the IM files write into
    // the file given or the current folder. i, j, locus: from 0.
    long MakeGenePop() { return writeGenepop(*this); }
    long MakeNextFormates() { return writeOtherFormats(*this); }
    long WriteArlequinHeader(ResultFile& f) const { return writeArlequinHead(*this, f), 0; }
    static long WriteArlequinPopStart(ResultFile& f, int n, const std::string& name) {
        return beginArlequinSample(f, n, name), 0;
    }
    static long WriteArlequinPopEnd(ResultFile& f) { return endArlequinSample(f), 0; }
    long WriteArlequinEnde(ResultFile& f) const { return writeArlequinStructure(*this, f); }
    long ReadIMInfo(std::FILE* stream) { return readIMInfo(*this, stream); }
    long MakeIMFormat() { return writeIMFormat(*this); }
    ResultFile WriteIMHeader(int i, int j, const std::string& nameI, const std::string& nameJ) {
        return openIMPair(*this, i, j, nameI, nameJ);
    }
    long WriteIMLocus(ResultFile& f, int i, int j, int locus, const std::string& nameI,
                      const std::string& nameJ, int schrittweite) {
        return writeIMLocus(*this, f, i, j, locus, nameI, nameJ, schrittweite);
    }
};

} // namespace kva

#endif
