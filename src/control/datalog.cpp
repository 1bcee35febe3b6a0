// The head of the run log "KVA.log": the data set and the settings of the run. For
// `-i cats.txt -fst p` it is
//
//     KVAnalyser-Log
//     	Version: 4.05
//     	KVAnalyzer, population genetics of microsatellites
//
//     Filename: cats.txt
//     Number of Loci		: 9
//     Number of Populations	: 17
//     Format : 2
//
//     Allelic Richness : Minimal sample number per locus
//     F-Statistics settings:
//     Heterozygosity is Hobserved
//     Resampling Genotypes
//     Loci are linked together
//     Randomisationmode: Permutation
//
//     Number of permutations	: 10000
//
// Wanted: neither global nor pairwise Fst, nor F-beta, nor the word for individuals,
// nor the heterozygosity range stands there: the head keeps the lines that its readers know.
#include "control/AnalyseDataObj.h"
#include "distance/measures.h"

#include <span>

namespace kva {

namespace {

// A piece of the head that follows a bit.
struct LogPiece {
    uint32_t Bit;
    const char* On;       // while the bit is on
    const char* Off = ""; // while it is off
};

// Behind the lines of the distances themselves.
constexpr LogPiece kAfterDistances[] = {
    {DistBit::Rst, "Rst, Population subdivision with MS\n"},
};

// All on one line, with nothing between them.
constexpr LogPiece kHeterozygosity[] = {
    {FstBit::HObs, "Heterozygosity is Hobserved"},
    {FstBit::HExp, "Heterozygosity is Hexpected"},
    {FstBit::HAuto, "(AUTO)Heterozygosity is Hobserved or Hexpected"},
};

constexpr LogPiece kResampling[] = {
    {FstBit::Genotypes, "Resampling Genotypes\n", "Resampling Alleles\n"},
    {FstBit::Linked, "Loci are linked together\n", "Loci are unlinked\n"},
    {FstBit::Permutation, "Randomisationmode: Permutation\n", "Randomisationmode: Randomisation\n"},
    {FstBit::PerLocus, "All Fst's per loci and population pairs\n"},
};

constexpr LogPiece kThinning[] = {
    {FstBit::RandomDiscard, "Make Randomdiscarding before permutation\n"},
    {FstBit::Jackknife, "Make Jackknifing before permutation\n"},
};

constexpr LogPiece kConfidence[] = {
    {FstBit::Confidence, "95% Confidenzinterval of test-statistic\n"},
    {FstBit::ConfidencePermuted,
     "95% Confidenzinterval of permutated-statistic instead of test-statistic itself\n"},
};

void writePieces(ResultFile& log, std::span<const LogPiece> pieces, uint32_t mask) {
    for (const LogPiece& piece : pieces) {
        log.text(hasBit(mask, piece.Bit) ? piece.On : piece.Off);
    }
}

void writeDataSet(ResultFile& log, const AnalyseDataObj& run) {
    log.print("KVAnalyser-Log\n\tVersion: %s\n", kVersion);
    log.text("\tKVAnalyzer, population genetics of microsatellites\n\n");
    log.text("Filename: ");
    log.text(run.DateiName);
    log.print("\nNumber of Loci\t\t: %d\n", run.AnzLoci);
    log.print("Number of Populations\t: %d\n", run.AnzPop);
    log.print("Format : %d\n\n", run.DatenFormat);
}

// No line end follows: what comes next begins with one.
void writeRichness(ResultFile& log, int32_t geneCopies) {
    if (geneCopies < 1) {
        log.text("Allelic Richness : Minimal sample number per locus");
        return;
    }
    const float individuals = static_cast<float>(geneCopies) * 0.5F;
    log.print("Allelic Richness : %f", static_cast<double>(individuals));
}

void writeDistances(ResultFile& log, const AnalyseSettings& settings, long bootstraps) {
    log.text("\nDistanz settings:\n");
    for (const Measure& measure : selectedMeasures(settings.PopDistMask)) {
        log.print("%s\n", measure.LogLine);
    }
    writePieces(log, kAfterDistances, settings.PopDistMask);
    log.text(hasBit(settings.GeneralMask, GeneralBit::MinusLog)
                 ? "Distances are taken as -ln(P) [if possible]\n"
                 : "Distances are taken as 1-P [if possible]\n");
    log.print("\nNumber of bootstraps\t: %ld\n", bootstraps);
}

void writeFStatistics(ResultFile& log, uint32_t mask, long permutations) {
    log.text("\nF-Statistics settings:\n");
    writePieces(log, kHeterozygosity, mask);
    log.character('\n');
    writePieces(log, kResampling, mask);
    if (permutations > 0) {
        writePieces(log, kThinning, mask);
        if (hasBit(mask, FstBit::RandomDiscard)) {
            writePieces(log, kConfidence, mask);
        }
    }
    log.print("\nNumber of permutations\t: %ld\n", permutations);
}

} // namespace

int AnalyseDataObj::WriteDataLog(long bootstraps, long permutations) {
    writeDataSet(LogDatei, *this);
    writeRichness(LogDatei, RichnessRef);
    if (hasBit(GeneralMask, GeneralBit::PopDistances)) {
        writeDistances(LogDatei, *this, bootstraps);
    }
    if (hasBit(GeneralMask, GeneralBit::FStatistics)) {
        writeFStatistics(LogDatei, FstMask, permutations);
    }
    LogDatei.character('\n');
    LogDatei.flush();
    return 0;
}

} // namespace kva
