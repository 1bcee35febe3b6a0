#include "fstat/plain/MakeMix.h"

#include "fstat/jackknife.h"
#include "fstat/randsci.h"

#include <algorithm>
#include <numeric>

namespace kva {

namespace {

constexpr int32_t kMissing = -1;

// A drawn sample that is being filled.
struct Sample {
    SampleMap& map;
    long size;     // slots to be dealt
    long next = 0; // place to be dealt next

    void put(long slot, long pop) {
        if (next < size) { // a pair can reach one place beyond an odd sample
            map[0][next] = static_cast<int32_t>(slot);
            map[1][next] = static_cast<int32_t>(pop);
        }
        ++next;
    }
};

// A place left over, where both samples are odd and slots go in pairs, reads as missing.
void clearMap(SampleMap& map, long size, long pop) {
    std::fill_n(map[0].begin(), size, kMissing);
    std::fill_n(map[1].begin(), size, static_cast<int32_t>(pop));
}

// The tail of a jackknifed population stays at home.
void keepTail(SampleMap& map, long dealt, long size, long pop) {
    for (long c = dealt; c < size; ++c) {
        map[0][c] = static_cast<int32_t>(c);
        map[1][c] = static_cast<int32_t>(pop);
    }
}

// The circular walk of MakeMix over one population.
class Walk {
  public:
    Walk(long nA, long nB, SampleMap& map1, SampleMap& map2)
        : First{map1, nA}, Second{map2, nB},
          Border(static_cast<double>(nA) / static_cast<double>(nA + nB)) {}

    void population(long slots, long pop, long step) {
        const auto units = static_cast<int32_t>(slots / step);
        const int32_t start = units > 0 ? drawIndex(units) : 0;
        for (int32_t u = 0; u < units; ++u) {
            const long slot = (start + u) % units * step;
            const bool toFirst = rand2() > Border;
            Sample& chosen = toFirst ? First : Second;
            Sample& target = chosen.next < chosen.size ? chosen : toFirst ? Second : First;
            for (long k = 0; k < step; ++k) {
                target.put(slot + k, pop);
            }
        }
    }

  private:
    Sample First;
    Sample Second;
    double Border; // share of the first population
};

// The places of the global shuffle.
struct GlobalPlaces {
    std::vector<std::vector<int32_t>>& slot;
    std::vector<std::vector<int32_t>>& pop;

    void put(int32_t toPop, int32_t place, int32_t fromPop, int32_t fromSlot) {
        if (toPop < 0 || place < 0) { // a pair can reach over the edge of an odd population
            return;
        }
        slot[toPop][place] = fromSlot;
        pop[toPop][place] = fromPop;
    }
};

} // namespace

int MakeMix2(int permutation, int genotypes, int /*linked*/, int jackknife, long nA, long nB,
             long pop1, long pop2, SampleMap& map1, SampleMap& map2, std::vector<int32_t>& buffer) {
    const long dealtA = jackknife == 1 ? jackknifedSlots(nA) : nA;
    const long dealtB = jackknife == 1 ? jackknifedSlots(nB) : nB;
    const long all = dealtA + dealtB;
    buffer.resize(std::max(all, long{0}));
    std::iota(buffer.begin(), buffer.end(), 0);
    clearMap(map1, dealtA, pop1);
    clearMap(map2, dealtB, pop2);

    Sample one{map1, dealtA};
    Sample two{map2, dealtB};
    const long step = genotypes == 1 ? 2 : 1;
    for (long dealt = 0; dealt < all; dealt += step) {
        const auto units = static_cast<int32_t>(static_cast<long>(buffer.size()) / step);
        // A last single slot has no pair to be drawn from, but uses up its draw.
        const long r = std::max(drawIndex(units), 0) * step;
        const auto taken = buffer.begin() + r;
        const long pop = *taken < dealtA ? pop1 : pop2;
        const long base = *taken < dealtA ? 0 : dealtA;
        Sample& target = dealt < dealtA ? one : two;
        target.put(*taken - base, pop);
        if (step == 2) {
            target.put(taken + 1 < buffer.end() ? *(taken + 1) - base : kMissing, pop);
        }
        if (permutation == 1) {
            buffer.erase(taken, std::min(taken + step, buffer.end()));
        }
    }
    if (jackknife == 1) {
        keepTail(map1, dealtA, nA, pop1);
        keepTail(map2, dealtB, nB, pop2);
    }
    return 0;
}

int MakeMix(int permutation, int genotypes, int /*linked*/, long nA, long nB, long pop1, long pop2,
            SampleMap& map1, SampleMap& map2) {
    if (permutation != 1) {
        return 0;
    }
    clearMap(map1, nA, pop1);
    clearMap(map2, nB, pop2);
    const long step = genotypes == 1 ? 2 : 1;
    Walk walk(nA, nB, map1, map2);
    walk.population(nA, pop1, step);
    walk.population(nB, pop2, step);
    return 0;
}

int MakeMixGlobal(int nPop, std::vector<std::vector<int32_t>>& mapSlot,
                  std::vector<std::vector<int32_t>>& mapPop, std::span<const int32_t> groessen,
                  int gesamt, std::vector<int32_t>& buffer, int genotypes) {
    const std::span<const int32_t> sizes = groessen.first(nPop);
    GlobalPlaces places{mapSlot, mapPop};
    buffer.resize(gesamt);
    std::iota(buffer.begin(), buffer.end(), 0);
    if (gesamt == 0) {
        return 0;
    }
    const int32_t step = genotypes != 0 ? 2 : 1;
    int32_t rest = gesamt;
    int32_t fromPop = 0;
    int32_t from = 0;
    int32_t toPop = 0;
    int32_t to = 0;
    while (rest > step) {
        int32_t r = drawIndex(rest); // below 2^24 slots the rounding never reaches `rest`
        ConvertNum(sizes, buffer[r], fromPop, from);
        ConvertNum(sizes, rest - 1, toPop, to);
        if (step == 1) {
            places.put(toPop, to, fromPop, from);
        } else {
            // The slot drawn is the second (r odd) or the first of its pair.
            const int32_t second = r % 2 == 0 ? from + 1 : from;
            places.put(toPop, to, fromPop, second);
            places.put(toPop, to - 1, fromPop, second - 1);
            r -= r % 2;
        }
        rest -= step;
        if (r < rest) {
            std::copy(buffer.begin() + r + step, buffer.begin() + rest + step, buffer.begin() + r);
        }
    }
    ConvertNum(sizes, buffer[0], fromPop, from);
    ConvertNum(sizes, 1, toPop, to); // wanted: flat place 1 whatever the step
    if (step == 2) {
        places.put(toPop, to, fromPop, from + 1);
        --to;
    }
    places.put(toPop, to, fromPop, from);
    return 0;
}

} // namespace kva
