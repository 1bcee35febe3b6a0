// The shuffles of the permutation tests, made for speed: the same draws and the same
// deal as MakeMix2 and MakeMixGlobal, as lists of places in CodedData.
//
// Where individuals stay together and every population has an even number of slots,
// places are pair places; else slot places.
#ifndef KVA_FSTAT_SHUFFLE_H
#define KVA_FSTAT_SHUFFLE_H

#include "fstat/OrderedPool.h"
#include "fstat/ShuffleTable.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace kva {

// The bits of FstMask that a shuffle follows.
struct ShuffleMode {
    bool Genotypes;   // individuals stay together
    bool Linked;      // one shuffle serves all loci
    bool Permutation; // off: drawn with replacement
    bool Jackknife;   // the tails of the populations stay at home

    static ShuffleMode of(uint32_t fstMask);
};

// Shuffles of two populations.
class PairShuffle {
  public:
    // `data` gives the places; it outlives the object.
    PairShuffle(const CodedData& data, const ShuffleMode& art);

    // Deals the slots of both populations (from 0) out anew.
    void deal(std::size_t pop1, std::size_t pop2);

    // Whether the places of the last deal are pair places.
    bool paired() const { return Paired; }
    // The places of sample 0 or 1 of the last deal.
    std::span<const int32_t> places(std::size_t sample) const { return Places[sample]; }

    // Counts the samples of the last deal at a locus of `data`, or of a data set with the
    // same places.
    void count(const CodedLocus& locus, ShuffleTable& t1, ShuffleTable& t2) const;

  private:
    // A population that is dealt, in units (slots or pairs): unit u stands at place Base + u.
    struct Side {
        int32_t Base;
        int32_t Size;
        int32_t Dealt; // the first units, which take part; the others stay at home
    };

    Side slotsOf(std::size_t pop) const;
    Side pairsOf(std::size_t pop) const;
    void dealUnits(const Side& a, const Side& b);
    void dealOddPairs(const Side& a, const Side& b);
    void keepTail(std::size_t sample, const Side& side);

    const CodedData& Data;
    ShuffleMode Mode;
    bool Paired = false; // of the last deal: Places are pair places
    OrderedPool Pool;
    std::vector<float> Draws;                   // values of the random stream for a deal
    std::vector<int32_t> Units;                 // in the order of the deal
    std::array<std::vector<int32_t>, 2> Places; // of both samples
};

// Shuffles of all populations.
class GlobalShuffle {
  public:
    // `data` gives the places; it outlives the object.
    GlobalShuffle(const CodedData& data, bool genotypes);

    void deal();

    // Counts the sample of a population (from 0) of the last deal at a locus of `data`.
    void count(const CodedLocus& locus, std::size_t pop, ShuffleTable& table) const;

  private:
    void dealPairs();
    void dealOddPairs();
    void dealSlots();
    void putPair(int32_t last, int32_t first, int32_t second);
    template <int32_t Scale> void dealUnits(int32_t n);

    bool Genotypes;
    bool Paired = true;             // Places are pair places
    int32_t Total = 0;              // slots of all populations
    std::vector<int32_t> SlotPlace; // of each flat slot
    std::vector<int32_t> Begin;     // first entry of each population in Places, and the end
    std::vector<int32_t> Places;    // source of each flat slot or pair
    std::vector<float> Draws;       // values of the random stream for a deal
    std::vector<int32_t> Units;     // in the order of the deal
    OrderedPool Pool;
};

} // namespace kva

#endif
