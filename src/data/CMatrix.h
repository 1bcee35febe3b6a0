// CMatrix: a table of doubles with guarded cell access. Rows and columns count from 0.
#ifndef KVA_DATA_CMATRIX_H
#define KVA_DATA_CMATRIX_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kva {

class CMatrix {
  public:
    // An empty matrix.
    CMatrix() = default;

    // Drops what is there and makes `rows` x `cols` cells of 0.0. With `rows` of 0
    // or less the matrix stays empty; with `cols` of 0 or less it has rows without
    // cells, so that every access reaches Dummy.
    void Resize(int32_t rows, int32_t cols);

    // Sets every existing cell to `value`; an empty matrix is left alone.
    void Fill(double value);

    // The cell (i, j), both from 0. A place outside the matrix is never an error:
    // it stands for the spare cell Dummy, for reading and for writing.
    double& operator()(int32_t i, int32_t j) { return contains(i, j) ? Daten[place(i, j)] : Dummy; }
    double operator()(int32_t i, int32_t j) const {
        return contains(i, j) ? Daten[place(i, j)] : Dummy;
    }

    int32_t MaxZeile = -1;     // index of the last row, -1 while empty; not the row count
    int32_t MaxSpalte = -1;    // index of the last column, -1 while there is none
    std::vector<double> Daten; // the cells, row by row
    double Dummy = 0.0;        // stands for every cell that does not exist

  private:
    // True for a cell that exists.
    bool contains(int32_t i, int32_t j) const {
        return i >= 0 && j >= 0 && i <= MaxZeile && j <= MaxSpalte;
    }
    // The place in Daten of a cell that exists.
    std::size_t place(int32_t i, int32_t j) const {
        return static_cast<std::size_t>(i) * (static_cast<std::size_t>(MaxSpalte) + 1) +
               static_cast<std::size_t>(j);
    }
};

} // namespace kva

#endif
