#include "fstat/GenotypePair.h"

#include "fstat/nearvalues.h"

#include <algorithm>

namespace kva {

GenotypePair::GenotypePair(const GenotypeRows& rows)
    : Drawn(rows.columns()), Open(rows.words()), Notes(rows.alleleNumber() + 1), Sums(rows.loci()),
      Pages(rows.loci()), Lists(rows.loci()), Counts1(rows.columns()), Counts2(rows.columns()) {}

void GenotypePair::count(const GenotypeRows& rows, std::array<std::size_t, 2> pops,
                         std::span<const int32_t> places1, std::span<const int32_t> places2,
                         LociRange loci) {
    draw(rows, pops, places1, loci);
    order(pops, places1, places2, loci);
}

void GenotypePair::draw(const GenotypeRows& rows, std::array<std::size_t, 2> pops,
                        std::span<const int32_t> places1, LociRange loci) {
    Rows = &rows;
    Whole1 = rows.whole(pops[0]);
    Whole2 = rows.whole(pops[1]);
    rows.sum(places1, loci, Drawn.data());
}

void GenotypePair::order(std::array<std::size_t, 2> pops, std::span<const int32_t> places1,
                         std::span<const int32_t> places2, LociRange loci) {
    const GenotypeRows& rows = *Rows;
    Small = 2 * std::max(places1.size(), places2.size()) <= PairTerms::kMostCopies;
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
    TermSum* const sums = Sums.data();
    for (std::size_t l = range.Begin; l < range.End; ++l) {
        const Tally sample1 = Rows->tally(drawn, l);
        const PairTerms::Page& page = Terms.page(sample1.Copies, rest(l, sample1).Copies);
        sums[l] = TermSum{TwoDoubles{}, page.Terms.data(), page.Step};
        Pages[l] = &page;
    }
    forEachFresh(*Rows, notes, [=](const GenotypeRows::Allele& allele) {
        const uint32_t column = allele.Column;
        TermSum& sum = sums[allele.Locus];
        const int32_t place = drawn[column] * sum.Step + whole1[column] + whole2[column];
        sum.OfAB += sum.Terms[place].OfAB;
    });
}

void GenotypePair::listCounts(std::span<const FreshAlleles> notes, LociRange range) {
    const int32_t* const drawn = Drawn.data();
    const int32_t* const whole1 = Whole1;
    const int32_t* const whole2 = Whole2;
    CountList* const lists = Lists.data();
    int32_t* const counts1 = Counts1.data();
    int32_t* const counts2 = Counts2.data();
    for (std::size_t l = range.Begin; l < range.End; ++l) {
        lists[l] = {Rows->tallyColumn(l), Rows->tallyColumn(l)};
    }
    forEachFresh(*Rows, notes, [=](const GenotypeRows::Allele& allele) {
        const uint32_t column = allele.Column;
        const uint32_t place = lists[allele.Locus].End;
        const int32_t count1 = drawn[column];
        const int32_t count2 = whole1[column] + whole2[column] - count1;
        lists[allele.Locus].End = place + 1;
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
        const std::optional<PairSizes>& sizes = Pages[l]->Sizes;
        if (!sizes || H1 < 0.0 || H2 < 0.0) {
            return std::nullopt;
        }
        return withHeterozygosity(*sizes, Sums[l].OfAB[0], Sums[l].OfAB[1], H1, H2);
    }
    const CountList& list = Lists[l];
    std::size_t length = list.End - list.Begin;
    for (; length % kAlleleStep != 0; ++length) {
        Counts1[list.Begin + length] = 0;
        Counts2[list.Begin + length] = 0;
    }
    return pairComponents({sample1.Copies, sample2.Copies, H1, H2,
                           std::span(Counts1).subspan(list.Begin, length),
                           std::span(Counts2).subspan(list.Begin, length)});
}

// --- Near values -----------------------------------------------------------------------

PairSquares GenotypePair::squares(std::size_t l) const {
    const int32_t* const drawn = Drawn.data();
    const int32_t* const whole1 = Whole1;
    const int32_t* const whole2 = Whole2;
    const std::size_t end = Rows->tallyColumn(l + 1);
    PairSquares sum;
    std::size_t column = Rows->firstColumn(l);
    for (; column + 4 <= end; column += 4) {
        sum.add(fourCounts(drawn + column),
                fourCounts(whole1 + column) + fourCounts(whole2 + column));
    }
    if (column < end) {
        const FourCounts mask = firstCounts(end - column);
        sum.add(fourCounts(drawn + column) & mask,
                (fourCounts(whole1 + column) + fourCounts(whole2 + column)) & mask);
    }
    return sum;
}

std::optional<VarianceComponents> GenotypePair::nearComponents(std::size_t l) {
    const Tally sample1 = Rows->tally(Drawn.data(), l);
    const Tally sample2 = rest(l, sample1);
    if (std::min(sample1.Weight, sample2.Weight) <= 1 ||
        std::min(sample1.Typed, sample2.Typed) <= 1) {
        return std::nullopt;
    }
    if (std::max(sample1.Copies, sample2.Copies) > PairTerms::kMostCopies) {
        const std::optional<PairSizes> sizes = pairSizes(sample1.Copies, sample2.Copies);
        return sizes ? std::optional(NearFactors(*sizes).components(sample1, sample2, squares(l)))
                     : std::nullopt;
    }
    const PairTerms::Page& page = Terms.page(sample1.Copies, sample2.Copies);
    return page.Sizes ? std::optional(page.Near.components(sample1, sample2, squares(l)))
                      : std::nullopt;
}

} // namespace kva
