// Reading a data file: time per byte must not depend on the size of the file.
#include "control/AnalyseDataObj.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <string>
#include <unistd.h>

using namespace kva;

namespace {

struct Closer {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Closer>;

// Sends standard output nowhere, for the marks of progress.
class Silence {
  public:
    Silence() : Console(dup(STDOUT_FILENO)) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~Silence() {
        dup2(Console, STDOUT_FILENO);
        close(Console);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    int Console; // OWNED descriptor
};

std::string repeated(long times, const std::string& text) {
    std::string all;
    for (long i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

// A file of about `bytes` bytes: two columns per locus, 1000 rows per population.
Stream makeFile(long loci, long bytes) {
    Stream stream(std::tmpfile());
    std::fprintf(stream.get(), "2\t\t%s\n\t\t%s\n\t\t%s\n", repeated(loci, "\t2\t").c_str(),
                 repeated(loci, "\t100\t").c_str(), repeated(loci, "\tL\tL_2").c_str());
    const std::string cells = repeated(loci, "\t104\t106");
    for (long row = 0; std::ftell(stream.get()) < bytes; ++row) {
        std::fprintf(stream.get(), "P%ld\td\t1%s\n", row / 1000, cells.c_str());
    }
    return stream;
}

// Arguments: loci, size of the file in bytes.
void readFile(benchmark::State& state) {
    const Stream stream = makeFile(state.range(0), state.range(1));
    const Silence silence;
    for (auto _ : state) {
        AnalyseDataObj run;
        benchmark::DoNotOptimize(run.CheckDataFile(stream.get()));
        benchmark::DoNotOptimize(run.GetDataFile(stream.get()));
    }
    state.SetBytesProcessed(state.iterations() * state.range(1));
}
BENCHMARK(readFile)
    ->Args({10, 2'000'000})
    ->Args({10, 200'000'000})
    ->Args({100, 2'000'000})
    ->Args({100, 200'000'000})
    ->Args({5000, 2'000'000})
    ->Args({5000, 200'000'000})
    ->Unit(benchmark::kMillisecond);

// The first pass alone.
void findShape(benchmark::State& state) {
    const Stream stream = makeFile(state.range(0), state.range(1));
    const Silence silence;
    for (auto _ : state) {
        AnalyseDataObj run;
        benchmark::DoNotOptimize(run.CheckDataFile(stream.get()));
    }
    state.SetBytesProcessed(state.iterations() * state.range(1));
}
BENCHMARK(findShape)
    ->Args({100, 2'000'000})
    ->Args({100, 200'000'000})
    ->Unit(benchmark::kMillisecond);

} // namespace
