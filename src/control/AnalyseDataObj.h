// AnalyseDataObj: the analysis object, a Run with its passes as operations. Each pass is a function
// of its subsystem's folder, where it is explained; the operation only calls it.
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

#include <cstdio>
#include <string>
#include <vector>

namespace kva {

class AnalyseDataObj : public Run {
  public:
    // --- Run control: AnalyseDataObj.cpp -------------------------------------------------

    // Prepares a further run on the loaded data: the next numbered folder and log. 0; 1 if nothing
    // is loaded.
    int LinkResultNew();

    // Runs all passes in their fixed order. Nothing stops the pipeline: a pass that fails tells so
    // and returns. 0.
    int WriteOutput(long bootstraps, long permutations);

    // InitPath(), then GetDataFile(); 0 whatever they returned.
    int ReadDataFile(std::FILE* stream);

    // --- Run log: datalog.cpp ------------------------------------------------------------

    // Writes the head of the log: data and settings. The log must be open. 0.
    int WriteDataLog(long bootstraps, long permutations);

    // --- Result folder: output/resultfolder.h ----------------------------------------------

    int InitPath() { return MakeNext(DateiName); }

    // --- Counting and descriptive statistics: stats/passes.h --------------------------------

    int CountAllels() { return countAlleles(*this); }
    int CountIAllels() { return countIndividualAlleles(*this); }
    int Uebersicht() { return writeOverview(*this); }
    int calcGST() { return writeGst(*this); }
    long GenErrorReport() { return writeErrorReport(*this); }
    int TABAusgabe() { return writeSummary(*this); }
    int GruppenAusgabe() { return writeGroupData(*this); }

    // --- Genetic distances: distance/passes.h -----------------------------------------------

    long CalcDistancesPop(long bootstraps) { return populationDistances(*this, bootstraps); }
    long CalcDistancesInd(long bootstraps) { return individualDistances(*this, bootstraps); }
    long POP_DIST_POSA() { return writePopulationMatrices(*this); }
    long IND_DIST_POSA() { return writeIndividualMatrices(*this); }

    // --- F-statistics: fstat/passes.h -------------------------------------------------------

    int CalcDistancesSpecial(long permutationen) { return fStatistics(*this, permutationen); }
    int FST_ALLG() { return pairwiseFst(*this); }
    int FST_ALLGGLOBAL() { return globalFst(*this); }
    int FST_SINGLE_WC84(long i, long j, FTriple& f, const SampleTables& tab, long nLoci, long idx1,
                        long idx2, ResultFile* locusFile, CMatrix& locusTable) const {
        return estimatePair(*this, i, j, f, tab, nLoci, idx1, idx2, locusFile, locusTable);
    }
    int FST_PAIR_WC84(FTriple& f, const SampleTables& tab, CMatrix& locusTable) {
        return estimatePairs(*this, f, tab, locusTable);
    }
    static int LOGG_SINGLE_WC84(long i, long j, FTriple& f, const SampleTables& tab, long nLoci,
                                long idx1, long idx2) {
        return logLikelihoodRatio(i, j, f, tab, nLoci, idx1, idx2);
    }
    int FST_P_WC84(FTriple& p, const FTriple& f, const SampleTables& tab,
                   CMatrix& locusTable) const {
        return testPairs(*this, p, f, tab, locusTable);
    }
    int FST_RD_WC84(FTriple& p, FTriple& f, const SampleTables& tab, CMatrix& untergrenze,
                    CMatrix& obergrenze, CMatrix& locusTable) const {
        return testThinnedPairs(*this, p, f, tab, untergrenze, obergrenze, locusTable);
    }
    int CreateNewDataSheetMix(SlotSheet& sheet) const { return drawThinnedSheet(*this, sheet); }
    int FST_GLOBAL_WC84(double& fst, double& fit, double& fis, double& gst, double& gstStrich,
                        CMatrix& locus, const SampleTables& tab, int nLoci, int nPop) const {
        return estimateGlobal(*this, fst, fit, fis, gst, gstStrich, locus, tab, nLoci, nPop);
    }
    int FST_GLOBAL_P_WC84(double fst, double gst, double gstStrich, const CMatrix& locus,
                          double& pFst, double& pGst, double& pGstStrich, CMatrix& pLocus) const {
        return testGlobal(*this, fst, gst, gstStrich, locus, pFst, pGst, pGstStrich, pLocus);
    }
    int F_BETA_ALLG() { return fBeta(*this); }
    int F_HELPER(CMatrix& betaN, CMatrix& betaW, CMatrix& betaQ) const {
        return betaReferences(*this, betaN, betaW, betaQ);
    }
    int F_Betai_SINGLE(int i, CMatrix& beta, const CMatrix& betaN, const CMatrix& betaW,
                       const CMatrix& betaQ, bool mittel) const {
        return betaOfPopulation(*this, i, beta, betaN, betaW, betaQ, mittel);
    }
    int F_Betaij_SINGLE(int i, int j, CMatrix& beta, const CMatrix& betaN, const CMatrix& betaW,
                        const CMatrix& betaQ, bool mittel) const {
        return betaOfPair(*this, i, j, beta, betaN, betaW, betaQ, mittel);
    }

    // --- Heterozygosity range: hetrange/passes.h --------------------------------------------

    long CalcHetRange() { return heterozygosityRange(*this); }
    long MakeHetRangeAnalyse() { return writeHeterozygosityRanges(*this); }
    int MakeHetReplika(int replikat, int pop, HetStichprobe& stichprobe) const {
        return drawReplicate(*this, replikat, pop, stichprobe);
    }
    int AnalyseHetReplika(int replikat, const HetStichprobe& stichprobe,
                          std::vector<HetBereich>& bereich, std::vector<HetTable>& tabellen,
                          HetReplicateSheets& sheets) const {
        return evaluateReplicate(*this, replikat, stichprobe, bereich, tabellen, sheets);
    }

    // --- Format conversion: formats/passes.h ------------------------------------------------

    long MakeGenePop() { return writeGenepop(*this); }
    long MakeNextFormates() { return writeOtherFormats(*this); }
    long WriteArlequinHeader(ResultFile& f) const { return writeArlequinHead(*this, f); }
    static long WriteArlequinPopStart(ResultFile& f, int n, const std::string& name) {
        return beginArlequinSample(f, n, name);
    }
    static long WriteArlequinPopEnd(ResultFile& f) { return endArlequinSample(f); }
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
