// The components of variance of two populations whose individuals are dealt out anew, made for
// speed: the first sample is a sum of rows (GenotypeRows), the second one what it leaves over of
// both populations, and the alleles are summed where they first appear in the deal.
#ifndef KVA_FSTAT_GENOTYPEPAIR_H
#define KVA_FSTAT_GENOTYPEPAIR_H

#include "fstat/GenotypeRows.h"
#include "fstat/PairTerms.h"
#include "fstat/wc84.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

// Twin of PairEstimator by the observed heterozygosity. The object holds the room.
class GenotypePair {
  public:
    // Room for rows of that shape.
    explicit GenotypePair(const GenotypeRows& rows);

    // Counts at `loci` the samples of a deal of two populations (from 0), given by their pair
    // places in the order of the deal: together each individual of both populations once. The rows
    // stay as they are until the components are taken.
    void count(const GenotypeRows& rows, std::array<std::size_t, 2> pops,
               std::span<const int32_t> places1, std::span<const int32_t> places2, LociRange loci);

    // The components at one of the loci last counted; nothing as in pairComponents().
    std::optional<VarianceComponents> components(std::size_t l);

    // --- Near values -----------------------------------------------------------------------

    // The first half of count(): the gene copies without the order of their appearance.
    void draw(const GenotypeRows& rows, std::array<std::size_t, 2> pops,
              std::span<const int32_t> places1, LociRange loci);
    // As components() but for rounding, with draw() alone; samples have at most kMostNear gene
    // copies.
    std::optional<VarianceComponents> nearComponents(std::size_t l);

  private:
    // The alleles of a locus of small samples.
    struct TermSum {
        TwoDoubles OfAB;              // so far
        const PairTerms::Term* Terms; // of the page for the samples
        int32_t Step;                 // ... its step
    };
    // The alleles of a locus of large samples: a list in Counts1 and Counts2.
    struct CountList {
        uint32_t Begin; // the first place
        uint32_t End;   // behind the last
    };

    // The second half of count(), which components() needs.
    void order(std::array<std::size_t, 2> pops, std::span<const int32_t> places1,
               std::span<const int32_t> places2, LociRange loci);
    // Sums up the terms of small samples, allele by allele as noted.
    void sumTerms(std::span<const FreshAlleles> notes, LociRange range);
    // Lists the counts of large samples, whose terms components() computes.
    void listCounts(std::span<const FreshAlleles> notes, LociRange range);
    // Sums over the alleles of a locus.
    PairSquares squares(std::size_t l) const;
    // What the first sample leaves over of both populations.
    Tally rest(std::size_t l, const Tally& drawn) const;

    // Of the last deal.
    const GenotypeRows* Rows = nullptr; // NOT OWNED
    const int32_t* Whole1 = nullptr;    // NOT OWNED; sums of the populations, by column
    const int32_t* Whole2 = nullptr;
    bool Small = false; // both samples have a page in Terms

    std::vector<int32_t> Drawn;                // sums of the first sample, by column
    std::vector<uint64_t> Open;                // bits of the alleles that have not yet appeared
    std::vector<FreshAlleles> Notes;           // where they appear; one to spare
    std::vector<TermSum> Sums;                 // by locus
    std::vector<const PairTerms::Page*> Pages; // ... of small samples
    std::vector<CountList> Lists;
    std::vector<int32_t> Counts1; // gene copies of each allele listed, in sample 1
    std::vector<int32_t> Counts2; // ... in sample 2
    PairTerms Terms;
};

} // namespace kva

#endif
