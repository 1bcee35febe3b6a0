#include "fstat/OrderedPool.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace kva {

void OrderedPool::fill(int32_t n) {
    Remaining = n;
    InTree = n >= kTreeFrom;
    if (InTree) {
        fillTree(n);
        return;
    }
    List.resize(static_cast<std::size_t>(n) + Block().size() + 1);
    std::iota(List.begin(), List.begin() + n, uint16_t{0});
}

// Node k covers the items from k minus its lowest bit to k - 1; items from n on do not exist.
void OrderedPool::fillTree(int32_t n) {
    Width = static_cast<int32_t>(std::bit_ceil(static_cast<uint32_t>(n)));
    Tree.resize(static_cast<std::size_t>(Width) + 1);
    for (int32_t k = 1; k <= Width; ++k) {
        const int32_t first = k & (k - 1);
        Tree[static_cast<std::size_t>(k)] = std::max(std::min(k, n) - first, 0);
    }
}

// Walks down to the item and takes it off every node that covers it.
int32_t OrderedPool::takeFromTree(int32_t r) {
    std::size_t place = 0;
    for (auto step = static_cast<std::size_t>(Width) / 2; step > 0; step /= 2) {
        int32_t& node = Tree[place + step];
        const bool behind = node <= r; // the item lies behind this node's range
        r -= behind ? node : 0;
        place += behind ? step : 0;
        node -= behind ? 0 : 1;
    }
    return static_cast<int32_t>(place);
}

} // namespace kva
