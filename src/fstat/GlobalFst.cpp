// F-statistics over all populations (Weir and Cockerham 1984), with Gst and Gst', and
// their permutation test: the slots of all populations are dealt out anew.
#include "control/Ausgabe.h"
#include "fstat/GenotypePool.h"
#include "fstat/Shuffle.h"
#include "fstat/passes.h"
#include "fstat/randsci.h"
#include "fstat/wc84.h"
#include "run/run.h"
#include "run/spread.h"
#include "run/testrecord.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kva {

namespace {

constexpr int32_t kFewestPops = 2;
constexpr int32_t kSeedEvery = 1000; // permutations after which the stream is seeded again
constexpr int32_t kBlock = 100;      // permutations of a unit of work
constexpr std::size_t kBlocksAhead = 256;

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

// The p-value; no hit counts as one.
double pValue(const TestCount& count, double undefined) {
    return count.Permutations < 1 ? undefined
                                  : static_cast<double>(std::max<int64_t>(count.Hits, 1)) /
                                        static_cast<double>(count.Permutations);
}

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

// What is compared with the permutations.
struct ObservedValues {
    TestedValues All;
    std::vector<TestedValues> Loci; // by locus, from 0
};

// The counts over all loci and of each.
struct GlobalCounts {
    explicit GlobalCounts(std::size_t loci) : Loci(loci) {}

    void add(const GlobalCounts& more) {
        for (std::size_t s = 0; s < All.size(); ++s) {
            All[s].add(more.All[s]);
            for (std::size_t l = 0; l < Loci.size(); ++l) {
                Loci[l][s].add(more.Loci[l][s]);
            }
        }
    }

    TestCounts All;
    std::vector<TestCounts> Loci;
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

    // Makes a permutation and counts its hits. locus: as in values().
    void permute(const ObservedValues& observed, CMatrix& locus, GlobalCounts& counts) {
        const bool dealt = dealNear();
        if (dealt && countNear(observed, locus, counts)) {
            return;
        }
        const GlobalValues permuted = values(locus, dealt);
        countHits(counts.All, observed.All, testedValues(permuted), Undefined);
        for (std::size_t l = 0; l < observed.Loci.size(); ++l) {
            countHits(counts.Loci[l], observed.Loci[l],
                      testedValues(locus, static_cast<int32_t>(l)), Undefined);
        }
    }

  private:
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
    bool countNear(const ObservedValues& observed, CMatrix& locus, GlobalCounts& counts) {
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

// Room for the values of a permutation at each locus.
CMatrix newLocusValues(const Run& run) {
    CMatrix locus;
    locus.Resize(FRow::Anzahl, run.AnzLoci);
    locus.Fill(run.AnzPop < kFewestPops ? run.DistFehlerwert : 0.0);
    return locus;
}

// All permutations on the stream that the clock seeds.
GlobalCounts countInOrder(const Run& run, const ObservedValues& observed) {
    GlobalTest test(*run.Daten, run.FstMask, run.DistFehlerwert);
    CMatrix permutedLocus = newLocusValues(run);
    GlobalCounts counts(observed.Loci.size());
    for (int32_t k = 0; k < run.Permutationen; ++k) {
        AUSGABE(Message::GlobalReplica, k);
        if (k % kSeedEvery == 0) {
            InternStartRDGen();
        }
        test.permute(observed, permutedLocus, counts);
    }
    return counts;
}

// Each block of permutations on a stream of its own.
GlobalCounts countInUnits(const Run& run, const ObservedValues& observed) {
    GlobalCounts counts(observed.Loci.size());
    const auto blocks = static_cast<std::size_t>((run.Permutationen + kBlock - 1) / kBlock);
    run.Spreading->inOrder(blocks, kBlocksAhead, [&]() -> Spread::Work {
        auto test = std::make_shared<GlobalTest>(*run.Daten, run.FstMask, run.DistFehlerwert);
        return [&, test](std::size_t block) -> Spread::Take {
            startUnit(run.Spreading->seed(),
                      {UnitKind::GlobalTest, 0, static_cast<uint32_t>(block)});
            CMatrix permutedLocus = newLocusValues(run);
            GlobalCounts ofBlock(observed.Loci.size());
            const int32_t first = static_cast<int32_t>(block) * kBlock;
            for (int32_t k = first; k < std::min(first + kBlock, run.Permutationen); ++k) {
                test->permute(observed, permutedLocus, ofBlock);
            }
            return [&counts, ofBlock = std::move(ofBlock)] { counts.add(ofBlock); };
        };
    });
    return counts;
}

// Puts counts into a record.
void record(const GlobalCounts& counts, const ObservedValues& observed, double undefined,
            TestRecord& tests) {
    const auto marked = [undefined](TestCounts of, const TestedValues& values) {
        for (std::size_t s = 0; s < of.size(); ++s) {
            of[s].Defined = values[s] != undefined;
        }
        return of;
    };
    tests.AllLoci = marked(counts.All, observed.All);
    tests.Loci.clear();
    for (std::size_t l = 0; l < counts.Loci.size(); ++l) {
        tests.Loci.push_back(marked(counts.Loci[l], observed.Loci[l]));
    }
}

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
    ObservedValues observed = {{fst, gst, gstStrich}, {}};
    observed.Loci.reserve(run.AnzLoci);
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        observed.Loci.push_back(testedValues(locus, l));
    }
    const GlobalCounts counts =
        run.Spreading != nullptr ? countInUnits(run, observed) : countInOrder(run, observed);
    if (run.Tests != nullptr) {
        record(counts, observed, run.DistFehlerwert, *run.Tests);
    }
    pFst = pValue(counts.All[0], run.DistFehlerwert);
    pGst = pValue(counts.All[1], run.DistFehlerwert);
    pGstStrich = pValue(counts.All[2], run.DistFehlerwert);
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        for (std::size_t s = 0; s < 3; ++s) {
            pLocus(static_cast<int32_t>(s), l) = pValue(counts.Loci[l][s], run.DistFehlerwert);
        }
    }
}

} // namespace kva
