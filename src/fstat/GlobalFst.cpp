// F-statistics over all populations (Weir and Cockerham 1984), with Gst and Gst', and
// their permutation test.
#include "control/Ausgabe.h"
#include "fstat/GlobalTest.h"
#include "fstat/LocusFigures.h"
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

constexpr int32_t kSeedEvery = 1000; // permutations after which the stream is seeded again
constexpr int32_t kBlock = 100;      // permutations of a unit of work
constexpr std::size_t kBlocksAhead = 256;

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

// --- All permutations ------------------------------------------------------------------

// Room for the values of a permutation at each locus.
CMatrix newLocusValues(const Run& run) {
    CMatrix locus;
    locus.Resize(FRow::Anzahl, run.AnzLoci);
    locus.Fill(run.AnzPop < kFewestGlobalPops ? run.DistFehlerwert : 0.0);
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
    if (nPop < kFewestGlobalPops) {
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
