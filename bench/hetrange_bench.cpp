// Cost of a replicate of the heterozygosity range per drawn entry: the draw and the
// statistics of one locus, for populations of 10 to 1,000 individuals.
#include "fstat/randsci.h"
#include "hetrange/HetReplika.h"

#include <benchmark/benchmark.h>

using namespace kva;

namespace {

void replicate(benchmark::State& state) {
    const auto entries = static_cast<int32_t>(2 * state.range(0));
    LociObj locus;
    locus.AddPopulation("A", entries);
    for (int32_t i = 0; i < entries; i += 2) {
        locus.AddTier(1, 100 + 2 * (i % 11), 100 + 2 * (i % 7), 0);
    }
    AllelCount alleles;
    locus.AllelCountP(alleles, 1, 0);
    alleles.SortAllele();
    HetTable table;
    table.Load(locus, 1, alleles);
    std::vector<float> numbers(static_cast<std::size_t>(entries));
    std::vector<int32_t> row(numbers.size());
    srand2(1);
    for (auto _ : state) {
        rand2Fill(numbers);
        for (std::size_t place = 0; place < row.size(); ++place) {
            row[place] = static_cast<int32_t>(numbers[place] * static_cast<float>(entries));
        }
        table.Clr();
        table.Add(row, false);
        benchmark::DoNotOptimize(table.Statistics());
    }
    state.SetItemsProcessed(state.iterations() * entries);
}

BENCHMARK(replicate)->Arg(10)->Arg(30)->Arg(100)->Arg(1000);

} // namespace
