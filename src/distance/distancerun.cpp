#include "distance/distancerun.h"

#include "control/Ausgabe.h"
#include "run/run.h"
#include "run/spread.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kva {

namespace {

constexpr std::size_t kTextBytes = std::size_t{1} << 30U; // of replicates that wait
constexpr std::size_t kCellBytes = 9;
constexpr std::size_t kAhead = 4; // replicates that wait

CellRules cellRules(const Run& run) {
    return {hasBit(run.GeneralMask, GeneralBit::MinusLog), run.DistUnendlich, run.DistFehlerwert};
}

// Appends each text to its file.
void append(const std::vector<std::string>& texts, std::vector<ResultFile>& files) {
    for (std::size_t k = 0; k < texts.size(); ++k) {
        files[k].text(texts[k]);
    }
}

} // namespace

DistanceRun::DistanceRun(Run& run, const DistanceKind& kind, Samples samples,
                         std::vector<std::string> labels)
    : Source(run), Kind(kind), Prepared(std::move(samples)), Labels(std::move(labels)),
      Rules(cellRules(run)), Measures(selectedMeasures(run.PopDistMask)) {}

bool DistanceRun::bootstrapping() const {
    return Source.Bootstraps > 1;
}

bool DistanceRun::inUnits() const {
    if (Source.Spreading == nullptr || !bootstrapping()) {
        return false;
    }
    const std::size_t waiting = kAhead + 2 * std::size_t{Source.Spreading->threads()};
    return waiting * Measures.size() * Labels.size() * Labels.size() * kCellBytes <= kTextBytes;
}

bool DistanceRun::nexus() const {
    return Kind.Nexus && hasBit(Source.PopDistMask, DistBit::Nexus) && !bootstrapping();
}

bool DistanceRun::perLocus() const {
    return Kind.SheetEnd != nullptr && hasBit(Source.PopDistMask, DistBit::PerLocus);
}

ResultFile DistanceRun::openMatrix(const Measure& measure, const char* mode) const {
    return Source.OpenResult(std::string(measure.Stem) + Kind.MatrixEnd, mode);
}

ReplicateShape DistanceRun::shape() const {
    return {Prepared,
            Labels,
            Rules,
            Measures,
            nexus() ? MatrixWriter::Form::Nexus : MatrixWriter::Form::Plain,
            static_cast<std::size_t>(std::max(Source.Bootstraps, 1))};
}

LocusSheets DistanceRun::locusSheets(std::vector<ResultFile> files) const {
    if (!perLocus()) {
        return {};
    }
    LocusSheets sheets(*Source.Daten, Source.DatenFormat, Rules, bootstrapping());
    for (std::size_t m = 0; m < Measures.size(); ++m) {
        sheets.add(std::move(files[m]), Measures[m]);
    }
    return sheets;
}

long DistanceRun::run() {
    InternStartRDGen(); // at every call, also without a bootstrap
    createFiles();
    if (Measures.empty()) {
        return -3;
    }
    if (inUnits()) {
        writeInUnits();
    } else {
        writeInOrder();
    }
    AUSGABE(Message::ReplicateEnd);
    return 0;
}

void DistanceRun::createFiles() {
    for (const Measure& measure : Measures) {
        if (perLocus()) {
            SheetFiles.push_back(
                Source.OpenResult(std::string(measure.Stem) + Kind.SheetEnd, "wb+"));
        }
        ResultFile matrix = openMatrix(measure, "wb+");
        if (nexus()) {
            StartNexus(matrix, measure.Bit, static_cast<int>(Labels.size()), measure.Index);
        }
    }
}

void DistanceRun::writeInOrder() {
    ReplicateWriter writer(shape(), locusSheets(std::move(SheetFiles)),
                           [this](const Measure& measure) { return openMatrix(measure, "rb+"); });
    for (int32_t replicate = 0; replicate < Source.Bootstraps; ++replicate) {
        startReplicate(static_cast<std::size_t>(replicate));
        writer.write(drawLoci(true));
        AUSGABE(Message::ReplicateEnd);
    }
    writer.close();
}

// The loci of a replicate, with their marks on the console. They are drawn before anything is
// summed, since the sums of one pair after the other run over all of them.
std::vector<std::size_t> DistanceRun::drawLoci(bool marks) const {
    const auto available = static_cast<int32_t>(Prepared.Loci.size());
    const bool chosen = Source.BootLoci > 0 && bootstrapping() && available > 0;
    const int32_t passes = chosen ? Source.BootLoci : available;
    std::vector<std::size_t> loci;
    for (int32_t pass = 0; pass < passes; ++pass) {
        if (marks && bootstrapping() && Kind.PassNumber) {
            AUSGABE(Message::DistanceMark, pass);
            AUSGABE(Message::DistanceMark, " ");
        }
        loci.push_back(static_cast<std::size_t>(bootstrapping() ? drawIndex(available) : pass));
        if (marks) {
            AUSGABE(Message::DistanceMark, Kind.PassMark);
        }
    }
    return loci;
}

// --- Each replicate on a stream of its own -------------------------------------------------

void DistanceRun::startReplicate(std::size_t replicate) const {
    if (Source.Spreading != nullptr) {
        startUnit(Source.Spreading->seed(), {Kind.Replicate, static_cast<uint32_t>(replicate)});
    }
}

// A writer with the texts that it writes into, which stay where they are.
struct DistanceRun::TextWriter {
    explicit TextWriter(const DistanceRun& run)
        : Matrices(run.Measures.size()), Sheets(run.SheetFiles.size()),
          Writer(run.shape(), run.locusSheets(filesInto(Sheets)),
                 [this, &run](const Measure& measure) {
                     const auto at = std::ranges::find(run.Measures, measure.Stem, &Measure::Stem);
                     std::string& text = Matrices[at - run.Measures.begin()];
                     text.reserve(Longest);
                     return ResultFile::toText(text);
                 }) {}

    static std::vector<ResultFile> filesInto(std::vector<std::string>& texts) {
        std::vector<ResultFile> files;
        files.reserve(texts.size());
        for (std::string& text : texts) {
            files.push_back(ResultFile::toText(text));
        }
        return files;
    }

    // Moves the texts out.
    std::vector<std::string> taken(std::vector<std::string>& texts) {
        std::vector<std::string> all;
        for (std::string& text : texts) {
            Longest = std::max(Longest, text.size());
            all.push_back(std::exchange(text, {}));
        }
        return all;
    }

    // The texts of a replicate of some loci.
    Texts write(std::span<const std::size_t> loci) {
        Writer.write(loci);
        Writer.flush();
        return {taken(Matrices), taken(Sheets)};
    }

    std::vector<std::string> Matrices; // as in Texts
    std::vector<std::string> Sheets;
    std::size_t Longest = 0; // text so far: the next ones will be as long
    ReplicateWriter Writer;
};

void DistanceRun::writeInUnits() {
    const Spread& spread = *Source.Spreading;
    const auto replicates = static_cast<std::size_t>(Source.Bootstraps);
    std::vector<ResultFile> matrices;
    for (const Measure& measure : Measures) {
        matrices.push_back(openMatrix(measure, "rb+"));
        if (!matrices.back().isOpen()) {
            AUSGABE(Message::DistanceLost);
        }
    }
    spread.inOrder(replicates, kAhead, [&]() -> Spread::Work {
        return [this, &matrices, writer = std::make_shared<TextWriter>(*this)](
                   std::size_t replicate) -> Spread::Take {
            startReplicate(replicate);
            return [this, &matrices, texts = writer->write(drawLoci(false))] {
                append(texts.Matrices, matrices);
                append(texts.Sheets, SheetFiles);
            };
        };
    });
    SheetFiles.clear();
}

} // namespace kva
