// Cost of the permutation tests per slot visit: one slot of one sample at one locus in one
// permutation, with the shuffle and the estimate. report.py counts its instructions.
#include "base/settings.h"
#include "data/lociclass.h"
#include "fstat/FstPermutation.h"
#include "fstat/OrderedPool.h"
#include "fstat/PairTest.h"
#include "fstat/randsci.h"
#include "output/resultfile.h"

#include <benchmark/benchmark.h>
#include <numeric>
#include <random>

using namespace kva;

namespace {

constexpr int kLoci = 9;
constexpr int kAlleles = 10;
constexpr uint32_t kGenotypes = FstBit::HObs | FstBit::Genotypes | FstBit::Permutation;
constexpr uint32_t kLinkedGenotypes = kGenotypes | FstBit::Linked;
constexpr uint32_t kLinkedHexp =
    FstBit::HExp | FstBit::Genotypes | FstBit::Permutation | FstBit::Linked;
constexpr uint32_t kAllelesUnlinked = FstBit::HObs | FstBit::Permutation;

// Two populations of `individuals` individuals each, one allele in fifty missing.
Datensatz twoPopulations(int32_t individuals) {
    std::mt19937 stream(1);
    const auto allele = [&stream] {
        return stream() % 50 == 0 ? -1 : 100 + static_cast<int>(stream() % kAlleles);
    };
    Datensatz daten;
    daten.init(kLoci);
    for (int pop = 1; pop <= 2; ++pop) {
        daten.AddPopulation("P", 2 * individuals);
        for (int32_t tier = 0; tier < individuals; ++tier) {
            for (int locus = 1; locus <= kLoci; ++locus) {
                const int first = allele();
                daten.AddTier(locus, pop, first, allele(), 0);
            }
        }
    }
    return daten;
}

// arg: individuals of each population.
void pairPermutation(benchmark::State& state, uint32_t fstMask) {
    const auto individuals = static_cast<int32_t>(state.range(0));
    const Datensatz daten = twoPopulations(individuals);
    ResultFile none;
    const SampleTables tables = {daten.AllelCountLT(none, none), daten.AllelCountPop(none, none, 1),
                                 daten.AllelCountPop(none, none, 2)};
    PairTest test(daten, tables, fstMask, -32767.0);
    const CodedSample sample = test.sample();
    srand2(1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(test.shuffled(0, 1, sample, nullptr));
    }
    state.SetItemsProcessed(state.iterations() * 4 * individuals * kLoci);
}

// arg: items of a pool that is dealt out.
void deal(benchmark::State& state) {
    const auto n = static_cast<int32_t>(state.range(0));
    std::vector<int32_t> places(static_cast<std::size_t>(n));
    std::vector<int32_t> items(places.size());
    std::vector<int32_t> dealt(places.size());
    std::iota(items.begin(), items.end(), 0);
    OrderedPool<int32_t> pool;
    srand2(1);
    for (auto _ : state) {
        drawIndices(n, places);
        pool.fill(items);
        pool.deal(places, dealt);
        benchmark::DoNotOptimize(dealt.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

BENCHMARK_CAPTURE(pairPermutation, linked_genotypes, kLinkedGenotypes)
    ->Arg(5)
    ->Arg(15)
    ->Arg(50)
    ->Arg(500)
    ->Arg(5000);
BENCHMARK_CAPTURE(pairPermutation, linked_genotypes_hexp, kLinkedHexp)->Arg(15);
BENCHMARK_CAPTURE(pairPermutation, unlinked_genotypes, kGenotypes)->Arg(15);
BENCHMARK_CAPTURE(pairPermutation, unlinked_alleles, kAllelesUnlinked)->Arg(15)->Arg(500);
BENCHMARK(deal)->RangeMultiplier(4)->Range(16, 65536);

} // namespace
