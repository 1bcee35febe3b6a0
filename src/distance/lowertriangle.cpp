#include "distance/lowertriangle.h"

namespace kva {

namespace {

constexpr std::size_t kCellSize = 9; // of most cells

} // namespace

LowerTriangle::LowerTriangle(int32_t rows) : Cells(static_cast<std::size_t>(rows)), Band(kBand) {
    for (std::size_t row = 0; row < Cells.size(); ++row) {
        Cells[row].reserve(row * kCellSize);
    }
}

void LowerTriangle::beginRow(int32_t i) {
    if (i == 0) {
        BandEnd = kBand;
        for (std::string& cells : Cells) {
            cells.clear();
        }
    } else if (i == BandEnd) {
        emptyBand();
        BandEnd += kBand;
    }
    Row = i;
    Waiting& waiting = Band[static_cast<std::size_t>(i % kBand)];
    waiting.Text.clear();
    waiting.Lengths.clear();
    waiting.Read = 0;
}

void LowerTriangle::add(int32_t j, std::string_view cell) {
    if (j < BandEnd) {
        Cells[static_cast<std::size_t>(j)] += cell;
        return;
    }
    Waiting& waiting = Band[static_cast<std::size_t>(Row % kBand)];
    waiting.Text += cell;
    waiting.Lengths.push_back(static_cast<uint16_t>(cell.size()));
}

void LowerTriangle::emptyBand() {
    for (auto j = static_cast<std::size_t>(BandEnd); j < Cells.size(); ++j) {
        for (Waiting& waiting : Band) {
            const std::size_t length = waiting.Lengths[j - static_cast<std::size_t>(BandEnd)];
            Cells[j].append(waiting.Text, waiting.Read, length);
            waiting.Read += length;
        }
    }
}

} // namespace kva
