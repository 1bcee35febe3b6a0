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

// The bits of FstMask that a shuffle follows.
struct ShuffleArt {
    bool Genotypes;   // individuals stay together
    bool Linked;      // one shuffle serves all loci
    bool Permutation; // off: drawn with replacement
    bool Jackknife;   // the tails of the populations stay at home

    static ShuffleArt of(uint32_t fstMask);
};

// Shuffles of two populations.
class PairShuffle {
  public:
    // `data` gives the places; it outlives the object. byRest: the second sample is wanted
    // for its counts and CalcHetobs alone, so that it need not be counted on its own.
    PairShuffle(const CodedData& data, const ShuffleArt& art, bool byRest);

    // Deals the slots of both populations (from 0) out anew.
    void deal(int32_t pop1, int32_t pop2);

    // Counts the samples of the last deal at a locus of `data`, or of a data set with the
    // same places. whole1, whole2: the tables of both populations there.
    void count(const CodedLocus& locus, const ShuffleTable& whole1, const ShuffleTable& whole2,
               ShuffleTable& t1, ShuffleTable& t2) const;

  private:
    // A population that is dealt, in units (slots or pairs): unit u stands at place Base + u.
    struct Side {
        int32_t Base;
        int32_t Size;
        int32_t Dealt; // the first units, which take part; the others stay at home
    };

    Side slotsOf(int32_t pop) const;
    Side pairsOf(int32_t pop) const;
    void dealUnits(const Side& a, const Side& b);
    void dealOddPairs(const Side& a, const Side& b);
    void keepTail(std::size_t sample, const Side& side);

    const CodedData& Data;
    ShuffleArt Art;
    bool ByRest;
    bool Paired = false; // of the last deal: Places are pair places
    OrderedPool Pool;
    std::array<std::vector<int32_t>, 2> Places; // of both samples
};

// Shuffles of all populations.
class GlobalShuffle {
  public:
    // `data` gives the places; it outlives the object.
    GlobalShuffle(const CodedData& data, bool genotypes);

    void deal();

    // Counts the sample of a population (from 0) of the last deal at a locus of `data`.
    void count(const CodedLocus& locus, int32_t pop, ShuffleTable& table) const;

  private:
    void dealPairs();
    void dealOddPairs();
    void dealSlots();
    void putPair(int32_t last, int32_t first, int32_t second);

    bool Genotypes;
    bool Paired = true;             // Places are pair places
    int32_t Total = 0;              // slots of all populations
    std::vector<int32_t> SlotPlace; // of each flat slot
    std::vector<int32_t> Begin;     // first entry of each population in Places, and the end
    std::vector<int32_t> Places;    // source of each flat slot or pair
    OrderedPool Pool;
};

#endif
