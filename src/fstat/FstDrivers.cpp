// The F-statistics pass: enters "F-Statistic" and runs the pairwise part, the part over
// all populations and F-beta, as the word of flags says.
#include "control/AnalyseDataObj.h"
#include "control/Ausgabe.h"
#include "data/passfolder.h"
#include "fstat/FstHeterogeneity.h"
#include "fstat/FstSheets.h"

namespace {

constexpr uint32_t kLocusTableBits = FstBit::LocusTable | FstBit::Heterogeneity;
constexpr uint32_t kThinningBits = FstBit::RandomDiscard | FstBit::Jackknife;

// Tells the start of a computation once for each heterozygosity that is on.
void announce(uint32_t fstMask, int code) {
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
            AUSGABE(code, rule.text);
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
    AUSGABE(55, nullptr);
    return -1;
}

} // namespace

int AnalyseDataObj::CalcDistancesSpecial(long permutationen) {
    if (FstMask == 0) {
        return 2;
    }
    if (!Daten) {
        return -4;
    }
    if (PopAllele.empty()) {
        CountAllels();
    }
    Permutationen = static_cast<int32_t>(permutationen);
    const PassFolder folder(*this, Ordner::FStatistic);
    if (!folder.entered() || PopAllele.empty()) {
        return folder.status();
    }
    if (!hasBit(FstMask, FstBit::NoPairs)) {
        (void)FST_ALLG(); // a lost file is told there and stops nothing here
    }
    if (hasBit(FstMask, FstBit::Global)) {
        (void)FST_ALLGGLOBAL();
    }
    if (hasBit(FstMask, FstBit::Beta)) {
        (void)F_BETA_ALLG();
    }
    LogEntry("Do some F-statistics...");
    return 0;
}

int AnalyseDataObj::FST_ALLG() {
    if (PopAllele.empty()) {
        CountAllels();
    }
    announce(FstMask, 52);
    FTripel f = newFTripel(AnzPop);
    CMatrix locusTable;
    const bool withTable = (FstMask & kLocusTableBits) != 0;
    if (withTable) {
        locusTable = newLocusTable(AnzLoci, AnzPop);
    }
    (void)FST_PAIR_WC84(f, PopAllele, locusTable);
    if (!writeFstMatrices(*this, f)) {
        return lostFile();
    }
    AUSGABE(53, nullptr);
    if (withTable) {
        ResultFile sheet = OpenResult("LocusFHeterogeneity.xls", "ab+");
        if (hasBit(FstMask, FstBit::Heterogeneity)) {
            writePairHeterogeneity(*this, locusTable, sheet);
        }
    }
    return Permutationen > 0 ? TestPairs(f, locusTable) : 0;
}

int AnalyseDataObj::TestPairs(FTripel& f, CMatrix& locusTable) {
    FTripel p = newFTripel(AnzPop);
    if ((FstMask & kThinningBits) == 0) {
        (void)FST_P_WC84(p, f, PopAllele, locusTable);
    } else {
        CMatrix untergrenze;
        CMatrix obergrenze;
        if (hasBit(FstMask, FstBit::Confidence)) {
            untergrenze.Resize(AnzPop, AnzPop);
            obergrenze.Resize(AnzPop, AnzPop);
        }
        (void)FST_RD_WC84(p, f, PopAllele, untergrenze, obergrenze, locusTable);
        if (!writeFstMeans(*this, f, untergrenze, obergrenze)) {
            return lostFile();
        }
    }
    return writeFstPValues(*this, f, p) ? 0 : lostFile();
}

int AnalyseDataObj::FST_ALLGGLOBAL() {
    announce(FstMask, 71);
    GlobalErgebnis global{};
    const int32_t columns = AnzLoci;
    global.locus.Resize(FZeile::Anzahl, columns);
    global.locus.Fill(DistFehlerwert);
    global.pLocus.Resize(3, columns);
    auto& [fst, fit, fis, gst, gstStrich] = global.werte;
    (void)FST_GLOBAL_WC84(fst, fit, fis, gst, gstStrich, global.locus, PopAllele, AnzLoci, AnzPop);
    if (Permutationen > 0) {
        auto& [pFst, pGst, pGstStrich] = global.pWerte;
        (void)FST_GLOBAL_P_WC84(fst, gst, gstStrich, global.locus, pFst, pGst, pGstStrich,
                                global.pLocus);
    }
    writeGlobalFst(*this, global);
    if ((FstMask & kLocusTableBits) != 0) {
        ResultFile sheet = OpenResult("LocusFHeterogeneity.xls", "ab+");
        if (hasBit(FstMask, FstBit::Heterogeneity)) {
            writeGlobalHeterogeneity(*this, global.locus, sheet);
        }
    }
    AUSGABE(72, nullptr);
    return 0;
}
