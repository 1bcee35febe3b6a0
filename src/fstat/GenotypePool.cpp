#include "fstat/GenotypePool.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace kva {

GenotypePool::GenotypePool(const CodedData& data, HRule rule)
    : Rows(data), Rule(rule), Populations(data.populations()), Pbar(Rows.columns()),
      PoolSquares(Rows.columns()), Drawn(Rows.columns()), Squares(Rows.columns()),
      SumOfSquares(Rows.loci()), Open(Rows.words()), Notes(Rows.alleleNumber() + 1),
      All(Rows.words()), Loci(Rows.loci()), Samples(Rows.loci() * Populations),
      Deviations(Rows.columns()), PoolOpen(Rows.words()), PoolNotes(Notes), Order(Rows.columns()),
      Near(Rows.loci()) {
    for (std::size_t pop = 0; pop < Populations; ++pop) {
        MostSlots = std::max(MostSlots, data.slots(pop));
    }
    readPool();
}

void GenotypePool::readPool() {
    std::vector<int32_t> sums(Rows.columns());
    for (std::size_t pop = 0; pop < Populations; ++pop) {
        std::transform(sums.begin(), sums.end(), Rows.whole(pop), sums.begin(), std::plus<>());
    }
    PoolHt.assign(Rows.loci(), 1.0);
    FewestCopies = std::numeric_limits<int32_t>::max();
    for (std::size_t l = 0; l < Rows.loci(); ++l) {
        FewestCopies = std::min(FewestCopies, Rows.tally(sums.data(), l).Copies);
    }
    for (std::size_t bit = 0; bit < Rows.alleleNumber(); ++bit) {
        const auto [column, l] = Rows.alleles()[bit];
        Pbar[column] = double(sums[column]) / Rows.tally(sums.data(), l).Copies;
        PoolSquares[column] = Pbar[column] * Pbar[column];
        PoolHt[l] -= PoolSquares[column];
    }
}

void GenotypePool::count(const GlobalShuffle& shuffle, LociRange loci) {
    Rows.setAll(loci, All.data());
    for (std::size_t l = loci.Begin; l < loci.End; ++l) {
        Loci[l] = {0, 0};
    }
    std::fill(Deviations.data() + Rows.tallyColumn(loci.Begin),
              Deviations.data() + Rows.tallyColumn(loci.End), 0.0);
    std::copy(All.begin(), All.end(), PoolOpen.begin());
    PoolLeft = Rows.firstBit(loci.End) - Rows.firstBit(loci.Begin);
    for (std::size_t pop = 0; pop < Populations; ++pop) {
        countSample(shuffle.places(pop), loci);
    }
}

void GenotypePool::countSample(std::span<const int32_t> places, LociRange loci) {
    Rows.sum(places, loci, Drawn.data());
    for (std::size_t l = loci.Begin; l < loci.End; ++l) {
        SumOfSquares[l] = 0.0;
        addDeviations(l, Rows.tally(Drawn.data(), l).Copies);
    }
    std::copy(All.begin(), All.end(), Open.begin());
    const FreshAlleles* const end = Rows.findFirst(places, loci, Open.data(), Notes.data());
    const std::span<const FreshAlleles> notes(Notes.data(), end);
    const double* const squares = Squares.data();
    double* const sums = SumOfSquares.data();
    forEachFresh(Rows, notes, [=](const GenotypeRows::Allele& allele) {
        sums[allele.Locus] += squares[allele.Column];
    });
    if (PoolLeft > 0) {
        listNew(notes);
    }
    for (std::size_t l = loci.Begin; l < loci.End; ++l) {
        addSample(l);
    }
}

// Two alleles at once; the one behind an odd last one is not an allele, and nobody reads it.
void GenotypePool::addDeviations(std::size_t l, int32_t copies) {
    if (!hasIndividual(copies)) {
        return;
    }
    const double n = copies * 0.5;
    const double all = copies;
    for (std::size_t column = Rows.firstColumn(l); column < Rows.tallyColumn(l + 1); column += 2) {
        const TwoDoubles p = twoCounts(&Drawn[column]) / all;
        storeTwo(&Squares[column], p * p);
        const TwoDoubles deviation = p - loadTwo(&Pbar[column]);
        storeTwo(&Deviations[column], loadTwo(&Deviations[column]) + n * (deviation * deviation));
    }
}

void GenotypePool::addSample(std::size_t l) {
    const SquaredTally t{Rows.tally(Drawn.data(), l), SumOfSquares[l]};
    if (hasIndividual(t.Sum.Copies)) {
        uint32_t& samples = Loci[l].Samples;
        Samples[l * Populations + samples] = {t.Sum.Copies * 0.5, t.CalcHetuk(), sampleH(Rule, t)};
        ++samples;
    }
}

void GenotypePool::listNew(std::span<const FreshAlleles> notes) {
    FreshAlleles* end = PoolNotes.data();
    for (const FreshAlleles& note : notes) {
        const uint64_t open = PoolOpen[note.Word];
        const uint64_t fresh = (note.Firsts | note.Seconds) & open;
        if (fresh != 0) {
            *end = {note.Word, note.Firsts & open, note.Seconds & open};
            ++end;
            PoolOpen[note.Word] = open ^ fresh;
        }
    }
    forEachFresh(Rows, {PoolNotes.data(), end}, [this](const GenotypeRows::Allele& allele) {
        uint32_t& found = Loci[allele.Locus].Found;
        Order[Rows.firstColumn(allele.Locus) + found] = allele.Column;
        ++found;
        --PoolLeft;
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

// --- Near values -----------------------------------------------------------------------

bool GenotypePool::canBeNear() const {
    constexpr std::size_t most = 1000; // populations, so that rounding stays small
    return Rows.loci() > 0 && Populations >= 2 && Populations <= most && MostSlots <= kMostNear &&
           static_cast<std::size_t>(FewestCopies) > Populations;
}

std::optional<double> GenotypePool::nearHt(std::size_t l) const {
    const bool varies = Rows.firstBit(l + 1) - Rows.firstBit(l) >= kFewestAlleles;
    return varies ? std::optional(PoolHt[l]) : std::nullopt;
}

bool GenotypePool::countNear(const GlobalShuffle& shuffle) {
    std::fill(Near.begin(), Near.end(), NearLocus{});
    for (std::size_t pop = 0; pop < Populations; ++pop) {
        Rows.sum(shuffle.places(pop), Rows.allLoci(), Drawn.data());
        for (std::size_t l = 0; l < Rows.loci(); ++l) {
            if (!addNear(l)) {
                return false;
            }
        }
    }
    return true;
}

bool GenotypePool::addNear(std::size_t l) {
    const Tally tally = Rows.tally(Drawn.data(), l);
    if (!hasIndividual(tally.Copies)) {
        return tally.Copies == 0;
    }
    const double squares = sumOfSquares(Drawn.data(), Rows.firstColumn(l), Rows.tallyColumn(l + 1));
    const double copies = tally.Copies;
    const double n = copies * 0.5;
    const double share = squares / copies;
    const SquaredTally t{tally, share / copies};
    NearLocus& sum = Near[l];
    sum.s += 1.0;
    sum.sumN += n;
    sum.sumN2 += n * n;
    sum.sumHs += 1.0 - t.SumOfSquares;
    sum.sumNH += n * sampleH(Rule, t);
    sum.squares += share;
    return true;
}

} // namespace kva
