// Heterozygosity range: which heterozygosity, variance of allele numbers and number of
// alleles a population could show by sampling alone. Its data are resampled with
// replacement, and minimum, mean and maximum over the replicates go into nine sheets of
// the folder "Resampling_data", a row per population, a column per locus:
//
//      	fca8	fca23
//      P01	0.412000	0.583333
//
// and, if asked for, every replicate of a population into three sheets of its own, a row
// per replicate.
#include "base/filename.h"
#include "control/Ausgabe.h"
#include "fstat/randsci.h"
#include "hetrange/HetReplika.h"
#include "hetrange/passes.h"
#include "output/sheet.h"
#include "run/passframe.h"
#include "run/run.h"
#include "run/spread.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace kva {

namespace {

// One of the nine sheets: file name and cell.
struct RangeSheet {
    const char* Name;
    double (*Cell)(const HetBereich& bereich);
};

constexpr std::array<RangeSheet, 9> kRangeSheets = {{
    {"HetRangeMin.xls", [](const HetBereich& b) { return b.H.Min; }},
    {"HetRangeMean.xls", [](const HetBereich& b) { return b.H.Summe / b.Anzahl; }},
    {"HetRangeMax.xls", [](const HetBereich& b) { return b.H.Max; }},
    {"VarRangeMin.xls", [](const HetBereich& b) { return b.V.Min; }},
    {"VarRangeMean.xls", [](const HetBereich& b) { return b.V.Summe / b.Anzahl; }},
    {"VarRangeMax.xls", [](const HetBereich& b) { return b.V.Max; }},
    {"AlleleRangeMin.xls", [](const HetBereich& b) { return b.A.Min; }},
    {"AlleleRangeMean.xls", [](const HetBereich& b) { return b.A.Summe / b.Anzahl; }},
    {"AlleleRangeMax.xls", [](const HetBereich& b) { return b.A.Max; }},
}};

// The cell of one locus and one replicate in one of the replicate sheets.
void writeReplicateCell(ResultFile& sheet, double value) {
    if (value < 0) {
        writeTabNd(sheet);
    } else {
        writeTabReal(sheet, value);
    }
}

// The cell of a number of alleles. Most have one digit, which needs no conversion.
void writeAllelesCell(ResultFile& sheet, double alleles) {
    if (alleles < 0 || alleles > 9) {
        writeTabReal(sheet, alleles);
        return;
    }
    char cell[] = "\t0.000000";
    cell[1] = static_cast<char>('0' + static_cast<int>(alleles));
    sheet.text({cell, sizeof cell - 1});
}

// How the places of a sample are drawn: how many, and how many entries each takes.
struct DrawShape {
    int32_t Places;
    uint32_t Width;

    std::size_t entries() const { return static_cast<std::size_t>(Places) * Width; }
};

// Entries of population `pop` (from 0); none in data without loci.
int32_t entriesOf(const Datensatz& daten, int pop) {
    return std::max(daten.GetAnzDatenChromosome(pop + 1), 0);
}

DrawShape drawShape(uint32_t mask, int32_t entries) {
    return hasBit(mask, HetRangeBit::Individuals) ? DrawShape{entries / 2, 2}
                                                  : DrawShape{entries, 1};
}

constexpr int32_t kExactFloats = 1 << 24; // up to here a float holds every whole number
constexpr std::size_t kDrawnAtOnce = 512; // random numbers

// Turns `individuals` indices at the start of a stretch into the indices of both their entries.
void spreadPairs(std::span<int32_t> stretch, std::size_t individuals) {
    for (std::size_t i = individuals; i-- > 0;) {
        const int32_t first = stretch[i] * 2;
        stretch[2 * i] = first;
        stretch[2 * i + 1] = first + 1;
    }
}

// Draws indices below n, one random number each.
void drawIndices(std::span<int32_t> indices, int32_t n) {
    // The products stay below n in single precision; only above 2^24 places is n itself rounded.
    const auto bound = static_cast<float>(n);
    std::array<float, kDrawnAtOnce> numbers;
    for (std::size_t begin = 0; begin < indices.size(); begin += kDrawnAtOnce) {
        const std::size_t count = std::min(kDrawnAtOnce, indices.size() - begin);
        rand2Fill(std::span(numbers).first(count));
        for (std::size_t i = 0; i < count; ++i) {
            indices[begin + i] = static_cast<int32_t>(numbers[i] * bound);
        }
    }
    if (n > kExactFloats) {
        for (int32_t& index : indices) {
            index = std::min(index, n - 1);
        }
    }
}

// Draws the places of a stretch: a row, or rows without a place left out between them.
void drawStretch(std::span<int32_t> stretch, const DrawShape& shape) {
    const std::size_t draws = stretch.size() / shape.Width;
    drawIndices(stretch.first(draws), shape.Places);
    if (shape.Width == 2) {
        spreadPairs(stretch, draws);
    }
}

} // namespace

long heterozygosityRange(Run& run) {
    constexpr PassFrame kFrame{.Folder = &Folder::ResamplingData,
                               .Begin = Message::HetRangeBegin,
                               .End = Message::HetRangeEnd,
                               .LogText = "Calculate heterosygosity range as a sampling artefact"};
    return runInFrame(run, kFrame, writeHeterozygosityRanges);
}

namespace {

// The nine sheets of ranges.
class RangeSheets {
  public:
    explicit RangeSheets(Run& run) : Source(run) {
        for (std::size_t s = 0; s < Files.size(); ++s) {
            Files[s] = run.OpenResult(kRangeSheets[s].Name, "wb+");
            writeLociHead(Files[s], *run.Daten, run.DatenFormat);
        }
    }

    // Writes the row of population `pop`, from 0, with an entry for each locus.
    void writeRow(int pop, const std::vector<HetBereich>& bereich) {
        for (std::size_t s = 0; s < Files.size(); ++s) {
            Files[s].text(orEmpty(Source.Daten->GetPopName(pop + 1)));
            for (const HetBereich& locus : bereich) {
                if (locus.Anzahl <= 0) {
                    writeTabNd(Files[s]);
                } else {
                    writeTabReal(Files[s], kRangeSheets[s].Cell(locus));
                }
            }
            Files[s].character('\n');
        }
    }

  private:
    Run& Source; // NOT OWNED
    std::array<ResultFile, kRangeSheets.size()> Files;
};

void loadTables(const Run& run, int pop, std::vector<HetTable>& tabellen) {
    for (std::size_t l = 0; l < tabellen.size(); ++l) {
        tabellen[l].Load(run.Daten->Loci[l], pop + 1, run.PopAllele[pop + 1][l]);
    }
}

// The sample of a population (from 0) before anything is drawn.
HetStichprobe newSample(const Run& run, int pop) {
    const int32_t entries = entriesOf(*run.Daten, pop);
    const bool linked = hasBit(run.HetRangeMask, HetRangeBit::Linked);
    // Places come in pairs: behind an odd last one stands one more.
    HetStichprobe stichprobe(linked ? 1 : run.AnzLoci, entries + entries % 2);
    // A place that no draw reaches is missing: the one behind an odd last entry, and among
    // individuals that entry's own. Without draws every place keeps entry 0.
    if (hasBit(run.HetRangeMask, HetRangeBit::Draw)) {
        stichprobe.MarkPast(drawShape(run.HetRangeMask, entries).entries(), entries);
    }
    return stichprobe;
}

// The three sheets of a population, in their order.
std::array<ResultFile*, 3> filesOf(HetReplicateSheets& sheets) {
    return {&sheets.Het, &sheets.Var, &sheets.Allele};
}

// Counts a replicate locus by locus, writes its rows, and calls take(locus, statistics).
template <class Take>
void countReplicate(const Run& run, int replikat, const HetStichprobe& stichprobe,
                    std::vector<HetTable>& tabellen, HetReplicateSheets& sheets, Take&& take) {
    const bool linked = hasBit(run.HetRangeMask, HetRangeBit::Linked);
    const bool randomDiscard = hasBit(run.HetRangeMask, HetRangeBit::RandomDiscard);
    const bool correct = hasBit(run.HetRangeMask, HetRangeBit::CorrectZero);
    const bool write = hasBit(run.HetRangeMask, HetRangeBit::ReplicateSheets);
    for (ResultFile* const sheet : filesOf(sheets)) {
        sheet->integer(replikat + 1);
    }
    for (std::size_t l = 0; l < tabellen.size(); ++l) {
        tabellen[l].Clr();
        tabellen[l].Add(stichprobe.Row(linked ? 0 : static_cast<int32_t>(l)), randomDiscard);
        HetStatistics wert = tabellen[l].Statistics();
        if (correct) {
            wert.H = correctHeterozygosity(wert.H, wert.n);
        }
        if (write) {
            writeReplicateCell(sheets.Het, wert.H);
            writeReplicateCell(sheets.Var, wert.V);
            writeAllelesCell(sheets.Allele, wert.A);
        }
        take(l, wert);
    }
    for (ResultFile* const sheet : filesOf(sheets)) {
        sheet->character('\n');
    }
}

// --- In units of a population and a block of its replicates -------------------------------

constexpr int kBlock = 250; // replicates
constexpr std::size_t kBlocksAhead = 8;

// A block of replicates of a population.
struct RangeBlock {
    std::vector<HetStatistics> Of;    // [replicate x loci + locus]
    std::array<std::string, 3> Texts; // rows of the replicate sheets
};

// Draws and counts the replicates from `first` to `end` (from 0) of a population.
RangeBlock countBlock(const Run& run, int pop, int first, int end,
                      std::vector<HetTable>& tabellen) {
    RangeBlock block;
    HetReplicateSheets sheets;
    if (hasBit(run.HetRangeMask, HetRangeBit::ReplicateSheets)) {
        for (std::size_t s = 0; s < block.Texts.size(); ++s) {
            *filesOf(sheets)[s] = ResultFile::toText(block.Texts[s]);
        }
    }
    loadTables(run, pop, tabellen);
    HetStichprobe stichprobe = newSample(run, pop);
    for (int replikat = first; replikat < end; ++replikat) {
        drawReplicate(run, replikat, pop, stichprobe);
        countReplicate(run, replikat, stichprobe, tabellen, sheets,
                       [&](std::size_t, const HetStatistics& wert) { block.Of.push_back(wert); });
    }
    return block;
}

// Takes the blocks of all populations in order, and writes what they give.
class RangeTaker {
  public:
    RangeTaker(Run& run, RangeSheets& ranges) : Source(run), Ranges(ranges) {}

    // first: the number of the block's first replicate, from 0.
    void take(int pop, int first, const RangeBlock& block) {
        if (first == 0) {
            Sheets = openReplicateSheets(Source, pop);
            Bereich.assign(static_cast<std::size_t>(Source.AnzLoci), {});
        }
        for (std::size_t k = 0; k < block.Of.size(); ++k) {
            const std::size_t loci = Bereich.size();
            Bereich[k % loci].Add(first + static_cast<int>(k / loci), block.Of[k]);
        }
        for (std::size_t s = 0; s < block.Texts.size(); ++s) {
            filesOf(Sheets)[s]->text(block.Texts[s]);
        }
        if (first + kBlock >= Source.HetRandomisierungen) {
            Sheets = {};
            Ranges.writeRow(pop, Bereich);
        }
    }

  private:
    Run& Source;         // NOT OWNED
    RangeSheets& Ranges; // NOT OWNED
    // Of the running population.
    HetReplicateSheets Sheets;
    std::vector<HetBereich> Bereich;
};

void resampleInUnits(Run& run, RangeSheets& ranges) {
    // Without replicates a population has a block all the same, with its sheets.
    const int blocks = std::max((run.HetRandomisierungen + kBlock - 1) / kBlock, 1);
    const std::size_t units = static_cast<std::size_t>(run.AnzPop) * blocks;
    RangeTaker taker(run, ranges);
    run.Spreading->inOrder(units, kBlocksAhead, [&]() -> Spread::Work {
        std::vector<HetTable> tables(static_cast<std::size_t>(run.AnzLoci));
        return [&run, &taker, blocks, tables](std::size_t unit) mutable -> Spread::Take {
            const int pop = static_cast<int>(unit) / blocks;
            const int block = static_cast<int>(unit) % blocks;
            startUnit(run.Spreading->seed(), {UnitKind::HetRange, static_cast<uint32_t>(pop),
                                              static_cast<uint32_t>(block)});
            const int first = block * kBlock;
            const int end = std::min(first + kBlock, run.HetRandomisierungen);
            return [&taker, pop, first, counted = countBlock(run, pop, first, end, tables)] {
                taker.take(pop, first, counted);
            };
        };
    });
}

} // namespace

void writeHeterozygosityRanges(Run& run) {
    RangeSheets sheets(run);
    if (run.Spreading != nullptr) {
        resampleInUnits(run, sheets);
        return;
    }
    std::vector<HetTable> tabellen(static_cast<std::size_t>(run.AnzLoci));
    for (int pop = 0; pop < run.AnzPop; ++pop) {
        sheets.writeRow(pop, resamplePopulation(run, pop, tabellen));
    }
}

std::vector<HetBereich> resamplePopulation(Run& run, int pop, std::vector<HetTable>& tabellen) {
    loadTables(run, pop, tabellen);
    HetReplicateSheets sheets = openReplicateSheets(run, pop);
    AUSGABE(Message::HetRangeMark, ".");
    HetStichprobe stichprobe = newSample(run, pop);
    std::vector<HetBereich> bereich(tabellen.size());
    for (int replikat = 0; replikat < run.HetRandomisierungen; ++replikat) {
        drawReplicate(run, replikat, pop, stichprobe);
        evaluateReplicate(run, replikat, stichprobe, bereich, tabellen, sheets);
    }
    return bereich;
}

HetReplicateSheets openReplicateSheets(Run& run, int pop) {
    HetReplicateSheets sheets;
    if (!hasBit(run.HetRangeMask, HetRangeBit::ReplicateSheets)) {
        return sheets;
    }
    const std::string& name = orEmpty(run.Daten->GetPopName(pop + 1));
    sheets.Het = run.OpenResult(fileNameOf(name + "_HetRange.xls"), "wb+");
    sheets.Var = run.OpenResult(fileNameOf(name + "_VarRange.xls"), "wb+");
    sheets.Allele = run.OpenResult(fileNameOf(name + "_AlleleRange.xls"), "wb+");
    for (ResultFile* const sheet : filesOf(sheets)) {
        writeLociHead(*sheet, *run.Daten, run.DatenFormat);
    }
    return sheets;
}

void drawReplicate(const Run& run, int /*replikat*/, int pop, HetStichprobe& stichprobe) {
    if (!hasBit(run.HetRangeMask, HetRangeBit::Draw)) {
        return;
    }
    const DrawShape shape = drawShape(run.HetRangeMask, entriesOf(*run.Daten, pop));
    for (const std::span<int32_t> stretch : stichprobe.Stretches(shape.entries())) {
        drawStretch(stretch, shape);
    }
}

int evaluateReplicate(const Run& run, int replikat, const HetStichprobe& stichprobe,
                      std::vector<HetBereich>& bereich, std::vector<HetTable>& tabellen,
                      HetReplicateSheets& sheets) {
    double lastH = 0.0;
    countReplicate(run, replikat, stichprobe, tabellen, sheets,
                   [&](std::size_t l, const HetStatistics& wert) {
                       bereich[l].Add(replikat, wert);
                       lastH = wert.H;
                   });
    return lastH < 0 ? -100 : 0;
}

} // namespace kva
