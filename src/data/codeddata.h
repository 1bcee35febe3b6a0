// A data set in codes, made for resampling: an allele is a small number, so that counting needs no
// search, and all loci share the places of their slots.
#ifndef KVA_DATA_CODEDDATA_H
#define KVA_DATA_CODEDDATA_H

#include "data/diversity.h"
#include "data/slotmaps.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kva {

class Datensatz;

// The code of missing data; alleles count from 1.
constexpr uint32_t kMissingCode = 0;

// What a sample adds up to besides its alleles, in the terms of an AllelCount, which would hold the
// same of the same entries.
struct Tally {
    int32_t Copies = 0; // gene copies: AnzGesamt, 0 where that is -1
    int32_t Weight = 0; // AnzChromosomen, 2 or 1 a copy; 0 where that is -1
    int32_t Typed = 0;  // AnzTypisiert: entries of individuals with an allele
    int32_t Hetero = 0; // AnzHetero: individuals with two different alleles

    // Field by field, as a sample takes in another or gives it up.
    void operator+=(const Tally& other) {
        Copies += other.Copies;
        Weight += other.Weight;
        Typed += other.Typed;
        Hetero += other.Hetero;
    }
    void operator-=(const Tally& other) {
        Copies -= other.Copies;
        Weight -= other.Weight;
        Typed -= other.Typed;
        Hetero -= other.Hetero;
    }

    // Heterozygotes per typed individual; -1.0 without one. As AllelCount::CalcHetobs.
    double CalcHetobs() const { return observedHet(Weight, Typed, Hetero); }
};

// A tally with the sum of the squares of the frequencies of all alleles: the statistics of an
// AllelCount. -1.0: there is no value.
struct SquaredTally {
    Tally Sum;
    double SumOfSquares;

    // As in AllelCount.
    bool isHaploid() const { return Sum.Weight < 2 * int64_t{Sum.Copies}; }
    double CalcHetobs() const { return Sum.CalcHetobs(); }
    double CalcHet() const {
        const double C = Sum.Weight;
        return Sum.Weight <= 2 ? -1.0 : std::min((C / (C - 2.0)) * (1.0 - SumOfSquares), 1.0);
    }
    double CalcHetuk() const { return Sum.Copies == 0 ? -1.0 : std::min(1.0 - SumOfSquares, 1.0); }
};

// The tally of two entries that make an individual, given by their codes and weights (2; 1 for an
// entry flagged haploid, also a missing one).
Tally tallyPair(uint32_t first, int32_t firstWeight, uint32_t second, int32_t secondWeight);

// Two entries that are counted as one individual.
struct CodedPair {
    uint32_t First = 0;  // code of the first allele; 0: missing
    uint32_t Second = 0; // ... of the second
    Tally Sum;           // of this individual
};

// An entry in a byte, where a locus has few alleles: its code, and this bit where it has an allele
// and is flagged haploid.
constexpr uint8_t kHaploidBit = 0x80;
constexpr uint8_t kCodeBits = 0x7F;

// One locus in codes: 0 is missing data, the alleles are 1..Alleles.
//
// The slots of all populations stand in one row, population after population, each
// followed by one that reads as missing; see CodedData for the places.
struct CodedLocus {
    int32_t Alleles = 0;          // distinct alleles of all populations; codes ascend with numbers
    std::vector<uint32_t> Code;   // by place
    std::vector<int32_t> Weight;  // by place: 2; 1 for an entry flagged haploid
    std::vector<uint8_t> Entries; // by place: both in a byte; empty: too many alleles for that
    std::vector<CodedPair> Pairs; // by pair place

    // Sets Entries from Code and Weight.
    void packEntries();

    // Sets the pairs of a population of `slots` slots, of which an odd last one belongs to no
    // pair. slotPlace, pairPlace: places of its first slot and its first pair.
    void pairUp(int32_t slotPlace, int32_t pairPlace, int32_t slots);
};

// All loci in codes. Populations, loci and slots count from 0.
class CodedData {
  public:
    // Takes its own copy: the data set may go.
    explicit CodedData(const Datensatz& daten);

    // This data set with each slot read where the sheet sends it; -1 reads as missing, with the
    // weight of slot 0. `sheet` has a cell for every slot. `out` is a copy of this object or an
    // earlier result.
    void readThrough(const SlotSheet& sheet, CodedData& out) const;

    // Numbers of populations and loci; a locus; the slots of a population. Not checked.
    std::size_t populations() const { return Slots.size(); }
    std::size_t loci() const { return Loci.size(); }
    const CodedLocus& locus(std::size_t l) const { return Loci[l]; }
    int32_t slots(std::size_t pop) const { return Slots[pop]; }

    // Whether every population has an even number of slots, so that all individuals are pairs.
    bool onlyPairs() const;

    // Place of slot 0 of a population; the place behind its last slot reads as missing.
    int32_t slotPlace(std::size_t pop) const { return SlotPlace[pop]; }
    // Place of the first pair of a population.
    int32_t pairPlace(std::size_t pop) const { return PairPlace[pop]; }

    // The largest number of alleles at any locus; 0 without loci.
    int32_t mostAlleles() const;

  private:
    std::vector<int32_t> Slots;     // per population: slots, without the one behind the last
    std::vector<int32_t> SlotPlace; // per population: place of slot 0, from 0
    std::vector<int32_t> PairPlace; // per population: place of its first pair, from 0
    std::vector<CodedLocus> Loci;   // in locus order
};

} // namespace kva

#endif
