#include "distance/lowertriangle.h"

namespace kva {

LowerTriangle::LowerTriangle(std::size_t rows)
    : Rows(rows), Cells(std::make_unique_for_overwrite<uint32_t[]>(placeOf(rows))),
      Band(kBand * rows) {}

uint32_t* LowerTriangle::beginRow(std::size_t i) {
    Row = i;
    const std::size_t waiting = i % kBand; // rows of the band so far
    if (waiting == 0 && i > 0) {
        emptyBand();
    }
    uint32_t* const cells = Cells.get() + (placeOf(i) + i - waiting);
    for (std::size_t r = 0; r < waiting; ++r) {
        cells[r] = Band[r * Rows + i];
    }
    return Band.data() + waiting * Rows;
}

void LowerTriangle::emptyBand() {
    for (std::size_t j = Row; j < Rows; ++j) {
        uint32_t* const cells = Cells.get() + (placeOf(j) + Row - kBand);
        for (std::size_t r = 0; r < kBand; ++r) {
            cells[r] = Band[r * Rows + j];
        }
    }
}

} // namespace kva
