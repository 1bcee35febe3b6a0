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

int32_t idom = 0;                         // state of the Lehmer generator
int32_t iy = 0;                           // last value of the table; 0: the table is to be filled
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
            iv[static_cast<std::size_t>(j)] = static_cast<uint32_t>(idom);
        }
    }
    iy = static_cast<int32_t>(iv[0]);
}

// --- Many draws at once ----------------------------------------------------------------

// One step and more at once: the state times a power of the multiplier, modulo 2^31 - 1 by folding
// the high bits twice. A state is neither 0 nor the modulus, nor is the result.
constexpr uint32_t timesModulo(uint32_t state, uint32_t factor) {
    constexpr auto modulus = uint32_t{kModulus};
    const uint64_t product = uint64_t{state} * factor;
    const auto folded = static_cast<uint32_t>((product & modulus) + (product >> 31U));
    return (folded & modulus) + (folded >> 31U);
}

// Four states in turn, which are stepped side by side.
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

constexpr std::size_t kBlock = 256; // draws of a block
using Block = std::array<uint32_t, kBlock>;

// The states that follow idom: n, or up to three more. n from 1.
void stepAhead(Block& states, std::size_t n) {
    const auto state = static_cast<uint32_t>(idom);
    Quad quad = timesModulo({state, state, state, state}, kOneToFour);
    for (std::size_t k = 0; k < n; k += quad.size()) {
        std::memcpy(&states[k], &quad, sizeof quad);
        quad = timesModulo(quad, kFour);
    }
    idom = static_cast<int32_t>(states[n - 1]);
}

// Sends n states through the table: each goes in, and the value that comes out takes its place.
void passTable(Block& states, std::size_t n) {
    auto last = static_cast<uint32_t>(iy);
    const auto pass = [&last](uint32_t& state) {
        uint32_t& entry = iv[last / kDivisor];
        last = entry;
        entry = state;
        state = last;
    };
    const std::size_t whole = n / 4 * 4;
    for (std::size_t k = 0; k < whole; k += 4) {
        for (std::size_t m = 0; m < 4; ++m) {
            pass(states[k + m]);
        }
    }
    for (std::size_t k = whole; k < n; ++k) {
        pass(states[k]);
    }
    iy = static_cast<int32_t>(last);
}

constexpr int32_t kMostExact = 1 << 24; // the numbers up to it are exact in single precision

// The value that a number of the table gives.
float valueOf(uint32_t number) {
    constexpr auto limit = static_cast<float>(kLimit);
    const auto value = static_cast<float>(static_cast<int32_t>(number) * kScale);
    return value < limit ? value : limit;
}

// The next n numbers of the table: the Lehmer states first, which do not hang on the table.
void nextNumbers(Block& numbers, std::size_t n) {
    stepAhead(numbers, n);
    passTable(numbers, n);
}

// Whether the next draw only goes on: the state is in place and the table is filled.
bool isStarted() {
    return idom > 0 && iy != 0;
}

} // namespace

void srand2(long seed) {
    idom = static_cast<int32_t>(seed);
    iy = 0;
}

float rand2() {
    if (idom <= 0) {
        idom = idom == 0 ? 1 : -std::max(idom, -kModulus);
        fillTable();
    } else if (iy == 0) {
        fillTable();
    }
    lehmerStep();
    const auto j = static_cast<std::size_t>(iy / kDivisor);
    iy = static_cast<int32_t>(iv[j]);
    iv[j] = static_cast<uint32_t>(idom);
    const auto value = static_cast<float>(iy * kScale);
    return value > kLimit ? static_cast<float>(kLimit) : value;
}

void rand2Fill(std::span<float> values) {
    for (; !values.empty() && !isStarted(); values = values.subspan(1)) {
        values.front() = rand2();
    }
    Block numbers;
    while (!values.empty()) {
        const std::size_t size = std::min(values.size(), kBlock);
        nextNumbers(numbers, size);
        for (std::size_t k = 0; k < size; ++k) {
            values[k] = valueOf(numbers[k]);
        }
        values = values.subspan(size);
    }
}

// Below 2^24 places a product never reaches the number of places, so that indexOf's bound is not
// looked at.
void drawIndices(int32_t n, std::span<int32_t> places) {
    for (; !places.empty() && (n > kMostExact || !isStarted()); places = places.subspan(1)) {
        places.front() = drawIndex(n--);
    }
    Block numbers;
    while (!places.empty()) {
        const std::size_t size = std::min(places.size(), kBlock);
        nextNumbers(numbers, size);
        for (std::size_t k = 0; k < size; ++k, --n) {
            places[k] = static_cast<int32_t>(valueOf(numbers[k]) * static_cast<float>(n));
        }
        places = places.subspan(size);
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
