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
    bool Genotypes;   // individuals stay together; off: slots are dealt one by one
    bool Linked;      // one shuffle serves all loci; off: one for each
    bool Permutation; // off: drawn with replacement
    bool Jackknife;   // the tails of the populations stay at home

    // The mode of FstMask.
    static ShuffleMode of(uint32_t fstMask);
};

// Shuffles of two populations.
class PairShuffle {
  public:
    // `data`, NOT OWNED, gives the places; it outlives the object.
    PairShuffle(const CodedData& data, const ShuffleMode& art);

    // Deals the slots of both populations (from 0) out anew into samples of their sizes. One value
    // of the random stream for each slot or pair that takes part.
    void deal(std::size_t pop1, std::size_t pop2);

    // Whether the places of the last deal are pair places.
    bool paired() const { return Paired; }
    // The places in `data` of sample 0 or 1 of the last deal, in the order of the deal and the
    // tail that stays at home behind. They stand until the next deal.
    std::span<const int32_t> places(std::size_t sample) const { return Places[sample]; }

    // Counts the samples of the last deal at a locus of `data`, or of a data set with the
    // same places.
    void count(const CodedLocus& locus, ShuffleTable& t1, ShuffleTable& t2) const;

  private:
    // A population that is dealt, in units (slots or pairs): unit u, from 0, stands at place
    // Base + u.
    struct Side {
        int32_t Base;  // place of unit 0
        int32_t Size;  // units of the population
        int32_t Dealt; // the first units, which take part; the others stay at home
    };

    Side slotsOf(std::size_t pop) const; // a population (from 0) in slots
    Side pairsOf(std::size_t pop) const; // ... in pairs, of an even number of slots
    // The deal of two populations in units.
    void dealUnits(const Side& a, const Side& b);
    // The deal in pairs of two populations, given in slots, with an odd number in one or both.
    void dealOddPairs(const Side& a, const Side& b);
    // Puts the units of a side that stay at home behind those dealt to its sample (0 or 1).
    void keepTail(std::size_t sample, const Side& side);

    const CodedData& Data;                      // NOT OWNED
    ShuffleMode Mode;                           // how slots are dealt
    bool Paired = false;                        // of the last deal: Places are pair places
    OrderedPool Pool;                           // units not yet dealt
    std::vector<float> Draws;                   // values of the random stream for a deal
    std::vector<int32_t> Units;                 // in the order of the deal
    std::array<std::vector<int32_t>, 2> Places; // of both samples
};

// Shuffles of all populations, without replacement. A flat slot is one of all populations behind
// each other, from 0.
class GlobalShuffle {
  public:
    // `data` gives the places and is not kept. genotypes: individuals stay together.
    GlobalShuffle(const CodedData& data, bool genotypes);

    // Deals the slots of all populations out anew into samples of their sizes. One value of the
    // random stream for each slot or pair but the last. Wanted: single slots leave flat slot 0 as
    // it was and put the last one on 1, over the one dealt there, as MakeMixGlobal() does, which
    // the p-values depend on.
    void deal();

    // Whether places are pair places, so that individuals are dealt.
    bool paired() const { return Paired; }
    // The places in `data` of the sample of a population (from 0) in the last deal. They stand
    // until the next deal.
    std::span<const int32_t> places(std::size_t pop) const {
        return {Places.data() + Begin[pop], Places.data() + Begin[pop + 1]};
    }

    // Counts the sample of a population (from 0) of the last deal at a locus of `data`; clears the
    // table first.
    void count(const CodedLocus& locus, std::size_t pop, ShuffleTable& table) const;

  private:
    void dealPairs();    // all populations have an even number of slots
    void dealOddPairs(); // some have an odd number
    void dealSlots();    // individuals do not stay together
    // Sets the sources (slot places) of flat slot `last` and of the one before, unless that lies in
    // another population.
    void putPair(int32_t last, int32_t first, int32_t second);
    // Draws n units into Units, each value of the stream a place among Scale for each unit left.
    template <int32_t Scale> void dealUnits(int32_t n);

    bool Genotypes;                 // individuals stay together
    bool Paired = true;             // Places are pair places
    int32_t Total = 0;              // slots of all populations
    std::vector<int32_t> SlotPlace; // slot place of each flat slot
    std::vector<int32_t> Begin;     // first entry of each population in Places, and the end
    std::vector<int32_t> Places;    // source of each flat slot or pair
    std::vector<float> Draws;       // values of the random stream for a deal
    std::vector<int32_t> Units;     // in the order of the deal
    OrderedPool Pool;               // units not yet dealt
};

} // namespace kva

#endif
