// The permutation test of population pairs on thinned data: every replicate thins the
// data anew (of inbred individuals one allele is kept at random, or a tenth of the
// individuals is dropped), computes the test statistic, shuffles the thinned data and
// compares. Mean and limits of the test statistic come with it.
#include "base/console.h"
#include "control/Ausgabe.h"
#include "fstat/FstPermutation.h"
#include "fstat/PairTest.h"
#include "fstat/TailList.h"
#include "fstat/passes.h"
#include "fstat/randsci.h"
#include "run/run.h"
#include "run/testrecord.h"

#include <algorithm>

namespace kva {

namespace {

constexpr int32_t kFewestJackknifed = 6; // slots from which a population is jackknifed
constexpr int32_t kMostDropped = 79;     // individuals

// The individuals that jackknifing drops, ascending, and a 0 behind them.
class DropList {
  public:
    // slots: of the population. share: of its individuals to drop.
    void draw(int32_t slots, double share) {
        const int32_t individuals = slots / 2;
        const auto wanted = static_cast<int32_t>(individuals * share);
        Dropped = std::max(std::min({wanted, individuals, kMostDropped}), 1);
        List.assign(Dropped + 1, 0);
        if (slots < kFewestJackknifed) {
            std::fill_n(List.begin(), Dropped, -1); // wanted: nothing is dropped, nor drawn
            return;
        }
        const auto end = List.begin() + Dropped;
        std::generate(List.begin(), end, [individuals] { return drawIndex(individuals); });
        std::sort(List.begin(), end);
        auto twin = std::adjacent_find(List.begin(), end);
        while (twin != end) { // the second of two equals is drawn again
            *(twin + 1) = drawIndex(individuals);
            std::sort(List.begin(), end);
            twin = std::adjacent_find(List.begin(), end);
        }
    }
    int32_t dropped() const { return Dropped; }
    int32_t slotOf(int32_t n) const { return 2 * List[n]; }

  private:
    int32_t Dropped = 0;
    std::vector<int32_t> List;
};

// Builds the sheet of one population at one locus.
class Thinning {
  public:
    Thinning(uint32_t fstMask, double share)
        : Discard(hasBit(fstMask, FstBit::RandomDiscard)),
          Jackknife(hasBit(fstMask, FstBit::Jackknife)), Share(share) {}

    // pop from 1. sheet: a source for each slot of the population.
    void thin(const LociObj& locus, int pop, std::vector<long>& sheet) {
        const auto slots = static_cast<int32_t>(sheet.size());
        if (Jackknife) {
            Drops.draw(slots, Share);
        }
        int32_t dropped = 0;
        int32_t source = 0;
        for (int32_t target = 0; target < slots; target += 2, source += 2) {
            // Wanted: the drop is told from the target, though the source runs ahead of it.
            if (Jackknife && Drops.slotOf(dropped) == target) {
                source += 2;
                ++dropped;
            }
            std::array<long, 2> pair = {source, source + 1};
            if (Discard && source < slots && locus.isHaploid(pop, source) != 0) {
                pair[0] = pair[1] = rand2() < 0.5F ? pair[1] : pair[0];
            }
            const bool empty =
                Jackknife && target >= slots - 2 * Drops.dropped() && Drops.slotOf(dropped) >= 0;
            const auto place = static_cast<std::size_t>(target);
            for (std::size_t k = 0; k < 2 && place + k < sheet.size(); ++k) {
                sheet[place + k] = empty ? -1 : pair[k];
            }
        }
    }

  private:
    bool Discard;
    bool Jackknife;
    double Share;
    DropList Drops;
};

SlotSheet newSheet(const Datensatz& daten) {
    std::vector<std::vector<long>> ofLocus;
    for (int pop = 1; pop <= daten.GetPopAnzahl(); ++pop) {
        ofLocus.emplace_back(static_cast<std::size_t>(daten.GetAnzDatenChromosome(pop)));
    }
    return SlotSheet(daten.Loci.size(), ofLocus);
}

// What the replicates add up to, pair by pair.
class DiscardSums {
  public:
    // p takes the hits and then the p-values, f the sums and then the means of the test
    // statistic. tailLength: of the lists for the limits; 0: no limits.
    DiscardSums(const Run& run, FTriple& p, FTriple& f, std::size_t tailLength)
        : Undefined(run.DistFehlerwert),
          TailsOfPermuted(hasBit(run.FstMask, FstBit::ConfidencePermuted)),
          Pairs(pairNumber(run.AnzPop)), P(p), F(f) {
        for (FTriple* triple : {&P, &F}) {
            for (CMatrix& matrix : *triple) {
                matrix.Fill(0.0);
            }
        }
        Valid.Resize(run.AnzPop, run.AnzPop);
        if (tailLength > 0) {
            Tails.assign(static_cast<std::size_t>(Pairs), TailList(tailLength));
        }
    }

    // Adds a replicate of the pair (i, j), which is number `pair`.
    void add(int32_t i, int32_t j, std::size_t pair, const FValues& test, const FValues& permuted) {
        if (test[0] == Undefined) {
            return;
        }
        Valid(i, j) += 1.0;
        for (std::size_t s = 0; s < F.size(); ++s) {
            F[s](i, j) += test[s];
        }
        if (!Tails.empty()) {
            Tails[pair].add(TailsOfPermuted ? permuted[0] : test[0]);
        }
        countHits(P, i, j, reachedBy(permuted, test));
    }

    // Turns the sums of a pair into means and p-values.
    void finish(int32_t i, int32_t j) {
        const double n = Valid(i, j);
        for (CMatrix& matrix : F) {
            matrix(i, j) = n == 0.0 ? Undefined : matrix(i, j) / n;
            matrix(j, i) = matrix(i, j);
        }
        hitsToPValues(P, i, j, Pairs, n); // infinite without a valid replicate
    }

    // The hits of a pair, before finish().
    TestRecord::Pair counts(int32_t i, int32_t j) const {
        TestRecord::Pair pair{i, j, {}};
        const auto n = static_cast<int64_t>(Valid(i, j));
        for (std::size_t s = 0; s < P.size(); ++s) {
            pair.Of[s] = {static_cast<int64_t>(P[s](i, j)), n, false, n > 0};
        }
        return pair;
    }

    const TailList& tail(std::size_t pair) const { return Tails[pair]; }

  private:
    double Undefined;     // Fst of a pair without data
    bool TailsOfPermuted; // the limits are those of the permuted statistic
    double Pairs;
    FTriple& P;
    FTriple& F;
    CMatrix Valid;               // valid replicates
    std::vector<TailList> Tails; // of each pair
};

// Length of the lists for the limits; tells it on the console.
std::size_t announceTails(const Run& run) {
    const auto k =
        static_cast<std::size_t>(std::max(run.Permutationen * run.FstAlpha * 0.5 + 1.0, 2.0));
    console() << "\nConfidenz intervall:" << k << std::endl;
    return k;
}

} // namespace

void drawThinnedSheet(const Run& run, SlotSheet& sheet) {
    const bool linked = hasBit(run.FstMask, FstBit::Linked);
    Thinning thinning(run.FstMask, run.JackknifeAnteil);
    for (std::size_t l = 0; l < sheet.size(); ++l) {
        if (linked && l > 0) {
            sheet[l] = sheet[0]; // all loci thin alike
            continue;
        }
        for (std::size_t pop = 0; pop < sheet[l].size(); ++pop) {
            thinning.thin(run.Daten->Loci[l], static_cast<int>(pop) + 1, sheet[l][pop]);
        }
    }
}

void testThinnedPairs(const Run& run, FTriple& p, FTriple& f, const SampleTables& tab,
                      CMatrix& untergrenze, CMatrix& obergrenze, CMatrix& locusTable) {
    const bool toTable = (run.FstMask & (FstBit::LocusTable | FstBit::Heterogeneity)) != 0;
    const bool limits = hasBit(run.FstMask, FstBit::Confidence);
    DiscardSums sums(run, p, f, limits ? announceTails(run) : 0);
    PairTest test(*run.Daten, tab, run.FstMask, run.DistFehlerwert);
    CodedSample thinned = test.sample();
    SlotSheet sheet = newSheet(*run.Daten);
    InternStartRDGen();
    for (int32_t k = 0; k < run.Permutationen; ++k) {
        AUSGABE(Message::PairReplica, k);
        if (k % kPairSeedEvery == 0) {
            InternStartRDGen();
        }
        drawThinnedSheet(run, sheet);
        thinned.readThrough(test.data(), sheet);
        CMatrix* const table = toTable && k + 1 == run.Permutationen ? &locusTable : nullptr;
        std::size_t pair = 0;
        forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
            const FValues permuted = test.shuffled(i, j, thinned, table);
            sums.add(i, j, pair++, test.unshuffled(i, j, thinned), permuted);
        });
    }
    std::size_t pair = 0;
    forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
        if (limits) {
            obergrenze(i, j) = obergrenze(j, i) = sums.tail(pair).upper();
            untergrenze(i, j) = untergrenze(j, i) = sums.tail(pair).lower();
        }
        ++pair;
        if (run.Tests != nullptr) {
            run.Tests->Pairs.push_back(sums.counts(i, j));
        }
        sums.finish(i, j);
    });
}

} // namespace kva
