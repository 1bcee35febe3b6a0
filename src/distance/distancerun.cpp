#include "distance/distancerun.h"

#include "control/Ausgabe.h"
#include "fstat/randsci.h"
#include "run/run.h"

#include <utility>

namespace kva {

namespace {

// Of what a bootstrap keeps of single loci, over all measures.
constexpr std::size_t kKeptBytes = std::size_t{1} << 27U;

CellRules cellRules(const Run& run) {
    return {hasBit(run.GeneralMask, GeneralBit::MinusLog), run.DistUnendlich, run.DistFehlerwert};
}

} // namespace

DistanceRun::DistanceRun(Run& run, const DistanceKind& kind, Samples samples,
                         std::vector<std::string> labels)
    : Source(run), Kind(kind), Prepared(std::move(samples)), Rules(cellRules(run)),
      Matrices(std::move(labels), Rules,
               nexus() ? MatrixWriter::Form::Nexus : MatrixWriter::Form::Plain) {
    const std::vector<Measure> measures = selectedMeasures(Source.PopDistMask);
    const std::size_t share = bootstrapping() ? kKeptBytes / (measures.size() + 1) : 0;
    Sums.reserve(measures.size());
    for (const Measure& measure : measures) {
        Sums.emplace_back(Prepared, measure, share);
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
    if (Sums.empty()) {
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
    for (const RowSummer& sums : Sums) {
        const Measure& measure = sums.measure();
        if (perLocus()) {
            Sheets.add(Source.OpenResult(std::string(measure.Stem) + Kind.SheetEnd, "wb+"),
                       measure);
        }
        ResultFile matrix = openMatrix(measure, "wb+");
        if (nexus()) {
            (void)StartNexus(matrix, measure.Bit, Prepared.Count, measure.Index);
        }
    }
}

void DistanceRun::writeReplicate() {
    Sheets.writeHead();
    const std::vector<int32_t> loci = drawLoci();
    for (const int32_t locus : loci) {
        Sheets.writeRow(locus, Sums);
    }
    for (RowSummer& sums : Sums) {
        ResultFile matrix = openMatrix(sums.measure(), "rb+");
        if (!matrix.isOpen()) {
            AUSGABE(Message::DistanceLost);
        }
        Matrices.write(matrix, sums, loci);
    }
    AUSGABE(Message::ReplicateEnd);
}

// The loci of a replicate (from 0), with their marks on the console. They are drawn before
// anything is summed, since the sums of one pair after the other run over all of them.
std::vector<int32_t> DistanceRun::drawLoci() {
    const auto available = static_cast<int32_t>(Prepared.Loci.size());
    const bool chosen = Source.BootLoci > 0 && bootstrapping() && available > 0;
    const int32_t passes = chosen ? Source.BootLoci : available;
    std::vector<int32_t> loci;
    for (int32_t pass = 0; pass < passes; ++pass) {
        if (bootstrapping() && Kind.PassNumber) {
            AUSGABE(Message::DistanceMark, pass);
            AUSGABE(Message::DistanceMark, " ");
        }
        loci.push_back(bootstrapping() ? drawIndex(available) : pass);
        AUSGABE(Message::DistanceMark, Kind.PassMark);
    }
    return loci;
}

} // namespace kva
