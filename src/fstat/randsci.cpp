#include "fstat/randsci.h"

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

int32_t idom = 0;                         // state of the Lehmer generator, where Ahead ends
int32_t iy = 0;                           // last number of the table; 0: the table is to be filled
std::array<uint32_t, kTableSize> iv = {}; // shuffle table

// One step by Schrage's method, which stays inside 32 bits.
void lehmerStep() {
    const int32_t k = idom / kQuotient;
    idom = kMultiplier * (idom - k * kQuotient) - kRemainder * k;
    if (idom < 0) {
        idom += kModulus;
    }
}

void fillTable() {
    for (int32_t j = kTableSize + kWarmUp - 1; j >= 0; --j) {
        lehmerStep();
        if (j < kTableSize) {
            iv[j] = static_cast<uint32_t>(idom);
        }
    }
    iy = static_cast<int32_t>(iv[0]);
}

// --- Many values at once ----------------------------------------------------------------

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

constexpr std::size_t kBlock = 256;
using Block = std::array<uint32_t, kBlock>;

// The states that follow idom.
Block stepAhead() {
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
void passTable(Block& states) {
    auto last = static_cast<uint32_t>(iy);
    const auto pass = [&last](uint32_t& state) {
        uint32_t& entry = iv[last / kDivisor];
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
    iy = static_cast<int32_t>(last);
}

std::array<float, kBlock> Ahead; // values of the stream that are computed already
std::size_t Next = 0;            // the first of them that is not handed out
std::size_t End = 0;             // behind the last

// Computes the next values: the Lehmer states first, which do not hang on the table and so run side
// by side, then the table, then what comes of each number.
void computeAhead() {
    if (idom <= 0) {
        idom = idom == 0 ? 1 : -std::max(idom, -kModulus);
        fillTable();
    } else if (iy == 0) {
        fillTable();
    }
    Block numbers = stepAhead();
    passTable(numbers);
    constexpr auto limit = static_cast<float>(kLimit);
    for (std::size_t k = 0; k < kBlock; ++k) {
        const auto value = static_cast<float>(static_cast<int32_t>(numbers[k]) * kScale);
        Ahead[k] = value < limit ? value : limit;
    }
    Next = 0;
    End = idom > 0 ? kBlock : 1; // at 0, which the modulus as seed leads to, the stream starts anew
}

// The next values of the stream, from one to `most`. They stand until the next draw.
std::span<const float> nextValues(std::size_t most) {
    if (Next == End) {
        computeAhead();
    }
    const std::size_t size = std::min(most, End - Next);
    const std::size_t first = Next;
    Next += size;
    return std::span(Ahead).subspan(first, size);
}

constexpr int32_t kMostExact = 1 << 24; // the numbers up to it are exact in single precision

} // namespace

void srand2(long seed) {
    idom = static_cast<int32_t>(seed);
    iy = 0;
    Next = End;
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
    srand2(static_cast<long>(std::time(nullptr)));
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
