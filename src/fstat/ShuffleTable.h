// The allele tables of the permutation tests, made for speed. An allele is a code, so
// that counting needs no search; a table clears what it used and allocates nothing.
//
// They give the very numbers of AllelCount, the plain reading: the alleles of a table
// stand in the order of their first appearance, and sums run in that order. Codes are those of a
// CodedLocus: 1 to its number of alleles, 0 for missing data. -1.0: there is no value.
#ifndef KVA_FSTAT_SHUFFLETABLE_H
#define KVA_FSTAT_SHUFFLETABLE_H

#include "data/codeddata.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kva {

// The fields Typed and Hetero of a tally.
struct TypedPairs {
    int32_t Typed = 0;
    int32_t Hetero = 0;
};

// Those of the whole eights of entries in bytes (CodedLocus::Entries), of which two in turn are one
// individual. Eight at a time.
TypedPairs countEights(std::span<const uint8_t> entries);

// Those of all entries; an odd last one stays open.
inline TypedPairs countPairs(std::span<const uint8_t> entries) {
    constexpr std::size_t eight = 8;
    TypedPairs sum;
    std::size_t k = 0;
    if (entries.size() >= eight) {
        sum = countEights(entries);
        k = entries.size() / eight * eight;
    }
    for (; k + 1 < entries.size(); k += 2) {
        const uint32_t one = entries[k] & kCodeBits;
        const uint32_t other = entries[k + 1] & kCodeBits;
        sum.Typed += (one | other) != kMissingCode ? 2 : 0;
        sum.Hetero += (one != other ? 1 : 0) & (one * other != kMissingCode ? 1 : 0);
    }
    sum.Typed += k < entries.size() ? 1 : 0;
    return sum;
}

// How many of the gene copies in entries weigh 1.
int32_t countLight(std::span<const uint8_t> entries);

// The allele table of one sample at one locus under shuffles; twin of AllelCount. Make
// room with resize, then clear, add and read any number of times.
class ShuffleTable {
  public:
    // Room for alleles 1..alleles; empties the table.
    void resize(int32_t alleles);

    // Empties the table; its room stays.
    void clear() {
        for (const uint32_t code : alleles()) {
            Count[code] = 0;
        }
        Count[0] = 1; // missing data never look like a new allele
        Found = 0;
        Sum = {};
    }

    // Counts individuals, given by their pair places (from 0) in the locus.
    void addPairs(const CodedLocus& locus, std::span<const int32_t> places);

    // Counts entries, given by their slot places (from 0) in the locus; two in turn are one
    // individual, and an odd last one stays open. Only once after a clear.
    void addSlots(const CodedLocus& locus, std::span<const int32_t> places);

    // Counts the gene copies of another table; those of its alleles that are new follow in
    // its order. Individuals are left out, so of the statistics only CalcHetuk remains.
    void addCopies(const ShuffleTable& other);

    // --- Statistics, as in AllelCount ------------------------------------------------------

    // True as soon as one entry flagged haploid is in the table.
    bool isHaploid() const { return SquaredTally{Sum, 0.0}.isHaploid(); }
    // Observed heterozygosity: heterozygotes per typed individual; -1.0 for too few.
    double CalcHetobs() const { return Sum.CalcHetobs(); }
    // Expected heterozygosity, corrected for the sample size, at most 1.0 (Nei 1978); -1.0 for too
    // few.
    double CalcHet() const { return SquaredTally{Sum, sumOfSquares()}.CalcHet(); }
    // Expected heterozygosity 1 - sum p^2, uncorrected (Nei 1973); -1.0 for an empty table.
    double CalcHetuk() const { return SquaredTally{Sum, sumOfSquares()}.CalcHetuk(); }

    // --- Contents --------------------------------------------------------------------------

    // Gene copies, weights and individuals counted.
    const Tally& tally() const { return Sum; }
    // Codes of the alleles in the order of their first appearance.
    std::span<const uint32_t> alleles() const { return {Order.data(), Found}; }
    // Gene copies of an allele (code from 1).
    int32_t count(uint32_t code) const { return Count[code]; }
    // Frequency of an allele; 0.0 if it is not there. The table is not empty.
    double frequency(uint32_t code) const { return double(count(code)) / Sum.Copies; }

  private:
    double sumOfSquares() const; // of the frequencies, in the order of alleles()

    std::vector<int32_t> Count;  // gene copies by code; entry 0 is scratch and never 0
    std::vector<uint32_t> Order; // codes by first appearance: the first Found entries; one to spare
    std::size_t Found = 0;       // distinct alleles
    Tally Sum;                   // of all that is counted
};

} // namespace kva

#endif
