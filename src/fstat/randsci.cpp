#include "fstat/randsci.h"

#include <algorithm>
#include <array>
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

int32_t idom = 0;                        // state of the Lehmer generator
int32_t iy = 0;                          // last value of the table; 0: the table is to be filled
std::array<int32_t, kTableSize> iv = {}; // shuffle table

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
            iv[static_cast<std::size_t>(j)] = idom;
        }
    }
    iy = iv[0];
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
    iy = iv[j];
    iv[j] = idom;
    const auto value = static_cast<float>(iy * kScale);
    return value > kLimit ? static_cast<float>(kLimit) : value;
}

// The state stays in registers, and the Lehmer step is the same product modulo 2^31 - 1 by
// folding the high bits instead of Schrage's division.
void rand2Fill(std::span<float> values) {
    while (!values.empty() && (idom <= 0 || iy == 0)) { // the stream is to be started
        values.front() = rand2();
        values = values.subspan(1);
    }
    constexpr auto limit = static_cast<float>(kLimit);
    auto state = static_cast<uint64_t>(idom);
    auto last = static_cast<uint32_t>(iy);
    for (float& value : values) {
        state *= kMultiplier;
        state = (state & kModulus) + (state >> 31U);
        state = state >= kModulus ? state - kModulus : state;
        int32_t& entry = iv[last / kDivisor];
        last = static_cast<uint32_t>(entry);
        entry = static_cast<int32_t>(state);
        value = std::min(static_cast<float>(static_cast<int32_t>(last) * kScale), limit);
    }
    idom = static_cast<int32_t>(state);
    iy = static_cast<int32_t>(last);
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
