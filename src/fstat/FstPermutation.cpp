// The permutation test of population pairs: both populations are pooled, dealt out anew
// into samples of the same sizes, and the p-value is the share of deals whose statistic
// reaches the observed one.
#include "fstat/FstPermutation.h"

#include "control/Ausgabe.h"
#include "fstat/PairTest.h"
#include "fstat/passes.h"
#include "fstat/randsci.h"
#include "run/run.h"
#include "run/spread.h"
#include "run/testrecord.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace kva {

void countHits(FTriple& hits, int32_t i, int32_t j, const Reached& reached) {
    for (std::size_t s = 0; s < hits.size(); ++s) {
        if (reached[s]) {
            hits[s](i, j) += 1.0;
        }
    }
}

void hitsToPValue(CMatrix& p, int32_t i, int32_t j, double pairs, double n) {
    const double hits = p(i, j) != 0.0 ? p(i, j) : 1.0;
    p(j, i) = pairs * hits / n;
    p(i, j) = hits / n;
}

void hitsToPValues(FTriple& p, int32_t i, int32_t j, double pairs, double n) {
    for (CMatrix& matrix : p) {
        hitsToPValue(matrix, i, j, pairs, n);
    }
}

double pairNumber(int32_t n) {
    return (double(n) * n - n) * 0.5;
}

// --- In units of a pair and a block of its permutations ----------------------------------

namespace {

constexpr int32_t kBlock = 500;            // permutations
constexpr std::size_t kBlocksAhead = 1024; // their counts are small

// The observed values of all pairs, row by row.
std::vector<FValues> observedValues(const FTriple& f, int32_t populations) {
    std::vector<FValues> values;
    values.reserve(static_cast<std::size_t>(pairNumber(populations)));
    forEachPair(populations, [&](int32_t i, int32_t j) {
        values.push_back({f[0](i, j), f[1](i, j), f[2](i, j)});
    });
    return values;
}

// The test of all pairs, each permutation of each on a stream of its own.
class PairsInUnits {
  public:
    PairsInUnits(const Run& run, const FTriple& f, const SampleTables& tab)
        : Source(run), Observed(observedValues(f, run.AnzPop)), Tables(tab),
          Sample(newTest()->sample()), Blocks((run.Permutationen + kBlock - 1) / kBlock) {
        forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
            Counts.push_back({i, j, {}});
            for (std::size_t s = 0; s < Counts.back().Of.size(); ++s) {
                Counts.back().Of[s].Defined = f[s](i, j) != run.DistFehlerwert;
            }
        });
    }

    // Makes the permutations. The blocks of a pair hang together only if its hits can end it.
    std::vector<TestRecord::Pair> count() {
        const int32_t together = Source.SequentialHits > 0 ? Blocks : 1;
        const auto parts = static_cast<std::size_t>(Blocks / together);
        Source.Spreading->inOrder(Counts.size() * parts, kBlocksAhead, [&]() -> Spread::Work {
            return [this, test = newTest(), together, parts](std::size_t unit) -> Spread::Take {
                const std::size_t pair = unit / parts;
                const auto first = static_cast<int32_t>(unit % parts) * together;
                return [this, pair, counts = permute(*test, pair, first, first + together)] {
                    for (std::size_t s = 0; s < counts.size(); ++s) {
                        Counts[pair].Of[s].add(counts[s]);
                    }
                };
            };
        });
        return std::move(Counts);
    }

  private:
    std::shared_ptr<PairTest> newTest() const {
        return std::make_shared<PairTest>(*Source.Daten, Tables, Source.FstMask,
                                          Source.DistFehlerwert);
    }

    // The counts of a pair (by its place) in its blocks from `block` on, up to `end`.
    TestCounts permute(PairTest& test, std::size_t pair, int32_t block, int32_t end) const {
        const auto [i, j, none] = Counts[pair];
        TestCounts counts;
        for (; block < end && !allEnded(counts); ++block) {
            startUnit(Source.Spreading->seed(), {UnitKind::PairTest, static_cast<uint32_t>(pair),
                                                 static_cast<uint32_t>(block)});
            const int32_t permutations = std::min(kBlock, Source.Permutationen - block * kBlock);
            for (int32_t k = 0; k < permutations && !allEnded(counts); ++k) {
                const Reached reached = test.reached(i, j, Sample, Observed[pair]);
                for (std::size_t s = 0; s < counts.size(); ++s) {
                    counts[s].count(reached[s], Source.SequentialHits);
                }
            }
        }
        return counts;
    }

    static bool allEnded(const TestCounts& counts) {
        return std::ranges::all_of(counts, &TestCount::Ended);
    }

    const Run& Source;                    // NOT OWNED
    std::vector<FValues> Observed;        // by pair
    const SampleTables& Tables;           // NOT OWNED
    CodedSample Sample;                   // the data as they were read
    int32_t Blocks;                       // of each pair
    std::vector<TestRecord::Pair> Counts; // by pair
};

// Puts the counts of all pairs into p as p-values.
void pValuesOf(const std::vector<TestRecord::Pair>& counts, FTriple& p, double pairs) {
    for (const auto& [i, j, of] : counts) {
        for (std::size_t s = 0; s < p.size(); ++s) {
            p[s](i, j) = static_cast<double>(of[s].Hits);
            hitsToPValue(p[s], i, j, pairs, static_cast<double>(of[s].Permutations));
        }
    }
}

// What is counted in p, as a record.
std::vector<TestRecord::Pair> recordOf(const FTriple& p, const FTriple& f, const Run& run) {
    std::vector<TestRecord::Pair> counts;
    forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
        counts.push_back({i, j, {}});
        for (std::size_t s = 0; s < p.size(); ++s) {
            counts.back().Of[s] = {static_cast<int64_t>(p[s](i, j)), run.Permutationen, false,
                                   f[s](i, j) != run.DistFehlerwert};
        }
    });
    return counts;
}

// --- In order, on the stream that the clock seeds -------------------------------------------

// Counts the hits of all pairs in p, permutation after permutation.
void countInOrder(const Run& run, FTriple& p, const FTriple& f, const SampleTables& tab,
                  CMatrix& locusTable) {
    const bool toTable = (run.FstMask & (FstBit::LocusTable | FstBit::Heterogeneity)) != 0;
    PairTest test(*run.Daten, tab, run.FstMask, run.DistFehlerwert);
    const CodedSample sample = test.sample();
    for (CMatrix& matrix : p) {
        matrix.Fill(0.0);
    }
    InternStartRDGen();
    const std::vector<FValues> observed = observedValues(f, run.AnzPop);
    for (int32_t k = 0; k < run.Permutationen; ++k) {
        AUSGABE(Message::PairReplica, k);
        if (k % kPairSeedEvery == 0) {
            InternStartRDGen();
        }
        // Each permutation overwrites the locus table, so that only the last one shows.
        CMatrix* const table = toTable && k + 1 == run.Permutationen ? &locusTable : nullptr;
        auto ofPair = observed.begin();
        forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
            countHits(p, i, j,
                      table == nullptr ? test.reached(i, j, sample, *ofPair)
                                       : reachedBy(test.shuffled(i, j, sample, table), *ofPair));
            ++ofPair;
        });
    }
}

} // namespace

// --- The test --------------------------------------------------------------------------

void testPairs(const Run& run, FTriple& p, const FTriple& f, const SampleTables& tab,
               CMatrix& locusTable) {
    if (run.Spreading != nullptr) {
        std::vector<TestRecord::Pair> counts = PairsInUnits(run, f, tab).count();
        pValuesOf(counts, p, pairNumber(run.AnzPop));
        if (run.Tests != nullptr) {
            run.Tests->Pairs = std::move(counts);
        }
        return;
    }
    countInOrder(run, p, f, tab, locusTable);
    if (run.Tests != nullptr) {
        run.Tests->Pairs = recordOf(p, f, run);
    }
    forEachPair(run.AnzPop, [&](int32_t i, int32_t j) {
        hitsToPValues(p, i, j, pairNumber(run.AnzPop), run.Permutationen);
    });
}

} // namespace kva
