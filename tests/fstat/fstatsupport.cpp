#include "fstat/fstatsupport.h"

#include "fstat/randsci.h"

#include <ctime>
#include <optional>
#include <random>

using namespace kva;

namespace {

std::optional<long> frozenSeconds;

} // namespace

// Stands in for the C library's function in the program of these tests.
// The name of the parameter is reserved where the system declares it.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" std::time_t time(std::time_t* result) noexcept {
    std::timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::time_t seconds = frozenSeconds ? *frozenSeconds : now.tv_sec;
    if (result != nullptr) {
        *result = seconds;
    }
    return seconds;
}

namespace kva_test {

FrozenClock::FrozenClock(long seconds) {
    frozenSeconds = seconds;
}
FrozenClock::~FrozenClock() {
    frozenSeconds.reset();
}

bool streamIsBehind(long seed, int draws) {
    const float next = rand2();
    srand2(seed);
    for (int draw = 0; draw < draws; ++draw) {
        (void)rand2();
    }
    return next == rand2();
}

GlobalEstimate::GlobalEstimate(const AnalyseDataObj& run) {
    locus.Resize(FRow::Anzahl, run.AnzLoci);
}

void GlobalEstimate::take(const AnalyseDataObj& run, const SampleTables& tables) {
    run.FST_GLOBAL_WC84(fst, fit, fis, gst, gstStrich, locus, tables, run.AnzLoci, run.AnzPop);
}

GlobalEstimate globalEstimate(const AnalyseDataObj& run) {
    GlobalEstimate all(run);
    all.locus.Fill(run.DistFehlerwert);
    all.take(run, run.PopAllele);
    return all;
}

namespace {

class Maker {
  public:
    explicit Maker(uint32_t seed)
        : stream(seed), twoColumns(chance(60)), loci(pick(1, 4)), alleles(pick(1, 9)),
          missing(pick(0, 3) * 12), inbred(pick(0, 2) * 50) {}

    std::string text() {
        std::string file = head();
        const int populations = pick(1, 4);
        for (int pop = 0; pop < populations; ++pop) {
            gap = chance(25) ? pick(0, loci - 1) : -1;
            shift = pick(0, 2);
            const int rows = pick(1, chance(20) ? 60 : 14);
            for (int row = 0; row < rows; ++row) {
                file += dataRow(std::string(1, static_cast<char>('A' + pop)));
            }
        }
        return file;
    }

  private:
    // The stream's own bits, since distributions differ between libraries.
    int pick(int low, int high) {
        return low + static_cast<int>(stream() % static_cast<uint32_t>(high - low + 1));
    }
    bool chance(int percent) { return pick(1, 100) <= percent; }

    std::string head() const {
        std::string repeats = twoColumns ? "2 . ." : "1 . .";
        std::string names = ". . .";
        for (int locus = 0; locus < loci; ++locus) {
            repeats += twoColumns ? " 2 ." : " 2";
            const std::string number = std::to_string(locus);
            names.append(" L").append(number);
            if (twoColumns) {
                names.append(" L").append(number).append("b");
            }
        }
        return repeats + "\n" + repeats + "\n" + names + "\n";
    }

    std::string dataRow(const std::string& name) {
        std::string row = name + (chance(inbred) ? " h 0" : " d 0");
        for (int locus = 0; locus < loci; ++locus) {
            for (int column = 0; column < (twoColumns ? 2 : 1); ++column) {
                const bool empty = locus == gap || chance(missing);
                row += ' ';
                row += empty ? std::string(".") : std::to_string(100 + shift + pick(1, alleles));
            }
        }
        return row + "\n";
    }

    std::mt19937 stream;
    bool twoColumns;
    int loci;
    int alleles;
    int missing;   // percent
    int inbred;    // percent
    int gap = -1;  // locus without data in the population
    int shift = 0; // of the population's allele numbers
};

} // namespace

std::string randomFstData(uint32_t seed) {
    return Maker(seed).text();
}

} // namespace kva_test
