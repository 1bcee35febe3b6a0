#include "distance/distancerun.h"

#include "control/Ausgabe.h"
#include "distance/needs.h"
#include "fstat/randsci.h"
#include "run/run.h"

#include <algorithm>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kKeptBytes = std::size_t{1} << 27U; // of what loci add, from row to row

CellRules cellRules(const Run& run) {
    return {hasBit(run.GeneralMask, GeneralBit::MinusLog), run.DistUnendlich, run.DistFehlerwert};
}

} // namespace

DistanceRun::DistanceRun(Run& run, const DistanceKind& kind, Samples samples,
                         std::vector<std::string> labels)
    : Source(run), Kind(kind), Prepared(std::move(samples)), Labels(std::move(labels)),
      Rules(cellRules(run)), Measures(selectedMeasures(run.PopDistMask)),
      Sums(Prepared, quantitiesOf(Measures),
           {static_cast<std::size_t>(std::max(run.Bootstraps, 1)), kKeptBytes}) {
    for (std::size_t m = 0; m < matricesAtOnce(Labels.size(), Measures.size()); ++m) {
        Matrices.emplace_back(Labels, Rules,
                              nexus() ? MatrixWriter::Form::Nexus : MatrixWriter::Form::Plain);
    }
    if (perLocus()) {
        Sheets = LocusSheets(*Source.Daten, Source.DatenFormat, Rules, bootstrapping());
    }
}

bool DistanceRun::bootstrapping() const {
    return Source.Bootstraps > 1;
}

bool DistanceRun::nexus() const {
    return Kind.Nexus && hasBit(Source.PopDistMask, DistBit::Nexus) && !bootstrapping();
}

bool DistanceRun::perLocus() const {
    return Kind.SheetEnd != nullptr && hasBit(Source.PopDistMask, DistBit::PerLocus);
}

ResultFile DistanceRun::openMatrix(const Measure& measure, const char* mode) {
    return Source.OpenResult(std::string(measure.Stem) + Kind.MatrixEnd, mode);
}

long DistanceRun::run() {
    InternStartRDGen(); // at every call, also without a bootstrap
    createFiles();
    if (Measures.empty()) {
        return -3;
    }
    for (int32_t replicate = 0; replicate < Source.Bootstraps; ++replicate) {
        writeReplicate();
    }
    AUSGABE(Message::ReplicateEnd);
    Sheets.close();
    return 0;
}

void DistanceRun::createFiles() {
    for (const Measure& measure : Measures) {
        if (perLocus()) {
            Sheets.add(Source.OpenResult(std::string(measure.Stem) + Kind.SheetEnd, "wb+"),
                       measure);
        }
        ResultFile matrix = openMatrix(measure, "wb+");
        if (nexus()) {
            StartNexus(matrix, measure.Bit, static_cast<int>(Labels.size()), measure.Index);
        }
    }
}

void DistanceRun::writeReplicate() {
    Sheets.writeHead();
    const std::vector<std::size_t> loci = drawLoci();
    for (const std::size_t locus : loci) {
        Sheets.writeRow(locus, Sums);
    }
    std::span<const Measure> left = Measures;
    while (!left.empty()) {
        const auto some = left.first(std::min(left.size(), Matrices.size()));
        writeMatrices(some, loci);
        left = left.subspan(some.size());
    }
    AUSGABE(Message::ReplicateEnd);
}

void DistanceRun::writeMatrices(std::span<const Measure> measures,
                                std::span<const std::size_t> loci) {
    std::vector<Measure> open;
    for (const Measure& measure : measures) {
        ResultFile file = openMatrix(measure, "rb+");
        if (!file.isOpen()) {
            AUSGABE(Message::DistanceLost);
            continue;
        }
        Matrices[open.size()].begin(std::move(file), measure);
        open.push_back(measure);
    }
    const auto writers = std::span(Matrices).first(open.size());
    const QuantitySet asked = quantitiesOf(open);
    for (std::size_t i = 0; i < Labels.size() && !writers.empty(); ++i) {
        const RowSums& sums = Sums.sum(i, loci, asked);
        for (MatrixWriter& writer : writers) {
            writer.writeRow(i, sums);
        }
    }
    for (MatrixWriter& writer : writers) {
        writer.end();
    }
}

// The loci of a replicate (from 0), with their marks on the console. They are drawn before
// anything is summed, since the sums of one pair after the other run over all of them.
std::vector<std::size_t> DistanceRun::drawLoci() {
    const auto available = static_cast<int32_t>(Prepared.Loci.size());
    const bool chosen = Source.BootLoci > 0 && bootstrapping() && available > 0;
    const int32_t passes = chosen ? Source.BootLoci : available;
    std::vector<std::size_t> loci;
    for (int32_t pass = 0; pass < passes; ++pass) {
        if (bootstrapping() && Kind.PassNumber) {
            AUSGABE(Message::DistanceMark, pass);
            AUSGABE(Message::DistanceMark, " ");
        }
        loci.push_back(static_cast<std::size_t>(bootstrapping() ? drawIndex(available) : pass));
        AUSGABE(Message::DistanceMark, Kind.PassMark);
    }
    return loci;
}

} // namespace kva
