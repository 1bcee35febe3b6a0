// F-statistics over all populations (Weir and Cockerham 1984), with Gst and Gst', and
// their permutation test: the slots of all populations are dealt out anew.
#include "control/Ausgabe.h"
#include "fstat/GenotypePool.h"
#include "fstat/Shuffle.h"
#include "fstat/passes.h"
#include "fstat/randsci.h"
#include "fstat/wc84.h"
#include "run/run.h"

#include <algorithm>

namespace kva {

namespace {

constexpr int32_t kFewestPops = 2;
constexpr int32_t kSeedEvery = 1000; // permutations after which the stream is seeded again

// The figures of one locus for GlobalSums, and the room for them.
struct LocusFigures {
    // Table: AllelCount or ShuffleTable.
    template <class Table> void addSample(const Table& t, int32_t copies, HRule rule) {
        if (hasIndividual(copies)) {
            samples.push_back({copies * 0.5, t.CalcHetuk(), sampleH(rule, t)});
        }
    }
    void clear() {
        samples.clear();
        pbar.clear();
        p.clear();
        ss.clear();
    }
    GlobalLocus figures(double Ht) {
        for (std::size_t k = 0; k < pbar.size(); ++k) {
            ss.push_back(sumOfDeviations(samples, p.data() + k * samples.size(), pbar[k]));
        }
        return {Ht, samples, pbar, ss};
    }

    std::vector<GlobalSample> samples;
    std::vector<double> pbar;
    std::vector<double> p;  // [allele x samples + sample]
    std::vector<double> ss; // by allele
};

// --- From AllelCount -------------------------------------------------------------------

void readFigures(LocusFigures& figures, const SampleTables& tab, std::size_t l, int nPop,
                 HRule rule) {
    figures.clear();
    for (std::size_t k = 1; k <= static_cast<std::size_t>(nPop); ++k) {
        figures.addSample(tab[k][l], tab[k][l].AnzGesamt, rule);
    }
    const AllelCount& pool = tab[0][l];
    for (int32_t row = 0; row < pool.AnzAllele; ++row) {
        const int32_t allel = pool.Allele[row].Nummer;
        figures.pbar.push_back(pool.GetFrequenz(row));
        for (std::size_t k = 1; k <= static_cast<std::size_t>(nPop); ++k) {
            const AllelCount& t = tab[k][l];
            if (hasIndividual(t.AnzGesamt)) {
                figures.p.push_back(std::max(t.GetFrequenz(t.GetAllelNummer(allel) - 1), 0.0));
            }
        }
    }
}

GlobalValues globalValues(const SampleTables& tab, CMatrix& locus, int nLoci, int nPop, HRule rule,
                          double undefined) {
    GlobalSums sums;
    LocusFigures figures;
    for (int32_t l = 0; l < nLoci; ++l) {
        const auto place = static_cast<std::size_t>(l);
        if (tab[0][place].AnzAllele < kFewestAlleles) {
            fillColumn(locus, FRow::Fst, FRow::GstStrich, l, undefined);
            continue;
        }
        readFigures(figures, tab, place, nPop, rule);
        sums.add(figures.figures(tab[0][place].CalcHetuk()), locus, l, undefined);
    }
    return sums.values(undefined);
}

// --- Counting the test -----------------------------------------------------------------

// Hits of one statistic among its valid permutations.
struct Treffer {
    int32_t hits = 0;
    int32_t valid = 0;

    // The p-value; no hit counts as one.
    double pValue(double undefined) const {
        return valid < 1 ? undefined : double(std::max(hits, 1)) / valid;
    }
};

// Hits of Fst, Gst and Gst' of one locus or of all. Gst and Gst' are valid together.
struct HitSet {
    std::array<Treffer, 3> of;

    void count(const TestedValues& observed, const TestedValues& permuted, double undefined) {
        for (std::size_t s = 0; s < of.size(); ++s) {
            if (permuted[std::min(s, std::size_t{1})] != undefined) {
                ++of[s].valid;
                of[s].hits += observed[s] <= permuted[s] ? 1 : 0; // a tie counts as a hit
            }
        }
    }
};

TestedValues testedValues(const GlobalValues& values) {
    return {values.f[0], values.gst, values.gstStrich};
}

TestedValues testedValues(const CMatrix& locus, int32_t l) {
    return {locus(FRow::Fst, l), locus(FRow::Gst, l), locus(FRow::GstStrich, l)};
}

// --- From shuffled tables --------------------------------------------------------------

// The statistics of one shuffle of all populations; twin of Datensatz::CountMixGlobal
// followed by estimateGlobal, with the same draws and the same numbers.
class GlobalTest {
  public:
    GlobalTest(const Datensatz& daten, uint32_t fstMask, double undefined)
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

    // Deals for all loci, where near values can tell what they hold. Else values() deals.
    bool dealNear() {
        if (!Linked || !Rows || !Rows->canBeNear()) {
            return false;
        }
        Shuffle.deal();
        return true;
    }

    // Counts the hits of what dealNear() dealt, by near values where these tell and by exact ones
    // where not; false if there are no near ones. locus: as in values().
    bool countNear(const TestedValues& observed, std::span<const TestedValues> observedLoci,
                   CMatrix& locus, HitSet& all, std::span<HitSet> ofLocus) {
        if (!Rows->countNear(Shuffle)) {
            return false;
        }
        NearGlobalSums sums;
        for (std::size_t l = 0; l < Data.loci(); ++l) {
            if (const std::optional<double> Ht = Rows->nearHt(l)) {
                const std::optional<TestedValues> near = sums.add(Rows->nearLocus(l), *Ht);
                const bool told = tells(near, observedLoci[l]);
                ofLocus[l].count(observedLoci[l], told ? *near : exactLocus(l, locus), Undefined);
            }
        }
        const std::optional<TestedValues> near = sums.values();
        const bool told = tells(near, observed);
        all.count(observed, told ? *near : testedValues(values(locus, true)), Undefined);
        return true;
    }

    // The values of a deal: of the last one if it is `dealt`. locus: five rows; keeps what a locus
    // without a value there held.
    GlobalValues values(CMatrix& locus, bool dealt) {
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
            if (Tables.size() < std::size_t{kFewestPops}) {
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

  private:
    // Deals out all populations for some loci and counts their samples there, if that is done for
    // all loci at once.
    void deal(LociRange loci) {
        Shuffle.deal();
        if (Rows) {
            Rows->count(Shuffle, loci);
        }
    }

    // A locus of the last deal counted slot by slot; nothing if it does not vary.
    std::optional<GlobalLocus> countedLocus(std::size_t l) {
        count(Data.locus(l));
        if (Pool.alleles().size() < std::size_t{kFewestAlleles}) {
            return std::nullopt;
        }
        readFigures();
        return Figures.figures(Pool.CalcHetuk());
    }

    void count(const CodedLocus& locus) {
        Pool.clear();
        for (std::size_t pop = 0; pop < Tables.size(); ++pop) {
            Shuffle.count(locus, pop, Tables[pop]);
            Pool.addCopies(Tables[pop]);
        }
    }

    void readFigures() {
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

    // The exact values of a locus that varies, in the last deal.
    TestedValues exactLocus(std::size_t l, CMatrix& locus) {
        Rows->count(Shuffle, {l, l + 1});
        const auto column = static_cast<int32_t>(l);
        GlobalSums().add(*Rows->locus(l), locus, column, Undefined);
        return testedValues(locus, column);
    }

    // Whether near values are far from observed ones.
    static bool tells(const std::optional<TestedValues>& near, const TestedValues& observed) {
        return near && isFar((*near)[0], observed[0]) && isFar((*near)[1], observed[1]) &&
               isFar((*near)[2], observed[2]);
    }

    CodedData Data;
    bool Linked;
    HRule Rule;
    double Undefined;
    GlobalShuffle Shuffle;
    std::optional<GenotypePool> Rows; // counts by rows; nothing: by tables
    ShuffleTable Pool;
    std::vector<ShuffleTable> Tables; // of each population
    std::vector<std::size_t> RowOf;   // place of each allele code in the pool
    LocusFigures Figures;
};

} // namespace

int estimateGlobal(const Run& run, double& fst, double& fit, double& fis, double& gst,
                   double& gstStrich, CMatrix& locus, const SampleTables& tab, int nLoci,
                   int nPop) {
    fst = fit = fis = gst = gstStrich = run.DistFehlerwert;
    if (nPop < kFewestPops) {
        return 1;
    }
    const GlobalValues values =
        globalValues(tab, locus, nLoci, nPop, hRule(run.FstMask), run.DistFehlerwert);
    fst = values.f[FRow::Fst];
    fit = values.f[FRow::Fit];
    fis = values.f[FRow::Fis];
    gst = values.gst;
    gstStrich = values.gstStrich;
    return 0;
}

void testGlobal(const Run& run, double fst, double gst, double gstStrich, const CMatrix& locus,
                double& pFst, double& pGst, double& pGstStrich, CMatrix& pLocus) {
    GlobalTest test(*run.Daten, run.FstMask, run.DistFehlerwert);
    CMatrix permutedLocus;
    permutedLocus.Resize(FRow::Anzahl, run.AnzLoci);
    permutedLocus.Fill(run.AnzPop < kFewestPops ? run.DistFehlerwert : 0.0);
    HitSet all;
    const TestedValues observed = {fst, gst, gstStrich};
    std::vector<TestedValues> observedLoci;
    observedLoci.reserve(run.AnzLoci);
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        observedLoci.push_back(testedValues(locus, l));
    }
    std::vector<HitSet> ofLocus(observedLoci.size());
    for (int32_t k = 0; k < run.Permutationen; ++k) {
        AUSGABE(Message::GlobalReplica, k);
        if (k % kSeedEvery == 0) {
            InternStartRDGen();
        }
        const bool dealt = test.dealNear();
        if (dealt && test.countNear(observed, observedLoci, permutedLocus, all, ofLocus)) {
            continue;
        }
        const GlobalValues permuted = test.values(permutedLocus, dealt);
        all.count(observed, testedValues(permuted), run.DistFehlerwert);
        for (int32_t l = 0; l < run.AnzLoci; ++l) {
            const auto place = static_cast<std::size_t>(l);
            ofLocus[place].count(observedLoci[place], testedValues(permutedLocus, l),
                                 run.DistFehlerwert);
        }
    }
    pFst = all.of[0].pValue(run.DistFehlerwert);
    pGst = all.of[1].pValue(run.DistFehlerwert);
    pGstStrich = all.of[2].pValue(run.DistFehlerwert);
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        for (std::size_t s = 0; s < 3; ++s) {
            pLocus(static_cast<int32_t>(s), l) = ofLocus[l].of[s].pValue(run.DistFehlerwert);
        }
    }
}

} // namespace kva
