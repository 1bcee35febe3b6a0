// RunningTotals: how many items are left before each part of a pool, of 8 or 16 parts.
//
// All totals are compared with a place at once, in vectors of 16 bytes; a compiler that has no such
// instructions makes loops of them.
#ifndef KVA_FSTAT_RUNNINGTOTALS_H
#define KVA_FSTAT_RUNNINGTOTALS_H

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kva {

// 16 bytes that are computed side by side.
using Bytes [[gnu::vector_size(16)]] = uint8_t;

// A bit for each byte, the first lowest: whether its highest bit is set.
inline uint32_t highBits(Bytes bytes) {
#ifdef __SSE2__
    return static_cast<uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(bytes)));
#else
    uint32_t bits = 0;
    for (uint32_t k = 0; k < sizeof bytes; ++k) {
        bits |= uint32_t{bytes[k]} >> 7U << k;
    }
    return bits;
#endif
}

// The number of the highest bit that is set, from 0; there is one.
inline std::size_t lastBit(uint32_t bits) {
    return 31U ^ static_cast<uint32_t>(__builtin_clz(bits));
}

// Total: uint8_t or uint16_t, wide enough for the totals and for a place. Parts: enough to fill one
// or two vectors.
template <class Total, std::size_t Parts> class RunningTotals {
  public:
    // n items, in parts of `partSize` but for the last; parts without items are behind all.
    void fill(std::size_t n, std::size_t partSize) {
        for (std::size_t k = 0; k < Parts; ++k) {
            Before[k] = static_cast<Total>(std::min(k * partSize, n));
        }
    }

    // Takes the item at place r, from 0, below the number of items left. Returns the number of its
    // part, from 0, and sets r to its place there.
    std::size_t take(std::size_t& r) {
        uint32_t bits = 0; // of each byte: it belongs to a part that begins at r or before
        for (std::size_t v = 0; v < kVectors; ++v) {
            Lanes before;
            std::memcpy(&before, &Before[v * kLanes], sizeof before);
            const auto upTo = std::bit_cast<Lanes>(before <= Lanes{} + static_cast<Total>(r));
            before += ~upTo; // one less behind: all ones are -1
            std::memcpy(&Before[v * kLanes], &before, sizeof before);
            bits |= highBits(std::bit_cast<Bytes>(upTo)) << 16U * v;
        }
        const std::size_t part = lastBit(bits) / sizeof(Total);
        r -= Before[part];
        return part;
    }

  private:
    using Lanes [[gnu::vector_size(16)]] = Total;
    static constexpr std::size_t kLanes = sizeof(Lanes) / sizeof(Total);
    static constexpr std::size_t kVectors = Parts / kLanes;
    static_assert(kVectors * kLanes == Parts);

    alignas(16) std::array<Total, Parts> Before; // ascending
};

} // namespace kva

#endif
