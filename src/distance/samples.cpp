#include "distance/samples.h"

#include "data/randomdiscard.h"

#include <algorithm>

namespace kva {

namespace {

// J' of a sample. For a single gene copy it is 0/0.
double identityOf(const AllelCount& table, const std::vector<AlleleShare>& shares,
                  std::size_t first) {
    double J = 0.0;
    for (std::size_t e = first; e < shares.size(); ++e) {
        J += shares[e].Share * shares[e].Share;
    }
    const double n = table.AnzGesamt;
    return (J * n - 1.0) / (n - 1.0);
}

// Appends the shares of a sample; tables are sorted, so they stand in the pool's order.
void addShares(LocusSamples& locus, const AllelCount& table, const AllelCount& pool) {
    for (int32_t row = 0; row < table.AnzAllele; ++row) {
        const int place = pool.GetAllelNummer(table.Allele[row].Nummer);
        if (place > 0) {
            locus.Shares.push_back({table.GetFrequenz(row), static_cast<std::size_t>(place) - 1});
        }
    }
}

void addSample(LocusSamples& locus, const AllelCount& table, const AllelCount& pool,
               const SampleRules& rules) {
    const std::size_t first = locus.Shares.size();
    addShares(locus, table, pool);
    const std::size_t alleles = locus.Shares.size() - first;
    const bool typed = alleles > 0;
    const double mean = table.CalcMean();
    const bool hasMean = typed && mean > -1.0;
    const bool inNei = typed && (rules.SingleCopies || table.AnzGesamt > 1);
    locus.Typed.push_back(typed ? 1.0 : 0.0);
    locus.Alleles.push_back(static_cast<double>(alleles));
    locus.HasMean.push_back(hasMean ? 1.0 : 0.0);
    locus.Mean.push_back(mean);
    locus.Variance.push_back(rules.Variances ? rdVar(table, mean) : 0.0);
    locus.InNei.push_back(inNei ? 1.0 : 0.0);
    locus.Identity.push_back(inNei ? identityOf(table, locus.Shares, first) : 0.0);
    const std::size_t slots = std::max(alleles, rules.ShareSlots); // fillers behind
    locus.Shares.resize(first + slots, AlleleShare{0.0, locus.Pool});
    locus.First.push_back(locus.Shares.size());
}

void reserve(LocusSamples& locus, std::size_t samples, std::size_t slots) {
    for (std::vector<double>* column : {&locus.Typed, &locus.Alleles, &locus.HasMean, &locus.Mean,
                                        &locus.Variance, &locus.InNei, &locus.Identity}) {
        column->reserve(samples);
    }
    locus.First.reserve(samples + 1);
    locus.Shares.reserve(samples * slots);
}

} // namespace

Samples prepareSamples(const SampleTables& tables, std::size_t first, std::size_t count,
                       const LocusTables& pool, const std::vector<double>& repeats,
                       const SampleRules& rules) {
    static const AllelCount absent;
    Samples samples;
    samples.Count = count;
    samples.Loci.resize(pool.size());
    for (std::size_t l = 0; l < pool.size(); ++l) {
        LocusSamples& locus = samples.Loci[l];
        locus.Pool = static_cast<std::size_t>(pool[l].AnzAllele);
        locus.Repeat = repeats[l];
        reserve(locus, count, rules.ShareSlots);
        locus.First.push_back(0);
        for (std::size_t s = first; s < first + count; ++s) {
            const bool there = s < tables.size() && l < tables[s].size();
            addSample(locus, there ? tables[s][l] : absent, pool[l], rules);
        }
    }
    return samples;
}

} // namespace kva
