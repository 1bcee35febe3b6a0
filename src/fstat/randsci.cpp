#include "fstat/randsci.h"

#include "fstat/philox.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <ctime>

namespace kva {

namespace {

constexpr int32_t kMultiplier = 16807;
constexpr int32_t kModulus = 2147483647;
constexpr int32_t kQuotient = 127773; // Schrage: kModulus / kMultiplier
constexpr int32_t kRemainder = 2836;  // Schrage: kModulus % kMultiplier
constexpr int32_t kTableSize = 32;
constexpr int32_t kDivisor = 67108864;           // 1 + (kModulus - 1) / kTableSize
constexpr int32_t kWarmUp = 8;                   // steps thrown away before the table is filled
constexpr double kScale = 4.656612875245797e-10; // 1 / kModulus
constexpr double kLimit = 0.99999988;            // largest value handed out

constexpr std::size_t kBlock = 256; // values computed at once

// A thread's stream.
struct Stream {
    int32_t idom = 0; // state of the Lehmer generator, where Ahead ends
    int32_t iy = 0;   // last number of the table; 0: the table is to be filled
    std::array<uint32_t, kTableSize> iv = {}; // shuffle table

    bool Keyed = false; // of startUnit() instead
    PhiloxKey Key = {};
    PhiloxBlock Counter = {}; // of the next numbers

    std::array<float, kBlock> Ahead = {}; // values that are computed already
    std::size_t Next = 0;                 // the first of them that is not handed out
    std::size_t End = 0;                  // behind the last
};

constinit thread_local Stream Own;

// --- From the clock ---------------------------------------------------------------------

// One step by Schrage's method, which stays inside 32 bits.
void lehmerStep(int32_t& idom) {
    const int32_t k = idom / kQuotient;
    idom = kMultiplier * (idom - k * kQuotient) - kRemainder * k;
    if (idom < 0) {
        idom += kModulus;
    }
}

void fillTable(Stream& stream) {
    for (int32_t j = kTableSize + kWarmUp - 1; j >= 0; --j) {
        lehmerStep(stream.idom);
        if (j < kTableSize) {
            stream.iv[j] = static_cast<uint32_t>(stream.idom);
        }
    }
    stream.iy = static_cast<int32_t>(stream.iv[0]);
}

// One step and more at once: the state times a power of the multiplier, modulo 2^31 - 1 by folding
// the high bits twice. A state is neither 0 nor the modulus, nor is the result.
constexpr uint32_t timesModulo(uint32_t state, uint32_t factor) {
    constexpr auto modulus = uint32_t{kModulus};
    const uint64_t product = uint64_t{state} * factor;
    const auto folded = static_cast<uint32_t>((product & modulus) + (product >> 31U));
    return (folded & modulus) + (folded >> 31U);
}

// Four states in turn.
using Quad = std::array<uint32_t, 4>;

constexpr Quad timesModulo(const Quad& states, const Quad& factors) {
    Quad product = {};
    for (std::size_t k = 0; k < product.size(); ++k) {
        product[k] = timesModulo(states[k], factors[k]);
    }
    return product;
}

// One to four steps, and four for each.
constexpr uint32_t kTwoSteps = timesModulo(kMultiplier, kMultiplier);
constexpr uint32_t kThreeSteps = timesModulo(kTwoSteps, kMultiplier);
constexpr uint32_t kFourSteps = timesModulo(kThreeSteps, kMultiplier);
constexpr Quad kOneToFour = {kMultiplier, kTwoSteps, kThreeSteps, kFourSteps};
constexpr Quad kFour = {kFourSteps, kFourSteps, kFourSteps, kFourSteps};

using Block = std::array<uint32_t, kBlock>;

// The states that follow idom, which becomes the last of them.
Block stepAhead(int32_t& idom) {
    Block states;
    const auto state = static_cast<uint32_t>(idom);
    Quad quad = timesModulo({state, state, state, state}, kOneToFour);
    for (std::size_t k = 0; k < kBlock; k += quad.size()) {
        std::copy(quad.begin(), quad.end(), &states[k]);
        quad = timesModulo(quad, kFour);
    }
    idom = static_cast<int32_t>(states.back());
    return states;
}

// Sends states through the table: each goes in, and the number that comes out takes its place.
void passTable(Stream& stream, Block& states) {
    auto last = static_cast<uint32_t>(stream.iy);
    const auto pass = [&last, &stream](uint32_t& state) {
        uint32_t& entry = stream.iv[last / kDivisor];
        last = entry;
        entry = state;
        state = last;
    };
    constexpr std::size_t step = 8; // saves most of the counting
    for (std::size_t k = 0; k < kBlock; k += step) {
        for (std::size_t m = 0; m < step; ++m) {
            pass(states[k + m]);
        }
    }
    stream.iy = static_cast<int32_t>(last);
}

// Computes the next values: the Lehmer states first, which do not hang on the table and so run side
// by side, then the table, then what comes of each number.
void computeFromClock(Stream& stream) {
    if (stream.idom <= 0) {
        stream.idom = stream.idom == 0 ? 1 : -std::max(stream.idom, -kModulus);
        fillTable(stream);
    } else if (stream.iy == 0) {
        fillTable(stream);
    }
    Block numbers = stepAhead(stream.idom);
    passTable(stream, numbers);
    constexpr auto limit = static_cast<float>(kLimit);
    for (std::size_t k = 0; k < kBlock; ++k) {
        const auto value = static_cast<float>(static_cast<int32_t>(numbers[k]) * kScale);
        stream.Ahead[k] = value < limit ? value : limit;
    }
    // At 0, which the modulus as seed leads to, the stream starts anew.
    stream.End = stream.idom > 0 ? kBlock : 1;
}

// --- Of a unit ----------------------------------------------------------------------------

// The middles of 2^23 steps, so that neither 0 nor 1 is among them.
float unitValue(uint32_t number) {
    constexpr float kStep = 1.0F / (1 << 23);
    return (static_cast<float>(number >> 9U) + 0.5F) * kStep;
}

void computeOfUnit(Stream& stream) {
    for (std::size_t k = 0; k < kBlock; k += stream.Counter.size()) {
        const PhiloxBlock numbers = philox(stream.Counter, stream.Key);
        std::transform(numbers.begin(), numbers.end(), &stream.Ahead[k], unitValue);
        ++stream.Counter[0];
    }
    stream.End = kBlock;
}

// --- Either -------------------------------------------------------------------------------

[[gnu::noinline]] void computeAhead(Stream& stream) { // once for many values
    if (stream.Keyed) {
        computeOfUnit(stream);
    } else {
        computeFromClock(stream);
    }
    stream.Next = 0;
}

// The next values of the stream, from one to `most`. They stand until the next draw.
std::span<const float> nextValues(std::size_t most) {
    Stream& stream = Own;
    if (stream.Next == stream.End) {
        computeAhead(stream);
    }
    const std::size_t size = std::min(most, stream.End - stream.Next);
    const std::size_t first = stream.Next;
    stream.Next += size;
    return std::span(stream.Ahead).subspan(first, size);
}

constexpr int32_t kMostExact = 1 << 24; // the numbers up to it are exact in single precision

} // namespace

void srand2(long seed) {
    Own.Keyed = false;
    Own.idom = static_cast<int32_t>(seed);
    Own.iy = 0;
    Own.Next = Own.End;
}

void startUnit(uint64_t seed, UnitId unit) {
    Own.Keyed = true;
    Own.Key = {static_cast<uint32_t>(seed), static_cast<uint32_t>(seed >> 32U)};
    Own.Counter = {0, unit.Block, unit.Number, static_cast<uint32_t>(unit.Kind)};
    Own.Next = Own.End;
}

float rand2() {
    return nextValues(1).front();
}

void rand2Fill(std::span<float> values) {
    while (!values.empty()) {
        const std::span<const float> next = nextValues(values.size());
        std::copy(next.begin(), next.end(), values.begin());
        values = values.subspan(next.size());
    }
}

// Up to 2^24 places a product never reaches the number of places, so that indexOf's bound is not
// looked at.
void drawIndices(int32_t n, std::span<int32_t> places) {
    if (n > kMostExact) {
        std::generate(places.begin(), places.end(), [&n] { return drawIndex(n--); });
        return;
    }
    while (!places.empty()) {
        const std::span<const float> next = nextValues(places.size());
        for (std::size_t k = 0; k < next.size(); ++k, --n) {
            places[k] = static_cast<int32_t>(next[k] * static_cast<float>(n));
        }
        places = places.subspan(next.size());
    }
}

float random2(float bound) {
    return rand2() * bound;
}

float InternRand() {
    return rand2();
}

void InternStartRDGen() {
    if (!Own.Keyed) {
        srand2(static_cast<long>(std::time(nullptr)));
    }
}

int32_t drawIndex(int32_t n) {
    return indexOf(rand2(), n);
}

int ConvertNum(std::span<const int32_t> sizes, int32_t number, int32_t& group, int32_t& rest) {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (sizes[i] > number) {
            group = static_cast<int32_t>(i);
            rest = number;
            return 0;
        }
        number -= sizes[i];
    }
    group = -1;
    rest = -1;
    return 1;
}

} // namespace kva
