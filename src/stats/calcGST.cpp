// Gst: the partition of gene diversity among populations (Nei 1973), per locus and
// over loci, in the sheet "GST.xls" of the folder "Single_data". Gst' is Gst over
// Gst(max), the Gst that the same Hs would give at its largest Ht (Hedrick 2005).
//
//      	fca8	fca23
//      Gst	0.102045	0.043310
//      Gst'	0.712903	0.301992
//
//      Gst(max)	...
#include "control/Ausgabe.h"
#include "data/CMatrix.h"
#include "data/diversity.h"
#include "stats/passes.h"
#include "stats/statpass.h"

namespace kva {

namespace {

constexpr double kLeast = 1e-06; // diversities and sums up to here divide nothing

// Columns of GstTabelle. Heterozygosities are uncorrected: frequencies alone count.
enum Column {
    kHs,       // mean over the populations
    kHt,       // of the pool
    kRatio,    // Hs / Ht
    kHtMax,    // the largest Ht that this Hs allows
    kRatioMax, // Hs / Ht(max)
    kColumns
};

struct Partition {
    CMatrix GstTabelle; // a row per locus, 0.0 where it was skipped
    double SummeHs = 0.0;
    double SummeHt = 0.0;
    double SummeHtMax = 0.0;
    double SummeRatio = 0.0;    // becomes the mean over AnzRatio loci
    double SummeRatioMax = 0.0; // becomes the mean over AnzRatioMax loci
    int AnzRatio = 0;
    int AnzRatioMax = 0;

    double cell(int locus, Column column) const { return GstTabelle(locus, column); }
};

// A row of the sheet; `locus` counts from 0.
struct Row {
    const char* label;
    double (*value)(const Partition& of, int locus);
    const char* end;
};

constexpr Row kRows[] = {
    {"Gst", [](const Partition& of, int l) { return gst(of.cell(l, kRatio)); }, "\n"},
    {"Gst'",
     [](const Partition& of, int l) {
         return gstStrich(of.cell(l, kRatio), of.cell(l, kRatioMax));
     },
     "\n\n"}, // wanted: the blank line stands here, not behind the three Gst rows
    {"Gst(max)", [](const Partition& of, int l) { return gst(of.cell(l, kRatioMax)); }, "\n"},
    {"Hs", [](const Partition& of, int l) { return of.cell(l, kHs); }, "\n"},
    {"Ht", [](const Partition& of, int l) { return of.cell(l, kHt); }, "\n"},
    {"Ht(max)", [](const Partition& of, int l) { return of.cell(l, kHtMax); }, "\n"},
};

// The sum of the uncorrected heterozygosities of the populations with data, and their number.
double sumOverPopulations(const SampleTables& tables, std::size_t locus, int& s) {
    double sum = 0.0;
    s = 0;
    for (std::size_t p = 1; p < tables.size(); ++p) {
        const double h = tables[p][locus].CalcHetuk();
        if (h >= 0) {
            sum += h;
            ++s;
        }
    }
    return sum;
}

void addLocus(Partition& of, const SampleTables& tables, int locus) {
    const auto place = static_cast<std::size_t>(locus);
    const double Ht = tables[0][place].CalcHetuk();
    of.GstTabelle(locus, kHt) = Ht;
    int s = 0;
    const double sum = sumOverPopulations(tables, place, s);
    if (Ht < 0 || s == 0) {
        return;
    }
    const double Hs = sum / s;
    const double HtMax = largestHt(s, Hs);
    of.GstTabelle(locus, kHs) = Hs;
    of.GstTabelle(locus, kHtMax) = HtMax;
    of.SummeHs += Hs;
    of.SummeHt += Ht;
    of.SummeHtMax += HtMax;
    if (Ht > kLeast) {
        of.GstTabelle(locus, kRatio) = Hs / Ht;
        of.SummeRatio += Hs / Ht;
        ++of.AnzRatio;
    }
    if (HtMax > kLeast) {
        of.GstTabelle(locus, kRatioMax) = Hs / HtMax;
        of.SummeRatioMax += Hs / HtMax;
        ++of.AnzRatioMax;
    }
}

Partition partition(const SampleTables& tables, int loci) {
    Partition of;
    of.GstTabelle.Resize(loci, kColumns);
    for (int locus = 0; locus < loci; ++locus) {
        addLocus(of, tables, locus);
    }
    if (of.AnzRatio > 0) {
        of.SummeRatio /= of.AnzRatio;
    }
    if (of.AnzRatioMax > 0) {
        of.SummeRatioMax /= of.AnzRatioMax;
    }
    return of;
}

void writeRow(ResultFile& sheet, const Row& row, const Partition& of, int loci) {
    sheet.text(row.label);
    for (int locus = 0; locus < loci; ++locus) {
        if (of.GstTabelle(locus, kHt) > kLeast) {
            writeTabReal(sheet, row.value(of, locus));
        } else {
            writeTabNd(sheet);
        }
    }
    sheet.text(row.end);
}

// A line over all loci: label, Gst, Gst'. No guard for a Gst(max) of 0: the cell becomes what the
// division gives.
void writeMean(ResultFile& sheet, const char* label, bool there, double ratio, double ratioMax) {
    sheet.text(label);
    if (there) {
        writeTabReal(sheet, gst(ratio));
        writeTabReal(sheet, gstStrich(ratio, ratioMax));
    } else {
        writeTabNd(sheet);
        writeTabNd(sheet);
    }
    sheet.character('\n');
}

} // namespace

void writeGst(Run& run) {
    AUSGABE(Message::GstBegin);
    ResultFile sheet = run.OpenResult("GST.xls", "wb");
    writeLociHead(sheet, *run.Daten, run.DatenFormat);
    const int loci = run.Daten->AnzLoci;
    const Partition of = partition(run.PopAllele, loci);
    for (const Row& row : kRows) {
        writeRow(sheet, row, of, loci);
    }
    sheet.text("\n\tGst\tGst'\n");
    // The mean of the ratios of the loci, then the ratio of the means over loci.
    writeMean(sheet, "Gst Hamrick and Godt", of.AnzRatio >= 1, of.SummeRatio, of.SummeRatioMax);
    writeMean(sheet, "Gst Nei", of.SummeHt > kLeast, of.SummeHs / of.SummeHt,
              of.SummeHs / of.SummeHtMax);
    sheet.close();
    run.LogEntry("     Calculated Gst");
    AUSGABE(Message::GstEnd);
}

} // namespace kva
