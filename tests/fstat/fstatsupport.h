// What the tests of F-statistics share: a clock that stands still, places in the random stream,
// estimates over all populations, random data sets.
#ifndef KVA_TESTS_FSTAT_FSTATSUPPORT_H
#define KVA_TESTS_FSTAT_FSTATSUPPORT_H

#include "support/datasets.h"

#include <cstdint>
#include <string>
#include <utility>

namespace kva_test {

using namespace kva;

// While it lives, std::time gives `seconds` in this program. A pass that seeds the random
// stream with the clock then starts the stream of seed `seconds`.
class FrozenClock {
  public:
    explicit FrozenClock(long seconds);
    ~FrozenClock();
    FrozenClock(const FrozenClock&) = delete;
    FrozenClock& operator=(const FrozenClock&) = delete;
    FrozenClock(FrozenClock&&) = delete;
    FrozenClock& operator=(FrozenClock&&) = delete;
};

// The random stream of seed 1 begins with
//
//     0.416  0.092  0.7564 0.5297 0.9304 0.3835 0.6539 0.0668 0.7227 0.6711
//     0.3834 0.6316 0.8847 0.5194 0.6515 0.2378 0.2625 0.7622 0.7534 0.9092
//     0.0727 0.2727 0.8977 0.2749 0.5163 0.3593 0.247  0.4865 0.8462 0.831
//
// rounded here to four decimals; the tests worked out by hand read from it.

// Whether the random stream stands where `draws` draws from `seed` lead. Moves it.
bool streamIsBehind(long seed, int draws);

// Runs `work` with its console output swallowed.
template <class Work> void quietly(Work&& work) {
    const StdoutCapture swallowed;
    std::forward<Work>(work)();
}

// The F-statistics of all populations.
struct GlobalEstimate {
    // Room for the loci of a run; nothing is estimated yet.
    explicit GlobalEstimate(const AnalyseDataObj& run);

    // Takes those of allele tables in the order of PopAllele, under the run's FstMask. Where no
    // population has data at a locus its Gst and Gst' stay those that were taken before.
    void take(const AnalyseDataObj& run, const SampleTables& tables);

    double fst = 0.0;
    double fit = 0.0;
    double fis = 0.0;
    double gst = 0.0;
    double gstStrich = 0.0;
    CMatrix locus; // rows as FRow names them, a column a locus
};

// Those of the data of a run whose alleles are counted.
GlobalEstimate globalEstimate(const AnalyseDataObj& run);

// A data file as tabbed() takes it, the same for the same seed: one or two columns, one to four
// populations of up to 14 rows, missing alleles, empty loci, inbred individuals.
std::string randomFstData(uint32_t seed);

} // namespace kva_test

#endif
