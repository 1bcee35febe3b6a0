// The allele tables of the permutation tests, made for speed. An allele is a code, so
// that counting needs no search; a table clears what it used and allocates nothing.
//
// They give the very numbers of AllelCount, the plain reading: the alleles of a table
// stand in the order of their first appearance, and sums run in that order.
#ifndef KVA_FSTAT_SHUFFLETABLE_H
#define KVA_FSTAT_SHUFFLETABLE_H

#include "data/codeddata.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kva {

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

} // namespace kva

#endif
