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

// A population that is dealt, in units (slots or pairs): unit u, from 0, stands at place Base + u.
struct ShuffleSide {
    std::size_t Base;  // place of unit 0
    std::size_t Size;  // units of the population
    std::size_t Dealt; // the first units, which take part; the others stay at home
};

// Deals of what stands at the places of two populations.
template <class Item> class PairDeal {
  public:
    // mostUnits: of two populations.
    explicit PairDeal(std::size_t mostUnits) : Items(mostUnits), Draws(mostUnits) {}

    // Deals the items of `row`, which stand there by place, out anew into two samples of the sizes
    // of both sides. One value of the random stream for each unit that takes part. permutation off:
    // drawn with replacement.
    void deal(std::span<const Item> row, const ShuffleSide& a, const ShuffleSide& b,
              bool permutation);

    // Sets the sizes of the samples, for items that do not come from a deal.
    void resize(std::size_t size1, std::size_t size2) {
        Size1 = size1;
        Size2 = size2;
    }

    // Sample 0 or 1, in the order of the deal and what stays at home behind.
    std::span<Item> sample(std::size_t s) {
        return s == 0 ? std::span(Items).first(Size1) : std::span(Items).subspan(Size1, Size2);
    }
    std::span<const Item> sample(std::size_t s) const {
        return s == 0 ? std::span(Items).first(Size1) : std::span(Items).subspan(Size1, Size2);
    }

  private:
    // Deals with replacement.
    void drawAgain(std::span<const Item> first, std::span<const Item> second);
    // Puts what stays at home behind each sample.
    void insertTails(std::span<const Item> row, const ShuffleSide& a, const ShuffleSide& b);

    std::size_t Size1 = 0;      // of sample 0
    std::size_t Size2 = 0;      // ... 1
    std::vector<Item> Items;    // of both samples, and room
    std::vector<int32_t> Draws; // of a deal: places among what is left, and room
    OrderedPool<Item> Pool;     // not yet dealt
};

// Shuffles of two populations.
class PairShuffle {
  public:
    // `data` gives the places and is not kept.
    PairShuffle(const CodedData& data, const ShuffleMode& art);

    // Deals the slots of both populations (from 0) out anew into samples of their sizes. One value
    // of the random stream for each slot or pair that takes part.
    void deal(std::size_t pop1, std::size_t pop2);

    // Whether the places of the last deal are pair places.
    bool paired() const { return Paired; }
    // The places in `data` of sample 0 or 1 of the last deal, in the order of the deal and the
    // tail that stays at home behind. They stand until the next deal.
    std::span<const int32_t> places(std::size_t sample) const { return Places.sample(sample); }

    // Counts the samples of the last deal at a locus of `data`, or of a data set with the
    // same places.
    void count(const CodedLocus& locus, ShuffleTable& t1, ShuffleTable& t2) const;

    // --- Single alleles, of a locus with Entries; without Genotypes ------------------------

    // The same as deal(), of the entries of a locus rather than of places.
    void dealEntries(const CodedLocus& locus, std::size_t pop1, std::size_t pop2);
    // Reads the entries of a locus at the places of the last deal().
    void readEntries(const CodedLocus& locus);
    // The entries of sample 0 or 1 as last dealt or read.
    std::span<const uint8_t> entries(std::size_t sample) const { return Entries.sample(sample); }

  private:
    // The place behind the last of a population in slots, which reads as missing.
    int32_t missingPlace(const ShuffleSide& side) const { return Numbers[side.Base + side.Size]; }
    // The deal in pairs of two populations, given in slots, with an odd number in one or both. Not
    // inlined: deal() is called far more often, and its array would get that a guard.
    [[gnu::noinline]] void dealOddPairs(const ShuffleSide& a, const ShuffleSide& b);

    ShuffleMode Mode;               // how slots are dealt
    bool Paired = false;            // of the last deal: Places are pair places
    std::vector<ShuffleSide> Slots; // each population in slots
    std::vector<ShuffleSide> Pairs; // ... in pairs, without an odd last slot
    std::vector<int32_t> Numbers;   // each place its own number
    PairDeal<int32_t> Places;       // of both samples
    PairDeal<uint8_t> Entries;      // of both samples
    OrderedPool<int32_t> Pool;      // pairs not yet dealt, where populations are odd
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
    // Deals `items` into Units, in the order in which they are drawn; the last goes without.
    void dealUnits(std::span<const int32_t> items);

    bool Genotypes;                 // individuals stay together
    bool Paired = true;             // Places are pair places
    int32_t Total = 0;              // slots of all populations
    std::vector<int32_t> SlotPlace; // slot place of each flat slot
    std::vector<int32_t> Begin;     // first entry of each population in Places, and the end
    std::vector<int32_t> Places;    // source of each flat slot or pair
    std::vector<int32_t> Numbers;   // of all pairs, from 0
    std::vector<int32_t> Draws;     // of a deal: places among the units left
    std::vector<int32_t> Units;     // in the order of the deal
    OrderedPool<int32_t> Pool;      // units not yet dealt
};

} // namespace kva

#endif
