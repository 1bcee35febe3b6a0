// LocusFigures: what the estimates over all populations (GlobalSums) read of a locus.
#ifndef KVA_FSTAT_LOCUSFIGURES_H
#define KVA_FSTAT_LOCUSFIGURES_H

#include "fstat/wc84.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kva {

// The figures of one locus for GlobalSums, and the room for them.
struct LocusFigures {
    // Table: AllelCount or ShuffleTable.
    template <class Table> void addSample(const Table& t, int32_t copies, HRule rule) {
        if (hasIndividual(copies)) {
            samples.push_back({copies * 0.5, t.CalcHetuk(), sampleH(rule, t)});
        }
    }
    void clear() {
        samples.clear();
        pbar.clear();
        p.clear();
        ss.clear();
    }
    GlobalLocus figures(double Ht) {
        for (std::size_t k = 0; k < pbar.size(); ++k) {
            ss.push_back(sumOfDeviations(samples, p.data() + k * samples.size(), pbar[k]));
        }
        return {Ht, samples, pbar, ss};
    }

    std::vector<GlobalSample> samples;
    std::vector<double> pbar;
    std::vector<double> p;  // [allele x samples + sample]
    std::vector<double> ss; // by allele
};

} // namespace kva

#endif
