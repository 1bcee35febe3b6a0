// ReplicateWriter: sums the distances of one replicate after the other and writes them: a matrix of
// each measure, a block of the sheets of single loci.
#ifndef KVA_DISTANCE_REPLICATEWRITER_H
#define KVA_DISTANCE_REPLICATEWRITER_H

#include "distance/distancefile.h"
#include "distance/locussheets.h"
#include "distance/measures.h"
#include "distance/rowsummer.h"
#include "distance/samples.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace kva {

// What all replicates of a call have in common.
struct ReplicateShape {
    const Samples& Prepared;                // NOT OWNED; of all loci
    const std::vector<std::string>& Labels; // NOT OWNED; of the matrix rows
    CellRules Rules;                        // from the settings
    std::span<const Measure> Measures;      // NOT OWNED; selected, in the order of the output
    MatrixWriter::Form Form;
    std::size_t Replicates; // how many will be written
};

class ReplicateWriter {
  public:
    // Opens the matrix file of a measure for its next replicate. One that is closed is told, and
    // left out of this replicate.
    using Opener = std::function<ResultFile(const Measure& measure)>;

    // sheets: none, or one for each measure.
    ReplicateWriter(const ReplicateShape& shape, LocusSheets sheets, Opener open);

    // Writes the replicate of some loci, from 0, in their order.
    void write(std::span<const std::size_t> loci);

    // Hands what is written to the sheets' files.
    void flush() { Sheets.flush(); }

    // Closes the sheets.
    void close() { Sheets.close(); }

  private:
    // Writes the matrices of some measures side by side, not more of them than Matrices.
    void writeMatrices(std::span<const Measure> measures, std::span<const std::size_t> loci);

    std::span<const Measure> Measures;  // NOT OWNED
    RowSummer Sums;                     // of all measures
    std::vector<MatrixWriter> Matrices; // as many as are written side by side
    LocusSheets Sheets;                 // in the order of Measures; none: not asked for
    Opener Open;
    std::size_t Rows; // of a matrix
};

} // namespace kva

#endif
