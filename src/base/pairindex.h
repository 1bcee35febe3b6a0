// The place of a population pair in a list of all pairs, as the tables of the F-statistics have
// it, and comparisons for sorting.
#ifndef KVA_BASE_PAIRINDEX_H
#define KVA_BASE_PAIRINDEX_H

namespace kva {

// The place, from 0, of the pair i < j (both from 0) among n populations in the
// row-by-row list of the upper triangle. For n = 4 the pairs (0,1), (0,2), (0,3),
// (1,2), (1,3), (2,3) get 0 to 5. Nothing is checked.
int ConvertPoptoPoint(int i, int j, int n);

// Comparisons for qsort and its kin, ascending: -1, 0 or 1; 0 too for what is not a number.
int SortFST(const void* a, const void* b);  // two doubles
int SortLONG(const void* a, const void* b); // two 32-bit integers

} // namespace kva

#endif
