#include "fstat/PairTest.h"

#include "base/pairindex.h"
#include "data/lociclass.h"

#include <numeric>

namespace kva {

CodedSample::CodedSample(const CodedData& data, bool withRows) : Data(data) {
    for (std::size_t l = 0; l < data.loci(); ++l) {
        for (std::size_t pop = 0; pop < data.populations(); ++pop) {
            Tables.emplace_back().resize(data.locus(l).Alleles);
        }
    }
    count();
    if (withRows) {
        Rows.emplace(Data);
    }
}

void CodedSample::readThrough(const CodedData& data, const SlotSheet& sheet) {
    data.readThrough(sheet, Data);
    count();
    if (Rows) {
        Rows->read(Data);
    }
}

void CodedSample::count() {
    std::size_t table = 0;
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        for (std::size_t pop = 0; pop < Data.populations(); ++pop, ++table) {
            Places.resize(Data.slots(pop));
            std::iota(Places.begin(), Places.end(), Data.slotPlace(pop));
            Tables[table].clear();
            Tables[table].addSlots(Data.locus(l), Places);
        }
    }
}

PairTest::PairTest(const Datensatz& daten, const SampleTables& tab, uint32_t fstMask,
                   double undefined)
    : Data(daten), Mode(ShuffleMode::of(fstMask)), Undefined(undefined),
      ByAlleles(!Mode.Genotypes && Mode.Permutation && hRule(fstMask) == HRule::Hobs),
      Shuffle(Data, Mode), Estimator(hRule(fstMask), Data.mostAlleles()), Known(Data) {
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        for (std::size_t pop = 1; pop < tab.size(); ++pop) {
            HasData.push_back(tab[pop][l].AnzGesamt > 0 ? 1 : 0);
        }
    }
    for (ShuffleTable& table : Tables) {
        table.resize(Data.mostAlleles());
    }
    if (Mode.Genotypes && Mode.Permutation && hRule(fstMask) == HRule::Hobs && Data.onlyPairs()) {
        Rows.emplace(GenotypeRows(Data));
    }
}

void PairTest::deal(std::size_t pop1, std::size_t pop2, const CodedSample& sample, LociRange loci) {
    if (!Mode.Linked && inBytes(sample.locus(loci.Begin))) {
        Shuffle.dealEntries(sample.locus(loci.Begin), pop1, pop2);
        return;
    }
    Shuffle.deal(pop1, pop2);
    if (Rows) {
        Rows->count(sample.rows(), {pop1, pop2}, Shuffle.places(0), Shuffle.places(1), loci);
    }
}

std::optional<VarianceComponents> PairTest::components(std::size_t pop1, std::size_t pop2,
                                                       const CodedSample& sample, std::size_t l) {
    if (Rows) {
        return Rows->components(l);
    }
    if (inBytes(sample.locus(l))) {
        if (Mode.Linked) {
            Shuffle.readEntries(sample.locus(l));
        }
        return OfAlleles.components(sample.table(pop1, l), sample.table(pop2, l),
                                    Shuffle.entries(0), Shuffle.entries(1));
    }
    Shuffle.count(sample.locus(l), Tables[0], Tables[1]);
    return Estimator.components(Tables[0], Tables[1]);
}

FValues PairTest::shuffled(int32_t i, int32_t j, const CodedSample& sample, CMatrix* locusTable) {
    const auto pop1 = static_cast<std::size_t>(i);
    const auto pop2 = static_cast<std::size_t>(j);
    if (Mode.Linked && Data.loci() > 0) { // without loci there are no slots, either
        deal(pop1, pop2, sample, {0, Data.loci()});
    }
    return sumLoci(pop1, pop2, sample, locusTable);
}

FValues PairTest::sumLoci(std::size_t pop1, std::size_t pop2, const CodedSample& sample,
                          CMatrix* locusTable) {
    const int32_t column = ConvertPoptoPoint(static_cast<int>(pop1), static_cast<int>(pop2),
                                             static_cast<int>(Data.populations()));
    FSums sums;
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        std::optional<VarianceComponents> v;
        if (hasBoth(l, pop1, pop2)) {
            if (!Mode.Linked) {
                deal(pop1, pop2, sample, {l, l + 1});
            }
            v = components(pop1, pop2, sample, l);
        }
        if (v) {
            sums.add(*v);
        }
        if (locusTable != nullptr) {
            const std::optional<double> fst = v ? locusFst(*v) : std::nullopt;
            (*locusTable)(static_cast<int32_t>(l), column) = fst.value_or(Undefined);
        }
    }
    return sums.values(Undefined);
}

NearSums PairTest::nearSums(std::size_t pop1, std::size_t pop2) {
    NearSums sums;
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        if (!hasBoth(l, pop1, pop2)) {
            continue;
        }
        if (const std::optional<VarianceComponents> v = Rows->nearComponents(l)) {
            sums.add(*v);
        }
    }
    return sums;
}

Reached PairTest::reached(int32_t i, int32_t j, const CodedSample& sample,
                          const FValues& observed) {
    const auto pop1 = static_cast<std::size_t>(i);
    const auto pop2 = static_cast<std::size_t>(j);
    if (!canBeNear(pop1, pop2)) {
        return reachedBy(shuffled(i, j, sample, nullptr), observed);
    }
    const LociRange loci = {0, Data.loci()};
    Shuffle.deal(pop1, pop2);
    KnownDeal unkept;
    KnownDeal* const found = Known.find(pop1, pop2, Shuffle.places(0));
    KnownDeal& deal = found != nullptr ? *found : unkept;
    if (!deal.Known) {
        Rows->draw(sample.rows(), {pop1, pop2}, Shuffle.places(0), loci);
        deal = {true, nearSums(pop1, pop2).reached(observed)};
    }
    if (deal.Told) {
        return *deal.Told;
    }
    Rows->count(sample.rows(), {pop1, pop2}, Shuffle.places(0), Shuffle.places(1), loci);
    return reachedBy(sumLoci(pop1, pop2, sample, nullptr), observed);
}

FValues PairTest::unshuffled(int32_t i, int32_t j, const CodedSample& sample) {
    const auto pop1 = static_cast<std::size_t>(i);
    const auto pop2 = static_cast<std::size_t>(j);
    FSums sums;
    for (std::size_t l = 0; l < Data.loci(); ++l) {
        if (!hasBoth(l, pop1, pop2)) {
            continue;
        }
        const std::optional<VarianceComponents> v =
            Estimator.components(sample.table(pop1, l), sample.table(pop2, l));
        if (v) {
            sums.add(*v);
        }
    }
    return sums.values(Undefined);
}

} // namespace kva
