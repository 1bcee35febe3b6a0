#include "data/CMatrix.h"

#include <gtest/gtest.h>
#include <utility>

using namespace kva;

namespace {

// Rows and columns outside a matrix of 2 x 3 cells.
constexpr std::pair<int, int> kOutside[] = {{2, 0}, {0, 3}, {2, 3}, {-1, 0}, {0, -1}, {-1, -1}};

// 2 x 3 cells of the value row x 10 + column.
CMatrix twoByThree() {
    CMatrix matrix;
    matrix.Resize(2, 3);
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 3; ++j) {
            matrix(i, j) = i * 10 + j;
        }
    }
    return matrix;
}

} // namespace

TEST(CMatrix, IsEmptyAtFirst) {
    const CMatrix matrix;
    EXPECT_EQ(matrix.MaxZeile, -1);
    EXPECT_EQ(matrix.MaxSpalte, -1);
    EXPECT_EQ(matrix.Dummy, 0.0);
    EXPECT_EQ(matrix(0, 0), 0.0);
    EXPECT_EQ(matrix(5, -3), 0.0);
}

TEST(CMatrix, EveryPlaceOfAnEmptyMatrixIsTheSpareCell) {
    CMatrix matrix;
    matrix(0, 0) = 4.5;
    EXPECT_EQ(matrix.Dummy, 4.5);
    EXPECT_EQ(matrix(7, 7), 4.5);
    EXPECT_EQ(std::as_const(matrix)(-1, 2), 4.5);
}

TEST(CMatrix, MaximaAreIndicesNotNumbers) {
    CMatrix matrix;
    matrix.Resize(2, 3);
    EXPECT_EQ(matrix.MaxZeile, 1);
    EXPECT_EQ(matrix.MaxSpalte, 2);
}

TEST(CMatrix, CellsStartAtZero) {
    CMatrix matrix = twoByThree();
    matrix.Resize(3, 3);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            EXPECT_EQ(matrix(i, j), 0.0) << i << ' ' << j;
        }
    }
}

TEST(CMatrix, CellsAreApartFromEachOther) {
    const CMatrix matrix = twoByThree();
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 3; ++j) {
            EXPECT_EQ(matrix(i, j), i * 10 + j);
        }
    }
}

TEST(CMatrix, TheLastCellIsReachedAndNoneBehindIt) {
    CMatrix matrix = twoByThree();
    matrix(matrix.MaxZeile, matrix.MaxSpalte) = 99.0;
    EXPECT_EQ(matrix.Dummy, 0.0);
    EXPECT_EQ(&matrix(2, 2), &matrix.Dummy);
    EXPECT_EQ(&matrix(1, 3), &matrix.Dummy);
}

TEST(CMatrix, WritesOutsideLandInTheSpareCell) {
    for (const auto& [i, j] : kOutside) {
        CMatrix matrix = twoByThree();
        matrix(i, j) = -8.0;
        EXPECT_EQ(matrix.Dummy, -8.0) << i << ' ' << j;
        EXPECT_EQ(matrix(100, 100), -8.0) << i << ' ' << j;
        EXPECT_EQ(matrix.Daten, twoByThree().Daten) << i << ' ' << j;
    }
}

TEST(CMatrix, FillSetsEveryCellButTheSpareOne) {
    CMatrix matrix = twoByThree();
    matrix.Dummy = 3.0;
    matrix.Fill(-1.5);
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 3; ++j) {
            EXPECT_EQ(matrix(i, j), -1.5);
        }
    }
    EXPECT_EQ(matrix.Dummy, 3.0);
}

TEST(CMatrix, FillLeavesAnEmptyMatrixAlone) {
    CMatrix matrix;
    matrix.Fill(7.0);
    EXPECT_EQ(matrix(0, 0), 0.0);
}

TEST(CMatrix, ResizeToNoRowsEmptiesIt) {
    for (const int rows : {0, -1}) {
        CMatrix matrix = twoByThree();
        matrix.Resize(rows, 3);
        EXPECT_EQ(matrix.MaxZeile, -1);
        EXPECT_EQ(matrix.MaxSpalte, -1);
        EXPECT_EQ(matrix(0, 0), 0.0); // the spare cell
        EXPECT_EQ(&matrix(0, 0), &matrix.Dummy);
    }
}

TEST(CMatrix, RowsWithoutColumnsHaveNoCell) {
    for (const int columns : {0, -1}) {
        CMatrix matrix;
        matrix.Resize(2, columns);
        EXPECT_EQ(&matrix(0, 0), &matrix.Dummy);
        matrix.Fill(7.0);
        EXPECT_EQ(matrix.Dummy, 0.0);
    }
}
