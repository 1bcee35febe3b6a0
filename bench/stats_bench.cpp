// Cost of the two expensive statistics: allelic richness with its variance for 30 alleles, by
// sample size (the first two by factorials), and 200 random-discard replicates of an inbred
// population, by individuals.
#include "data/lociclass.h"
#include "fstat/randsci.h"

#include <benchmark/benchmark.h>

using namespace kva;

namespace {

void richness(benchmark::State& state) {
    const auto copies = static_cast<int32_t>(state.range(0));
    AllelCount table;
    for (int32_t i = 0; i < copies; ++i) {
        table.AddAllel(100 + 2 * (i % 30), 0);
    }
    double variance = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(table.CalcRarefraction(copies / 2, variance));
    }
}

BENCHMARK(richness)->Arg(50)->Arg(120)->Arg(122)->Arg(500)->Arg(10000);

// Each iteration takes a fresh copy of the table, whose replicates run once in its life. They end
// with a mark on the console, which is shut meanwhile.
void replicates(benchmark::State& state) {
    const auto individuals = static_cast<int32_t>(state.range(0));
    Datensatz daten;
    daten.init(1);
    daten.AddPopulation("A", 2 * individuals);
    for (int32_t i = 0; i < individuals; ++i) {
        daten.AddTier(1, 1, 100 + 2 * (i % 11), 100 + 2 * (i % 7), 1);
    }
    SampleTables tables(2, LocusTables(1));
    daten.Loci[0].AllelCountP(tables[1][0], 1, 0);
    tables[1][0].SortAllele();
    const AllelCount fresh = tables[1][0];
    srand2(1);
    for (auto _ : state) {
        tables[1][0] = fresh;
        benchmark::DoNotOptimize(daten.CalcRDHet(tables, 1, 1, 200));
    }
    state.SetItemsProcessed(state.iterations() * 200 * individuals);
}

BENCHMARK(replicates)->Arg(10)->Arg(30)->Arg(100)->Arg(1000);

} // namespace
