#include "distance/distancefile.h"

#include "data/lociclass.h"
#include "output/sheet.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

namespace kva {

namespace {

constexpr std::string_view kDiagonal = "  0.00000"; // the cell of a sample with itself
constexpr std::size_t kIndividualLabel = 5;         // of the name in an individual's label
constexpr std::size_t kCellsAtOnce = 64;            // written without a look at the file's room

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
    labels.reserve(individuals);
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

MatrixWriter::MatrixWriter(std::span<const std::string> labels, CellRules rules, Form form)
    : Labels(labels), Rules(rules), Layout(form), Mirror(labels.size()), Values(labels.size()) {}

void MatrixWriter::begin(ResultFile file, const Measure& measure) {
    File = std::move(file);
    Rule = measure;
    Codes.clear();
    if (Layout == Form::Plain) {
        File.print("%zu\n", Labels.size());
    }
}

void MatrixWriter::writeRow(std::size_t i, const RowSums& sums) {
    const std::span<const uint32_t> upper = encodeRow(i, sums, Mirror.beginRow(i));
    File.text(Labels[i]);
    writeCells(Mirror.cells());
    File.text(kDiagonal);
    writeCells(upper);
    if (Layout == Form::Nexus) {
        EndNexus(File, static_cast<int>(i), static_cast<int>(Labels.size()));
    } else {
        File.character('\n');
    }
}

void MatrixWriter::end() {
    if (Layout == Form::Plain) {
        File.character('\n');
    }
    File.close();
}

std::span<const uint32_t> MatrixWriter::encodeRow(std::size_t i, const RowSums& sums,
                                                  uint32_t* mirror) {
    const std::size_t rows = Labels.size();
    double* const values = Values.data();
    Rule.FromSums.UpperCells(Rule.Sums, sums, Rules, i + 1, rows, values);
    for (std::size_t j = i + 1; j < rows; ++j) {
        mirror[j] = Codes.encode(values[j]);
    }
    const std::span upper(mirror + i + 1, rows - i - 1);
    if (isSymmetric(Rule, Rules)) {
        return upper;
    }
    Upper.assign(upper.begin(), upper.end());
    for (std::size_t j = i + 1; j < rows; ++j) {
        mirror[j] = Codes.encode(matrixCells(Rule, pairSums(Rule, sums, j), Rules).Lower);
    }
    return Upper;
}

void MatrixWriter::writeCells(std::span<const uint32_t> codes) {
    while (!codes.empty()) {
        const auto some = codes.first(std::min(codes.size(), kCellsAtOnce));
        File.write(some.size() * CellCodes::kRoom, [&](char* out) {
            for (const uint32_t code : some) {
                out = Codes.write(out, code);
            }
            return out;
        });
        codes = codes.subspan(some.size());
    }
}

} // namespace kva
