// AnalyseDataObj: the analysis object. It owns the data set, the allele tables, the
// run log and the paths of the result folder; every analysis and output pass is one
// of its operations, defined in the folder of its subsystem.
//
// Life: created (Daten null); loaded (CheckDataFile made Daten, InitPath the result
// folder); run, any number of times. The current folder of the process is part of
// the object's state: passes go from ResultPfad into their folder and back.
#ifndef KVA_CONTROL_ANALYSEDATAOBJ_H
#define KVA_CONTROL_ANALYSEDATAOBJ_H

#include "control/settings.h"
#include "data/allelcount.h"
#include "data/lociclass.h"
#include "data/resultfile.h"
#include "fstat/ftriple.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

class HetBereich;
class HetStichprobe;
class HetTabelle;
struct HetReplikaSheets;

class AnalyseDataObj : public AnalyseSettings {
  public:
    AnalyseDataObj() = default;
    // Frees everything and takes the process back to StartPfad.
    ~AnalyseDataObj();
    AnalyseDataObj(const AnalyseDataObj&) = delete;
    AnalyseDataObj& operator=(const AnalyseDataObj&) = delete;

    // --- Run control: control/AnalyseDataObj.cpp --------------------------------

    // Takes over the settings of a front end. Bootstraps and Permutationen travel as
    // arguments of WriteOutput instead.
    void TakeSettings(const AnalyseSettings& masks, const ScalarSettings& scalars);

    // Prepares a further run on the loaded data: the next numbered folder and log.
    // 0; 1 if nothing is loaded.
    int LinkResultNew();

    // Runs all passes in their fixed order. Nothing stops the pipeline: a pass that
    // fails tells so and returns. 0.
    int WriteOutput(long bootstraps, long permutations);

    // Opens a file of the result folder in the current folder; a failure, now or
    // later, is told on the console and in the log.
    ResultFile OpenResult(const std::string& name, const char* mode);

    // The entry of a finished pass in the log: a line end, the text, a line end,
    // flushed. Nothing without a log.
    void LogEntry(const char* text);

    // --- Run log: control/datalog.cpp ----------------------------------------------

    // Writes the head of the log: data and settings. The log must be open. 0.
    int WriteDataLog(long bootstraps, long permutations);

    // --- Data file: data/dataread.cpp --------------------------------------------------

    // First pass over the file: finds its shape, makes and sizes Daten. 0, also for a file whose
    // first row names no locus; or a refusal: -1 null stream, 1 no memory for the buffer, 2 none
    // for Daten, 3 nothing read, 4 format or line end, 5 header rows, 6 fewer cells than no locus
    // takes. The stream stays the caller's.
    int CheckDataFile(std::FILE* stream);

    // InitPath(), then GetDataFile(); 0 whatever they returned.
    int ReadDataFile(std::FILE* stream);

    // Second pass: fills the loci. 0; -1 nothing read, a refused file or a row too long;
    // -3 header.
    int GetDataFile(std::FILE* stream);

    // --- Result folder: data/resultpath.cpp ----------------------------------------------

    // Makes the next numbered result folder, enters it and opens its log. 0; 1 if
    // that failed, with the paths and the log as they were.
    int InitPath();

    // --- Access, merge and save: data/datamerge.cpp ------------------------------------
    // For programs built on the object; of the passes only the IM export uses GetPopName.
    // Loci and populations count from 1, individuals from 0 where nothing else is said. -1
    // stands for "nothing is loaded".

    // The two alleles of an individual. 0; -1; -2 for a bad locus.
    int GetTierDaten(int locus, int pop, int ind, int& a1, int& a2) const;
    int SetTierDaten(int locus, int pop, int ind, int a1, int a2);

    // The haploid flag of an individual, read on `locus` (0 for a bad one), and its group,
    // read on the first locus. Wanted: `ind` counts from 1 here. 0; -1.
    int GetTierInfo(int pop, int ind, int& haploid, int& gruppe, int locus) const;

    // Individuals of a population, 0 for a bad one. 0; -1.
    int GetAnzIndividuuen(int pop, int& anzahl) const;

    // Individuals of all populations; 0 if nothing is loaded.
    int GetGesamtIndividuuenAnzahl() const;

    // Turns a running number over all individuals into population and number within it; both
    // numbers count from 0. The walk ends at an empty population, too: the rest of the number is
    // then the number within it. 0; -1; -2, and nothing stored, for a number behind the last
    // individual.
    int ConvertIndividAnzahl(int gesamt, int& pop, int& ind) const;

    // Null if nothing is loaded, without loci, or for a bad number.
    const std::string* GetPopName(int pop) const;

    // The names of a locus (null where one is not set), its repeat and its rest length. Does
    // nothing if nothing is loaded or one of the two pointers is null.
    void GetLociInfo(int locus, const std::string** name, const std::string** name2, int& muster,
                     int& rest) const;

    // Adds the loci of a second object that holds the same individuals in the same order; a
    // locus of a known name is left out. The counted tables are dropped, as the next pass
    // counts anew. 0; -1 for null; -2 if the numbers of populations differ; p > 0 if the name
    // or the size of population p differs. Up to here nothing has changed. Else the result of
    // Datensatz::AddNewDatensatz less 1, where that is not positive.
    int AddNewData(const AnalyseDataObj* neu);

    // Writes the data as a file of three header rows and two columns per locus, whatever the
    // format they came in. Wanted: always -1. Nothing is told of a failure.
    int SaveDataAs(const std::string& filename) const;

    // --- Counting: stats/CountAllels.cpp -----------------------------------------------

    // Builds PopAllele and writes the two count sheets. 0; 1 or 2 if the folder cannot
    // be entered, with PopAllele as it was.
    int CountAllels();

    // Builds IndAllele and sets AnzInd. 0.
    int CountIAllels();

    // --- Descriptive statistics: stats/<name of the pass>.cpp ---------------------------
    // All count the alleles first if no pass did. -4: no data set; 1: the folder cannot
    // be entered, or there are no tables; 0.

    // The twenty sheets of "Single_data", then calcGST(). Runs the random-discard
    // replicates of all tables.
    int Uebersicht();

    // "GST.xls", into the current folder. PopAllele must be there. 0.
    int calcGST();

    // "Errorreport.txt" in the result folder.
    long GenErrorReport();

    // "Summary.xls" in the result folder.
    int TABAusgabe();

    // The sheets of "Group_data", where the process stays. 2: the folder is there but
    // cannot be entered.
    int GruppenAusgabe();

    // --- Genetic distances: distance/CalcDistances.cpp ------------------------------------

    // Distances between all pairs of populations, in the folder "Distance_data": a file of
    // matrices for each measure whose bit is on in PopDistMask, one matrix per replicate, and
    // with DistBit::PerLocus a sheet of single loci. `bootstraps` is stored in Bootstraps; the
    // random stream is seeded from the clock. 0; 1 or 2 if the folder cannot be entered; 2 if
    // PopDistMask is 0; -4 if nothing is loaded.
    long CalcDistancesPop(long bootstraps);

    // The same between all pairs of individuals. The measures are those of PopDistMask, too.
    // No sheets of single loci; with DistBit::Nexus and no bootstrap the matrices are NEXUS
    // files.
    long CalcDistancesInd(long bootstraps);

    // The engines, in the current folder. 0; -3 if no measure is selected.
    long POP_DIST_POSA();
    long IND_DIST_POSA();

    // --- F-statistics: fstat/ -----------------------------------------------------------
    // Populations i and j count from 0 here. A value that cannot be computed is DistFehlerwert.

    // The pass (fstat/FstDrivers.cpp): stores Permutationen, works in "F-Statistic". 0; 2 with
    // no flag on or for a folder that exists and cannot be entered, 1 for a new one; -4 without
    // data.
    int CalcDistancesSpecial(long permutationen);

    // All pairs: estimates, tests and sheets. 0; -1 if a result file cannot be opened.
    int FST_ALLG();

    // All populations at once: estimates, test and sheets. 0.
    int FST_ALLGGLOBAL();

    // Fst, Fit and Fis of a pair (Weir and Cockerham 1984), fstat/FstPair.cpp, stored at (i, j)
    // and (j, i) of f. tab[0]: the alleles to sum over; tab[idx1 + 1], tab[idx2 + 1]: the
    // samples; each a table per locus. locusFile: takes Fst of each locus if the bit for that is
    // on; null: not. locusTable: takes them in the column of the pair, if its bits are on. 0.
    int FST_SINGLE_WC84(long i, long j, FTripel& f, const AllelTabellen& tab, long nLoci, long idx1,
                        long idx2, ResultFile* locusFile, CMatrix& locusTable) const;

    // All pairs of `tab` (as PopAllele), with "Fst_per_locus.xls" if its bit is on. 0; 1 if
    // `tab` is empty.
    int FST_PAIR_WC84(FTripel& f, const AllelTabellen& tab, CMatrix& locusTable);

    // Log-likelihood ratio G of a pair, another test statistic beside Fst: stored in all three
    // matrices. 0.0 where there is nothing to compare. 0.
    int LOGG_SINGLE_WC84(long i, long j, FTripel& f, const AllelTabellen& tab, long nLoci,
                         long idx1, long idx2) const;

    // Permutation test of the observed f of all pairs (fstat/FstPermutation.cpp). p: plain
    // p-values above, corrected ones (times the number of pairs) below the diagonal. locusTable:
    // holds values of the last permutation then. Seeds and draws from the random stream. 0.
    int FST_P_WC84(FTripel& p, const FTripel& f, const AllelTabellen& tab,
                   CMatrix& locusTable) const;

    // The same on data thinned anew in each permutation (fstat/FstRandomDiscard.cpp). f: takes
    // the means of the test statistics. untergrenze, obergrenze: take the limits of Fst, if the
    // bit for that is on. 0.
    int FST_RD_WC84(FTripel& p, FTripel& f, const AllelTabellen& tab, CMatrix& untergrenze,
                    CMatrix& obergrenze, CMatrix& locusTable) const;

    // Draws one thinned data set: the source of each slot. `sheet` comes with all its cells. 0.
    int CreateNewDataSheetMix(SlotSheet& sheet) const;

    // Fst, Fit, Fis, Gst, Gst' over all populations (Weir and Cockerham 1984; Nei 1973; Hedrick
    // 2005), fstat/GlobalFst.cpp. locus: five rows, takes the values of each locus (column). 0; 1
    // with fewer than two populations and `locus` untouched.
    int FST_GLOBAL_WC84(double& fst, double& fit, double& fis, double& gst, double& gstStrich,
                        CMatrix& locus, const AllelTabellen& tab, int nLoci, int nPop) const;

    // Permutation test of the observed values that come in; p-values of Fst, Gst, Gst' over all
    // loci and, in rows 0 to 2, of each locus. Seeds and draws from the random stream. 0.
    int FST_GLOBAL_P_WC84(double fst, double gst, double gstStrich, const CMatrix& locus,
                          double& pFst, double& pGst, double& pGstStrich, CMatrix& pLocus) const;

    // F-beta of all populations and pairs, with its two sheets (fstat/FBeta.cpp). 0.
    int F_BETA_ALLG();

    // The references of F-beta, a row a locus, -1.0 where no population has two gene copies:
    // N gene copies, W weight of the samples, Q diversity within and between them. 0.
    int F_HELPER(CMatrix& betaN, CMatrix& betaW, CMatrix& betaQ) const;

    // beta i into (i, i). mittel: one minus the sum of ratios over loci instead of the ratio of
    // sums. betaN is not read. 0.
    int F_Betai_SINGLE(int i, CMatrix& beta, const CMatrix& betaN, const CMatrix& betaW,
                       const CMatrix& betaQ, bool mittel) const;

    // beta ij into (i, j) and (j, i). A pair without data gives (i, i) and (j, i) DistFehlerwert.
    // 0; -1 with nothing changed if i is j.
    int F_Betaij_SINGLE(int i, int j, CMatrix& beta, const CMatrix& betaN, const CMatrix& betaW,
                        const CMatrix& betaQ, bool mittel) const;

    // --- Heterozygosity range: hetrange/CalcHetRange.cpp -------------------------

    // The pass. 0; -4 if nothing is loaded; 1 or 2 if the folder cannot be entered. The
    // random stream is not seeded: it goes on as the earlier passes left it.
    long CalcHetRange();

    // All populations, the nine sheets. 0.
    long MakeHetRangeAnalyse();

    // Resamples population `pop` (from 0). Result: an entry per locus.
    std::vector<HetBereich> ResampleHetPopulation(int pop, std::vector<HetTabelle>& tabellen);

    // The sheets of every replicate of a population (from 0), with heads; closed ones if
    // they are not asked for.
    HetReplikaSheets OpenHetReplikaSheets(int pop);

    // Draws the sample of one replicate for a population (from 0): a random number per
    // place, row by row. Without HetRangeBit::Draw the sample stays as it was. 0.
    int MakeHetReplika(int replikat, int pop, HetStichprobe& stichprobe) const;

    // Computes the statistics of one replicate, writes them to the open replicate sheets
    // and takes them into `bereich`. `bereich` and `tabellen` hold an entry per locus.
    // 0, or -100 if the H of the last locus is negative.
    int AnalyseHetReplika(int replikat, const HetStichprobe& stichprobe,
                          std::vector<HetBereich>& bereich, std::vector<HetTabelle>& tabellen,
                          HetReplikaSheets& sheets) const;

    // --- Format conversion: formats/ ----------------------------------------------------
    // The three passes give -4 without a data set, and 1 or 2 if their folder cannot be entered
    // or the alleles not be counted. A file that cannot be opened ends a pass where told; the
    // process then stays in the folder.

    // GenePop.cpp: the two Genepop files, the structure file and the two new data sheets, with
    // the alleles of inbred individuals discarded at random; seeds the random stream. 0; 1 if one
    // of the files but the structure file cannot be opened.
    long MakeGenePop();

    // NextFormates.cpp: the files of msvar, Migrate/LAMARC and Arlequin that GeneralMask asks for.
    // 0; -1 if the Migrate, -2 if the Arlequin file cannot be opened.
    long MakeNextFormates();

    // Arlequin.cpp: the frame of the Arlequin project around the individuals of each population.
    // 0; the end gives -1, and writes nothing, if no population is in group 1. `n`: individuals.
    long WriteArlequinHeader(ResultFile& f) const;
    static long WriteArlequinPopStart(ResultFile& f, int n, const std::string& name);
    static long WriteArlequinPopEnd(ResultFile& f);
    long WriteArlequinEnde(ResultFile& f) const;

    // IMInfo.cpp: reads inheritance scalars and mutation rates from an open IM information file
    // into the loci, so it follows GetDataFile. 0; -1 nothing to read, no row, or a row too long;
    // -3 header. What was read before stays. The stream stays the caller's.
    long ReadIMInfo(std::FILE* stream);

    // IMFormat.cpp: one IM file per pair of populations if GeneralMask asks for it. 0; -2 if one
    // cannot be opened.
    long MakeIMFormat();

    // Opens the file of populations i and j, from 0, and writes its head; without a common locus
    // it tells so on the console and leaves the file empty. Closed if it cannot be opened.
    ResultFile WriteIMHeader(int i, int j, const std::string& nameI, const std::string& nameJ);

    // Writes the block of a locus, from 0, for that pair; `schrittweite` is its step width.
    // 0; -1, and nothing written, if one of the two has no data there.
    long WriteIMLocus(ResultFile& f, int i, int j, int locus, const std::string& nameI,
                      const std::string& nameJ, int schrittweite);

    // --- State ----------------------------------------------------------------------------
    // The five words of flags come first, from AnalyseSettings.

    std::string StartPfad;            // absolute; folder to go back to, empty until InitPath
    std::string ResultPfad;           // absolute; the numbered result folder, empty until InitPath
    int32_t Bootstraps = 1;           // distance replicates, set by the distance passes
    int32_t BootLoci = -1;            // loci drawn per bootstrap replicate; -1: all
    int32_t Permutationen = 0;        // permutations, set by CalcDistancesSpecial
    double DistUnendlich = 10.0;      // distance where the similarity is 0 under -ln
    double DistFehlerwert = -32767.0; // cell without data in distances and F-statistics
    int32_t RichnessRef = -1;         // gene copies of the richness sub-sample; 0 or less:
                                      // minimal sample number per locus
    ResultFile LogDatei;              // the run log "KVA.log"
    double FstAlpha = 0.05;           // tail of the confidence interval
    double JackknifeAnteil = 0.1;     // share of individuals left out by jackknifing
    int32_t HetRandomisierungen = 1000;     // replicates of the heterozygosity range
    int32_t HetReserve = 1;                 // carried; read by nothing
    int32_t ReplikaLoci = -1;               // loci per replica, see ScalarSettings
    int32_t Replikate = 1000;               // replicas of the heterogeneity among loci
    AllelTabellen PopAllele;                // entry 0 the pool, entry p population p; empty until
                                            // CountAllels
    AllelTabellen IndAllele;                // one entry per individual; empty until CountIAllels
    std::unique_ptr<Datensatz> Daten;       // null until CheckDataFile
    int32_t GapSchritte = 5;                // large gap, in mutation steps
    int32_t GapBasen = 15;                  // large gap, in base pairs
    int32_t AllelMaxLaenge = 300;           // longest plausible allele
    int32_t AllelMinLaenge = 35;            // shortest plausible allele
    int32_t AnzLoci = 0;                    // loci
    int32_t AnzPop = 0;                     // populations
    int32_t AnzInd = 0;                     // individuals, set by CountIAllels
    int32_t KopfSpalten = 0;                // leading columns of the data file, 3 once checked
    int32_t KopfZeilen = 0;                 // header rows of the data file, 2 or 3
    int32_t MaxChromosomen = 0;             // slots of the largest population
    char DatenFormat = 0;                   // columns per locus, 1 or 2; a number, not a digit
    std::string DateiName = "testdata.dat"; // data file as it was typed
    std::string DateiKurzName;              // data file without its folder, set by InitPath
    std::string DateiPfad;       // absolute path of the data file, set at its first InitPath
    std::string AktuellerOrdner; // folder of the running pass inside the result folder, for
                                 // failure lines; set by PassFolder
    bool OrdnerFehlt = false;    // the last InitPath failed: WriteOutput runs no pass

  private:
    int TestPairs(FTripel& f, CMatrix& locusTable); // last part of FST_ALLG
    void ReportFileFailure(const std::string& name, const std::string& reason);
};

#endif
