// The allele tables of the permutation tests, made for speed. An allele is a code, so
// that counting needs no search; a table clears what it used and allocates nothing.
//
// They give the very numbers of AllelCount, the plain reading: the alleles of a table
// stand in the order of their first appearance, and sums run in that order.
#ifndef KVA_FSTAT_SHUFFLETABLE_H
#define KVA_FSTAT_SHUFFLETABLE_H

#include "fstat/MakeMix.h"
#include "fstat/wc84.h"

#include <cstdint>
#include <span>
#include <vector>

class Datensatz;

// What a sample adds up to besides its alleles.
struct Tally {
    int32_t Copies = 0; // gene copies: AnzGesamt, 0 where that is -1
    int32_t Weight = 0; // AnzChromosomen, likewise
    int32_t Typed = 0;  // AnzTypisiert
    int32_t Hetero = 0; // AnzHetero

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

    // As AllelCount::CalcHetobs.
    double CalcHetobs() const { return Weight <= 1 || Typed <= 1 ? -1.0 : Hetero / (Typed * 0.5); }
};

// Two entries that are counted as one individual.
struct CodedPair {
    uint32_t First = 0; // allele codes, 0: missing
    uint32_t Second = 0;
    Tally Sum; // of this individual
};

// One locus in codes: 0 is missing data, the alleles are 1..Alleles.
//
// The slots of all populations stand in one row, population after population, each
// followed by one that reads as missing; see CodedData for the places.
struct CodedLocus {
    int32_t Alleles = 0;
    std::vector<uint32_t> Code;   // by place
    std::vector<int32_t> Weight;  // by place: 2; 1 for an entry flagged haploid
    std::vector<CodedPair> Pairs; // by pair place

    // Sets the pairs from the slots of a population of `slots`, of which an odd last one
    // belongs to no pair.
    void pairUp(int32_t slotPlace, int32_t pairPlace, int32_t slots);
};

// All loci in codes. Populations, loci and slots count from 0.
class CodedData {
  public:
    explicit CodedData(const Datensatz& daten);

    // This data set with each slot read where the sheet sends it. `out` is a copy of
    // this object or an earlier result.
    void readThrough(const SlotSheet& sheet, CodedData& out) const;

    std::size_t populations() const { return Slots.size(); }
    std::size_t loci() const { return Loci.size(); }
    const CodedLocus& locus(std::size_t l) const { return Loci[l]; }
    int32_t slots(std::size_t pop) const { return Slots[pop]; }

    // Place of slot 0 of a population; the place behind its last slot reads as missing.
    int32_t slotPlace(std::size_t pop) const { return SlotPlace[pop]; }
    // Place of the first pair of a population.
    int32_t pairPlace(std::size_t pop) const { return PairPlace[pop]; }

    int32_t mostAlleles() const; // of any locus

  private:
    std::vector<int32_t> Slots;     // per population
    std::vector<int32_t> SlotPlace; // per population
    std::vector<int32_t> PairPlace; // per population
    std::vector<CodedLocus> Loci;
};

// The allele table of one sample at one locus under shuffles; twin of AllelCount. Make
// room with resize, then clear, add and read any number of times.
class ShuffleTable {
  public:
    // Room for alleles 1..alleles; empties the table.
    void resize(int32_t alleles);

    void clear() {
        for (const uint32_t code : alleles()) {
            Count[code] = 0;
        }
        Count[0] = 1; // missing data never look like a new allele
        Found = 0;
        Sum = {};
    }

    // Counts individuals, given by their pair places.
    void addPairs(const CodedLocus& locus, std::span<const int32_t> places);

    // Counts entries, given by their slot places; two in turn are one individual. Only
    // once after a clear.
    void addSlots(const CodedLocus& locus, std::span<const int32_t> places);

    // Counts the gene copies of another table; those of its alleles that are new follow in
    // its order. Individuals are left out, so of the statistics only CalcHetuk remains.
    void addCopies(const ShuffleTable& other);

    // --- Statistics, as in AllelCount ------------------------------------------------------

    bool isHaploid() const { return Sum.Weight < 2 * int64_t{Sum.Copies}; }
    double CalcHetobs() const { return Sum.CalcHetobs(); }
    double CalcHet() const;
    double CalcHetuk() const;

    // --- Contents --------------------------------------------------------------------------

    const Tally& tally() const { return Sum; }
    // Codes of the alleles in the order of their first appearance.
    std::span<const uint32_t> alleles() const { return {Order.data(), Found}; }
    int32_t count(uint32_t code) const { return Count[code]; }
    // Share of an allele; 0 if it is not there. The table is not empty.
    double frequency(uint32_t code) const { return double(count(code)) / Sum.Copies; }

    // Enters an allele that is not counted, so that count() is not 0 until the next clear.
    void mark(uint32_t code) {
        Order[Found] = code;
        ++Found;
        Count[code] = 1;
    }

  private:
    double sumOfSquares() const;

    std::vector<int32_t> Count;  // copies by code; entry 0 is scratch and never 0
    std::vector<uint32_t> Order; // the first Found entries; one to spare
    std::size_t Found = 0;
    Tally Sum;
};

// The components of variance of a pair's locus; twin of the plain reading in
// FstPair.cpp. The object holds the room.
class PairEstimator {
  public:
    PairEstimator(HRegel regel, int32_t mostAlleles);

    std::optional<Varianz> components(const ShuffleTable& t1, const ShuffleTable& t2);

    // The same for two populations that were dealt out anew as whole individuals, given by
    // their pair places, each once. whole1, whole2: the tables of the populations. The second
    // sample is not counted: it is what the first one leaves over. The rule must be Hobs.
    std::optional<Varianz> componentsOfDeal(const CodedLocus& locus, const ShuffleTable& whole1,
                                            const ShuffleTable& whole2,
                                            std::span<const int32_t> places1,
                                            std::span<const int32_t> places2);

  private:
    // Writes the counts of an allele behind those before.
    void put(int32_t count1, int32_t count2) {
        Counts1[Found] = count1;
        Counts2[Found] = count2;
        ++Found;
    }
    std::optional<Varianz> estimate(const Tally& t1, const Tally& t2, double H1, double H2);

    HRegel Regel;
    ShuffleTable Drawn;           // the first sample of a deal
    std::size_t Found = 0;        // alleles in the lists
    std::vector<int32_t> Counts1; // copies of each allele in both samples, with room for a step
    std::vector<int32_t> Counts2;
};

#endif
