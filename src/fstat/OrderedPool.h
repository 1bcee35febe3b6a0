// OrderedPool: items of which the r-th remaining one is taken again and again, order kept: what a
// shuffle without replacement needs.
//
// The items stand in leaves of 16, so that a take closes a gap within one leaf. Running totals tell
// which leaf that is: 16 leaves have a node with the number of items left before each of them, 8
// such nodes a node of their own, and 16 of those again. What is beyond, from 32768 items on,
// is halved again and again. So a take costs by the number of levels, as log(n) grows.
#ifndef KVA_FSTAT_ORDEREDPOOL_H
#define KVA_FSTAT_ORDEREDPOOL_H

#include "fstat/RunningTotals.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace kva {

// Item: an integer.
template <class Item> class OrderedPool {
  public:
    // Items of a leaf, and of a node of each level.
    static constexpr std::size_t kLeaf = 16;
    static constexpr std::size_t kLow = 16 * kLeaf;
    static constexpr std::size_t kMiddle = 8 * kLow;
    static constexpr std::size_t kHigh = 16 * kMiddle;

    // Holds the items of `first` and behind them those of `second`, nothing else.
    void fill(std::span<const Item> first, std::span<const Item> second = {}) {
        const std::size_t n = first.size() + second.size();
        Levels = 0;
        if (n <= kLeaf) {
            append(second, append(first, Leaves[0].data()));
            return;
        }
        fillLeaves(first, second);
        fillNodes(Low, n, kLow, kLeaf);
        if (n > kLow) {
            fillNodes(Middle, n, kMiddle, kLow);
        }
        if (n > kMiddle) {
            fillNodes(High, n, kHigh, kMiddle);
        }
        if (n > kHigh) {
            fillHalves(std::bit_ceil(High.size()));
        }
    }

    // Takes an item for each place and writes it to the same position of `dealt`. A place, from 0,
    // counts among the items that are left when its turn comes.
    void deal(std::span<const int32_t> places, std::span<Item> dealt) {
        switch (Levels) {
        case 0:
            return dealFrom<0>(places, dealt);
        case 1:
            return dealFrom<1>(places, dealt);
        case 2:
            return dealFrom<2>(places, dealt);
        case 3:
            return dealFrom<3>(places, dealt);
        default:
            return dealFrom<4>(places, dealt);
        }
    }

    // Removes and returns the r-th remaining item, r from 0, below the number of items left.
    Item take(int32_t r) {
        Item item = 0;
        deal({&r, 1}, {&item, 1});
        return item;
    }

  private:
    // The items left, in order, and room for as many behind: closing a gap moves 16 at once.
    using Leaf = std::array<Item, 2 * kLeaf>;
    using LowNode = RunningTotals<uint8_t, kLow / kLeaf>;
    using MiddleNode = RunningTotals<uint16_t, kMiddle / kLow>;
    using HighNode = RunningTotals<uint16_t, kHigh / kMiddle>;

    // Where everything stands, held in registers while a deal lasts.
    struct Levelled {
        Leaf* Leaves;
        LowNode* Low;
        MiddleNode* Middle;
        HighNode* High;
        std::span<std::size_t> Halves;

        // Takes item r: walks down `Depth` levels to its leaf. r becomes the place in each part.
        template <int Depth> Item take(std::size_t r) const {
            std::size_t part = 0;
            if constexpr (Depth > 3) {
                for (std::size_t half = Halves.size() / 2; half > 0; half /= 2) {
                    std::size_t& left = Halves[part + half];
                    if (r < left) {
                        --left;
                    } else {
                        r -= left;
                        part += half;
                    }
                }
            }
            if constexpr (Depth > 2) {
                part = part * (kHigh / kMiddle) + High[part].take(r);
            }
            if constexpr (Depth > 1) {
                part = part * (kMiddle / kLow) + Middle[part].take(r);
            }
            if constexpr (Depth > 0) {
                part = part * (kLow / kLeaf) + Low[part].take(r);
            }
            return takeFromLeaf(Leaves[part].data() + r);
        }
    };

    // Writes items to `end` and returns the new end.
    static Item* append(std::span<const Item> items, Item* end) {
        return std::copy(items.begin(), items.end(), end);
    }

    void fillLeaves(std::span<const Item> first, std::span<const Item> second) {
        const std::size_t leaves = (first.size() + second.size()) / kLeaf + 1;
        Leaves.resize(std::max(leaves, Leaves.size()));
        Items.resize(leaves * kLeaf);
        append(second, append(first, Items.data()));
        for (std::size_t leaf = 0; leaf < leaves; ++leaf) {
            std::memcpy(Leaves[leaf].data(), &Items[leaf * kLeaf], kLeaf * sizeof(Item));
        }
    }

    // Adds a level of nodes for n items.
    template <class Node>
    void fillNodes(std::vector<Node>& nodes, std::size_t n, std::size_t nodeSize,
                   std::size_t partSize) {
        nodes.resize((n - 1) / nodeSize + 1);
        for (Node& node : nodes) {
            node.fill(std::min(n, nodeSize), partSize);
            n -= std::min(n, nodeSize);
        }
        ++Levels;
    }

    // Adds the level of halves for a number of nodes, a power of 2. Nodes that are not filled, or
    // not there, count as full: nothing lies behind them.
    void fillHalves(std::size_t nodes) {
        Halves.resize(nodes);
        for (std::size_t k = 1; k < nodes; ++k) {
            Halves[k] = (k & (~k + 1)) * kHigh;
        }
        ++Levels;
    }

    template <int Depth> void dealFrom(std::span<const int32_t> places, std::span<Item> dealt) {
        const Levelled levels = {Leaves.data(), Low.data(), Middle.data(), High.data(), Halves};
        for (std::size_t k = 0; k < places.size(); ++k) {
            dealt[k] = levels.template take<Depth>(static_cast<std::size_t>(places[k]));
        }
    }

    static Item takeFromLeaf(Item* place) {
        const Item item = *place;
        std::array<Item, kLeaf> behind;
        std::memcpy(behind.data(), place + 1, sizeof behind);
        std::memcpy(place, behind.data(), sizeof behind);
        return item;
    }

    int Levels = 0;                                  // of nodes; the halves are one, too
    std::vector<Item> Items;                         // in a row, on their way into the leaves
    std::vector<Leaf> Leaves = std::vector<Leaf>(1); // never fewer
    std::vector<LowNode> Low;
    std::vector<MiddleNode> Middle;
    std::vector<HighNode> High;
    // Items left in some nodes of High: at k, in those from k less its lowest bit to before k.
    std::vector<std::size_t> Halves;
};

} // namespace kva

#endif
