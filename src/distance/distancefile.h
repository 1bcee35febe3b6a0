// The matrix files of the folder "Distance_data": one square matrix per replicate, in the form
// that PHYLIP reads, or one NEXUS file.
//
//      3
//           North  0.00000  0.25000  0.50000
//           South  0.25000  0.00000  0.12500
//            West  0.50000  0.12500  0.00000
//      (an empty line)
#ifndef KVA_DISTANCE_DISTANCEFILE_H
#define KVA_DISTANCE_DISTANCEFILE_H

#include "distance/cellcodes.h"
#include "distance/lowertriangle.h"
#include "distance/measures.h"
#include "output/resultfile.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kva {

class Datensatz;

// Writes the head of a NEXUS file of `ntax` individuals, up to the line "matrix". `bit` and
// `index` tell the output and have no effect on the text. False, and nothing written, if the
// file is not open.
bool StartNexus(ResultFile& file, long bit, int ntax, int index);

// Ends row `row` (from 0) of `n` in a NEXUS file: a line end; behind the last row first ";", the
// end of the block and the block that has PAUP draw a neighbour-joining tree.
void EndNexus(ResultFile& file, int row, int n);

// The label of individual `number` (from 1) of a population: its name, filled up on the left or
// cut to five characters, and the number with three digits or more.
std::string individualLabel(const std::string& name, int number);

// The labels of the populations 1 to `populations`, entry 0 that of population 1: ten characters,
// filled up on the left or cut. A population without a name has blanks.
std::vector<std::string> populationLabels(const Datensatz& daten, int32_t populations);

// The labels of `individuals` rows. Wanted: a population without individuals takes a label all the
// same, so that the later ones are shifted against the individuals; the bytes of the matrices
// depend on it. Rows behind the last population have blanks for the name.
std::vector<std::string> individualLabels(const Datensatz& daten, int32_t individuals);

// Writes square matrices of one size, with zeros in the diagonal and cells of " %8.5f".
class MatrixWriter {
  public:
    // Plain: the number of rows in front and an empty line behind. Nexus: the rows alone, with
    // EndNexus() behind each; the head is StartNexus()'s.
    enum class Form { Plain, Nexus };

    // What a writer takes for matrices of so many rows, in bytes.
    static constexpr std::size_t bytes(std::size_t rows) { return LowerTriangle::bytes(rows); }

    // labels: NOT OWNED, one per row; their number is the size of the matrices.
    MatrixWriter(std::span<const std::string> labels, CellRules rules, Form form);

    // Begins the matrix of a measure where the file stands. Nothing is written to a closed file.
    void begin(ResultFile file, const Measure& measure);

    // Writes row i, from 0, with its line end, from the sums of the pairs (i, j). Rows come in
    // their order.
    void writeRow(std::size_t i, const RowSums& sums);

    // Ends the matrix and closes its file.
    void end();

  private:
    // The cells of row i right of the diagonal; sets their mirror images, by column. They hold
    // until the next row.
    std::span<const uint32_t> encodeRow(std::size_t i, const RowSums& sums, uint32_t* mirror);
    void writeCells(std::span<const uint32_t> codes);

    std::span<const std::string> Labels; // NOT OWNED; by row
    CellRules Rules;                     // of the cells
    Form Layout;                         // of all matrices
    ResultFile File;                     // of the running matrix
    Measure Rule;                        // what it shows
    CellCodes Codes;                     // of its cells
    LowerTriangle Mirror;                // its cells below the diagonal
    std::vector<double> Values;          // of the running row right of the diagonal, by column
    std::vector<uint32_t> Upper;         // their cells, where the mirror images are others
};

} // namespace kva

#endif
