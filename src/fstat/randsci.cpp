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

// --- Values by blocks ---------------------------------------------------------------------

constexpr std::size_t kStride = 8;  // steps between a state and the one made from it
constexpr std::size_t kTurns = 8;   // turns of the shuffle table written out in a row
constexpr std::size_t kBlock = 512; // values made at once
constexpr uint32_t kMask = kModulus;
constexpr int kBits = 31; // kModulus is 2^31 - 1

// What a product of two states leaves modulo 2^31 - 1: the high bits folded onto the low ones,
// twice, since the first sum may still have 32 bits. No product is a multiple of the modulus.
constexpr uint32_t reduced(uint64_t product) {
    const auto sum = static_cast<uint32_t>((product & kMask) + (product >> kBits));
    return (sum & kMask) + (sum >> kBits);
}

// The multipliers of 1, 2, ... steps.
constexpr std::array<uint32_t, kStride> kPowers = [] {
    std::array<uint32_t, kStride> powers{kMultiplier};
    for (std::size_t i = 1; i < kStride; ++i) {
        powers[i] = reduced(uint64_t{powers[i - 1]} * kMultiplier);
    }
    return powers;
}();

// The states of one block, made ahead; the values drawn take their places.
class StateBlock {
  public:
    // The n states that follow on `state`, at most kBlock. Each of them follows on the one a stride
    // before, so that none waits for its neighbour.
    void step(uint32_t state, std::size_t n) {
        for (std::size_t i = 0; i < kStride; ++i) {
            Items[i] = reduced(uint64_t{state} * kPowers[i]);
        }
        for (std::size_t i = kStride; i < n; ++i) {
            Items[i] = reduced(uint64_t{Items[i - kStride]} * kPowers[kStride - 1]);
        }
    }

    // The place that the last value names gives the next one and takes a state. Result: the last
    // value of n.
    uint32_t shuffle(uint32_t last, std::size_t n) {
        std::size_t i = 0;
        for (; i + kTurns <= n; i += kTurns) {
            for (std::size_t turn = 0; turn < kTurns; ++turn) {
                last = exchange(last, Items[i + turn]);
            }
        }
        for (; i < n; ++i) {
            last = exchange(last, Items[i]);
        }
        return last;
    }

    // The values drawn, scaled, one a place of `values`.
    void scale(std::span<float> values) const {
        constexpr auto limit = static_cast<float>(kLimit);
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = std::min(static_cast<float>(int32_t(Items[i]) * kScale), limit);
        }
    }

    uint32_t operator[](std::size_t i) const { return Items[i]; }

  private:
    static uint32_t exchange(uint32_t last, uint32_t& item) {
        int32_t& entry = iv[last / kDivisor];
        const auto drawn = static_cast<uint32_t>(entry);
        entry = static_cast<int32_t>(item);
        item = drawn;
        return drawn;
    }

    std::array<uint32_t, kBlock> Items;
};

// The next values of a stream that runs, at most kBlock.
void fillBlock(std::span<float> values) {
    StateBlock block;
    block.step(static_cast<uint32_t>(idom), values.size());
    idom = static_cast<int32_t>(block[values.size() - 1]);
    iy = static_cast<int32_t>(block.shuffle(static_cast<uint32_t>(iy), values.size()));
    block.scale(values);
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

// Values are made by blocks, in three loops of which only the middle one waits for its own last
// turn: the Lehmer steps, then the places of the shuffle table, then the scaling.
void rand2Fill(std::span<float> values) {
    while (!values.empty() && (idom <= 0 || iy == 0)) { // the stream is to be started
        values.front() = rand2();
        values = values.subspan(1);
    }
    while (!values.empty()) {
        const std::size_t n = std::min(values.size(), kBlock);
        fillBlock(values.first(n));
        values = values.subspan(n);
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
