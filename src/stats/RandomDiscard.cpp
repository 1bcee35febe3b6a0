// Random discard: a table with haploid entries holds pairs that are not
// independent, so each individual is thinned to one allele chosen at random, and
// the statistics of these one-copy samples are averaged over replicates.
#include "data/randomdiscard.h"
#include "data/lociclass.h"
#include "fstat/randsci.h"

#include <algorithm>

namespace kva {

namespace {

// Which individuals a driver takes in.
enum class Coverage {
    Pairs,    // slot pairs
    WithRest, // wanted: also the single slot behind the last pair of one-column data
};

int individuals(const Datensatz& daten, int pop, Coverage coverage) {
    const int slots = daten.GetAnzDatenChromosome(pop);
    return coverage == Coverage::Pairs ? slots / 2 : (slots + 1) / 2;
}

// The individuals of a table for its replicates, the alleles looked up as rows once. A replicate is
// AllelCount::AddHaploidSet for all individuals in order: the same draws, in one go, and the same
// counts.
class Thinning {
  public:
    // For a complete table.
    explicit Thinning(AllelCount& table)
        : Table(table), Alone(static_cast<std::size_t>(table.AnzAllele) + 1, 0) {}

    void addPopulation(const Datensatz& daten, int pop, int locus, Coverage coverage);
    void run();

  private:
    struct Pair {
        int32_t row1;
        int32_t row2;
    };

    // An allele that the table lacks stands as the row behind the last.
    int32_t rowOf(int allel) const {
        const int place = Table.GetAllelNummer(allel);
        return place > 0 ? place - 1 : Table.AnzAllele;
    }

    AllelCount& Table;
    std::vector<Pair> Pairs;    // individuals with two alleles, one draw each
    std::vector<int32_t> Alone; // by row: individuals with one allele, no draw
    int32_t AloneCount = 0;     // their number
    std::vector<float> Draws;   // of the running replicate, one for each pair
    std::vector<int32_t> Kept;  // by row: alleles kept in the running replicate
};

void Thinning::addPopulation(const Datensatz& daten, int pop, int locus, Coverage coverage) {
    for (int tier = 0; tier < individuals(daten, pop, coverage); ++tier) {
        int allel1 = -1;
        int allel2 = -1;
        daten.GetTierDaten(locus, pop, tier, allel1, allel2); // a bad locus stays missing
        if (allel1 >= 0 && allel2 >= 0) {
            Pairs.push_back({rowOf(allel1), rowOf(allel2)});
        } else if (allel1 >= 0 || allel2 >= 0) {
            ++Alone[rowOf(std::max(allel1, allel2))];
            ++AloneCount;
        }
    }
    Draws.resize(Pairs.size());
}

void Thinning::run() {
    rand2Fill(Draws);
    Kept = Alone;
    for (std::size_t i = 0; i < Pairs.size(); ++i) {
        const int32_t row = Draws[i] <= 0.5F ? Pairs[i].row1 : Pairs[i].row2;
        ++Kept[row];
    }
    Table.RDGroesse += AloneCount + static_cast<int32_t>(Pairs.size());
    for (std::size_t row = 0; row < Table.RDAktuell.size(); ++row) {
        Table.RDAktuell[row].Anzahl += Kept[row];
    }
}

// Runs the replicates of the table of `pop` (0: the pool) at `locus`, once in its life. All
// individuals are thinned, the diploid ones of a mixed sample too.
AllelCount& replicated(const Datensatz& daten, SampleTables& tab, int pop, int locus, int replikate,
                       Coverage coverage) {
    AllelCount& table = tab[pop][locus - 1];
    if (table.RDDurchlauf != 0 || !table.isHaploid()) {
        return table;
    }
    Thinning thinning(table);
    const int first = pop >= 1 ? pop : 1;
    const int last = pop >= 1 ? pop : daten.GetPopAnzahl();
    for (int population = first; population <= last; ++population) {
        thinning.addPopulation(daten, population, locus, coverage);
    }
    table.StartRD(replikate);
    do {
        thinning.run();
    } while (table.RDEnd() == 1);
    return table;
}

} // namespace

double Datensatz::CalcRDHet(SampleTables& tab, int pop, int locus, int replikate) const {
    return rdHet(replicated(*this, tab, pop, locus, replikate, Coverage::Pairs));
}

double Datensatz::CalcRDMean(SampleTables& tab, int pop, int locus, int replikate) const {
    return rdMean(replicated(*this, tab, pop, locus, replikate, Coverage::WithRest));
}

double Datensatz::CalcRDVar(SampleTables& tab, int pop, int locus, double mean,
                            int replikate) const {
    return rdVar(replicated(*this, tab, pop, locus, replikate, Coverage::WithRest), mean);
}

double Datensatz::CalcRDAllele(SampleTables& tab, int pop, int locus, int replikate) const {
    return rdAlleles(replicated(*this, tab, pop, locus, replikate, Coverage::WithRest));
}

} // namespace kva
