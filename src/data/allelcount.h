// AllelCount: the allele table of one locus in one sample (a population, a group,
// the whole data set or one individual), with all basic diversity statistics.
//
// A table is fed one entry at a time, two consecutive entries being one
// individual. AnzChromosomen (C below) is all that tells diploid from haploid
// (inbred) data in the formulas: C/2 is the number of independent gene copies, and
// the small-sample factor C/(C-2) adapts itself to it.
//
// -1.0 (-1 for counts) is the table's one way to say that there is no value. Nothing but
// AddHaploidSet touches the random stream, and nothing but RDEnd the console.
#ifndef KVA_DATA_ALLELCOUNT_H
#define KVA_DATA_ALLELCOUNT_H

#include <array>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace kva {

class ResultFile;

// One row of a table.
struct AllelEintrag {
    int32_t Nummer = 0; // allele number as it stands in the data file, never negative
    int32_t Anzahl = 0; // gene copies counted
};

// Comparison of two rows (AllelEintrag) by Nummer for qsort and its kin, ascending: -1, 0 or 1.
int SortAllel(const void* a, const void* b);

// The table. Its fields are open: passes read them, and the random discard of the data set fills
// RDAktuell and RDGroesse itself.
class AllelCount {
  public:
    // An empty table with 40 rows.
    AllelCount();

    // --- Set-up and counting -------------------------------------------------

    // Empties the table and gives it `kapazitaet` rows (at least 1).
    void init(int kapazitaet);

    // Empties the table; the capacity stays, also a grown one.
    void Clr();

    // Counts one entry. A negative allele is missing data, which must be handed in
    // too: it keeps the entries of an individual together. `haploid` other than 0
    // gives weight 1 instead of 2. An individual with one missing allele counts as
    // typed and as homozygous; one without any leaves no trace.
    void AddAllel(int allel, int haploid);

    // Counts many entries in turn, as AddAllel does, in less time. `infos` has the info value of
    // each entry (data/lociclass.h), which holds its haploid bit.
    void AddAllele(std::span<const int32_t> allele, std::span<const int32_t> infos);

    // One individual in one random-discard replicate: chooses one of the two alleles
    // (negative: missing) and counts it. One number is drawn from the random stream if both
    // are there, also if they are the same. Nothing is counted in an empty table; an allele
    // that the table lacks counts in RDGroesse alone.
    void AddHaploidSet(int allel1, int allel2);

    // Sorts the rows by allele number, ascending. A table that grows afterwards is unsorted.
    void SortAllele();

    // Whether the rows ascend by allele number for sure.
    bool isSorted() const { return Sortiert; }

    // --- Reading, i counts rows from 0 ---------------------------------------

    // Frequency of an allele, 0 to 1: Anzahl / AnzGesamt; -1.0 for an empty table, -3.0 for a
    // negative i, -2.0 for i >= AnzAllele.
    double GetFrequenz(int i) const;

    // Anzahl, in gene copies; -1 for an empty table, -3 for a negative i, -2 for i > AnzAllele. Row
    // AnzAllele, the free one behind the last, is let through and reads 0.
    int GetAllelCount(int i) const;

    // The place of allele number `nummer`, counted from 1; 0 if it is not there.
    int GetAllelNummer(int nummer) const;

    // True as soon as one gene copy flagged haploid is in the table.
    bool isHaploid() const { return AnzChromosomen < 2 * int64_t{AnzGesamt}; }

    // Smallest and largest count of allele i over the replicates, in individuals; -3 if not
    // isHaploid (which an empty table is not either), -1 for no gene copies, -2 for an
    // i above AnzAllele. Any other i without a row of the replicates reads 0: AnzAllele
    // itself, a negative one, and all while StartRD was not called.
    int GetRDMinAllelCount(int i) const;
    int GetRDMaxAllelCount(int i) const;

    // The same as a share of a replicate, 0 to 1 in complete data: 2 x count / AnzGesamt,
    // since a replicate holds one copy per individual and AnzGesamt two; the same sentinels.
    double GetRDMinFrequenz(int i) const;
    double GetRDMaxFrequenz(int i) const;

    // Writes "Nummer\tAnzahl\t" of row i; "\t\t" where there is no such row.
    void AllelZahl(ResultFile& f, int i) const;

    // Writes "Nummer\tfrequency\t" of row i; "\t\t" where there is no such row.
    void AllelFreq(ResultFile& f, int i) const;

    // --- Statistics, -1.0 if the sample is too small --------------------------
    // p(i) is the frequency of allele i; sums run over the rows in table order, which is part
    // of the result. Allele numbers are taken as they stand, in base pairs as a rule.

    // Expected heterozygosity 1 - sum p(i)^2, uncorrected (Nei 1973). Needs one gene copy.
    double CalcHetuk() const;

    // Expected heterozygosity, corrected by C/(C-2), capped at 1.0 (Nei 1978).
    // Needs C > 2.
    double CalcHet() const;

    // Observed heterozygosity: heterozygotes per typed individual (plain count). Needs C > 1
    // and two entries.
    double CalcHetobs() const;

    // Gene diversity within the sample: (1 - sum p(i)^2) - Hobs/C, times C/(C-2) if
    // `korrigiert` is not 0; capped at 1.0. Needs C > 2. Near Nei 1987, equation 7.39, for one
    // sample, n/(n-1) (1 - sum p(i)^2 - Hobs/(2n)) with n individuals, but with the 2n gene
    // copies of diploid data (C is 4n) in the place of n: 2n/(2n-1) (1 - sum p(i)^2 -
    // Hobs/(4n)). Corrected it is never above Nei's (docs/results.md).
    double CalcHsk(int korrigiert) const;

    // Mean allele number: sum a(i) Anzahl(i) / AnzGesamt, a(i) the number. Needs C > 1.
    double CalcMean() const;

    // Variance of the allele numbers around `mean`, the result of CalcMean(), corrected by
    // C/(C-2): C/(C-2) sum Anzahl(i) (a(i) - mean)^2 / AnzGesamt, the plain sample variance
    // of C/2 independent copies; in squares of the allele numbers. Needs C > 2.
    double CalcVar(double mean) const;

    // Shannon index -sum p(i) ln p(i) (Shannon 1948). Needs C > 2.
    double CalcShannon() const;

    // Allelic richness: the number of alleles expected in a sub-sample of `k` gene
    // copies, by the hypergeometric distribution (Hurlbert 1971); `varianz` takes its
    // variance (Heck et al. 1975). -1.0 for a table with C < 3, -2.0 for k below 2 or
    // above AnzGesamt, -3.0 if the arithmetic fails; `varianz` is -1.0 then. Products
    // that overflow give a negative or non-finite result. With k = AnzGesamt it is AnzAllele,
    // variance 0.0. In stats/Rarefraction.cpp; may fill the table of `Factorial`.
    double CalcRarefraction(int k, double& varianz) const;

    // --- Random-discard replicates --------------------------------------------
    // Of each individual one allele is kept at random; the statistics of these
    // one-copy samples are summed over the replicates.

    // Starts the sums anew for `replikate` replicates, at least 1. The table must be complete:
    // the rows of the replicates are those that it has now.
    void StartRD(int replikate);

    // Closes the counts of a replicate: takes them into RDMin and RDMax, sets them to 0.
    void DataTestRD();

    // Adds the running replicate to the sums. 0 with all sums at -1.0 if AnzGesamt is below 3,
    // else 1. With m = RDGroesse and counts c(i): H = m/(m-1) (1 - sum (c(i)/m)^2) as in Nei
    // 1978 for a haploid sample, mean = sum a(i) c(i) / m, number of c(i) above 0, and variance
    // = 2/(AnzGesamt-2) sum c(i) (a(i) - mean)^2. m below 2 gives values that are no numbers.
    int CalcRDF();

    // Closes a replicate: CalcRDF, DataTestRD, RDDurchlauf. 1: go on; 0: stop, with mark "2#"
    // on the console for a monomorphic table (it gives the same replicate for ever) or "3#"
    // for the last one, or silently for a sample below 3 copies.
    int RDEnd();

    std::vector<AllelEintrag> Allele;    // Kapazitaet rows, of which AnzAllele are used; order of
                                         // first appearance until sorted
    int32_t Kapazitaet = 0;              // rows allocated; grows by 40
    int32_t AnzAllele = 0;               // distinct alleles, rows used
    int32_t AnzGesamt = -1;              // gene copies counted; -1 while empty
    int32_t AnzChromosomen = -1;         // 2 per diploid entry, 1 per haploid one; -1 while empty
    int32_t RDGroesse = 0;               // individuals drawn in the running replicate
    int32_t AnzHetero = 0;               // individuals with two different alleles
    int32_t AnzTypisiert = 0;            // entries of individuals with at least one allele;
                                         // odd while an individual is open
    int32_t OffenesAllel = -1;           // first allele of the open individual; -1 when none
    int32_t MaxAllel = -1;               // largest allele number; -1 while empty
    int32_t MinAllel = -1;               // smallest allele number; -1 while empty
    int32_t RDReplikate = 0;             // replicates asked for
    int32_t RDDurchlauf = 0;             // replicates finished
    std::vector<AllelEintrag> RDAktuell; // counts of the running replicate, rows as in Allele
    std::vector<AllelEintrag> RDMin;     // smallest count of each allele over the replicates;
                                         // 100000 before the first
    std::vector<AllelEintrag> RDMax;     // largest count of each allele over the replicates
    // Sums over the replicates finished; -1.0: none was started, or fewer than 3 gene copies.
    double RDHet = -1.0;         // of the heterozygosities
    double RDVar = -1.0;         // of the variances of allele numbers
    double RDMean = -1.0;        // of the mean allele numbers
    double RDAlleleSumme = -1.0; // of the numbers of alleles

  private:
    // All tallies as in a new table; the rows themselves are left to the caller.
    void reset();

    // Counts one entry (negative: missing) in AnzTypisiert and AnzHetero.
    void openOrCloseIndividual(int allel);

    // The same for both entries of an individual, while none is open.
    void countIndividual(int first, int second);

    // Where the rows of alleles are likely to be, by their last bits. Any row will do: it is looked
    // at before it counts.
    using RowHints = std::array<int32_t, 64>;

    // Counts a gene copy of weight 1 or 2; nothing for a negative allele.
    void addCopy(int allel, int32_t weight, RowHints& hints);

    // Appends the row of an allele that is not there yet, with one copy of weight 1 or 2, and grows
    // a table that is full.
    void addRow(int allel, int32_t weight);

    // Takes the last row into Platz, once the table has kIndexFrom rows.
    void indexLastRow();

    // The place of a number, from 0; -1 if it is not there. Bisection, index and scan give the
    // same: no number stands in two rows.
    int32_t findRow(int allel) const;
    double sumOfSquares() const; // sum p(i)^2, in table order

    // Behind GetRDMinAllelCount and its three sisters, on RDMin or RDMax; their sentinels.
    int rdCount(const std::vector<AllelEintrag>& rows, int i) const;
    double rdFrequency(const std::vector<AllelEintrag>& rows, int i) const;

    static constexpr int32_t kIndexFrom = 64; // rows from which Platz is kept

    bool Sortiert = false; // rows ascend by number: places are found by bisection
    std::unordered_map<int32_t, int32_t> Platz; // allele number to row, from 0; in large unsorted
                                                // tables only, else empty
};

// The tables of all loci of one sample, in locus order: locus l of the data set,
// counted from 1, is entry l - 1.
using LocusTables = std::vector<AllelCount>;

// Such arrays for many samples. In Run::PopAllele entry 0 is the pool
// of all populations and entry p population p; empty: not counted yet.
using SampleTables = std::vector<LocusTables>;

} // namespace kva

#endif
