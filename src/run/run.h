// Run: what a pass is given: the settings, the loaded data, the counted allele tables, and the
// result folder with its log. A pass is a function of its folder that takes a Run, const where it
// only reads.
#ifndef KVA_RUN_RUN_H
#define KVA_RUN_RUN_H

#include "base/settings.h"
#include "data/allelcount.h"
#include "data/loadeddata.h"
#include "output/resultfolder.h"

#include <cstdint>

namespace kva {

class Spread;
struct TestRecord;

// The five words of flags come first. A new Run holds the defaults of the menu and no data.
class Run : public AnalyseSettings, public LoadedData, public ResultFolder {
  public:
    // Takes over the settings of a front end, all words and the scalars that have a field of the
    // same name here, but for Bootstraps and Permutationen: they travel to their passes as
    // arguments instead.
    void TakeSettings(const AnalyseSettings& masks, const ScalarSettings& scalars);

    // Adds the loci of a second run's data, which must hold the same individuals in the same order;
    // a locus of a known name is left out. The counted tables are dropped, as the next pass counts
    // anew. `neu` stays as it is. 0; -1 for null; -2 if the numbers of populations differ; p > 0 if
    // the name or the size of population p (from 1) differs. Up to here nothing has changed. Else
    // as AddLociOf.
    int AddNewData(const Run* neu);

    int32_t Bootstraps = 1;             // distance replicates, set by the distance passes
    int32_t BootLoci = -1;              // loci drawn per bootstrap replicate; 0 or less: as many
                                        // as there are
    int32_t Permutationen = 0;          // permutations, set by the pass of the F-statistics; 0: no
                                        // tests
    double DistUnendlich = 10.0;        // distance where the similarity is 0 under -ln
    double DistFehlerwert = -32767.0;   // sentinel: cell without data in distances and F-statistics
    int32_t RichnessRef = -1;           // gene copies of the richness sub-sample; 0 or less:
                                        // minimal sample number per locus
    double FstAlpha = 0.05;             // share outside the limits of Fst, half of it in each tail
    double JackknifeAnteil = 0.1;       // share of individuals that jackknifed thinning leaves out,
                                        // 0 to 1; the shuffles have their own (fstat/jackknife)
    int32_t HetRandomisierungen = 1000; // replicates of the heterozygosity range
    int32_t HetReserve = 1;             // carried; read by nothing
    int32_t ReplikaLoci = -1;           // loci per replica, see ScalarSettings
    int32_t Replikate = 1000;           // replicas of the heterogeneity among loci
    int32_t GapSchritte = 5;            // large gap of the error report, in smallest gaps of the
                                        // locus (mutation steps); a larger one is told
    int32_t GapBasen = 15;              // the same, in base pairs
    int32_t AllelMaxLaenge = 300;       // longest plausible allele, in base pairs
    int32_t AllelMinLaenge = 35;        // shortest plausible allele, in base pairs
    SampleTables PopAllele;             // entry 0 the pool, entry p population p, each a sorted
                                        // table per locus; empty until counted
    SampleTables IndAllele;             // one entry per individual, population after population,
                                        // from 0; empty until counted
    int32_t AnzInd = 0;                 // entries of IndAllele: half the slots of all populations
    const Spread* Spreading = nullptr;  // NOT OWNED; how work is spread over threads; null: not,
                                        // and all draws come from the stream that the clock seeds
    int32_t SequentialHits = 0;         // hits that end the test of a pair, only with Spreading; 0:
                                        // all permutations are made
    TestRecord* Tests = nullptr;        // NOT OWNED; takes the counts of the tests; null: nothing
};

} // namespace kva

#endif
