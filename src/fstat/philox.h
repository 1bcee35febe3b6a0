// Philox4x32-10: random numbers by place. A block of four numbers is a function of a counter and a
// key, so that any number of streams stand side by side without a state that they share (Salmon,
// Moraes, Dror and Shaw 2011, Parallel random numbers: as easy as 1, 2, 3).
#ifndef KVA_FSTAT_PHILOX_H
#define KVA_FSTAT_PHILOX_H

#include <array>
#include <cstdint>

namespace kva {

using PhiloxBlock = std::array<uint32_t, 4>;
using PhiloxKey = std::array<uint32_t, 2>;

// The four numbers at a counter under a key, each uniform over 32 bits.
constexpr PhiloxBlock philox(PhiloxBlock counter, PhiloxKey key) {
    constexpr uint64_t kMultiplier0 = 0xD2511F53;
    constexpr uint64_t kMultiplier1 = 0xCD9E8D57;
    constexpr PhiloxKey kWeyl = {0x9E3779B9, 0xBB67AE85}; // golden ratio, root of 3
    constexpr int kRounds = 10;
    for (int round = 0; round < kRounds; ++round) {
        const uint64_t product0 = kMultiplier0 * counter[0];
        const uint64_t product1 = kMultiplier1 * counter[2];
        counter = {static_cast<uint32_t>(product1 >> 32U) ^ counter[1] ^ key[0],
                   static_cast<uint32_t>(product1),
                   static_cast<uint32_t>(product0 >> 32U) ^ counter[3] ^ key[1],
                   static_cast<uint32_t>(product0)};
        key = {key[0] + kWeyl[0], key[1] + kWeyl[1]};
    }
    return counter;
}

} // namespace kva

#endif
