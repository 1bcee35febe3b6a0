// Summary: "Summary.xls" in the result folder itself, one line for each locus and
// population with all statistics side by side and the allele frequencies at the
// end, by ascending allele number:
//
//      Locus name	Pop.name	Het obs	...	Fis,Pop	Frequences
//      fca8	P01	0.625000	...	0.137931	0.125000	0.875000
#include "control/Ausgabe.h"
#include "data/diversity.h"
#include "data/randomdiscard.h"
#include "stats/NumberAllelesExp.h"
#include "stats/passes.h"
#include "stats/statpass.h"

namespace kva {

namespace {

struct SummaryValues {
    double hetObs;
    double het;
    double hetRD;
    double mean;
    double var;
    double varRD;
    double shannon;
    int32_t min;
    int32_t max;
    int32_t copies;   // gene copies counted
    int n;            // independent gene copies
    double allelesRD; // random-discard number of alleles
    int32_t alleles;
    double smm;
    double iam;
    bool hasFis; // fully diploid and polymorphic
    double hsk;
    int r; // repeat length; below 1: unknown
    int s; // rest length; below 1: unknown
};

using V = SummaryValues;

bool noRepeatVar(const V& v) {
    return v.r < 1 || v.var < 0;
}
bool noAllele(const V& v) {
    return v.mean < 0;
}
bool noRepeatNumber(const V& v) {
    return v.r < 1 || v.mean == -1.0 || v.s < 1;
}
bool noFis(const V& v) {
    return !v.hasFis;
}

constexpr CellFormat kReal = CellFormat::Real;
constexpr CellFormat kCount = CellFormat::Count;

// The columns between the names and the frequencies, under their heads.
constexpr std::array<CellRule<V>, 22> kColumns = {{
    {"Het obs", kReal, field<&V::hetObs>, negative<&V::hetObs>},
    {"Het exp", kReal, field<&V::het>, negative<&V::het>},
    {"Het RD", kReal, field<&V::hetRD>, negative<&V::hetRD>},
    {"Var", kReal, field<&V::var>, negative<&V::var>},
    {"VarRD", kReal, field<&V::varRD>, negative<&V::varRD>},
    {"Var repeatnumber", kReal, varRepeat<V>, noRepeatVar},
    {"Var repeatRD", kReal, varRDRepeat<V>, noRepeatVar},
    {"ShannonID", kReal, field<&V::shannon>, negative<&V::shannon>},
    {"MinAllele", kCount, field<&V::min>, noAllele},
    {"MeanAllele", kReal, field<&V::mean>, noAllele},
    {"MaxAllele", kCount, field<&V::max>, noAllele},
    {"MinRepeat", kReal, [](const V& v) { return inRepeats(v, v.min); }, noRepeatNumber},
    {"MeanRepeat", kReal, [](const V& v) { return inRepeats(v, v.mean); }, noRepeatNumber},
    {"MaxRepeat", kReal, [](const V& v) { return inRepeats(v, v.max); }, noRepeatNumber},
    {"Analys.Chrom.", kCount, field<&V::copies>, belowOne<&V::copies>},
    {"Effect.Chrom.", kCount, field<&V::n>, belowOne<&V::n>},
    {"Num.Alleles", kReal, field<&V::allelesRD>, belowOne<&V::allelesRD>},
    {"Max.obs.Alleles", kCount, field<&V::alleles>, belowOne<&V::alleles>},
    {"SMM Exp.Num.Alleles", kReal, field<&V::smm>, belowOne<&V::smm>},
    {"IAN Exp.Num.Alleles", kReal, field<&V::iam>, belowOne<&V::smm>},
    {"Hs Nei", kReal, field<&V::hsk>, noFis},
    {"Fis,Pop", kReal, [](const V& v) { return inbreeding(v.hetObs, v.hsk); }, noFis},
}};

// The values of population p at locus l. The random-discard values of a table whose replicates
// have not run yet are the plain ones: only the number of alleles, read last, starts them.
SummaryValues summaryValues(Run& run, int p, int l) {
    const AllelCount& T = run.PopAllele[p][l - 1];
    SummaryValues v = {};
    v.hetObs = T.CalcHetobs();
    v.het = T.CalcHet();
    v.hetRD = rdHet(T);
    v.mean = T.CalcMean();
    v.var = T.CalcVar(v.mean);
    v.varRD = rdVar(T, v.mean);
    v.shannon = T.CalcShannon();
    v.min = T.MinAllel;
    v.max = T.MaxAllel;
    v.copies = T.AnzGesamt;
    v.n = effectiveCopies(T);
    v.allelesRD = run.Daten->CalcRDAllele(run.PopAllele, p, l, kRDReplicates);
    v.alleles = T.AnzAllele;
    CalcNumberAllelesExp(v.smm, v.iam, v.n, v.hetRD); // -1.0 in both is the refusal
    v.hasFis = !T.isHaploid() && T.AnzAllele > 1;
    v.hsk = T.CalcHsk(1);
    v.r = run.Daten->GetLociRepeatMuster(l);
    v.s = run.Daten->GetLociRepeatRest(l);
    return v;
}

void writeLine(ResultFile& sheet, Run& run, int p, int l) {
    writeLocusNames(sheet, run, l);
    writeLabel(sheet, sampleLabel(*run.Daten, p));
    const SummaryValues values = summaryValues(run, p, l);
    for (const CellRule<SummaryValues>& column : kColumns) {
        writeCell(sheet, column, values);
    }
    const AllelCount& T = run.PopAllele[p][l - 1];
    for (int i = 0; i < T.AnzAllele; ++i) {
        writeReal(sheet, T.GetFrequenz(i));
    }
    sheet.character('\n');
}

void writeSheet(Run& run) {
    ResultFile sheet = run.OpenResult("Summary.xls", "wb");
    sheet.text(locusNameHead(run));
    sheet.text("\tPop.name");
    writeColumnHeads(sheet, kColumns);
    sheet.text("\tFrequences\n");
    for (int l = 1; l <= run.Daten->AnzLoci; ++l) {
        AUSGABE(Message::SummaryLoci);
        AUSGABE(Message::SummaryLocus, locusLabel(*run.Daten, l).c_str());
        for (int p = 1; p <= run.Daten->GetPopAnzahl(); ++p) {
            AUSGABE(Message::SummaryMark, "P");
            writeLine(sheet, run, p, l);
        }
    }
}

} // namespace

int writeSummary(Run& run) {
    constexpr PassFrame kFrame{.BeginInFolder = Message::SummaryBegin,
                               .End = Message::SummaryEnd,
                               .LogText = "Create tabular result files..."};
    return runInFrame(run, kFrame, writeSheet);
}

} // namespace kva
