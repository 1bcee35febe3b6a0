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
#include "control/flags.h"
#include "distance/measures.h"

#include <initializer_list>

namespace kva {

namespace {

// What the catalogue of flags has for the log, for some bits of a word in their order.
void writeFlags(ResultFile& log, const AnalyseSettings& settings, FlagWord word,
                std::initializer_list<uint32_t> bits) {
    for (const uint32_t bit : bits) {
        const Flag& flag = flagOf(word, bit);
        log.text(hasBit(settings.*maskOf(word), bit) ? flag.LogOn : flag.LogOff);
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
    writeFlags(log, settings, FlagWord::Distances, {DistBit::Rst});
    writeFlags(log, settings, FlagWord::General, {GeneralBit::MinusLog});
    log.print("\nNumber of bootstraps\t: %ld\n", bootstraps);
}

// The heterozygosities stand on one line, with nothing between them.
void writeFStatistics(ResultFile& log, const AnalyseSettings& settings, long permutations) {
    constexpr auto kWord = FlagWord::FStatistics;
    log.text("\nF-Statistics settings:\n");
    writeFlags(log, settings, kWord, {FstBit::HObs, FstBit::HExp, FstBit::HAuto});
    log.character('\n');
    writeFlags(log, settings, kWord,
               {FstBit::Genotypes, FstBit::Linked, FstBit::Permutation, FstBit::PerLocus});
    if (permutations > 0) {
        writeFlags(log, settings, kWord, {FstBit::RandomDiscard, FstBit::Jackknife});
        if (hasBit(settings.FstMask, FstBit::RandomDiscard)) {
            writeFlags(log, settings, kWord, {FstBit::Confidence, FstBit::ConfidencePermuted});
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
        writeFStatistics(LogDatei, *this, permutations);
    }
    LogDatei.character('\n');
    LogDatei.flush();
    return 0;
}

} // namespace kva
