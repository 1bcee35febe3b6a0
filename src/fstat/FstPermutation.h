// What the two permutation tests of population pairs share: the loop over pairs, the
// F-statistics of a shuffled pair, and the way from hits to p-values.
#ifndef KVA_FSTAT_FSTPERMUTATION_H
#define KVA_FSTAT_FSTPERMUTATION_H

#include "data/lociclass.h"
#include "fstat/Shuffle.h"
#include "fstat/wc84.h"

#include <cstdint>
#include <optional>
#include <vector>

// Permutations after which the pairwise tests seed the stream again.
constexpr int32_t kPairSeedEvery = 50;

// Calls visit(i, j) for every pair i < j of n populations from 0, row by row.
template <class Visitor> void forEachPair(int32_t n, Visitor&& visit) {
    for (int32_t i = 0; i + 1 < n; ++i) {
        for (int32_t j = i + 1; j < n; ++j) {
            visit(i, j);
        }
    }
}

// A data set in codes, with the tables of its populations.
class CodedSample {
  public:
    explicit CodedSample(const CodedData& data);

    // Takes over `data` with each slot read where the sheet sends it. `data` has the same
    // places as that of the constructor.
    void readThrough(const CodedData& data, const SlotSheet& sheet);

    const CodedLocus& locus(std::size_t l) const { return Data.locus(l); }
    // Population from 0.
    const ShuffleTable& table(std::size_t pop, std::size_t l) const {
        return Tables[l * Data.populations() + pop];
    }

  private:
    void count();

    CodedData Data;
    std::vector<ShuffleTable> Tables; // [locus x populations + population]
    std::vector<int32_t> Places;      // room
};

// F-statistics of shuffled pairs. The twin of Datensatz::AllelMix followed by
// Run::FST_SINGLE_WC84, with the same draws and the same numbers.
class PairTest {
  public:
    // tab: the observed tables. A locus without data there in one of two populations counts
    // for no shuffle of the pair. undefined: value of a statistic that cannot be computed.
    PairTest(const Datensatz& daten, const AllelTabellen& tab, uint32_t fstMask, double undefined);
    PairTest(const PairTest&) = delete; // its members point to each other
    PairTest& operator=(const PairTest&) = delete;
    ~PairTest() = default;

    // Shuffles populations i and j (from 0) of `sample`, which was made from data().
    // locusTable: takes Fst of each locus in the column of the pair; null: not.
    FWerte shuffled(int32_t i, int32_t j, const CodedSample& sample, CMatrix* locusTable);

    // The pair as `sample` has it, not shuffled.
    FWerte unshuffled(int32_t i, int32_t j, const CodedSample& sample);

    const CodedData& data() const { return Data; }

  private:
    bool hasBoth(std::size_t l, std::size_t pop1, std::size_t pop2) const {
        const std::size_t row = l * Data.populations();
        return HasData[row + pop1] != 0 && HasData[row + pop2] != 0;
    }
    std::optional<Varianz> components(std::size_t pop1, std::size_t pop2, const CodedSample& sample,
                                      std::size_t l);

    CodedData Data;
    ShuffleArt Art;
    double Undefined;
    bool ByRest;               // the second sample of a deal is what the first leaves over
    std::vector<char> HasData; // observed gene copies: [locus x populations + population]
    PairShuffle Shuffle;
    PairEstimator Estimator;
    std::array<ShuffleTable, 2> Tables; // of the drawn samples
};

// Adds 1 to the hits of each statistic whose observed value the permuted one reaches.
void countHits(FTripel& hits, int32_t i, int32_t j, const FWerte& observed, const FWerte& permuted);

// Turns the hits of a pair out of n permutations into p-values: the plain one at (i, j), the
// one multiplied by the number of pairs (Bonferroni) at (j, i). No hit counts as one.
void hitsToPValues(FTripel& p, int32_t i, int32_t j, double pairs, double n);

// Number of pairs of n populations.
double pairNumber(int32_t n);

#endif
