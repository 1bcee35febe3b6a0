// The F-statistics pass: enters "F-Statistic" and runs the pairwise part, the part over
// all populations and F-beta, as the word of flags says.
#include "control/Ausgabe.h"
#include "fstat/FstHeterogeneity.h"
#include "fstat/FstSheets.h"
#include "fstat/passes.h"
#include "run/passframe.h"
#include "run/run.h"
#include "stats/passes.h"

namespace kva {

namespace {

constexpr uint32_t kLocusTableBits = FstBit::LocusTable | FstBit::Heterogeneity;
constexpr uint32_t kThinningBits = FstBit::RandomDiscard | FstBit::Jackknife;

// Tells the start of a computation once for each heterozygosity that is on.
void announce(uint32_t fstMask, Message message) {
    constexpr struct {
        uint32_t bit;
        const char* text;
    } rules[] = {
        {FstBit::HObs, "WC84 H=Hobs"},
        {FstBit::HExp, "WC84 H=Hexp"},
        {FstBit::HAuto, "WC84 H=Hexp only for  inbred populations"},
    };
    for (const auto& rule : rules) {
        if (hasBit(fstMask, rule.bit)) {
            AUSGABE(message, rule.text);
        }
    }
}

// The pairwise table of Fst per locus: a row a locus, a column a pair.
CMatrix newLocusTable(int32_t loci, int32_t pops) {
    CMatrix table;
    table.Resize(loci, pops < 2 ? loci : static_cast<int32_t>(int64_t{pops} * (pops - 1) / 2));
    return table;
}

int lostFile() {
    AUSGABE(Message::PairsLost);
    return -1;
}

// The tests of all pairs and their sheets, the last part of the pairwise statistics.
int testAndWritePairs(Run& run, FTriple& f, CMatrix& locusTable) {
    FTriple p = newFTriple(run.AnzPop);
    if ((run.FstMask & kThinningBits) == 0) {
        testPairs(run, p, f, run.PopAllele, locusTable);
    } else {
        CMatrix untergrenze;
        CMatrix obergrenze;
        if (hasBit(run.FstMask, FstBit::Confidence)) {
            untergrenze.Resize(run.AnzPop, run.AnzPop);
            obergrenze.Resize(run.AnzPop, run.AnzPop);
        }
        testThinnedPairs(run, p, f, run.PopAllele, untergrenze, obergrenze, locusTable);
        if (!writeFstMeans(run, f, untergrenze, obergrenze)) {
            return lostFile();
        }
    }
    return writeFstPValues(run, f, p) ? 0 : lostFile();
}

// The parts that the flags ask for. A lost file is told where it is lost and stops nothing here.
void runParts(Run& run) {
    if (!hasBit(run.FstMask, FstBit::NoPairs)) {
        pairwiseFst(run);
    }
    if (hasBit(run.FstMask, FstBit::Global)) {
        globalFst(run);
    }
    if (hasBit(run.FstMask, FstBit::Beta)) {
        fBeta(run);
    }
}

} // namespace

int fStatistics(Run& run, long permutationen) {
    if (run.FstMask == 0) {
        return 2;
    }
    run.Permutationen = static_cast<int32_t>(permutationen);
    constexpr PassFrame kFrame{.Folder = &Folder::FStatistic, .NeedsTables = false};
    return runInFrame(run, kFrame, [&run] {
        if (!run.PopAllele.empty()) {
            runParts(run);
            run.LogEntry("Do some F-statistics...");
        }
        return 0;
    });
}

int pairwiseFst(Run& run) {
    tablesReady(run);
    announce(run.FstMask, Message::PairsBegin);
    FTriple f = newFTriple(run.AnzPop);
    CMatrix locusTable;
    const bool withTable = (run.FstMask & kLocusTableBits) != 0;
    if (withTable) {
        locusTable = newLocusTable(run.AnzLoci, run.AnzPop);
    }
    estimatePairs(run, f, run.PopAllele, locusTable);
    if (!writeFstMatrices(run, f)) {
        return lostFile();
    }
    AUSGABE(Message::PairsEnd);
    if (withTable) {
        ResultFile sheet = run.OpenResult("LocusFHeterogeneity.xls", "ab+");
        if (hasBit(run.FstMask, FstBit::Heterogeneity)) {
            writePairHeterogeneity(run, locusTable, sheet);
        }
    }
    return run.Permutationen > 0 ? testAndWritePairs(run, f, locusTable) : 0;
}

void globalFst(Run& run) {
    announce(run.FstMask, Message::GlobalBegin);
    GlobalResult global{};
    const int32_t columns = run.AnzLoci;
    global.locus.Resize(FRow::Anzahl, columns);
    global.locus.Fill(run.DistFehlerwert);
    global.pLocus.Resize(3, columns);
    auto& [fst, fit, fis, gst, gstStrich] = global.values;
    estimateGlobal(run, fst, fit, fis, gst, gstStrich, global.locus, run.PopAllele, run.AnzLoci,
                   run.AnzPop);
    if (run.Permutationen > 0) {
        auto& [pFst, pGst, pGstStrich] = global.pValues;
        testGlobal(run, fst, gst, gstStrich, global.locus, pFst, pGst, pGstStrich, global.pLocus);
    }
    writeGlobalFst(run, global);
    if ((run.FstMask & kLocusTableBits) != 0) {
        ResultFile sheet = run.OpenResult("LocusFHeterogeneity.xls", "ab+");
        if (hasBit(run.FstMask, FstBit::Heterogeneity)) {
            writeGlobalHeterogeneity(run, global.locus, sheet);
        }
    }
    AUSGABE(Message::GlobalEnd);
}

} // namespace kva
