// LowerTriangle: the cells below the diagonal of a symmetric matrix that is written row by row, as
// codes of CellCodes. A cell is computed in the row of its pair above the diagonal and waits here
// for its mirror image.
#ifndef KVA_DISTANCE_LOWERTRIANGLE_H
#define KVA_DISTANCE_LOWERTRIANGLE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace kva {

class LowerTriangle {
  public:
    // What the cells of so many rows and columns take.
    static constexpr std::size_t bytes(std::size_t rows) {
        return rows * rows / 2 * sizeof(uint32_t);
    }

    explicit LowerTriangle(std::size_t rows); // of the matrix, and columns

    // Begins row i, from 0; rows come in their order, and row 0 begins a new matrix. Result: by
    // column, where the mirror images of the row's cells go; those right of the diagonal have to be
    // there before the next row begins.
    uint32_t* beginRow(std::size_t i);

    // The cells of the row left of the diagonal.
    std::span<const uint32_t> cells() const { return {Cells.get() + placeOf(Row), Row}; }

  private:
    // Rows of which the mirror images wait together. A column of theirs is a piece of a row of
    // Cells, so that these grow by pieces and not by single cells, which are far apart.
    static constexpr std::size_t kBand = 16;

    static std::size_t placeOf(std::size_t row) { return row * (row - 1) / 2; } // 0 for row 0
    void emptyBand(); // the one before Row

    std::size_t Rows;                  // of the matrix
    std::unique_ptr<uint32_t[]> Cells; // rows behind each other, each up to the diagonal
    std::vector<uint32_t> Band;        // kBand rows of the matrix; row i is the (i % kBand)th
    std::size_t Row = 0;               // begun last, from 0
};

} // namespace kva

#endif
