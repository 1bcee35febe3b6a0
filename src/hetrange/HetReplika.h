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
    // `places` of every row read entry 0 until something is drawn.
    HetStichprobe(int32_t rows, int32_t places);

    // The places of row `row`, from 0.
    std::span<int32_t> Row(int32_t row);
    std::span<const int32_t> Row(int32_t row) const;

    // From `first` to the end of every row: places that no draw reaches, set to `missing`.
    void MarkPast(int32_t first, int32_t missing);

  private:
    std::size_t Places; // places of a row
    std::vector<int32_t> Indices;
};

// Heterozygosity, variance and number of alleles of one sample at one locus, -1.0 where
// there is none.
struct HetStatistics {
    double H = -1.0; // AllelCount::CalcHet()
    double V = -1.0; // AllelCount::CalcVar(CalcMean())
    double A = -1.0; // distinct alleles
    int32_t n = 0;   // independent gene copies: AnzChromosomen / 2
};

// One locus of one population, and the counts of the running replicate.
class HetTable {
  public:
    // Takes the entries of population `pop` (from 1) and its sorted allele table.
    void Load(const LociObj& locus, int pop, const AllelCount& alleles);

    // Empties the counts.
    void Clr();

    // Counts the pairs of places of a row, in order. `randomDiscard`: of a pair whose first
    // entry is flagged haploid one allele is drawn and counted twice; one random number a
    // pair.
    void Add(std::span<const int32_t> row, bool randomDiscard);

    // The statistics of what is counted.
    HetStatistics Statistics() const;

  private:
    void addEntry(int32_t code);
    void addUniform(std::span<const int32_t> row);
    void addPair(int32_t first, int32_t second, bool randomDiscard);
    void addDiscarded(int32_t first, int32_t second);
    struct Sums {
        double Squares = 0.0; // of the allele frequencies
        double Numbers = 0.0; // of the allele numbers of all copies
    };
    Sums sums() const;
    double deviations(double mean) const; // sum of the squared distances to `mean`

    // Per entry of the population, and one behind the last that reads as missing.
    std::vector<int32_t> Codes;   // 1-based place of the allele, 0 missing
    std::vector<uint8_t> Haploid; // flag of the entry
    std::vector<int32_t> Numbers; // allele number of a code
    bool AnyHaploid = false;      // an entry is flagged
    bool AllHaploid = false;      // every entry is flagged
    // Of the running replicate.
    std::vector<int32_t> Counts; // copies of a code; entry 0 takes the missing ones
    std::vector<int32_t> Order;  // codes in order of first appearance, 0 among them
    int32_t Seen = 0;            // codes in Order
    int32_t Copies = 0;          // gene copies counted
    int32_t HaploidCopies = 0;   // of these, copies that count as haploid
    int32_t Chromosomes = 0;     // weighted tally, as AllelCount::AnzChromosomen
};

// Minimum, sum and maximum of one statistic over the replicates.
struct HetSpan {
    double Min = 0.0;
    double Summe = 0.0;
    double Max = 0.0;

    void start(double value) { Min = Summe = Max = value; }
    void add(double value);
};

// The running statistics of one locus of one population.
class HetBereich {
  public:
    // Takes the statistics of replicate `replikat` (from 0). The first replicate has its
    // own rules.
    void Add(int replikat, const HetStatistics& wert);

    HetSpan H;
    HetSpan V;
    HetSpan A;         // see Add: only replicates without any allele move it
    double Anzahl = 0; // replicates that counted for H; the divisor of all means

  private:
    void addFirst(const HetStatistics& wert);
    void addLater(const HetStatistics& wert);
};

// The heterozygosity put in the place of 0 and of (nearly) 1: the smallest and the largest
// that a sample of n independent copies can show and still be polymorphic, or not fully so.
// -1.0 for n <= 1.
double correctHeterozygosity(double H, int32_t n);

// The three sheets that hold every replicate of a population; closed if not asked for.
struct HetReplicateSheets {
    ResultFile Het;
    ResultFile Var;
    ResultFile Allele;
};

} // namespace kva

#endif
