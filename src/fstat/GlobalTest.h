// GlobalTest: the permutation test of the F-statistics over all populations, whose slots are dealt
// out anew, and its counts.
#ifndef KVA_FSTAT_GLOBALTEST_H
#define KVA_FSTAT_GLOBALTEST_H

#include "data/CMatrix.h"
#include "data/codeddata.h"
#include "fstat/GenotypePool.h"
#include "fstat/LocusFigures.h"
#include "fstat/Shuffle.h"
#include "fstat/ShuffleTable.h"
#include "fstat/nearvalues.h"
#include "fstat/wc84.h"
#include "run/testrecord.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kva {

class Datensatz;

constexpr int32_t kFewestGlobalPops = 2; // that differ

// What is compared with the permutations.
struct ObservedValues {
    TestedValues All;
    std::vector<TestedValues> Loci; // by locus, from 0
};

// Hits and permutations over all loci and of each.
struct GlobalCounts {
    explicit GlobalCounts(std::size_t loci) : Loci(loci) {}

    void add(const GlobalCounts& more) {
        for (std::size_t s = 0; s < All.size(); ++s) {
            All[s].add(more.All[s]);
            for (std::size_t l = 0; l < Loci.size(); ++l) {
                Loci[l][s].add(more.Loci[l][s]);
            }
        }
    }

    TestCounts All;
    std::vector<TestCounts> Loci;
};

// The values that are tested, of a locus (from 0) of the matrix of the estimates.
TestedValues testedValues(const CMatrix& locus, int32_t l);

// The statistics of one shuffle of all populations; twin of Datensatz::CountMixGlobal
// followed by estimateGlobal, with the same draws and the same numbers.
class GlobalTest {
  public:
    // fstMask: of FstBit. undefined: stands where there is no value.
    GlobalTest(const Datensatz& daten, uint32_t fstMask, double undefined);

    // Makes a permutation and counts its hits. locus: as in values().
    void permute(const ObservedValues& observed, CMatrix& locus, GlobalCounts& counts);

  private:
    // Deals for all loci, where near values can tell what they hold. Else values() deals.
    bool dealNear();

    // Counts the hits of what dealNear() dealt, by near values where these tell and by exact ones
    // where not; false if there are no near ones. locus: as in values().
    bool countNear(const ObservedValues& observed, CMatrix& locus, GlobalCounts& counts);

    // The values of a deal: of the last one if it is `dealt`. locus: five rows; keeps what a locus
    // without a value there held.
    GlobalValues values(CMatrix& locus, bool dealt);

    // Deals out all populations for some loci and counts their samples there, if that is done for
    // all loci at once.
    void deal(LociRange loci);

    // A locus of the last deal counted slot by slot; nothing if it does not vary.
    std::optional<GlobalLocus> countedLocus(std::size_t l);

    // Counts a locus of the last deal: the pool and the tables of the populations.
    void count(const CodedLocus& locus);

    // Sets Figures from the pool and the tables.
    void readFigures();

    // The exact values of a locus that varies, in the last deal.
    TestedValues exactLocus(std::size_t l, CMatrix& locus);

    CodedData Data;
    bool Linked;
    HRule Rule;
    double Undefined;
    GlobalShuffle Shuffle;
    std::optional<GenotypePool> Rows; // counts by rows; nothing: by tables
    ShuffleTable Pool;
    std::vector<ShuffleTable> Tables; // of each population
    std::vector<std::size_t> RowOf;   // place of each allele code in the pool
    LocusFigures Figures;
};

} // namespace kva

#endif
