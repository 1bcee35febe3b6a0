#include "fstat/GenotypePool.h"

#include <algorithm>
#include <cstring>

namespace kva {

GenotypePool::GenotypePool(const CodedData& data, HRule rule)
    : Rows(data), Rule(rule), Populations(data.populations()), Pbar(Rows.columns()),
      PoolSquares(Rows.columns()), Drawn(Rows.columns()), Squares(Rows.columns()),
      Deviations(Rows.columns()), All(Rows.words()), Open(Rows.words()), PoolOpen(Rows.words()),
      Notes(Rows.alleleNumber() + 1), PoolNotes(Rows.alleleNumber() + 1), Loci(Rows.loci()),
      Samples(Rows.loci() * Populations), Order(Rows.columns()) {
    readPool();
}

void GenotypePool::readPool() {
    std::vector<int32_t> sums(Rows.columns());
    for (std::size_t pop = 0; pop < Populations; ++pop) {
        std::transform(sums.begin(), sums.end(), Rows.whole(pop), sums.begin(), std::plus<>());
    }
    for (std::size_t bit = 0; bit < Rows.alleleNumber(); ++bit) {
        const auto [column, l] = Rows.alleles()[bit];
        Pbar[column] = double(sums[column]) / Rows.tally(sums.data(), l).Copies;
        PoolSquares[column] = Pbar[column] * Pbar[column];
    }
}

void GenotypePool::count(const GlobalShuffle& shuffle, LociRange loci) {
    for (std::size_t l = loci.Begin; l < loci.End; ++l) {
        Loci[l] = {};
    }
    std::fill(Deviations.begin() + Rows.tallyColumn(loci.Begin),
              Deviations.begin() + Rows.tallyColumn(loci.End), 0.0);
    Rows.setAll(loci, All.data());
    PoolOpen = All;
    for (std::size_t pop = 0; pop < Populations; ++pop) {
        countSample(shuffle.places(pop), loci);
    }
}

void GenotypePool::countSample(std::span<const int32_t> places, LociRange loci) {
    Rows.sum(places, loci, Drawn.data());
    for (std::size_t l = loci.Begin; l < loci.End; ++l) {
        Loci[l].SumOfSquares = 0.0;
        const int32_t copies = Rows.tally(Drawn.data(), l).Copies;
        if (hasIndividual(copies)) {
            addDeviations(l, copies);
        }
    }
    Open = All;
    const FreshAlleles* const end = Rows.findFirst(places, loci, Open.data(), Notes.data());
    const std::span<const FreshAlleles> notes(Notes.data(), end);
    forEachFresh(Rows, notes, [squares = Squares.data(), ofLoci = Loci.data()](const auto& allele) {
        ofLoci[allele.Locus].SumOfSquares += squares[allele.Column];
    });
    listNew(notes);
    for (std::size_t l = loci.Begin; l < loci.End; ++l) {
        const SquaredTally t{Rows.tally(Drawn.data(), l), Loci[l].SumOfSquares};
        if (hasIndividual(t.Sum.Copies)) {
            Samples[l * Populations + Loci[l].Samples] = {t.Sum.Copies * 0.5, t.CalcHetuk(),
                                                          sampleH(Rule, t)};
            ++Loci[l].Samples;
        }
    }
}

// Two alleles at once; the one behind an odd last one is not an allele, and nobody reads it.
void GenotypePool::addDeviations(std::size_t l, int32_t copies) {
    const double n = copies * 0.5;
    const double all = copies;
    for (uint32_t column = Rows.firstColumn(l); column < Rows.tallyColumn(l + 1); column += 2) {
        const TwoDoubles p = twoCounts(&Drawn[column]) / all;
        storeTwo(&Squares[column], p * p);
        const TwoDoubles deviation = p - loadTwo(&Pbar[column]);
        storeTwo(&Deviations[column], loadTwo(&Deviations[column]) + n * (deviation * deviation));
    }
}

void GenotypePool::listNew(std::span<const FreshAlleles> notes) {
    FreshAlleles* end = PoolNotes.data();
    for (const FreshAlleles& note : notes) {
        const uint64_t open = PoolOpen[note.Word];
        if (((note.Firsts | note.Seconds) & open) != 0) {
            *end = {note.Word, note.Firsts & open, note.Seconds & open};
            ++end;
            PoolOpen[note.Word] = open & ~(note.Firsts | note.Seconds);
        }
    }
    forEachFresh(Rows, {PoolNotes.data(), end}, [this](const GenotypeRows::Allele& allele) {
        Order[Rows.firstColumn(allele.Locus) + Loci[allele.Locus].Found] = allele.Column;
        ++Loci[allele.Locus].Found;
    });
}

std::optional<GlobalLocus> GenotypePool::locus(std::size_t l) {
    const std::size_t alleles = Loci[l].Found;
    if (alleles < std::size_t{kFewestAlleles}) {
        return std::nullopt;
    }
    OrderedPbar.resize(alleles);
    OrderedSs.resize(alleles);
    const uint32_t* const order = Order.data() + Rows.firstColumn(l);
    double squares = 0.0;
    for (std::size_t k = 0; k < alleles; ++k) {
        squares += PoolSquares[order[k]];
        OrderedPbar[k] = Pbar[order[k]];
        OrderedSs[k] = Deviations[order[k]];
    }
    const double Ht = std::min(1.0 - squares, 1.0);
    return GlobalLocus{Ht, std::span(Samples).subspan(l * Populations, Loci[l].Samples),
                       OrderedPbar, OrderedSs};
}

} // namespace kva
