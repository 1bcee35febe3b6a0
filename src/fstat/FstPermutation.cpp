// The permutation test of population pairs: both populations are pooled, dealt out anew
// into samples of the same sizes, and the p-value is the share of deals whose statistic
// reaches the observed one.
#include "fstat/FstPermutation.h"

#include "control/Ausgabe.h"
#include "fstat/PairTest.h"
#include "fstat/passes.h"
#include "fstat/randsci.h"
#include "run/run.h"

namespace kva {

void countHits(FTriple& hits, int32_t i, int32_t j, const Reached& reached) {
    for (std::size_t s = 0; s < hits.size(); ++s) {
        if (reached[s]) {
            hits[s](i, j) += 1.0;
        }
    }
}

void hitsToPValues(FTriple& p, int32_t i, int32_t j, double pairs, double n) {
    for (CMatrix& matrix : p) {
        const double hits = matrix(i, j) != 0.0 ? matrix(i, j) : 1.0;
        matrix(j, i) = pairs * hits / n;
        matrix(i, j) = hits / n;
    }
}

double pairNumber(int32_t n) {
    return (double(n) * n - n) * 0.5;
}

// --- The test --------------------------------------------------------------------------

void testPairs(const Run& run, FTriple& p, const FTriple& f, const SampleTables& tab,
               CMatrix& locusTable) {
    const bool toTable = (run.FstMask & (FstBit::LocusTable | FstBit::Heterogeneity)) != 0;
    PairTest test(*run.Daten, tab, run.FstMask, run.DistFehlerwert);
    const CodedSample sample = test.sample();
    for (CMatrix& matrix : p) {
        matrix.Fill(0.0);
    }
    InternStartRDGen();
    for (int32_t k = 0; k < run.Permutationen; ++k) {
        AUSGABE(Message::PairReplica, k);
        if (k % kPairSeedEvery == 0) {
            InternStartRDGen();
        }
        // Each permutation overwrites the locus table, so that only the last one shows.
        CMatrix* const table = toTable && k + 1 == run.Permutationen ? &locusTable : nullptr;
        forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
            const FValues observed = {f[0](i, j), f[1](i, j), f[2](i, j)};
            countHits(p, i, j,
                      table == nullptr ? test.reached(i, j, sample, observed)
                                       : reachedBy(test.shuffled(i, j, sample, table), observed));
        });
    }
    forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
        hitsToPValues(p, i, j, pairNumber(run.AnzPop), run.Permutationen);
    });
}

} // namespace kva
