// Random discard: a table with haploid entries holds pairs that are not
// independent, so each individual is thinned to one allele chosen at random, and
// the statistics of these one-copy samples are averaged over replicates.
#include "stats/randomdiscard.h"

#include "data/lociclass.h"
#include "fstat/randsci.h"

#include <algorithm>

namespace {

// Which individuals the walk of a driver takes in.
enum class Walk {
    pairs,    // slot pairs
    withRest, // wanted: also the single slot behind the last pair of one-column data
};

int individuals(const Datensatz& daten, int pop, Walk walk) {
    const int slots = daten.GetAnzDatenChromosome(pop);
    return walk == Walk::pairs ? slots / 2 : (slots + 1) / 2;
}

// An individual as rows of a table, for AllelCount::RDAktuell.
struct Pair {
    int32_t row1;
    int32_t row2; // kAlone: the other allele is missing, so nothing is drawn
};
constexpr int32_t kAlone = -1;

// The individuals of one population that have an allele, as rows of `table`. An allele that the
// table lacks stands as the row behind the last.
void addPairs(std::vector<Pair>& pairs, const AllelCount& table, const Datensatz& daten, int pop,
              int locus, Walk walk) {
    const auto rowOf = [&table](int allel) {
        const int place = table.GetAllelNummer(allel);
        return place > 0 ? place - 1 : table.AnzAllele;
    };
    for (int tier = 0; tier < individuals(daten, pop, walk); ++tier) {
        int allel1 = -1;
        int allel2 = -1;
        (void)daten.GetTierDaten(locus, pop, tier, allel1, allel2); // a bad locus stays missing
        if (allel1 >= 0 && allel2 >= 0) {
            pairs.push_back({rowOf(allel1), rowOf(allel2)});
        } else if (allel1 >= 0 || allel2 >= 0) {
            pairs.push_back({rowOf(std::max(allel1, allel2)), kAlone});
        }
    }
}

// AllelCount::AddHaploidSet for all individuals of a replicate, with the alleles looked up
// beforehand: the same draws and counts, and no search in each of the replicates.
void thin(AllelCount& table, const std::vector<Pair>& pairs) {
    const auto rows = static_cast<int32_t>(table.RDAktuell.size());
    for (const Pair& pair : pairs) {
        int32_t row = pair.row1;
        if (pair.row2 != kAlone) {
            row = InternRand() <= 0.5F ? pair.row1 : pair.row2;
        }
        ++table.RDGroesse;
        if (row < rows) {
            ++table.RDAktuell[static_cast<std::size_t>(row)].Anzahl;
        }
    }
}

// Runs the replicates of the table of `pop` (0: the pool) at `locus`, once in its life. All
// individuals are thinned, the diploid ones of a mixed sample too.
AllelCount& replicated(const Datensatz& daten, AllelTabellen& tab, int pop, int locus,
                       int replikate, Walk walk) {
    AllelCount& table = tab[static_cast<std::size_t>(pop)][static_cast<std::size_t>(locus - 1)];
    if (table.RDDurchlauf != 0 || !table.isHaploid()) {
        return table;
    }
    std::vector<Pair> pairs;
    const int first = pop >= 1 ? pop : 1;
    const int last = pop >= 1 ? pop : daten.GetPopAnzahl();
    for (int population = first; population <= last; ++population) {
        addPairs(pairs, table, daten, population, locus, walk);
    }
    table.StartRD(replikate);
    do {
        thin(table, pairs);
    } while (table.RDEnd() == 1);
    return table;
}

// The mean of `sum` over the replicates, or the plain value.
template <class Plain>
double replicateMean(const AllelCount& table, double AllelCount::*sum, Plain plain) {
    return table.isHaploid() && table.RDDurchlauf >= 1 ? table.*sum / table.RDDurchlauf : plain();
}

} // namespace

double rdHet(const AllelCount& table) {
    return replicateMean(table, &AllelCount::RDHet, [&] { return table.CalcHet(); });
}

double rdMean(const AllelCount& table) {
    return replicateMean(table, &AllelCount::RDMean, [&] { return table.CalcMean(); });
}

double rdVar(const AllelCount& table, double mean) {
    return replicateMean(table, &AllelCount::RDVar, [&] { return table.CalcVar(mean); });
}

double rdAlleles(const AllelCount& table) {
    return replicateMean(table, &AllelCount::RDAlleleSumme,
                         [&] { return table.AnzAllele > 0 ? double(table.AnzAllele) : -1.0; });
}

double Datensatz::CalcRDHet(AllelTabellen& tab, int pop, int locus, int replikate) const {
    return rdHet(replicated(*this, tab, pop, locus, replikate, Walk::pairs));
}

double Datensatz::CalcRDMean(AllelTabellen& tab, int pop, int locus, int replikate) const {
    return rdMean(replicated(*this, tab, pop, locus, replikate, Walk::withRest));
}

double Datensatz::CalcRDVar(AllelTabellen& tab, int pop, int locus, double mean,
                            int replikate) const {
    return rdVar(replicated(*this, tab, pop, locus, replikate, Walk::withRest), mean);
}

double Datensatz::CalcRDAllele(AllelTabellen& tab, int pop, int locus, int replikate) const {
    return rdAlleles(replicated(*this, tab, pop, locus, replikate, Walk::withRest));
}
