#include "distance/lowertriangle.h"

#include <gtest/gtest.h>

using namespace kva;

namespace {

// The cell of row r and column c, of different lengths.
std::string cell(int r, int c) {
    return std::to_string(r * c * c) + ',' + std::to_string(c) + ';';
}

// Puts the cells of a matrix in and takes every row out again.
void expectAllRows(LowerTriangle& triangle, int rows) {
    for (int i = 0; i < rows; ++i) {
        triangle.beginRow(i);
        std::string expected;
        for (int c = 0; c < i; ++c) {
            expected += cell(i, c);
        }
        EXPECT_EQ(triangle.cells(), expected) << "row " << i << " of " << rows;
        for (int j = i + 1; j < rows; ++j) {
            triangle.add(j, cell(j, i));
        }
    }
}

} // namespace

// Sizes around the number of rows that are taken over at a time.
TEST(LowerTriangle, EveryRowFindsItsCells) {
    for (const int rows : {0, 1, 2, 3, 15, 16, 17, 31, 32, 33, 50}) {
        LowerTriangle triangle(rows);
        expectAllRows(triangle, rows);
    }
}

TEST(LowerTriangle, AFurtherMatrixStartsEmpty) {
    LowerTriangle triangle(40);
    expectAllRows(triangle, 40);
    expectAllRows(triangle, 40);
}

TEST(LowerTriangle, LongCellsAreKept) {
    const std::string wide(40000, 'x');
    LowerTriangle triangle(40);
    triangle.beginRow(0);
    for (int j = 1; j < 40; ++j) {
        triangle.add(j, wide);
    }
    for (int i = 1; i < 20; ++i) {
        triangle.beginRow(i);
        for (int j = i + 1; j < 40; ++j) {
            triangle.add(j, "");
        }
    }
    EXPECT_EQ(triangle.cells(), wide);
}
