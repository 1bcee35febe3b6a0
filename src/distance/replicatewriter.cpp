#include "distance/replicatewriter.h"

#include "control/Ausgabe.h"
#include "distance/needs.h"

#include <utility>

namespace kva {

namespace {

constexpr std::size_t kKeptBytes = std::size_t{1} << 27U; // of what loci add, from row to row

} // namespace

ReplicateWriter::ReplicateWriter(const ReplicateShape& shape, LocusSheets sheets, Opener open)
    : Measures(shape.Measures),
      Sums(shape.Prepared, quantitiesOf(shape.Measures), {shape.Replicates, kKeptBytes}),
      Sheets(std::move(sheets)), Open(std::move(open)), Rows(shape.Labels.size()) {
    for (std::size_t m = 0; m < matricesAtOnce(Rows, Measures.size()); ++m) {
        Matrices.emplace_back(shape.Labels, shape.Rules, shape.Form);
    }
}

void ReplicateWriter::write(std::span<const std::size_t> loci) {
    Sheets.writeHead();
    for (const std::size_t locus : loci) {
        Sheets.writeRow(locus, Sums);
    }
    std::span<const Measure> left = Measures;
    while (!left.empty()) {
        const auto some = left.first(std::min(left.size(), Matrices.size()));
        writeMatrices(some, loci);
        left = left.subspan(some.size());
    }
}

void ReplicateWriter::writeMatrices(std::span<const Measure> measures,
                                    std::span<const std::size_t> loci) {
    std::vector<Measure> open;
    for (const Measure& measure : measures) {
        ResultFile file = Open(measure);
        if (!file.isOpen()) {
            AUSGABE(Message::DistanceLost);
            continue;
        }
        Matrices[open.size()].begin(std::move(file), measure);
        open.push_back(measure);
    }
    const auto writers = std::span(Matrices).first(open.size());
    const QuantitySet asked = quantitiesOf(open);
    for (std::size_t i = 0; i < Rows && !writers.empty(); ++i) {
        const RowSums& sums = Sums.sum(i, loci, asked);
        for (MatrixWriter& writer : writers) {
            writer.writeRow(i, sums);
        }
    }
    for (MatrixWriter& writer : writers) {
        writer.end();
    }
}

} // namespace kva
