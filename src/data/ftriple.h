// The F-statistics of all population pairs: three square matrices, and the three
// values of one pair.
#ifndef KVA_DATA_FTRIPLE_H
#define KVA_DATA_FTRIPLE_H

#include "data/CMatrix.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kva {

// Places in an F-triple and rows of the table of the global statistics.
namespace FRow {
constexpr int32_t Fst = 0;       // theta: correlation of genes within populations (Weir and
                                 // Cockerham 1984)
constexpr int32_t Fit = 1;       // capital F: correlation of genes within individuals (same)
constexpr int32_t Fis = 2;       // small f: that within individuals within populations (same)
constexpr int32_t Gst = 3;       // global table only (Nei 1973)
constexpr int32_t GstStrich = 4; // Gst', global table only (Hedrick 2005)
constexpr int32_t Anzahl = 5;    // rows of the global table
} // namespace FRow

// Fst, Fit, Fis of all pairs, populations counted from 0. Each matrix is symmetric
// but for p-values, which keep the corrected ones below the diagonal. A pair without a value has
// Run::DistFehlerwert.
using FTriple = std::array<CMatrix, 3>;

// Fst, Fit and Fis of one pair or one table, at the places of FRow.
using FValues = std::array<double, 3>;

// Makes three matrices of n x n cells of 0.0.
inline FTriple newFTriple(int32_t n) {
    FTriple f;
    for (CMatrix& matrix : f) {
        matrix.Resize(n, n);
    }
    return f;
}

} // namespace kva

#endif
