#include "fstat/GlobalTest.h"

#include "base/settings.h"
#include "data/lociclass.h"

#include <algorithm>

namespace kva {

namespace {

// Counts a permutation for Fst, Gst and Gst' of one locus or of all. Gst and Gst' are valid
// together.
void countHits(TestCounts& counts, const TestedValues& observed, const TestedValues& permuted,
               double undefined) {
    for (std::size_t s = 0; s < counts.size(); ++s) {
        if (permuted[std::min(s, std::size_t{1})] != undefined) {
            counts[s].count(observed[s] <= permuted[s], 0); // a tie counts as a hit
        }
    }
}

TestedValues testedValues(const GlobalValues& values) {
    return {values.f[0], values.gst, values.gstStrich};
}

// Whether near values are far from observed ones.
bool tells(const std::optional<TestedValues>& near, const TestedValues& observed) {
    return near && isFar((*near)[0], observed[0]) && isFar((*near)[1], observed[1]) &&
           isFar((*near)[2], observed[2]);
}

} // namespace

TestedValues testedValues(const CMatrix& locus, int32_t l) {
    return {locus(FRow::Fst, l), locus(FRow::Gst, l), locus(FRow::GstStrich, l)};
}

GlobalTest::GlobalTest(const Datensatz& daten, uint32_t fstMask, double undefined)
    : Data(daten), Linked(hasBit(fstMask, FstBit::Linked)), Rule(hRule(fstMask)),
      Undefined(undefined), Shuffle(Data, hasBit(fstMask, FstBit::Genotypes)),
      Tables(Data.populations()), RowOf(static_cast<std::size_t>(Data.mostAlleles()) + 1) {
    Pool.resize(Data.mostAlleles());
    for (ShuffleTable& table : Tables) {
        table.resize(Data.mostAlleles());
    }
    if (Shuffle.paired()) {
        Rows.emplace(Data, Rule);
    }
}

void GlobalTest::permute(const ObservedValues& observed, CMatrix& locus, GlobalCounts& counts) {
    const bool dealt = dealNear();
    if (dealt && countNear(observed, locus, counts)) {
        return;
    }
    const GlobalValues permuted = values(locus, dealt);
    countHits(counts.All, observed.All, testedValues(permuted), Undefined);
    for (std::size_t l = 0; l < observed.Loci.size(); ++l) {
        countHits(counts.Loci[l], observed.Loci[l], testedValues(locus, static_cast<int32_t>(l)),
                  Undefined);
    }
}

bool GlobalTest::dealNear() {
    if (!Linked || !Rows || !Rows->canBeNear()) {
        return false;
    }
    Shuffle.deal();
    return true;
}

bool GlobalTest::countNear(const ObservedValues& observed, CMatrix& locus, GlobalCounts& counts) {
    if (!Rows->countNear(Shuffle)) {
        return false;
    }
    NearGlobalSums sums;
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        if (const std::optional<double> Ht = Rows->nearHt(l)) {
            const std::optional<TestedValues> near = sums.add(Rows->nearLocus(l), *Ht);
            const bool told = tells(near, observed.Loci[l]);
            countHits(counts.Loci[l], observed.Loci[l], told ? *near : exactLocus(l, locus),
                      Undefined);
        }
    }
    const std::optional<TestedValues> near = sums.values();
    const bool told = tells(near, observed.All);
    countHits(counts.All, observed.All, told ? *near : testedValues(values(locus, true)),
              Undefined);
    return true;
}

GlobalValues GlobalTest::values(CMatrix& locus, bool dealt) {
    GlobalSums sums;
    if (dealt) {
        Rows->count(Shuffle, {0, Data.loci()});
    } else if (Linked) {
        deal({0, Data.loci()});
    }
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        if (!Linked) {
            deal({l, l + 1});
        }
        if (Tables.size() < std::size_t{kFewestGlobalPops}) {
            continue; // drawn all the same
        }
        const auto column = static_cast<int32_t>(l);
        if (const std::optional<GlobalLocus> g = Rows ? Rows->locus(l) : countedLocus(l)) {
            sums.add(*g, locus, column, Undefined);
        } else {
            fillColumn(locus, FRow::Fst, FRow::GstStrich, column, Undefined);
        }
    }
    return sums.values(Undefined);
}

void GlobalTest::deal(LociRange loci) {
    Shuffle.deal();
    if (Rows) {
        Rows->count(Shuffle, loci);
    }
}

std::optional<GlobalLocus> GlobalTest::countedLocus(std::size_t l) {
    count(Data.locus(l));
    if (Pool.alleles().size() < std::size_t{kFewestAlleles}) {
        return std::nullopt;
    }
    readFigures();
    return Figures.figures(Pool.CalcHetuk());
}

void GlobalTest::count(const CodedLocus& locus) {
    Pool.clear();
    for (std::size_t pop = 0; pop < Tables.size(); ++pop) {
        Shuffle.count(locus, pop, Tables[pop]);
        Pool.addCopies(Tables[pop]);
    }
}

void GlobalTest::readFigures() {
    Figures.clear();
    for (const ShuffleTable& t : Tables) {
        Figures.addSample(t, t.tally().Copies, Rule);
    }
    const std::size_t counted = Figures.samples.size();
    for (const uint32_t code : Pool.alleles()) {
        RowOf[code] = Figures.pbar.size();
        Figures.pbar.push_back(Pool.frequency(code));
    }
    Figures.p.assign(Figures.pbar.size() * counted, 0.0);
    std::size_t sample = 0;
    for (const ShuffleTable& t : Tables) {
        if (hasIndividual(t.tally().Copies)) {
            for (const uint32_t code : t.alleles()) {
                Figures.p[RowOf[code] * counted + sample] = t.frequency(code);
            }
            ++sample;
        }
    }
}

TestedValues GlobalTest::exactLocus(std::size_t l, CMatrix& locus) {
    Rows->count(Shuffle, {l, l + 1});
    const auto column = static_cast<int32_t>(l);
    GlobalSums().add(*Rows->locus(l), locus, column, Undefined);
    return testedValues(locus, column);
}

} // namespace kva
