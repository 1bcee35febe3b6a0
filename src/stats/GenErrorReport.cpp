// Error report: "Errorreport.txt", a log of alleles that may be typing errors. The
// gaps between neighbouring alleles of the pool are held against the repeat length
// of the locus, and the alleles against the plausible lengths:
//
//      fca8,	Incorrect Mutationsteps:1 instead of 2	Found to short Allel(s):20
//      fca23,	monomorphic
#include "control/Ausgabe.h"
#include "stats/passes.h"
#include "stats/statpass.h"

#include <algorithm>

namespace kva {

namespace {

constexpr int32_t kSmallestGapStart = 10000; // wanted: larger gaps count as this one

struct Gaps {
    int32_t smallest = kSmallestGapStart;
    int32_t largest = 0;
    int32_t incompatible = 0; // the last one that the repeat length does not divide; 0: none
};

// The gaps between neighbouring rows of a sorted table. `repeat` below 1: unknown.
Gaps findGaps(const AllelCount& table, int repeat) {
    Gaps gaps;
    int32_t previous = table.MinAllel;
    for (int32_t i = 1; i < table.AnzAllele; ++i) {
        const int32_t number = table.Allele[i].Nummer;
        const int32_t gap = number - previous;
        if (repeat > 0 && gap % repeat != 0) {
            gaps.incompatible = gap;
        }
        gaps.smallest = std::min(gaps.smallest, gap);
        gaps.largest = std::max(gaps.largest, gap);
        previous = number;
    }
    return gaps;
}

void writeSteps(ResultFile& report, const Gaps& gaps, int repeat) {
    if (repeat < 1) {
        report.print("Mutationsteps found:%d\t", gaps.smallest);
    } else if (gaps.smallest < repeat) {
        report.print("Incorrect Mutationsteps:%d instead of %d\t", gaps.smallest, repeat);
    } else if (gaps.smallest > repeat) {
        report.print("Mutationsteps to large:%d instead of %d\t", gaps.smallest, repeat);
    } else if (gaps.incompatible > 0) {
        report.print("Found incompatible Mutationstep:%d !\t", gaps.incompatible);
    }
}

void writeRemarks(ResultFile& report, const Run& run, const AllelCount& table, int repeat) {
    const Gaps gaps = findGaps(table, repeat);
    writeSteps(report, gaps, repeat);
    const bool manySteps = repeat > 1 && int64_t{run.GapSchritte} * gaps.smallest < gaps.largest;
    if (manySteps || run.GapBasen < gaps.largest) {
        report.print("Large Allelgap detected:%d\t", gaps.largest);
    }
    if (table.MinAllel < run.AllelMinLaenge) {
        report.print("Found to short Allel(s):%d\t", table.MinAllel);
    }
    if (run.AllelMaxLaenge < table.MaxAllel) {
        report.print("Found to long Allel(s):%d\t", table.MaxAllel);
    }
}

void writeHead(ResultFile& report, const Run& run) {
    report.text("This file is a log-file of possible errors in your dataset.\n"
                "What you find here:\n"
                "- Unexpected Mutationsteps/The real Mutationsteps.\n");
    report.print("- Large Gaps in your Data (>%dxMutationstep OR >%d bp)\n", run.GapSchritte,
                 run.GapBasen);
    report.print("- Unexpected short/long Allels (possible type errors!)[<%d,>%d]\n",
                 run.AllelMinLaenge, run.AllelMaxLaenge);
}

void writeReport(Run& run) {
    ResultFile report = run.OpenResult("Errorreport.txt", "wb");
    writeHead(report, run);
    const LocusTables& pool = run.PopAllele[0];
    for (int l = 1; l <= run.Daten->AnzLoci; ++l) {
        const AllelCount& table = pool[l - 1];
        AUSGABE(Message::CountMark, "*");
        report.character('\n');
        report.text(locusLabel(*run.Daten, l));
        report.text(",\t");
        if (table.AnzAllele < 2) {
            report.text("monomorphic");
        } else {
            writeRemarks(report, run, table, run.Daten->GetLociRepeatMuster(l));
        }
    }
}

} // namespace

long writeErrorReport(Run& run) {
    constexpr PassFrame kFrame{.BeginInFolder = Message::ErrorReportBegin,
                               .End = Message::ErrorReportEnd,
                               .LogText = "Generate Errorreport..."};
    return runInFrame(run, kFrame, writeReport);
}

} // namespace kva
