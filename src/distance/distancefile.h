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

#include "distance/lowertriangle.h"
#include "distance/measures.h"
#include "distance/rowsummer.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kva {

class Datensatz;
class ResultFile;

// Writes the head of a NEXUS file of `ntax` individuals, up to the line "matrix". `bit` and
// `index` tell the output and have no effect on the text. False, and nothing written, if the
// file is not open.
bool StartNexus(ResultFile& file, long bit, int ntax, int index);

// Ends row `row` (from 0) of `n`: a line end; behind the last row ";", the end of the block and
// the block that has PAUP draw a neighbour-joining tree.
void EndNexus(ResultFile& file, int row, int n);

// The label of individual `number` (from 1) of a population: five characters of its name, and
// the number with three digits or more.
std::string individualLabel(const std::string& name, int number);

// The labels of all populations.
std::vector<std::string> populationLabels(const Datensatz& daten, int32_t populations);

// The labels of `individuals` rows. A population without individuals takes a label all the
// same, so that the later ones are shifted against the individuals: wanted. Rows behind the
// last population have no name.
std::vector<std::string> individualLabels(const Datensatz& daten, int32_t individuals);

// Writes square matrices of one size.
class MatrixWriter {
  public:
    enum class Form { Plain, Nexus };

    // labels: one per row.
    MatrixWriter(std::vector<std::string> labels, CellRules rules, Form form);

    // Writes the matrix of a measure over `loci`. Nothing is computed for a file that is not
    // open.
    void write(ResultFile& file, RowSummer& sums, std::span<const int32_t> loci);

  private:
    void writeRow(ResultFile& file, RowSummer& sums, std::span<const int32_t> loci, int32_t i);
    int32_t rows() const { return static_cast<int32_t>(Labels.size()); }

    std::vector<std::string> Labels;
    CellRules Rules;
    Form Layout;
    LowerTriangle Mirror;
    std::string Line;
};

} // namespace kva

#endif
