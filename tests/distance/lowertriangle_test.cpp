#include "distance/lowertriangle.h"

#include <gtest/gtest.h>

using namespace kva;

namespace {

// The cell of row r and column c, another one in each matrix.
uint32_t cell(std::size_t matrix, std::size_t r, std::size_t c) {
    return static_cast<uint32_t>(1000000 * matrix + 1000 * r + c);
}

// Puts the cells of a matrix in and takes every row out again.
void expectAllRows(LowerTriangle& triangle, std::size_t rows, std::size_t matrix) {
    for (std::size_t i = 0; i < rows; ++i) {
        uint32_t* const mirror = triangle.beginRow(i);
        const auto cells = triangle.cells();
        ASSERT_EQ(cells.size(), i);
        for (std::size_t c = 0; c < i; ++c) {
            ASSERT_EQ(cells[c], cell(matrix, i, c)) << "row " << i << " of " << rows;
        }
        for (std::size_t j = i + 1; j < rows; ++j) {
            mirror[j] = cell(matrix, j, i);
        }
    }
}

} // namespace

// Sizes around the number of rows that wait together, and twice on each object: a further matrix
// begins anew.
TEST(LowerTriangle, EveryRowFindsItsCells) {
    for (const std::size_t rows : {0U, 1U, 2U, 3U, 15U, 16U, 17U, 31U, 32U, 33U, 50U}) {
        LowerTriangle triangle(rows);
        expectAllRows(triangle, rows, 1);
        expectAllRows(triangle, rows, 2);
    }
}

// Half of 100 x 100 cells of 4 bytes.
TEST(LowerTriangle, Bytes) {
    EXPECT_EQ(LowerTriangle::bytes(100), 20000U);
}
