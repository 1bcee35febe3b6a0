#include "distance/keptterms.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace kva {

namespace {

// The terms of an allele-wise quantity, a row for each allele of sample I, with an entry for each
// sample. sums: what the locus adds to each pair, 0.0 for one that it does not count for.
std::vector<double> alleleTerms(const LocusRow& row, const QuantityRule& rule, const double* sums) {
    const LocusSamples& locus = row.Locus;
    const std::size_t samples = locus.Typed.size();
    const std::size_t first = locus.First[row.I];
    const std::size_t alleles = locus.First[row.I + 1] - first;
    std::vector<std::size_t> rank(locus.Pool + 1, alleles); // place in the pool to row of terms
    for (std::size_t a = 0; a < alleles; ++a) {
        rank[locus.Shares[first + a].Place] = a;
    }
    std::vector<double> terms(alleles * samples);
    for (std::size_t j = row.First; j < samples; ++j) {
        for (std::size_t e = locus.First[j]; e < locus.First[j + 1] && sums[j] != 0.0; ++e) {
            const AlleleShare& share = locus.Shares[e];
            if (rank[share.Place] < alleles) {
                terms[rank[share.Place] * samples + j] = rule.Term(row.X[share.Place], share.Share);
            }
        }
    }
    return terms;
}

} // namespace

std::size_t KeptTerms::bytes(const Samples& samples, QuantitySet wanted) {
    std::size_t byAllele = 0; // quantities
    std::size_t atOnce = 0;
    for (const Quantity quantity : kAllQuantities) {
        if (wanted.has(quantity)) {
            ++(ruleOf(quantity).Term != nullptr ? byAllele : atOnce);
        }
    }
    std::size_t eights = 0;
    for (const LocusSamples& locus : samples.Loci) {
        for (std::size_t i = 0; i < samples.Count; ++i) {
            const std::size_t alleles = locus.First[i + 1] - locus.First[i];
            eights += (byAllele * alleles + atOnce) * widthOf(samples.Count, i);
        }
    }
    return eights * sizeof(Eight);
}

KeptTerms::KeptTerms(const Samples& samples, QuantitySet wanted)
    : Count(samples.Count), LociCount(samples.Loci.size()), Sums(samples.Count) {
    for (const Quantity quantity : kAllQuantities) {
        if (wanted.has(quantity)) {
            Kept[placeOf(quantity)].Loci.resize(Count * LociCount);
        }
    }
    RowMaker maker(samples);
    for (std::size_t i = 0; i < Count; ++i) {
        for (std::size_t l = 0; l < LociCount; ++l) {
            if (samples.Loci[l].Typed[i] > 0.0) {
                keepRow(maker.row(samples.Loci[l], i, i + 1), l);
            }
        }
    }
}

void KeptTerms::keepRow(const LocusRow& row, std::size_t l) {
    for (const Quantity quantity : kAllQuantities) {
        QuantityTerms& kept = Kept[placeOf(quantity)];
        if (kept.Loci.empty()) {
            continue;
        }
        const QuantityRule& rule = ruleOf(quantity);
        std::fill(Sums.begin(), Sums.end(), 0.0);
        rule.Add(row, Sums.data());
        const std::vector<double> terms =
            rule.Term != nullptr ? alleleTerms(row, rule, Sums.data()) : Sums;
        kept.Loci[row.I * LociCount + l] = {kept.Terms.size(), terms.size() / Count};
        for (std::size_t t = 0; t < terms.size(); t += Count) {
            append(kept.Terms, row.I, &terms[t]);
        }
    }
}

void KeptTerms::append(std::vector<Eight>& rows, std::size_t i, const double* terms) const {
    for (std::size_t j = i + 1; j < Count; j += kColumns) {
        const std::size_t columns = std::min(kColumns, Count - j);
        Eight eight{};
        std::memcpy(&eight, terms + j, columns * sizeof(double));
        rows.push_back(eight);
    }
}

void KeptTerms::sum(Quantity quantity, std::size_t i, std::span<const std::size_t> loci,
                    double* sums) const {
    const QuantityTerms& kept = Kept[placeOf(quantity)];
    const LocusTerms* const places = kept.Loci.data() + i * LociCount;
    const std::size_t width = widthOf(Count, i);
    for (std::size_t column = 0; column < width; ++column) {
        Eight eight{};
        for (const std::size_t locus : loci) {
            const LocusTerms place = places[locus];
            const Eight* term = kept.Terms.data() + (place.First + column);
            for (std::size_t rows = place.Rows; rows > 0; --rows, term += width) {
                for (std::size_t part = 0; part < std::size(eight.Parts); ++part) {
                    eight.Parts[part] += term->Parts[part];
                }
            }
        }
        std::memcpy(sums + (i + 1 + column * kColumns), &eight, sizeof eight);
    }
}

} // namespace kva
