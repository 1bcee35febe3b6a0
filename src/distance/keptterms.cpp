#include "distance/keptterms.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace kva {

namespace {

// The terms of an allele-wise quantity, a row for each allele of sample I, with an entry for each
// sample. sums: what the locus adds to each pair, 0.0 for one that it does not count for.
std::vector<double> alleleTerms(const LocusRow& row, const QuantityRule& rule,
                                const std::vector<double>& sums) {
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

// The terms of a quantity, in rows with an entry for each sample.
std::vector<double> termsOf(const LocusRow& row, Quantity quantity) {
    const QuantityRule& rule = ruleOf(quantity);
    std::vector<double> sums(row.Locus.Typed.size());
    rule.Add(row, sums.data());
    return rule.Term != nullptr ? alleleTerms(row, rule, sums) : sums;
}

} // namespace

std::vector<KeptTerms::Group> KeptTerms::groupsOf(QuantitySet wanted) {
    std::vector<Group> groups;
    for (const bool byAllele : {false, true}) {
        std::size_t room = 0; // in the last group
        for (const Quantity quantity : kAllQuantities) {
            if (!wanted.has(quantity) || (ruleOf(quantity).Term != nullptr) != byAllele) {
                continue;
            }
            if (room == 0) {
                groups.emplace_back();
                room = kTogether;
            }
            groups.back().Quantities.push_back(quantity);
            --room;
        }
    }
    return groups;
}

bool KeptTerms::isByAllele(const Group& group) {
    return ruleOf(group.Quantities[0]).Term != nullptr;
}

std::size_t KeptTerms::bytes(const Samples& samples, QuantitySet wanted) {
    std::size_t blocks = 0;
    for (const Group& group : groupsOf(wanted)) {
        for (const LocusSamples& locus : samples.Loci) {
            for (std::size_t i = 0; i < samples.Count; ++i) {
                const std::size_t alleles = locus.First[i + 1] - locus.First[i];
                blocks += (isByAllele(group) ? alleles : 1) * widthOf(samples.Count, i);
            }
        }
    }
    return blocks * sizeof(Block);
}

KeptTerms::KeptTerms(const Samples& samples, QuantitySet wanted)
    : Count(samples.Count), LociCount(samples.Loci.size()), Groups(groupsOf(wanted)) {
    RowMaker maker(samples);
    for (Group& group : Groups) {
        group.Loci.resize(Count * LociCount);
        for (std::size_t i = 0; i < Count; ++i) {
            for (std::size_t l = 0; l < LociCount; ++l) {
                if (samples.Loci[l].Typed[i] > 0.0) {
                    keepRow(group, maker.row(samples.Loci[l], i, i + 1), l);
                }
            }
        }
    }
}

void KeptTerms::keepRow(Group& group, const LocusRow& row, std::size_t l) const {
    const std::size_t first = group.Terms.size();
    const std::size_t width = widthOf(Count, row.I);
    for (std::size_t q = 0; q < group.Quantities.size(); ++q) {
        const std::vector<double> terms = termsOf(row, group.Quantities[q]);
        const std::size_t rows = terms.size() / Count;
        group.Loci[row.I * LociCount + l] = {first, rows};
        group.Terms.resize(first + rows * width);
        for (std::size_t b = 0; b < rows * width; ++b) {
            const std::size_t j = row.First + b % width * kColumns;
            std::memcpy(&group.Terms[first + b].Parts[q * kColumns / 2],
                        &terms[b / width * Count + j],
                        std::min(kColumns, Count - j) * sizeof(double));
        }
    }
}

void KeptTerms::sum(std::size_t i, std::span<const std::size_t> loci, RowSums& sums) const {
    const std::size_t width = widthOf(Count, i);
    for (const Group& group : Groups) {
        const LocusTerms* const places = group.Loci.data() + i * LociCount;
        for (std::size_t b = 0; b < width; ++b) {
            Block total{};
            for (const std::size_t locus : loci) {
                const LocusTerms place = places[locus];
                const Block* term = group.Terms.data() + (place.First + b);
                for (std::size_t rows = place.Rows; rows > 0; --rows, term += width) {
                    for (std::size_t part = 0; part < std::size(total.Parts); ++part) {
                        total.Parts[part] += term->Parts[part];
                    }
                }
            }
            for (std::size_t q = 0; q < group.Quantities.size(); ++q) {
                std::memcpy(sums.of(group.Quantities[q]) + (i + 1 + b * kColumns),
                            &total.Parts[q * kColumns / 2], kColumns * sizeof(double));
            }
        }
    }
}

} // namespace kva
