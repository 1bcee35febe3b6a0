// OrderedPool: items 0..n-1 from which the r-th remaining one is taken again and
// again, order kept: what a shuffle without replacement needs.
//
// A small pool closes the gap by moving the items behind; a large one keeps the number
// of remaining items in a binary indexed tree (Fenwick 1994), so that a whole deal costs
// n log n. Both give the same items.
#ifndef KVA_FSTAT_ORDEREDPOOL_H
#define KVA_FSTAT_ORDEREDPOOL_H

#include <cstdint>
#include <cstring>
#include <vector>

class OrderedPool {
  public:
    static constexpr int32_t kTreeFrom = 1024; // items from which the tree is used

    // Holds items 0..n-1 again.
    void fill(int32_t n);

    int32_t remaining() const { return Remaining; }

    // Removes and returns the r-th remaining item, r from 0.
    int32_t take(int32_t r) { return InTree ? takeFromTree(r) : takeFromList(r); }

  private:
    int32_t takeFromList(int32_t r) {
        int32_t* const place = Items.data() + r;
        const int32_t item = *place;
        --Remaining;
        std::memmove(place, place + 1, static_cast<std::size_t>(Remaining - r) * sizeof(int32_t));
        return item;
    }
    int32_t takeFromTree(int32_t r);
    void fillTree(int32_t n);

    std::vector<int32_t> Items; // list: the remaining items in order
    std::vector<int32_t> Tree;  // tree: node k counts the items left in its range, k from 1
    int32_t Remaining = 0;
    int32_t Width = 0; // leaves of the tree, a power of two
    bool InTree = false;
};

#endif
