// OrderedPool: items 0..n-1 from which the r-th remaining one is taken again and
// again, order kept: what a shuffle without replacement needs.
//
// A small pool closes the gap by moving the items behind; a large one keeps the number
// of remaining items in a binary indexed tree (Fenwick 1994), so that a whole deal costs
// n log n. Both give the same items.
#ifndef KVA_FSTAT_ORDEREDPOOL_H
#define KVA_FSTAT_ORDEREDPOOL_H

#include "fstat/randsci.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace kva {

class OrderedPool {
  public:
    static constexpr int32_t kTreeFrom = 2048; // items from which the tree is used

    // Holds items 0..n-1 again, n from 0.
    void fill(int32_t n);

    // Removes and returns the r-th remaining item, r from 0, below the number of items left.
    int32_t take(int32_t r) {
        const int32_t rest = Remaining--;
        return InTree ? takeFromTree(r) : takeFromList(List.data(), rest, r);
    }

    // Fills the pool with n items and takes one for each value of the random stream into the same
    // place of `items`; values: n of them at most. A value stands for a place among Scale for each
    // remaining item (indexOf). What is left stays for take().
    template <int32_t Scale>
    void deal(int32_t n, std::span<const float> values, std::span<int32_t> items) {
        fill(n);
        uint16_t* const list = List.data();
        for (std::size_t k = 0; k < values.size(); ++k, --n) {
            const int32_t r = indexOf(values[k], Scale * n) / Scale;
            items[k] = InTree ? takeFromTree(r) : takeFromList(list, n, r);
        }
        Remaining = n;
    }

  private:
    // Items that are moved at once, and the largest number that is moved that way. Behind the
    // last item lies room for a block.
    using Block = std::array<uint16_t, 8>;
    static constexpr std::ptrdiff_t kMostByBlock = 64;

    // Removes and returns item r, from 0, of the `rest` items in `list`.
    static int32_t takeFromList(uint16_t* list, int32_t rest, int32_t r) {
        uint16_t* const end = list + rest - 1;
        uint16_t* place = list + r;
        const int32_t item = *place;
        if (end - place > kMostByBlock) {
            std::memmove(place, place + 1, static_cast<std::size_t>(end - place) * sizeof *place);
            return item;
        }
        for (; place < end; place += Block().size()) {
            Block block;
            std::memcpy(&block, place + 1, sizeof block);
            std::memcpy(place, &block, sizeof block);
        }
        return item;
    }
    int32_t takeFromTree(int32_t r); // take() in the tree
    void fillTree(int32_t n);        // the tree of items 0..n-1

    std::vector<uint16_t> List; // list: the remaining items in order, then room
    std::vector<int32_t> Tree;  // tree: node k counts the items left in its range, k from 1
    int32_t Remaining = 0;      // items
    int32_t Width = 0;          // leaves of the tree, a power of two
    bool InTree = false;        // the tree holds the items, else the list
};

} // namespace kva

#endif
