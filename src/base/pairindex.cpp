#include "base/pairindex.h"

#include <cstdint>

namespace kva {

namespace {

template <class Number> int compare(const void* a, const void* b) {
    const Number first = *static_cast<const Number*>(a);
    const Number second = *static_cast<const Number*>(b);
    return first < second ? -1 : static_cast<int>(first > second);
}

} // namespace

int ConvertPoptoPoint(int i, int j, int n) {
    // The rows above row i hold n-1, n-2, ..., n-i pairs.
    const int64_t row = i;
    return static_cast<int>(row * (n - 1) - row * (row - 1) / 2 + j - i - 1);
}

int SortFST(const void* a, const void* b) {
    return compare<double>(a, b);
}
int SortLONG(const void* a, const void* b) {
    return compare<int32_t>(a, b);
}

} // namespace kva
