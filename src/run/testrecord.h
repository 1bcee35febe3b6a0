// What the permutation tests of a run counted. A hit is a permutation whose statistic reaches the
// observed one, a tie included.
#ifndef KVA_RUN_TESTRECORD_H
#define KVA_RUN_TESTRECORD_H

#include <array>
#include <cstdint>
#include <vector>

namespace kva {

// The test of one statistic.
struct TestCount {
    int64_t Hits = 0;
    int64_t Permutations = 0; // those with a value
    bool Ended = false;       // by its hits, before all permutations were made
    bool Defined = true;      // there is an observed value

    void count(bool hit, int64_t endingHits) {
        if (!Ended) {
            ++Permutations;
            Hits += hit ? 1 : 0;
            Ended = endingHits > 0 && Hits == endingHits;
        }
    }
    void add(const TestCount& more) {
        Hits += more.Hits;
        Permutations += more.Permutations;
        Ended = Ended || more.Ended;
    }
};

// Fst, Fit and Fis of a pair; Fst, Gst and Gst' of all populations.
using TestCounts = std::array<TestCount, 3>;

struct TestRecord {
    // A pair, by its populations from 0.
    struct Pair {
        int32_t I;
        int32_t J;
        TestCounts Of;
    };
    std::vector<Pair> Pairs;      // row by row; empty: not tested
    std::vector<TestCounts> Loci; // of all populations, by locus, from 0; empty: not tested
    TestCounts AllLoci;           // ... over all loci
};

} // namespace kva

#endif
