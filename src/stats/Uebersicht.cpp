// Overview: twenty sheets in the folder "Single_data", one statistic each, with a
// row for the pool and each population and a column for each locus:
//
//      	fca8	fca23
//      Total	0.871042	0.790155
//      P01	0.725000	n.d.
//
// They come in four blocks of five sheets that share their cells' computation. The
// first block runs the random-discard replicates of all tables with haploid
// entries, in the order of the cells.
#include "control/Ausgabe.h"
#include "data/CMatrix.h"
#include "data/randomdiscard.h"
#include "stats/NumberAllelesExp.h"
#include "stats/passes.h"
#include "stats/statpass.h"

#include <algorithm>
#include <optional>

namespace kva {

namespace {

constexpr int32_t kRichnessMinStart = 1000000; // stays where no sample has two copies

// --- The sheets ------------------------------------------------------------------------

struct HetValues {
    double het;
    double hetRD;
    double shannon;
    int n; // independent gene copies
};

template <double HetValues::*Het> double theta(const HetValues& v) {
    return CalcThetaSMM(v.*Het, v.n);
}

constexpr std::array<CellRule<HetValues>, 5> kHetSheets = {{
    {"Hetexp.xls", CellFormat::Real, field<&HetValues::het>, negative<&HetValues::het>},
    {"HetRDexp.xls", CellFormat::Real, field<&HetValues::hetRD>, negative<&HetValues::hetRD>},
    {"Shannon.xls", CellFormat::Real, field<&HetValues::shannon>, negative<&HetValues::shannon>},
    {"Thetaexp.xls", CellFormat::Real, theta<&HetValues::het>, negative<&HetValues::het>},
    {"ThetaRDexp.xls", CellFormat::Real, theta<&HetValues::hetRD>, negative<&HetValues::hetRD>},
}};

struct VarValues {
    double var;
    double mean;
    double varRD;
    double r2; // square of the repeat length; 0 or negative: unknown
};

template <double VarValues::*Var> double perRepeat(const VarValues& v) {
    return v.*Var / v.r2;
}

// One condition for both repeat sheets.
bool noRepeatVar(const VarValues& v) {
    return v.r2 <= 0 || v.varRD < 0;
}

constexpr std::array<CellRule<VarValues>, 5> kVarSheets = {{
    {"Var.xls", CellFormat::Real, field<&VarValues::var>, negative<&VarValues::var>},
    {"Mean.xls", CellFormat::Real, field<&VarValues::mean>, negative<&VarValues::mean>},
    {"VarRD.xls", CellFormat::Real, field<&VarValues::varRD>, negative<&VarValues::varRD>},
    {"Varrepeat.xls", CellFormat::Real, perRepeat<&VarValues::var>, noRepeatVar},
    {"VarRDrepeat.xls", CellFormat::Real, perRepeat<&VarValues::varRD>, noRepeatVar},
}};

struct RangeValues {
    int32_t max;
    int32_t min;
    double richness;
    double var;
    double varRD;
    double r2; // as in VarValues
    int n;     // independent gene copies
};

// A variance in repeats of 0, or none, gives way to 1/(n+1).
template <double RangeValues::*Var> double corrected(const RangeValues& v) {
    const double x = v.*Var / v.r2;
    return x <= 0 ? 1.0 / (v.n + 1.0) : x;
}

template <double RangeValues::*Var> bool notCorrected(const RangeValues& v) {
    return v.r2 <= 0 || v.min < 0 || (v.*Var / v.r2 <= 0 && v.n < 2);
}

constexpr std::size_t kRichnessSheet = 2; // place of the richness in its block

constexpr std::array<CellRule<RangeValues>, 5> kRangeSheets = {{
    {"MaxAllele.xls", CellFormat::Count, field<&RangeValues::max>, negative<&RangeValues::max>},
    {"MinAllele.xls", CellFormat::Count, field<&RangeValues::min>, negative<&RangeValues::min>},
    {"AllelicRichness.xls", CellFormat::Real, field<&RangeValues::richness>,
     negative<&RangeValues::richness>},
    {"VarrepeatKorr.xls", CellFormat::Real, corrected<&RangeValues::var>,
     notCorrected<&RangeValues::var>},
    {"VarRDrepeatKorr.xls", CellFormat::Real, corrected<&RangeValues::varRD>,
     notCorrected<&RangeValues::varRD>},
}};

struct NumberValues {
    int32_t copies;
    double alleles;
    int n; // independent gene copies
    double smm;
    double iam;
};

constexpr std::array<CellRule<NumberValues>, 5> kNumberSheets = {{
    {"NumChromosomes.xls", CellFormat::Count, field<&NumberValues::copies>,
     belowOne<&NumberValues::copies>},
    {"NumAlleles.xls", CellFormat::Real, field<&NumberValues::alleles>,
     negative<&NumberValues::alleles>},
    {"NumAllelesExpSMM.xls", CellFormat::Real, field<&NumberValues::smm>,
     belowOne<&NumberValues::smm>},
    {"NumAllelesExpIAM.xls", CellFormat::Real, field<&NumberValues::iam>,
     belowOne<&NumberValues::smm>},
    {"NumChromosomeseffective.xls", CellFormat::Count, field<&NumberValues::n>,
     belowOne<&NumberValues::n>},
}};

// --- Console marks of a block -------------------------------------------------------------

struct Marks {
    Message before;               // in front of the block
    Message line;                 // the marks
    const char* mark;             // after the label of a population; null: the names themselves
    std::optional<Message> after; // behind the block
};

constexpr Marks kHetMarks = {Message::HetBegin, Message::HetMark, nullptr, std::nullopt};
constexpr Marks kVarMarks = {Message::VarBegin, Message::VarMark, "&", Message::VarEnd};
constexpr Marks kRangeMarks = {Message::RangeBegin, Message::RangeMark, "$", Message::RangeEnd};
constexpr Marks kNumberMarks = {Message::NumbersBegin, Message::NumbersMark, "*",
                                Message::NumbersEnd};

void markLineStart(const Marks& marks, const std::string& label, int p) {
    if (marks.mark == nullptr) {
        AUSGABE(marks.line, label.c_str());
        AUSGABE(marks.line, " ");
    } else if (p > 0) {
        AUSGABE(marks.line, marks.mark);
    }
}

void markLineEnd(const Marks& marks) {
    if (marks.mark == nullptr) {
        AUSGABE(marks.line, "\n");
    }
}

// --- The pass -------------------------------------------------------------------------------

class Overview {
  public:
    explicit Overview(Run& run);

    void writeHets(); // must come first: it completes RichnessMin
    void writeVars();
    void writeRanges();
    void writeNumbers();

  private:
    AllelCount& table(int p, int l) { return Source.PopAllele[p][l - 1]; }
    int32_t& richnessMin(int l) { return RichnessMin[l - 1]; }

    HetValues hetValues(int p, int l);
    VarValues varValues(int p, int l);
    RangeValues rangeValues(int p, int l);
    NumberValues numberValues(int p, int l);

    int richnessReference(int l); // gene copies of the sub-sample
    double squaredRepeat(int l) const;
    void writeRichnessTail(ResultFile& sheet);

    // Writes the sheets of a block and hands them back, still open.
    template <class Values, std::size_t Count>
    std::array<ResultFile, Count> writeBlock(const std::array<CellRule<Values>, Count>& rules,
                                             const Marks& marks,
                                             Values (Overview::*values)(int p, int l));

    Run& Source;
    int AnzPop;                       // populations in the tables
    int AnzLoci;                      // loci in the tables
    std::vector<int32_t> RichnessMin; // per locus the smallest AnzGesamt above 1, while the
                                      // reference is the minimal sample
    CMatrix RichnessVar;              // variance of each cell of the richness, -1.0: none
};

Overview::Overview(Run& run)
    : Source(run), AnzPop(run.Daten->GetPopAnzahl()), AnzLoci(run.Daten->AnzLoci) {
    if (Source.RichnessRef < 0) {
        RichnessMin.assign(AnzLoci, kRichnessMinStart);
    }
    RichnessVar.Resize(AnzPop + 1, AnzLoci < 1 ? AnzPop + 1 : AnzLoci);
    RichnessVar.Fill(-1.0);
}

template <class Values, std::size_t Count>
std::array<ResultFile, Count> Overview::writeBlock(const std::array<CellRule<Values>, Count>& rules,
                                                   const Marks& marks,
                                                   Values (Overview::*values)(int p, int l)) {
    AUSGABE(marks.before);
    std::array<ResultFile, Count> sheets = openSheets(Source, rules);
    for (int p = 0; p <= AnzPop; ++p) {
        const std::string label = sampleLabel(*Source.Daten, p);
        for (ResultFile& sheet : sheets) {
            writeLabel(sheet, label);
        }
        markLineStart(marks, label, p);
        for (int l = 1; l <= AnzLoci; ++l) {
            const Values cell = (this->*values)(p, l);
            for (std::size_t i = 0; i < Count; ++i) {
                writeCell(sheets[i], rules[i], cell);
            }
        }
        for (ResultFile& sheet : sheets) {
            sheet.character('\n');
        }
        markLineEnd(marks);
    }
    if (marks.after) {
        AUSGABE(*marks.after);
    }
    return sheets;
}

HetValues Overview::hetValues(int p, int l) {
    const AllelCount& T = table(p, l);
    if (Source.RichnessRef < 0 && T.AnzGesamt > 1) {
        richnessMin(l) = std::min(richnessMin(l), T.AnzGesamt);
    }
    return {T.CalcHet(), Source.Daten->CalcRDHet(Source.PopAllele, p, l, kRDReplicates),
            T.CalcShannon(), effectiveCopies(T)};
}

void Overview::writeHets() {
    writeBlock(kHetSheets, kHetMarks, &Overview::hetValues);
}

double Overview::squaredRepeat(int l) const {
    const double r = Source.Daten->GetLociRepeatMuster(l);
    return r > 0 ? r * r : r;
}

VarValues Overview::varValues(int p, int l) {
    const AllelCount& T = table(p, l);
    const double m = T.CalcMean();
    return {T.CalcVar(m), rdMean(T), rdVar(T, m), squaredRepeat(l)};
}

void Overview::writeVars() {
    writeBlock(kVarSheets, kVarMarks, &Overview::varValues);
}

int Overview::richnessReference(int l) {
    return Source.RichnessRef < 0 ? richnessMin(l) : Source.RichnessRef;
}

RangeValues Overview::rangeValues(int p, int l) {
    const AllelCount& T = table(p, l);
    const double m = T.CalcMean();
    const double richness = T.CalcRarefraction(richnessReference(l), RichnessVar(p, l - 1));
    return {T.MaxAllel,  T.MinAllel,       richness,          T.CalcVar(m),
            rdVar(T, m), squaredRepeat(l), effectiveCopies(T)};
}

// Reference in individuals, and the table of variances.
void Overview::writeRichnessTail(ResultFile& sheet) {
    sheet.text("\nStd. Ind. Number\t");
    for (int l = 1; l <= AnzLoci; ++l) {
        writeReal(sheet, richnessReference(l) * 0.5);
    }
    sheet.text("\n\nVariance of allelic richness\n");
    writeLociHead(sheet, *Source.Daten, Source.DatenFormat);
    for (int p = 0; p <= AnzPop; ++p) {
        writeLabel(sheet, sampleLabel(*Source.Daten, p));
        for (int l = 1; l <= AnzLoci; ++l) {
            writeRealOrNd(sheet, RichnessVar(p, l - 1));
        }
        sheet.character('\n');
    }
}

void Overview::writeRanges() {
    std::array<ResultFile, 5> sheets =
        writeBlock(kRangeSheets, kRangeMarks, &Overview::rangeValues);
    writeRichnessTail(sheets[kRichnessSheet]);
}

NumberValues Overview::numberValues(int p, int l) {
    const AllelCount& T = table(p, l);
    NumberValues v = {T.AnzGesamt,
                      Source.Daten->CalcRDAllele(Source.PopAllele, p, l, kRDReplicates),
                      effectiveCopies(T), -1.0, -1.0};
    double H = Source.Daten->CalcRDHet(Source.PopAllele, p, l, kRDReplicates);
    CalcNumberAllelesExp(v.smm, v.iam, v.n, H); // -1.0 in both is the refusal
    return v;
}

void Overview::writeNumbers() {
    writeBlock(kNumberSheets, kNumberMarks, &Overview::numberValues);
}

} // namespace

int writeOverview(Run& run) {
    constexpr PassFrame kFrame{.Folder = &Folder::SingleData,
                               .Begin = Message::OverviewBegin,
                               .End = Message::OverviewEnd,
                               .LogText = "Make Overview..."};
    return runInFrame(run, kFrame, [&run] {
        Overview overview(run);
        overview.writeHets();
        overview.writeVars();
        overview.writeRanges();
        overview.writeNumbers();
        writeGst(run);
        return 0;
    });
}

} // namespace kva
