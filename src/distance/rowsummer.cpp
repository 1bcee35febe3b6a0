#include "distance/rowsummer.h"

namespace kva {

RowSummer::RowSummer(const Samples& samples, QuantitySet wanted, Effort effort)
    : Prepared(samples), Sums(samples.Count), Maker(samples) {
    if (effort.KeepBytes == 0) {
        return;
    }
    Genotypes = GenotypeTables::make(samples, wanted, effort.KeepBytes, effort.Replicates);
    if (!Genotypes && effort.Replicates > 1 &&
        KeptTerms::bytes(samples, wanted) <= effort.KeepBytes) {
        Kept.emplace(samples, wanted);
    }
}

const RowSums& RowSummer::sum(std::size_t i, std::span<const std::size_t> loci, QuantitySet asked) {
    if (Genotypes) {
        Genotypes->sum(i, loci, Sums);
    } else if (Kept) {
        Kept->sum(i, loci, Sums);
    } else {
        sumPlainly(i, loci, asked);
    }
    return Sums;
}

void RowSummer::sumPlainly(std::size_t i, std::span<const std::size_t> loci, QuantitySet asked) {
    Sums.clear(asked);
    for (const std::size_t l : loci) {
        const LocusSamples& locus = Prepared.Loci[l];
        if (locus.Typed[i] == 0.0) {
            continue;
        }
        const LocusRow row = Maker.row(locus, i, i + 1);
        for (const Quantity quantity : kAllQuantities) {
            if (asked.has(quantity)) {
                ruleOf(quantity).Add(row, Sums.of(quantity));
            }
        }
    }
}

} // namespace kva
