// Cost of the distances. sumIndividuals: per pair and locus, for 500 to 4,500 individuals, which
// should not grow; replicatePopulations: of a bootstrap replicate of 100 populations, nothing
// written; writeMatrix: per cell of a matrix of individuals, into a file that takes all.
//
// The argument `plain` is 1 for the plain way of the sums, 0 for the fast one.
#include "distance/distancefile.h"
#include "distance/rowsummer.h"
#include "distance/samples.h"

#include "output/resultfile.h"

#include <benchmark/benchmark.h>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <vector>

using namespace kva;

namespace {

constexpr int kLoci = 20;
constexpr int kAlleles = 20;

LocusTables individual(std::mt19937& stream) {
    LocusTables tables(kLoci);
    for (AllelCount& table : tables) {
        table.AddAllel(100 + 2 * static_cast<int>(stream() % kAlleles), 0);
        table.AddAllel(100 + 2 * static_cast<int>(stream() % kAlleles), 0);
        table.SortAllele();
    }
    return tables;
}

LocusTables population(std::mt19937& stream, int individuals) {
    LocusTables tables(kLoci);
    for (AllelCount& table : tables) {
        for (int entry = 0; entry < 2 * individuals; ++entry) {
            table.AddAllel(100 + 2 * static_cast<int>(stream() % kAlleles), 0);
        }
        table.SortAllele();
    }
    return tables;
}

// A pool of all alleles that a sample can have.
LocusTables pool() {
    LocusTables tables(kLoci);
    for (AllelCount& table : tables) {
        for (int allele = 0; allele < kAlleles; ++allele) {
            table.AddAllel(100 + 2 * allele, 0);
        }
        table.SortAllele();
    }
    return tables;
}

Samples individuals(std::size_t count) {
    std::mt19937 stream(1);
    SampleTables tables;
    for (std::size_t i = 0; i < count; ++i) {
        tables.push_back(individual(stream));
    }
    return prepareSamples(tables, 0, count, pool(), std::vector<double>(kLoci, 1.0),
                          kIndividualRules);
}

Samples populations(std::size_t count) {
    std::mt19937 stream(1);
    SampleTables tables;
    for (std::size_t i = 0; i < count; ++i) {
        tables.push_back(population(stream, 30));
    }
    return prepareSamples(tables, 0, count, pool(), std::vector<double>(kLoci, 2.0),
                          kPopulationRules);
}

std::vector<std::size_t> allLoci() {
    std::vector<std::size_t> loci(kLoci);
    std::iota(loci.begin(), loci.end(), 0);
    return loci;
}

void sumAllRows(RowSummer& sums, const std::vector<std::size_t>& loci) {
    for (std::size_t i = 0; i + 1 < sums.samples().Count; ++i) {
        const RowSums& row = sums.sum(i, loci, quantitiesOf(allMeasures()));
        benchmark::DoNotOptimize(row.of(Quantity::Smaller));
    }
}

RowSummer summer(const Samples& samples, bool plain) {
    constexpr std::size_t kPlenty = std::size_t{1} << 27U;
    return {samples, quantitiesOf(allMeasures()), {100, plain ? 0 : kPlenty}};
}

double pairs(int64_t count) {
    return static_cast<double>(count) * static_cast<double>(count - 1) / 2.0;
}

// A counter that reads as the time of one of so many steps in an iteration.
benchmark::Counter timeOfOne(double steps) {
    return {steps, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert};
}

void sumIndividuals(benchmark::State& state) {
    const Samples samples = individuals(static_cast<std::size_t>(state.range(0)));
    RowSummer sums = summer(samples, state.range(1) != 0);
    const std::vector<std::size_t> loci = allLoci();
    for (auto _ : state) {
        sumAllRows(sums, loci);
    }
    state.counters["pair_and_locus"] = timeOfOne(pairs(state.range(0)) * kLoci);
}

void replicatePopulations(benchmark::State& state) {
    const Samples samples = populations(100);
    RowSummer sums = summer(samples, state.range(0) != 0);
    const std::vector<std::size_t> loci = allLoci();
    sumAllRows(sums, loci); // what is kept is computed here
    for (auto _ : state) {
        sumAllRows(sums, loci);
    }
    state.counters["pair_and_locus"] = timeOfOne(pairs(100) * kLoci);
}

void writeMatrix(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const Samples samples = individuals(count);
    const std::span<const Measure> posa = allMeasures().first(1);
    RowSummer sums(samples, quantitiesOf(posa), {});
    const std::vector<std::size_t> oneLocus = {0}; // summing is cheap beside the writing
    const std::vector<std::string> labels(count, "label");
    MatrixWriter writer(labels, CellRules(), MatrixWriter::Form::Plain);
    for (auto _ : state) {
        writer.begin(ResultFile("/dev/null", "wb", "null", nullptr), posa[0]);
        for (std::size_t i = 0; i < count; ++i) {
            writer.writeRow(i, sums.sum(i, oneLocus, quantitiesOf(posa)));
        }
        writer.end();
    }
    state.counters["cell"] = timeOfOne(static_cast<double>(count * count));
}

BENCHMARK(sumIndividuals)
    ->ArgNames({"individuals", "plain"})
    ->ArgsProduct({{500, 1500, 4500}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(replicatePopulations)->ArgName("plain")->DenseRange(0, 1)->Unit(benchmark::kMicrosecond);
BENCHMARK(writeMatrix)
    ->ArgName("individuals")
    ->Arg(500)
    ->Arg(1500)
    ->Arg(4500)
    ->Unit(benchmark::kMillisecond);

} // namespace
