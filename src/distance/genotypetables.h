// GenotypeTables: the sums of many individuals. An individual has at most two gene copies at a
// locus, so that few genotypes stand there for many individuals, and what a locus adds to a pair
// is a look-up by the two genotypes.
//
// An entry of a table holds all quantities at once. Those of whole numbers, halves and quarters
// are fields of 12 bits, in two words of 64: frequencies are 1 and 1/2, so that min(x, y) counts in
// halves, x y in quarters, and sums of them are exact in any order. The others are doubles, added
// in the order of the loci as the plain way adds them, QuantityRule::Add.
//
//      roots   Chord, Cosine
//      means   Difference, Square
//      counts  Typed, WithMean, InNei, 2 Smaller, 4 Products
//              4 NeiProducts, Shared, Alleles, IdentityI, IdentityJ
//
// Spread is Square: there are no variances, and the repeat length is 1.
#ifndef KVA_DISTANCE_GENOTYPETABLES_H
#define KVA_DISTANCE_GENOTYPETABLES_H

#include "distance/quantities.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

class GenotypeTables {
  public:
    // keepBytes: tables are kept from row to row if all of them fit into that many bytes, else
    // only the row of the running genotype. Nothing if some sample is no such individual, or if
    // there are too many genotypes for the tables to pay for `replicates` replicates.
    static std::optional<GenotypeTables> make(const Samples& samples, QuantitySet wanted,
                                              std::size_t keepBytes, std::size_t replicates);

    // Sets the sums of the wanted quantities in row i over `loci`, in their order; i and loci from
    // 0.
    void sum(std::size_t i, std::span<const std::size_t> loci, RowSums& sums);

  private:
    using Doubles = double __attribute__((vector_size(16)));
    using Words = uint64_t __attribute__((vector_size(16)));
    // What a locus adds to a pair of genotypes, or its sum.
    struct Entry {
        Doubles Roots;
        Doubles Means;
        Words Counts;
    };
    // A locus with its genotypes.
    struct Locus {
        LocusSamples Genotypes;      // one sample for each genotype
        std::vector<uint16_t> Place; // of the genotype of each sample in a row of the table, in
                                     // steps of kStep bytes; a few more entries of 0 behind
        std::vector<std::vector<Entry>> Rows; // by genotype; empty: not computed
        std::size_t Running = 0;              // genotype of the row computed last
    };
    // Where the sums of a row read at a locus.
    struct Source {
        const Entry& at(std::size_t sample) const {
            const auto* const bytes = reinterpret_cast<const std::byte*>(Row);
            return *reinterpret_cast<const Entry*>(bytes + kStep * Place[sample]);
        }
        const Entry* Row;      // NOT OWNED; of the genotype of sample i
        const uint16_t* Place; // NOT OWNED; Locus::Place
    };
    static constexpr std::size_t kStep = 8; // bytes; an address steps so at no cost

    GenotypeTables(const Samples& samples, QuantitySet wanted);

    // Takes the genotypes of a locus in. False if a sample is no individual, or there are too many.
    bool addLocus(const LocusSamples& locus);
    // The row of a genotype, computed if it is not there.
    const std::vector<Entry>& row(Locus& locus, std::size_t genotype);
    void computeRow(const LocusSamples& genotypes, std::size_t genotype,
                    std::vector<Entry>& entries);
    // Adds the loci of Sources, at most kMostLoci, to the sums of row i; to Counts alone what is
    // counted in fields. first: the sums begin with them.
    void addSources(std::size_t i, bool first, RowSums& sums);
    // Adds the fields of Counts to their sums.
    void addFields(std::size_t i, bool first, RowSums& sums) const;

    using Column = std::vector<uint64_t>; // by sample

    std::size_t Count;            // samples
    QuantitySet Wanted;           // what is summed
    std::vector<Locus> Loci;      // by locus, from 0
    bool Kept = false;            // whole tables
    RowMaker Maker;               // of rows of genotypes
    RowSums OfGenotypes;          // of a row at one locus, by genotype
    std::vector<Source> Sources;  // of the running loci
    std::array<Column, 2> Counts; // words of their sums
};

} // namespace kva

#endif
