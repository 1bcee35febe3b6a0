// The permutation test of population pairs on thinned data: every replicate thins the
// data anew (of inbred individuals one allele is kept at random, or a tenth of the
// individuals is dropped), computes the test statistic, shuffles the thinned data and
// compares. Mean and limits of the test statistic come with it.
#include "control/AnalyseDataObj.h"
#include "control/Ausgabe.h"
#include "distance/pairindex.h"
#include "fstat/FstPermutation.h"
#include "fstat/TailList.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <iostream>

namespace {

constexpr int32_t kFewestJackknifed = 6; // slots from which a population is jackknifed
constexpr int32_t kMostDropped = 79;     // individuals

// The individuals that jackknifing drops, ascending, and a 0 behind them.
class DropList {
  public:
    // slots: of the population. share: of its individuals to drop.
    void draw(int32_t slots, double share) {
        const auto wanted = static_cast<int32_t>(slots / 2 * share);
        Dropped = std::max(std::min({wanted, slots / 2, kMostDropped}), 1);
        List.assign(static_cast<std::size_t>(Dropped) + 1, 0);
        if (slots < kFewestJackknifed) {
            std::fill_n(List.begin(), Dropped, -1); // wanted: nothing is dropped, nor drawn
            return;
        }
        const auto end = List.begin() + Dropped;
        std::generate(List.begin(), end, [slots] { return drawIndex(slots / 2); });
        std::sort(List.begin(), end);
        auto twin = std::adjacent_find(List.begin(), end);
        while (twin != end) { // the second of two equals is drawn again
            *(twin + 1) = drawIndex(slots / 2);
            std::sort(List.begin(), end);
            twin = std::adjacent_find(List.begin(), end);
        }
    }
    int32_t dropped() const { return Dropped; }
    int32_t slotOf(int32_t n) const { return 2 * List[static_cast<std::size_t>(n)]; }

  private:
    int32_t Dropped = 0;
    std::vector<int32_t> List;
};

// Builds the sheet of one population at one locus.
class Thinning {
  public:
    Thinning(uint32_t fstMask, double share)
        : discard(hasBit(fstMask, FstBit::RandomDiscard)),
          jackknife(hasBit(fstMask, FstBit::Jackknife)), share_(share) {}

    // pop from 1. sheet: a source for each slot of the population.
    void thin(const LociObj& locus, int pop, std::vector<long>& sheet) {
        const auto slots = static_cast<int32_t>(sheet.size());
        if (jackknife) {
            drops.draw(slots, share_);
        }
        int32_t dropped = 0;
        int32_t source = 0;
        for (int32_t target = 0; target < slots; target += 2, source += 2) {
            // Wanted: the drop is told from the target, though the source runs ahead of it.
            if (jackknife && drops.slotOf(dropped) == target) {
                source += 2;
                ++dropped;
            }
            std::array<long, 2> pair = {source, source + 1};
            if (discard && source < slots && locus.isHaploid(pop, source) != 0) {
                pair[0] = pair[1] = rand2() < 0.5F ? pair[1] : pair[0];
            }
            const bool empty =
                jackknife && target >= slots - 2 * drops.dropped() && drops.slotOf(dropped) >= 0;
            for (int32_t k = 0; k < 2 && target + k < slots; ++k) {
                sheet[static_cast<std::size_t>(target + k)] =
                    empty ? -1 : pair[static_cast<std::size_t>(k)];
            }
        }
    }

  private:
    bool discard;
    bool jackknife;
    double share_;
    DropList drops;
};

SlotSheet newSheet(const Datensatz& daten) {
    std::vector<std::vector<long>> ofLocus;
    for (int pop = 1; pop <= daten.GetPopAnzahl(); ++pop) {
        ofLocus.emplace_back(static_cast<std::size_t>(daten.GetAnzDatenChromosome(pop)));
    }
    return SlotSheet(daten.Loci.size(), ofLocus);
}

// What the replicates add up to.
struct RDSummen {
    FTripel& p;                  // hits
    FTripel& f;                  // sums of the test statistics
    double undefined;            // Fst of a pair without data
    bool tailsOfPermuted;        // the limits are those of the permuted statistic
    CMatrix gueltig;             // valid replicates
    std::vector<TailList> tails; // of each pair; empty: no limits

    void add(int32_t i, int32_t j, std::size_t pair, const FWerte& test, const FWerte& permuted) {
        if (test[0] == undefined) {
            return;
        }
        gueltig(i, j) += 1.0;
        for (std::size_t s = 0; s < f.size(); ++s) {
            f[s](i, j) += test[s];
        }
        if (!tails.empty()) {
            tails[pair].add(tailsOfPermuted ? permuted[0] : test[0]);
        }
        countHits(p, i, j, test, permuted);
    }

    // Turns the sums of a pair into means and p-values.
    void finish(int32_t i, int32_t j, double pairs) {
        const double n = gueltig(i, j);
        for (CMatrix& matrix : f) {
            matrix(i, j) = n == 0.0 ? undefined : matrix(i, j) / n;
            matrix(j, i) = matrix(i, j);
        }
        hitsToPValues(p, i, j, pairs, n); // without a valid replicate the quotient is infinite
    }
};

} // namespace

int AnalyseDataObj::CreateNewDataSheetMix(SlotSheet& sheet) const {
    const bool linked = hasBit(FstMask, FstBit::Linked);
    Thinning thinning(FstMask, JackknifeAnteil);
    for (std::size_t l = 0; l < sheet.size(); ++l) {
        if (linked && l > 0) {
            sheet[l] = sheet[0]; // all loci thin alike
            continue;
        }
        for (std::size_t pop = 0; pop < sheet[l].size(); ++pop) {
            thinning.thin(Daten->Loci[l], static_cast<int>(pop) + 1, sheet[l][pop]);
        }
    }
    return 0;
}

int AnalyseDataObj::FST_RD_WC84(FTripel& p, FTripel& f, const AllelTabellen& tab,
                                CMatrix& untergrenze, CMatrix& obergrenze,
                                CMatrix& locusTable) const {
    const bool toTable = (FstMask & (FstBit::LocusTable | FstBit::Heterogeneity)) != 0;
    const bool limits = hasBit(FstMask, FstBit::Confidence);
    const double pairs = pairNumber(AnzPop);
    RDSummen sums{p, f, DistFehlerwert, hasBit(FstMask, FstBit::ConfidencePermuted), {}, {}};
    if (limits) {
        const auto k =
            std::max(static_cast<int64_t>(Permutationen * FstAlpha * 0.5 + 1.0), int64_t{2});
        std::cout << "\nConfidenz intervall:" << k << std::endl;
        sums.tails.assign(static_cast<std::size_t>(pairs), TailList(static_cast<std::size_t>(k)));
    }
    for (FTripel* triple : {&p, &f}) {
        for (CMatrix& matrix : *triple) {
            matrix.Fill(0.0);
        }
    }
    sums.gueltig.Resize(AnzPop, AnzPop);

    PairTest test(*Daten, tab, FstMask, DistFehlerwert);
    CodedSample thinned(test.data());
    SlotSheet sheet = newSheet(*Daten);
    InternStartRDGen();
    for (int32_t k = 0; k < Permutationen; ++k) {
        if (k % kPairSeedEvery == 0) {
            InternStartRDGen();
        }
        AUSGABE(57, k);
        (void)CreateNewDataSheetMix(sheet);
        thinned.readThrough(test.data(), sheet);
        CMatrix* const table = toTable && k + 1 == Permutationen ? &locusTable : nullptr;
        std::size_t pair = 0;
        forEachPair(AnzPop, [&](int32_t i, int32_t j) {
            const FWerte permuted = test.shuffled(i, j, thinned, table);
            sums.add(i, j, pair++, test.unshuffled(i, j, thinned), permuted);
        });
    }
    std::size_t pair = 0;
    forEachPair(AnzPop, [&](int32_t i, int32_t j) {
        if (limits) {
            obergrenze(i, j) = obergrenze(j, i) = sums.tails[pair].upper();
            untergrenze(i, j) = untergrenze(j, i) = sums.tails[pair].lower();
        }
        ++pair;
        sums.finish(i, j, pairs);
    });
    return 0;
}
