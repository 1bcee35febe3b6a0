#include "data/CMatrix.h"

#include <algorithm>

namespace kva {

void CMatrix::Resize(int32_t rows, int32_t cols) {
    MaxZeile = -1;
    MaxSpalte = -1;
    Daten.clear();
    if (rows > 0) {
        const int32_t columns = std::max(cols, 0);
        Daten.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), 0.0);
        MaxZeile = rows - 1;
        MaxSpalte = columns - 1;
    }
}

void CMatrix::Fill(double value) {
    std::fill(Daten.begin(), Daten.end(), value);
}

} // namespace kva
