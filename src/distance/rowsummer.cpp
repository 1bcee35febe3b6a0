#include "distance/rowsummer.h"

#include <algorithm>

namespace kva {

RowSummer::RowSummer(const Samples& samples, const Measure& measure, std::size_t keepBytes)
    : Prepared(samples), Rule(measure), Sums(samples.Count) {
    int32_t alleles = 0;
    for (const LocusSamples& locus : samples.Loci) {
        alleles = std::max(alleles, locus.Pool);
    }
    Frequencies.resize(static_cast<std::size_t>(alleles) + 1);
    Values.resize(static_cast<std::size_t>(samples.Count));
    const std::size_t n = Values.size();
    const std::size_t numbers = n * (n + 1) / 2 * samples.Loci.size();
    if (Rule.Values != nullptr && numbers <= keepBytes / sizeof(double)) {
        Kept.resize(samples.Loci.size());
    }
}

const RowSums& RowSummer::sum(int32_t i, std::span<const int32_t> loci) {
    Sums.clear(Rule.Layers);
    for (const int32_t locus : loci) {
        addLocus(i, static_cast<std::size_t>(locus));
    }
    return Sums;
}

PairSums RowSummer::pair(int32_t j) const {
    const auto place = static_cast<std::size_t>(j);
    return {Sums.DistSumme[0][place], Sums.DistSumme[1][place], Sums.DistNenner[0][place],
            Sums.DistNenner[1][place]};
}

void RowSummer::addLocus(int32_t i, std::size_t locus) {
    const LocusSamples& samples = Prepared.Loci[locus];
    if (samples.Typed[static_cast<std::size_t>(i)] == 0.0) {
        return;
    }
    const LocusRow row{samples, i, Frequencies.data()};
    if (!Kept.empty()) {
        Rule.Add(row, keptValues(row, locus), Sums);
        return;
    }
    spread(row, true);
    if (Rule.Values != nullptr) {
        Rule.Values(row, Values.data());
    }
    Rule.Add(row, Values.data(), Sums);
    spread(row, false);
}

const double* RowSummer::keptValues(const LocusRow& row, std::size_t locus) {
    KeptLocus& kept = Kept[locus];
    const std::size_t n = Values.size();
    if (kept.Done.empty()) {
        kept.Done.resize(n);
        kept.Values.resize(n * (n + 1) / 2);
    }
    // Row r has the n - r places from column r on; `value` is such that column j is value[j].
    const auto r = static_cast<std::size_t>(row.I);
    double* const value = kept.Values.data() + (r * n - r * (r + 1) / 2);
    if (kept.Done[r] == 0) {
        spread(row, true);
        Rule.Values(row, value);
        spread(row, false);
        kept.Done[r] = 1;
    }
    return value;
}

void RowSummer::spread(const LocusRow& row, bool present) {
    const auto i = static_cast<std::size_t>(row.I);
    const auto end = static_cast<std::size_t>(row.Locus.First[i + 1]);
    for (auto e = static_cast<std::size_t>(row.Locus.First[i]); e < end; ++e) {
        const AlleleShare& share = row.Locus.Shares[e];
        Frequencies[static_cast<std::size_t>(share.Place)] = present ? share.Share : 0.0;
    }
}

} // namespace kva
