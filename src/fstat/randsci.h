// The random stream that all draws come from, and the turn of a flat index into group and offset.
//
// The state is global: each thread has exactly one stream. Seeded from the clock it is Park and
// Miller's minimal standard generator with a Bays-Durham shuffle table ("ran1" of Press et al.,
// Numerical Recipes in C, 2nd ed. 1992); a run that draws before any seeding gets the sequence of
// seed 1. Where a run is spread over units of work (run/spread.h), each unit has a stream of its
// own, of the Philox generator.
#ifndef KVA_FSTAT_RANDSCI_H
#define KVA_FSTAT_RANDSCI_H

#include <algorithm>
#include <cstdint>
#include <span>

namespace kva {

// Starts the stream anew (global state): the next draw refills the shuffle table. 0 acts as 1, a
// negative seed as its negation. Seeds are cut to 32 bits.
void srand2(long seed);

// The next value, above 0 and below 1. One exception, which the generator's arithmetic
// brings along: seed 2147483647, the modulus itself, gives a 0 first and then the
// sequence of seed 1.
float rand2();

// The next values of the stream, one for each place: what so many calls of rand2() give.
void rand2Fill(std::span<float> values);

// rand2() x bound in single precision: a uniform value from 0 to below `bound`. One draw.
float random2(float bound);

// The same as rand2(): one draw.
float InternRand();

// Seeds the stream with the wall clock in seconds: two calls within one second give the same
// draws. Nothing on the stream of a unit.
void InternStartRDGen();

// What units of work are of. Their numbers make the streams: they stay as they are.
enum class UnitKind : uint32_t {
    Pass = 0,                // a whole pass, by its place among the passes
    PairTest = 1,            // permutations of a pair, by the pair
    GlobalTest = 2,          // permutations of all populations
    PopulationBootstrap = 3, // a replicate of the distances of populations
    IndividualBootstrap = 4, // ... of individuals
    HetRange = 5,            // all replicates of a population
};

// A unit of work.
struct UnitId {
    UnitKind Kind;
    uint32_t Number;    // of the pair, replicate or population, from 0
    uint32_t Block = 0; // of its permutations, from 0
};

// The thread's stream becomes that of a unit: under the same seed always the same values, under
// another seed or for another unit others that do not hang together with them, 2^34 of them.
void startUnit(uint64_t seed, UnitId unit);

// The place among n, from 0, that a value of the stream stands for: value x n truncated, and n - 1
// where rounding gave n or above. -1 for n of 0.
inline int32_t indexOf(float value, int32_t n) {
    return std::min(static_cast<int32_t>(value * static_cast<float>(n)), n - 1);
}

// A place drawn from n places, from 0: indexOf the next value. One draw. n is at least 1; 0 gives
// -1.
int32_t drawIndex(int32_t n);

// The places of a deal: drawn from n places, then from n - 1 and so on: what so many calls of
// drawIndex() give, at a fraction of the cost. At most n of them.
void drawIndices(int32_t n, std::span<int32_t> places);

// Turns a flat index `number` over groups of the given sizes into `group` and `rest`, the offset
// within it, all from 0. Result: 0; or 1 with both at -1 if the sizes run out.
int ConvertNum(std::span<const int32_t> sizes, int32_t number, int32_t& group, int32_t& rest);

} // namespace kva

#endif
