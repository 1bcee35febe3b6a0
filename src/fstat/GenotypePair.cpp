#include "fstat/GenotypePair.h"

#include <algorithm>

namespace kva {

GenotypePair::GenotypePair(const GenotypeRows& rows)
    : Drawn(rows.columns()), Open(rows.words()), Notes(rows.alleleNumber() + 1),
      SmallLoci(rows.loci()), LargeLoci(rows.loci()), Counts1(rows.columns()),
      Counts2(rows.columns()) {}

void GenotypePair::count(const GenotypeRows& rows, std::array<std::size_t, 2> pops,
                         std::span<const int32_t> places1, std::span<const int32_t> places2,
                         LociRange loci) {
    Rows = &rows;
    Whole1 = rows.whole(pops[0]);
    Whole2 = rows.whole(pops[1]);
    Small = 2 * std::max(places1.size(), places2.size()) <= PairTerms::kMostCopies;
    rows.sum(places1, loci, Drawn.data());
    rows.setAll(loci, Open.data());
    for (std::size_t word = rows.beginWord(loci); word < rows.endWord(loci); ++word) {
        Open[word] &= rows.present(pops[0])[word] | rows.present(pops[1])[word];
    }
    FreshAlleles* end = Notes.data();
    end = rows.findFirst(places1, loci, Open.data(), end);
    end = rows.findFirst(places2, loci, Open.data(), end);
    if (Small) {
        sumTerms({Notes.data(), end}, loci);
    } else {
        listCounts({Notes.data(), end}, loci);
    }
}

Tally GenotypePair::rest(std::size_t l, const Tally& drawn) const {
    Tally rest = Rows->tally(Whole1, l);
    rest += Rows->tally(Whole2, l);
    rest -= drawn;
    return rest;
}

void GenotypePair::sumTerms(std::span<const FreshAlleles> notes, LociRange range) {
    const int32_t* const drawn = Drawn.data();
    const int32_t* const whole1 = Whole1;
    const int32_t* const whole2 = Whole2;
    SmallLocus* const loci = SmallLoci.data();
    for (std::size_t l = range.Begin; l < range.End; ++l) {
        const Tally sample1 = Rows->tally(drawn, l);
        const PairTerms::Page& page = Terms.page(sample1.Copies, rest(l, sample1).Copies);
        loci[l] = SmallLocus{TwoDoubles{}, &page, page.Terms.data(), page.Step};
    }
    forEachFresh(*Rows, notes, [=](const GenotypeRows::Allele& allele) {
        const uint32_t column = allele.Column;
        SmallLocus& locus = loci[allele.Locus];
        const uint32_t place = drawn[column] * locus.Step + whole1[column] + whole2[column];
        locus.SumOfAB += locus.Terms[place].OfAB;
    });
}

void GenotypePair::listCounts(std::span<const FreshAlleles> notes, LociRange range) {
    const int32_t* const drawn = Drawn.data();
    const int32_t* const whole1 = Whole1;
    const int32_t* const whole2 = Whole2;
    LargeLocus* const loci = LargeLoci.data();
    int32_t* const counts1 = Counts1.data();
    int32_t* const counts2 = Counts2.data();
    for (std::size_t l = range.Begin; l < range.End; ++l) {
        loci[l] = {Rows->tallyColumn(l), Rows->tallyColumn(l)};
    }
    forEachFresh(*Rows, notes, [=](const GenotypeRows::Allele& allele) {
        const uint32_t column = allele.Column;
        const uint32_t place = loci[allele.Locus].End;
        const int32_t count1 = drawn[column];
        const int32_t count2 = whole1[column] + whole2[column] - count1;
        loci[allele.Locus].End = place + 1;
        counts1[place] = count1;
        counts2[place] = count2;
    });
}

std::optional<VarianceComponents> GenotypePair::components(std::size_t l) {
    const Tally sample1 = Rows->tally(Drawn.data(), l);
    const Tally sample2 = rest(l, sample1);
    const double H1 = sample1.CalcHetobs();
    const double H2 = sample2.CalcHetobs();
    if (Small) {
        const SmallLocus& locus = SmallLoci[l];
        const std::optional<PairSizes>& sizes = locus.Page->Sizes;
        if (!sizes || H1 < 0.0 || H2 < 0.0) {
            return std::nullopt;
        }
        return withHeterozygosity(*sizes, locus.SumOfAB[0], locus.SumOfAB[1], H1, H2);
    }
    const LargeLocus& locus = LargeLoci[l];
    std::size_t length = locus.End - locus.Begin;
    for (; length % kAlleleStep != 0; ++length) {
        Counts1[locus.Begin + length] = 0;
        Counts2[locus.Begin + length] = 0;
    }
    return pairComponents({sample1.Copies, sample2.Copies, H1, H2,
                           std::span(Counts1).subspan(locus.Begin, length),
                           std::span(Counts2).subspan(locus.Begin, length)});
}

} // namespace kva
