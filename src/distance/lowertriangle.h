// LowerTriangle: the text of the cells below the diagonal of a symmetric matrix that is written
// row by row. A cell is formatted once, in the row where its pair is computed, and waits here
// for its mirror image.
#ifndef KVA_DISTANCE_LOWERTRIANGLE_H
#define KVA_DISTANCE_LOWERTRIANGLE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

class LowerTriangle {
  public:
    // rows: of the matrix, and columns.
    explicit LowerTriangle(int32_t rows);

    // Begins row i, from 0. Rows come in their order; row 0 drops all cells of the matrix before.
    void beginRow(int32_t i);

    // The cells of the row left of the diagonal, as they were added.
    const std::string& cells() const { return Cells[static_cast<std::size_t>(Row)]; }

    // Adds the mirror image of the row's cell in column j, the columns behind the diagonal in
    // their order: it belongs to row j. At most 65535 bytes.
    void add(int32_t j, std::string_view cell);

  private:
    // What a row of the band adds to the rows behind the band, in the order of those.
    struct Waiting {
        std::string Text;              // the cells behind each other
        std::vector<uint16_t> Lengths; // of the cells, in bytes
        std::size_t Read = 0;          // bytes of Text taken over already
    };

    // Takes the waiting cells over into the rows behind the band.
    void emptyBand();

    // Cells grows by one cell in each of its strings with every row, which are far apart. So the
    // cells of a band of rows wait in rows of their own and are taken over together.
    static constexpr int32_t kBand = 16;

    std::vector<std::string> Cells; // left of the diagonal, by row from 0
    std::vector<Waiting> Band;      // kBand rows; row i stands at i % kBand
    int32_t BandEnd = kBand;        // first row behind the band, from 0
    int32_t Row = 0;                // begun last, from 0
};

} // namespace kva

#endif
