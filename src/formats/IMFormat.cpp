// The input files of IM (Hey and Nielsen 2004), one per pair of populations, in the folder
// "IM_Format" inside "Formats&Data". Two populations with one common locus, of 2 and 1 gene
// copies there, the first allele of South missing:
//
//      File 'data.txt' converted by KVAnalyzer
//      North South
//      1
//      LocA 2 1 1 S 1 0.0005
//       North000 0
//       North001 3
//       South001 1
//
// and an empty line. Without a mutation rate the head of a locus reads "LocA 2 1 1 S 1.000000".
#include "base/console.h"
#include "base/filename.h"
#include "control/Ausgabe.h"
#include "formats/StepWidth.h"
#include "formats/digits.h"
#include "formats/passes.h"
#include "run/passframe.h"
#include "run/run.h"

#include <algorithm>
#include <span>

namespace kva {

namespace {

// The tables of population i, counted from 0.
const LocusTables& tablesOf(const Run& run, int i) {
    return run.PopAllele[i + 1];
}

bool isCommon(const AllelCount& a, const AllelCount& b) {
    return a.AnzGesamt > 0 && b.AnzGesamt > 0;
}

int countCommonLoci(const LocusTables& a, const LocusTables& b) {
    int common = 0;
    for (std::size_t l = 0; l < a.size(); ++l) {
        common += isCommon(a[l], b[l]) ? 1 : 0;
    }
    return common;
}

void writeLocusHead(ResultFile& file, const LociObj& locus, int copiesI, int copiesJ) {
    const double scalar = locus.InheritanceScalar <= 0 ? 1.0 : locus.InheritanceScalar;
    file.print("%s %d %d 1 S ", locus.LociName.c_str(), copiesI, copiesJ);
    if (locus.MutationRate > 0) {
        file.print("%-g %-g\n", scalar, locus.MutationRate);
    } else {
        file.print("%f\n", scalar);
    }
}

// What turns an allele into steps: (allele - smallest) / divisor.
struct Steps {
    int32_t Smallest; // smallest allele of the locus in the pool
    int32_t Divisor;  // base pairs per step
};

// "%6.6s": the name cut, or padded on the left, to 6 bytes.
std::string labelOf(const std::string& name) {
    constexpr std::size_t width = 6;
    return std::string(width - std::min(name.size(), width), ' ') + name.substr(0, width);
}

// The lines of one population at one locus. The numbers in the labels are those of the slots, so
// that missing alleles leave gaps. Result: the number of lines.
int writeAlleles(ResultFile& file, const std::string& name, std::span<const int32_t> alleles,
                 Steps steps) {
    const std::string label = labelOf(name);
    std::string line;
    int lines = 0;
    for (std::size_t slot = 0; slot < alleles.size(); ++slot) {
        if (alleles[slot] < 0) {
            continue;
        }
        line = label;
        appendPadded(line, static_cast<int>(slot), 3);
        line += ' ';
        appendNumber(line, (alleles[slot] - steps.Smallest) / steps.Divisor);
        line += '\n';
        file.text(line);
        ++lines;
    }
    return lines;
}

// Tells of a population whose table and slots do not agree.
void checkCopies(int pop, int locus, int expected, int counted) {
    if (counted != expected) {
        console() << "Fehler! " << pop << "/" << locus << " : " << expected << "!=" << counted
                  << std::endl;
    }
}

// The file of one pair of populations, counted from 0. False if it cannot be opened.
bool writePair(Run& run, int i, int j, const std::vector<int32_t>& schrittweite) {
    const std::string& nameI = orEmpty(run.Daten->GetPopName(i + 1));
    const std::string& nameJ = orEmpty(run.Daten->GetPopName(j + 1));
    ResultFile file = openIMPair(run, i, j, nameI, nameJ);
    if (!file.isOpen()) {
        return false;
    }
    for (int locus = 0; locus < run.Daten->AnzLoci; ++locus) {
        writeIMLocus(run, file, i, j, locus, nameI, nameJ, schrittweite[locus]);
    }
    file.character('\n');
    return true;
}

// False at the first file that cannot be opened.
bool writePairs(Run& run, const std::vector<int32_t>& schrittweite) {
    const int populations = run.Daten->GetPopAnzahl();
    for (int i = 0; i < populations; ++i) {
        for (int j = i + 1; j < populations; ++j) {
            if (!writePair(run, i, j, schrittweite)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

ResultFile openIMPair(Run& run, int i, int j, const std::string& nameI, const std::string& nameJ) {
    const std::string fileName = fileNameOf("IM_" + nameI + "_" + nameJ + ".txt");
    ResultFile file = run.OpenResult(fileName, "wb");
    if (!file.isOpen()) {
        return file;
    }
    const int common = countCommonLoci(tablesOf(run, i), tablesOf(run, j));
    if (common == 0) {
        AUSGABE(Message::NoCommonLocus, fileName.c_str());
        return file;
    }
    file.print("File '%s' converted by KVAnalyzer\n", run.DateiKurzName.c_str());
    file.print("%s %s\n", nameI.c_str(), nameJ.c_str());
    file.print("%d\n", common);
    return file;
}

long writeIMLocus(Run& run, ResultFile& f, int i, int j, int locus, const std::string& nameI,
                  const std::string& nameJ, int schrittweite) {
    const auto l = static_cast<std::size_t>(locus);
    const AllelCount& tableI = tablesOf(run, i)[l];
    const AllelCount& tableJ = tablesOf(run, j)[l];
    if (!isCommon(tableI, tableJ)) {
        return -1;
    }
    const LociObj& data = run.Daten->Loci[l];
    const bool repeatSteps = hasBit(run.GeneralMask, GeneralBit::RepeatSteps);
    const Steps steps{run.PopAllele.front()[l].MinAllel,
                      repeatSteps ? std::max(data.LociRepeatMuster, 1) : schrittweite};
    writeLocusHead(f, data, tableI.AnzGesamt, tableJ.AnzGesamt);
    checkCopies(i, locus, tableI.AnzGesamt, writeAlleles(f, nameI, data.DataSlots(i + 1), steps));
    checkCopies(j, locus, tableJ.AnzGesamt, writeAlleles(f, nameJ, data.DataSlots(j + 1), steps));
    return 0;
}

long writeIMFormat(Run& run) {
    if (!hasBit(run.GeneralMask, GeneralBit::IMFormat)) {
        return 0;
    }
    constexpr PassFrame kFrame{.Folder = &Folder::FormatsData,
                               .Inner = &Folder::IMFormat,
                               .Begin = Message::IMBegin,
                               .End = Message::IMEnd,
                               .LogText = "Create IM-formated population pair files",
                               .NeedsTables = false};
    return runInFrame(run, kFrame, [&run] {
        if (run.PopAllele.empty()) {
            return 1;
        }
        if (!writePairs(run, stepWidths(*run.Daten, run.PopAllele.front()))) {
            AUSGABE(Message::IMLost);
            return -2;
        }
        return 0;
    });
}

} // namespace kva
