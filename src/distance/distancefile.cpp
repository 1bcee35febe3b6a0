#include "distance/distancefile.h"

#include "data/lociclass.h"
#include "output/numberformat.h"
#include "output/resultfile.h"
#include "output/sheet.h"

#include <cstdio>
#include <string_view>
#include <utility>

namespace kva {

namespace {

constexpr int kDecimals = 5;
constexpr int kWidth = 8;
constexpr std::string_view kDiagonal = "  0.00000"; // the cell of a sample with itself
constexpr std::size_t kIndividualLabel = 5;         // of the name in an individual's label

// A cell as it is written: " %8.5f".
class CellText {
  public:
    explicit CellText(double value) : Length(1 + formatFixed(Bytes + 1, value, kDecimals, kWidth)) {
        Bytes[0] = ' ';
    }
    std::string_view text() const { return {Bytes, Length}; }

  private:
    char Bytes[kFixedBufferSize + 1];
    std::size_t Length;
};

} // namespace

// --- NEXUS -------------------------------------------------------------------------

bool StartNexus(ResultFile& file, long /*bit*/, int ntax, int /*index*/) {
    if (!file.isOpen()) {
        return false;
    }
    file.text("#NEXUS\n[!user defined distances]\nBegin distances;\n");
    file.print("Dimensions ntax=%d;\n", ntax);
    file.text("format triangle = both;\nmatrix\n");
    return true;
}

void EndNexus(ResultFile& file, int row, int n) {
    if (row >= n - 1) {
        file.text(";\nend;\n[! nj with user defined distances]\n"
                  "Begin paup;\ndset distance=user;\nnj;\nend;\n");
    }
    file.character('\n');
}

// --- Labels --------------------------------------------------------------------------

std::string individualLabel(const std::string& name, int number) {
    char digits[16];
    (void)std::snprintf(digits, sizeof digits, "%3.3d", number);
    return padOrCut(name, kIndividualLabel) + digits;
}

std::vector<std::string> populationLabels(const Datensatz& daten, int32_t populations) {
    std::vector<std::string> labels;
    for (int32_t pop = 1; pop <= populations; ++pop) {
        labels.push_back(populationLabel(orEmpty(daten.GetPopName(pop))));
    }
    return labels;
}

std::vector<std::string> individualLabels(const Datensatz& daten, int32_t individuals) {
    std::vector<std::string> labels;
    labels.reserve(static_cast<std::size_t>(individuals));
    int pop = 1;
    int number = 1;
    for (int32_t row = 0; row < individuals; ++row) {
        labels.push_back(individualLabel(orEmpty(daten.GetPopName(pop)), number));
        ++number;
        if (number >
            daten.GetIndividuals(pop)) { // asked behind the label: an empty population has one
            ++pop;
            number = 1;
        }
    }
    return labels;
}

// --- Matrices --------------------------------------------------------------------------

MatrixWriter::MatrixWriter(std::vector<std::string> labels, CellRules rules, Form form)
    : Labels(std::move(labels)), Rules(rules), Layout(form), Mirror(rows()) {}

void MatrixWriter::write(ResultFile& file, RowSummer& sums, std::span<const int32_t> loci) {
    if (!file.isOpen()) {
        return;
    }
    if (Layout == Form::Plain) {
        file.print("%d\n", rows());
    }
    for (int32_t i = 0; i < rows(); ++i) {
        writeRow(file, sums, loci, i);
    }
    if (Layout == Form::Plain) {
        file.character('\n');
    }
}

void MatrixWriter::writeRow(ResultFile& file, RowSummer& sums, std::span<const int32_t> loci,
                            int32_t i) {
    Mirror.beginRow(i);
    Line = Labels[static_cast<std::size_t>(i)];
    Line += Mirror.cells();
    Line += kDiagonal;
    sums.sum(i, loci);
    for (int32_t j = i + 1; j < rows(); ++j) {
        const CellPair cells = matrixCells(sums.measure(), sums.pair(j), Rules);
        const CellText upper(cells.Upper);
        Line += upper.text();
        Mirror.add(j, cells.Lower == cells.Upper ? upper.text() : CellText(cells.Lower).text());
    }
    file.text(Line);
    if (Layout == Form::Nexus) {
        EndNexus(file, i, rows());
    } else {
        file.character('\n');
    }
}

} // namespace kva
