// PairTest: the F-statistics of shuffled pairs of populations, and the coded samples they read.
#ifndef KVA_FSTAT_PAIRTEST_H
#define KVA_FSTAT_PAIRTEST_H

#include "data/CMatrix.h"
#include "data/allelcount.h"
#include "data/codeddata.h"
#include "data/ftriple.h"
#include "fstat/AlleleEstimator.h"
#include "fstat/GenotypePair.h"
#include "fstat/GenotypeRows.h"
#include "fstat/KnownDeals.h"
#include "fstat/PairEstimator.h"
#include "fstat/Shuffle.h"
#include "fstat/ShuffleTable.h"
#include "fstat/nearvalues.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace kva {

class Datensatz;

// A data set in codes, with the tables of its populations and, if wanted, with its individuals as
// rows.
class CodedSample {
  public:
    // Takes a copy of `data` and counts its populations. withRows: also reads the rows; every
    // population has an even number of slots then.
    CodedSample(const CodedData& data, bool withRows);

    // Takes over `data` with each slot read where the sheet sends it, and counts anew. `data` has
    // the same places as that of the constructor.
    void readThrough(const CodedData& data, const SlotSheet& sheet);

    // Locus from 0, with the places of the data set.
    const CodedLocus& locus(std::size_t l) const { return Data.locus(l); }
    // The table of a population at a locus, both from 0.
    const ShuffleTable& table(std::size_t pop, std::size_t l) const {
        return Tables[l * Data.populations() + pop];
    }
    // The individuals; only with rows.
    const GenotypeRows& rows() const { return *Rows; }

  private:
    void count(); // sets Tables from Data

    CodedData Data;                   // as the sheet gave it
    std::vector<ShuffleTable> Tables; // [locus x populations + population]
    std::optional<GenotypeRows> Rows; // of Data; nothing: not wanted
    std::vector<int32_t> Places;      // room for the slot places of a population
};

// F-statistics of shuffled pairs. The twin of Datensatz::AllelMix followed by
// estimatePair, with the same draws and the same numbers.
class PairTest {
  public:
    // tab: the observed tables, as PopAllele. A locus without data there in one of two
    // populations counts for no shuffle of the pair, and draws nothing unless loci are linked.
    // undefined: value of a statistic that cannot be computed.
    PairTest(const Datensatz& daten, const SampleTables& tab, uint32_t fstMask, double undefined);

    // The data set as it was read, in the form that shuffled() wants.
    CodedSample sample() const { return {Data, Rows.has_value()}; }

    // Shuffles populations i < j (from 0) of `sample`, which was made by sample(), and gives Fst,
    // Fit and Fis of the shuffled pair. Draws from the random stream, one deal for all loci if
    // they are linked, else one for each. locusTable: takes Fst of each locus (row, from 0) in the
    // column of the pair (ConvertPoptoPoint), `undefined` where there is none; null: not.
    FValues shuffled(int32_t i, int32_t j, const CodedSample& sample, CMatrix* locusTable);

    // Whether the three values of shuffled() reach observed ones, with the same draws. By near
    // values, where these tell. For a pair, `sample` and the observed values are the same in every
    // call.
    Reached reached(int32_t i, int32_t j, const CodedSample& sample, const FValues& observed);

    // The pair as `sample` has it, not shuffled.
    FValues unshuffled(int32_t i, int32_t j, const CodedSample& sample);

    // The data set in codes, as it was read.
    const CodedData& data() const { return Data; }

  private:
    // Whether both populations have observed data at a locus, all from 0.
    bool hasBoth(std::size_t l, std::size_t pop1, std::size_t pop2) const {
        const std::size_t row = l * Data.populations();
        return HasData[row + pop1] != 0 && HasData[row + pop2] != 0;
    }
    // Whether the entries of a locus are dealt or read as bytes.
    bool inBytes(const CodedLocus& locus) const { return ByAlleles && !locus.Entries.empty(); }
    // Whether populations (from 0) are dealt for all loci at once and small enough for near values.
    bool canBeNear(std::size_t pop1, std::size_t pop2) const {
        return Rows && Mode.Linked && Data.loci() > 0 &&
               std::max(Data.slots(pop1), Data.slots(pop2)) <= kMostNear;
    }
    // The values of the last deal where loci are linked, else of a deal for each locus. locusTable
    // as in shuffled().
    FValues sumLoci(std::size_t pop1, std::size_t pop2, const CodedSample& sample,
                    CMatrix* locusTable);
    // The sums of near components over loci in the last deal.
    NearSums nearSums(std::size_t pop1, std::size_t pop2);
    // Deals out the populations (from 0) for some loci and counts their samples there, if that is
    // done for all loci at once.
    void deal(std::size_t pop1, std::size_t pop2, const CodedSample& sample, LociRange loci);
    // The components of a locus in the last deal, all indices from 0; nothing as in
    // pairComponents().
    std::optional<VarianceComponents> components(std::size_t pop1, std::size_t pop2,
                                                 const CodedSample& sample, std::size_t l);

    CodedData Data;            // not shuffled
    ShuffleMode Mode;          // how a pair is dealt
    double Undefined;          // value of a statistic that cannot be computed
    bool ByAlleles;            // single alleles move, so that a second sample is what is left over
    std::vector<char> HasData; // 1: observed gene copies: [locus x populations + population]
    PairShuffle Shuffle;       // of the places of Data
    PairEstimator Estimator;   // by the H of the flags
    AlleleEstimator OfAlleles; // where entries are dealt as bytes
    std::array<ShuffleTable, 2> Tables; // of the drawn samples
    std::optional<GenotypePair> Rows;   // counts the drawn samples by rows; nothing: by Tables
    KnownDeals Known;                   // by reached()
};

} // namespace kva

#endif
