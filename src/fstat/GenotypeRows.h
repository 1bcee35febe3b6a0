// Individuals as rows of small numbers over all loci, so that a sample is a sum of rows and the
// first appearance of its alleles is found by bits, at all loci at once. An individual with 104/102
// at a first locus and with nothing at a second one is
//
//                      locus 0: tally      100 102 104   locus 1: tally       7   8
//     bytes                     2  4  2  1   0   1   1            0  0  0  0  0   0
//     both alleles                           0   1   1                        0   0
//     first alleles                          0   0   1                        0   0
//
// A tally is the four fields of Tally. Columns are places among the bytes, bits those among the
// alleles, both from 0 and locus after locus: code c of a locus has bit firstBit(l) + c - 1.
#ifndef KVA_FSTAT_GENOTYPEROWS_H
#define KVA_FSTAT_GENOTYPEROWS_H

#include "data/codeddata.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kva {

// Neighbouring loci, from 0.
struct LociRange {
    std::size_t Begin; // the first one
    std::size_t End;   // behind the last one
};

// Alleles that appear first in the same individual. At a locus those among Firsts come before those
// among Seconds.
struct FreshAlleles {
    std::size_t Word; // bit k of a set, from 0, stands for bit 64 Word + k
    uint64_t Firsts;
    uint64_t Seconds;
};

class GenotypeRows {
  public:
    static constexpr uint32_t kTallyColumns = 4; // in front of the alleles of a locus

    // The place of an allele.
    struct Allele {
        uint32_t Column;
        uint32_t Locus; // from 0
    };

    // Takes the individuals of all populations, which have an even number of slots each.
    explicit GenotypeRows(const CodedData& data);

    // Takes those of another data set, which has the places and the alleles of the first one.
    void read(const CodedData& data);

    std::size_t loci() const { return Loci.size() - 1; }
    std::size_t alleleNumber() const { return Alleles.size(); } // of all loci
    std::size_t columns() const { return Chunks * kChunk; }     // with three at least to spare
    std::size_t words() const { return Words; }                 // of the bits
    LociRange allLoci() const { return {0, loci()}; }
    // The first column of a locus, that of its tally.
    uint32_t tallyColumn(std::size_t l) const { return Loci[l].Column; }
    // ... that of its first allele.
    uint32_t firstColumn(std::size_t l) const { return Loci[l].Column + kTallyColumns; }
    // The first bit of a locus.
    uint32_t firstBit(std::size_t l) const { return Loci[l].Bit; }
    // The alleles by bit.
    const Allele* alleles() const { return Alleles.data(); }

    // The sums of all individuals of a population (from 0), by column.
    const int32_t* whole(std::size_t pop) const { return Wholes.data() + pop * columns(); }
    // Sets `sums`, by column, to the sums of the individuals at `places` (pair places, from 0) in
    // the columns of `loci`; other columns are not defined afterwards.
    void sum(std::span<const int32_t> places, LociRange loci, int32_t* sums) const;
    // The tally of a locus among sums by column.
    Tally tally(const int32_t* sums, std::size_t l) const {
        const int32_t* const fields = sums + Loci[l].Column;
        return {fields[0], fields[1], fields[2], fields[3]};
    }

    // The words that hold bits of `loci`, from and to behind the last.
    std::size_t beginWord(LociRange loci) const { return Loci[loci.Begin].Bit / 64; }
    std::size_t endWord(LociRange loci) const { return (Loci[loci.End].Bit + 63) / 64; }
    // Sets those words of `bits` to the alleles of `loci`.
    void setAll(LociRange loci, uint64_t* bits) const;
    // The bits of the alleles that a population (from 0) has.
    const uint64_t* present(std::size_t pop) const { return Present.data() + pop * Words; }
    // Goes through the individuals at `places` in their order and notes each allele of `open`,
    // which are some of `loci`, where it first appears; at each locus the order is that of the
    // slots. Those found are cleared. out: takes the notes, at most one for each allele. Result:
    // behind the last note.
    FreshAlleles* findFirst(std::span<const int32_t> places, LociRange loci, uint64_t* open,
                            FreshAlleles* out) const;

  private:
    using Bytes [[gnu::vector_size(16)]] = uint8_t;
    struct Chunk {
        Bytes Of;
    };
    static constexpr std::size_t kChunk = sizeof(Bytes);

    // The first places of a locus.
    struct LocusPlace {
        uint32_t Column;
        uint32_t Bit;
    };

    // Rows of an individual, by pair place.
    Chunk* bytesAt(std::ptrdiff_t place) { return Rows.data() + place * ByteStep; }
    uint64_t* bitsAt(std::ptrdiff_t place) { return Bits.data() + place * BitStep; }

    void readIndividual(const CodedPair& pair, std::ptrdiff_t place, std::size_t l);
    void readWholes(const CodedData& data);
    // sum() in `Wide` chunks from `chunk` on.
    template <std::size_t Wide>
    void sumChunks(std::span<const int32_t> places, std::size_t chunk, int32_t* sums) const;

    std::vector<LocusPlace> Loci; // by locus, and behind the last
    std::vector<Allele> Alleles;  // by bit
    std::size_t Chunks = 0;       // of a row of bytes
    std::size_t Words = 0;        // of a row of bits
    std::ptrdiff_t ByteStep = 0;  // from one row of bytes to the next, in chunks
    std::ptrdiff_t BitStep = 0;   // ... of bits, in words
    std::vector<Chunk> Rows;      // [pair place x ByteStep + chunk]
    // [pair place x BitStep]: number of words behind that of a second allele in which its first
    // one can lie; then the words of both alleles; then those of the first ones.
    std::vector<uint64_t> Bits;
    std::vector<int32_t> Wholes;   // [population x columns + column]
    std::vector<uint64_t> Present; // [population x Words + word]: the alleles of a population
};

// Calls visit(allele) for each allele noted, in the order of the notes.
template <class Visit>
void forEachFresh(const GenotypeRows& rows, std::span<const FreshAlleles> notes,
                  const Visit& visit) {
    const GenotypeRows::Allele* const alleles = rows.alleles();
    for (const FreshAlleles& note : notes) {
        const GenotypeRows::Allele* const ofWord = alleles + note.Word * 64;
        for (uint64_t bits = note.Firsts; bits != 0; bits &= bits - 1) {
            visit(ofWord[static_cast<unsigned>(std::countr_zero(bits))]);
        }
        for (uint64_t bits = note.Seconds; bits != 0; bits &= bits - 1) {
            visit(ofWord[static_cast<unsigned>(std::countr_zero(bits))]);
        }
    }
}

} // namespace kva

#endif
