// The working data of the heterozygosity range: the sample drawn for one replicate,
// the allele table of one locus in one replicate, and the running minimum, sum and
// maximum of its statistics.
//
// The table counts by dense codes, the place of an allele among the population's
// alleles, so that nothing is searched per entry. It gives the very statistics that
// an AllelCount fed with the same entries gives, bit for bit: alleles are summed in
// the order of their first appearance.
#ifndef KVA_HETRANGE_HETREPLIKA_H
#define KVA_HETRANGE_HETREPLIKA_H

#include "data/allelcount.h"
#include "data/lociclass.h"
#include "output/resultfile.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kva {

// The entries drawn for one replicate: a row per locus, or one row for linked loci. A
// place holds the index of a data entry of the population, from 0; the index behind the
// last entry reads as missing.
class HetStichprobe {
  public:
    // `rows` rows of `places` places, all of which read entry 0 until something is drawn.
    HetStichprobe(int32_t rows, int32_t places);

    // The places of row `row`, from 0: indices of entries. They stay valid as long as the object.
    std::span<int32_t> Row(int32_t row);
    std::span<const int32_t> Row(int32_t row) const;

    // The first `length` places (at most those of a row) of each row, in order; in one stretch if
    // those are whole rows.
    std::vector<std::span<int32_t>> Stretches(std::size_t length);

    // Sets the places from `first`, from 0 and at most the places of a row, to the end of every
    // row, which no draw reaches, to `missing`, the index behind the last entry.
    void MarkPast(std::size_t first, int32_t missing);

  private:
    std::size_t Places;           // places of a row
    std::vector<int32_t> Indices; // of entries, from 0, row behind row
};

// Heterozygosity (Nei 1978), variance and number of alleles of one sample at one locus, -1.0 where
// there is none.
struct HetStatistics {
    double H = -1.0; // AllelCount::CalcHet(), the expected one
    double V = -1.0; // AllelCount::CalcVar(CalcMean()), in squared allele numbers (base pairs)
    double A = -1.0; // distinct alleles
    int32_t n = 0;   // independent gene copies: AnzChromosomen / 2, cut; 0 for an empty sample
};

// One locus of one population, and the counts of the running replicate.
class HetTable {
  public:
    // Takes over the entries of population `pop` (from 1) at `locus`, in the codes of `alleles`,
    // its sorted allele table, and empties the counts.
    void Load(const LociObj& locus, int pop, const AllelCount& alleles);

    // Empties the counts; the entries stay.
    void Clr();

    // Counts the pairs of places of a row, in order; an odd last place is left out. Once after a
    // Clr. `randomDiscard`: of a pair whose first entry is flagged haploid one allele is drawn and
    // counted twice; one random number for each such pair.
    void Add(std::span<const int32_t> row, bool randomDiscard);

    // The statistics of what is counted. Nothing changes.
    HetStatistics Statistics() const;

  private:
    // Counts the places of a row, an even number of them, where no flag matters: none is set, or
    // all are and nothing is discarded.
    void addUniform(std::span<const int32_t> row);
    // Counts a pair of entries, by their indices from 0.
    void addPair(int32_t first, int32_t second, bool randomDiscard);
    // Counts an entry under a haploid flag (1 or 0), its own or that of the pair's first entry.
    void addEntry(int32_t place, int32_t haploid);
    // The codes of the alleles counted, in order of first appearance.
    std::span<const int32_t> seenCodes() const { return std::span(Order).first(Seen); }

    // What the statistics sum over the alleles.
    struct Sums {
        double Squares = 0.0; // of the allele frequencies
        double Numbers = 0.0; // of the allele numbers of all copies
    };
    Sums sums() const;                    // in the order of first appearance
    double deviations(double mean) const; // sum of the squared distances of all copies to `mean`

    // Per entry of the population, and one behind the last that reads as missing.
    std::vector<int32_t> Codes;   // place of the allele in its table, from 1; 0: missing
    std::vector<uint8_t> Haploid; // flag of the entry: 1 haploid, 0 not
    // Of the population.
    std::vector<double> Numbers; // allele number by code; entry 0 unused
    bool AnyHaploid = false;     // an entry is flagged
    bool AllHaploid = false;     // every entry is flagged
    // Of the running replicate.
    std::vector<int32_t> Counts;  // gene copies by code; entry 0 takes the missing ones
    std::vector<std::size_t> New; // by code: 1 until the first copy, then 0; entry 0 is 0
    std::vector<int32_t> Order;   // alleles in order of first appearance; 1 entry is to spare
    std::size_t Seen = 0;         // alleles in Order
    int32_t Copies = 0;           // gene copies counted
    int32_t HaploidCopies = 0;    // of these, copies that count as haploid; 0 by addUniform()
    int32_t Chromosomes = 0;      // weighted tally, as AllelCount::AnzChromosomen; 0 while empty
};

// Minimum, sum and maximum of one statistic over the replicates.
struct HetSpan {
    double Min = 0.0;   // smallest value
    double Summe = 0.0; // sum of the values
    double Max = 0.0;   // largest value

    void start(double value) { Min = Summe = Max = value; } // the first value
    void add(double value);                                 // a further one
};

// The running statistics of one locus of one population.
class HetBereich {
  public:
    // Takes the statistics of replicate `replikat` (from 0). H and V that are negative do not
    // count. Wanted, as the nine sheets depend on it: an H of exactly 0 does not count in the first
    // replicate, though it does later; a first H or V that does not count leaves the minimum at 1.0
    // or 100.0 and the rest at 0.0; A keeps the value of the first replicate, and one without any
    // allele later moves the limits and replaces the sum by its -1.0.
    void Add(int replikat, const HetStatistics& wert);

    HetSpan H;         // heterozygosity
    HetSpan V;         // variance of the allele numbers
    HetSpan A;         // distinct alleles; see Add: only replicates without any allele move it
    double Anzahl = 0; // replicates that counted for H; the divisor of all three means

  private:
    void addFirst(const HetStatistics& wert); // replicate 0
    void addLater(const HetStatistics& wert); // the others
};

// The heterozygosity put in the place of 0 and of one above 0.999999: that of a sample of n
// independent gene copies with one copy more. For 0 it is of another allele,
//      n/(n-1) (1 - 1/(n+1)^2 - n^2/(n+1)^2),
// which is replaced in turn if it is above 0.999999; for 1 it equals another copy,
//      1 - 2/(n(n+1)).
// -1.0 for both if n <= 1; any other H as it is.
double correctHeterozygosity(double H, int32_t n);

// The three sheets that hold every replicate of a population; closed if not asked for.
struct HetReplicateSheets {
    ResultFile Het;    // heterozygosities, "n.d." for none
    ResultFile Var;    // variances, "n.d." for none
    ResultFile Allele; // numbers of alleles, -1.0 as it is
};

} // namespace kva

#endif
