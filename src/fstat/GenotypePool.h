// The figures of all populations whose individuals are dealt out anew, made for speed: each sample
// is a sum of rows (GenotypeRows). The pool is the same in every deal but for the order in which
// its alleles first appear.
#ifndef KVA_FSTAT_GENOTYPEPOOL_H
#define KVA_FSTAT_GENOTYPEPOOL_H

#include "fstat/GenotypeRows.h"
#include "fstat/Shuffle.h"
#include "fstat/nearvalues.h"
#include "fstat/wc84.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

class GenotypePool {
  public:
    // Takes the individuals of `data`. Every population has an even number of slots.
    GenotypePool(const CodedData& data, HRule rule);

    // Counts the samples of a deal of all populations at `loci`.
    void count(const GlobalShuffle& shuffle, LociRange loci);

    // The figures of one of the loci last counted; nothing if it does not vary. They stand until
    // the next call of an operation.
    std::optional<GlobalLocus> locus(std::size_t l);

    // --- Near values -----------------------------------------------------------------------

    // Whether near values can stand for those of a deal: there are populations, not too large, and
    // at each locus one has an individual in any deal.
    bool canBeNear() const;
    // Counts the samples of a deal at all loci, without the order in which the alleles appear.
    // Result: false if a sample has half an individual, and then nothing is counted.
    bool countNear(const GlobalShuffle& shuffle);
    // A locus of countNear().
    const NearLocus& nearLocus(std::size_t l) const { return Near[l]; }
    // Ht of the pool but for rounding; nothing for a locus that does not vary.
    std::optional<double> nearHt(std::size_t l) const;

  private:
    // Adds the sample at hand to a locus of countNear(); false as there.
    bool addNear(std::size_t l);
    // A locus in the last deal.
    struct Locus {
        uint32_t Samples; // that count
        uint32_t Found;   // alleles that have appeared in the pool
    };

    void readPool();
    // Counts a sample, given by pair places, behind those before.
    void countSample(std::span<const int32_t> places, LociRange loci);
    // Adds the sample at hand, of so many gene copies, to the deviations at a locus, and sets its
    // squares there.
    void addDeviations(std::size_t l, int32_t copies);
    // Puts it behind the samples of a locus if it counts there.
    void addSample(std::size_t l);
    // Lists the alleles noted that are new in the pool.
    void listNew(std::span<const FreshAlleles> notes);

    GenotypeRows Rows;
    HRule Rule;
    std::size_t Populations;
    int32_t MostSlots = 0;           // of a population
    int32_t FewestCopies = 0;        // in the pool of a locus
    std::vector<double> PoolHt;      // expected heterozygosity, but for rounding, by locus
    std::vector<double> Pbar;        // frequency in the pool, by column
    std::vector<double> PoolSquares; // ... its square
    // The sample at hand.
    std::vector<int32_t> Drawn;       // sums, by column
    std::vector<double> Squares;      // squares of the frequencies, by column
    std::vector<double> SumOfSquares; // ... by locus
    std::vector<uint64_t> Open;       // bits of the alleles that have not yet appeared
    std::vector<FreshAlleles> Notes;  // where they appear; one to spare
    // The deal.
    std::vector<uint64_t> All; // bits of the loci counted
    std::vector<Locus> Loci;
    std::vector<GlobalSample> Samples;   // [locus x populations + sample]
    std::vector<double> Deviations;      // sum over the samples of n (p - pbar)^2, by column
    std::vector<uint64_t> PoolOpen;      // bits of the alleles that have not yet appeared
    std::size_t PoolLeft = 0;            // ... their number
    std::vector<FreshAlleles> PoolNotes; // where they appear in a sample; one to spare
    std::vector<uint32_t> Order;         // columns of the alleles of a locus as they appear, from
                                         // its first column on
    std::vector<NearLocus> Near;         // by locus
    // The locus asked for, in that order.
    std::vector<double> OrderedPbar;
    std::vector<double> OrderedSs;
};

} // namespace kva

#endif
