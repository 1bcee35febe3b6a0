// The Migrate/LAMARC file, and the walk over the individuals that it shares with the Arlequin
// project. A population of one individual at two loci, 16 and 17 steps at the first, missing at
// the second:
//
//       1 2 . File data.txt converted from KVAnalyzer
//      1 North
//      0000_0000 16.17 ?.?
//
// The flag for haploid individuals plays no part here: both entries are written.
#include "formats/NextFormates.h"

#include "formats/StepWidth.h"
#include "formats/digits.h"
#include "formats/passes.h"
#include "run/run.h"

namespace kva {

namespace {

constexpr const char* kSecondRow = "            "; // Arlequin: in place of name and number

void appendAllele(std::string& line, int allele) {
    if (allele < 0) {
        line += '?';
    } else {
        appendNumber(line, allele);
    }
}

// The steps of an allele; missing stays negative.
int steps(int allele, int divisor) {
    return allele > 0 ? allele / divisor : allele;
}

// The genotype texts of one individual, reused from one to the next.
struct Texts {
    std::string Migrate;
    std::string Arlequin1;
    std::string Arlequin2;
};

// "%4.4d_%4.4d%s"
void writeMigrateRow(ResultFile& file, int pop, int ind, const std::string& genotypes) {
    std::string label;
    appendPadded(label, pop, 4);
    label += '_';
    appendPadded(label, ind, 4);
    file.text(label);
    file.text(genotypes);
    file.character('\n');
}

// "%s_%d 1 %s" and the second row in line with it.
void writeArlequinRows(ResultFile& file, const std::string& name, int ind, const Texts& texts) {
    file.text(name);
    file.character('_');
    file.integer(ind);
    file.text(" 1 ");
    file.text(texts.Arlequin1);
    file.character('\n');
    file.text(kSecondRow);
    file.text(texts.Arlequin2);
    file.character('\n');
}

} // namespace

int Datensatz::MakeMigrateLine(int pop, int ind, int repeatMass, std::string& migrate,
                               std::string& arlequin1, std::string& arlequin2,
                               const std::vector<int32_t>& schrittweite) const {
    migrate.clear();
    arlequin1.clear();
    arlequin2.clear();
    for (std::size_t l = 0; l < Loci.size(); ++l) {
        const LociObj& locus = Loci[l];
        const int divisor = stepDivisor(repeatMass != 0, locus.LociRepeatMuster, schrittweite[l]);
        const int a1 = steps(locus.GetDataChromosom(pop + 1, 2 * ind), divisor);
        const int a2 = steps(locus.GetDataChromosom(pop + 1, 2 * ind + 1), divisor);
        migrate += ' ';
        appendAllele(migrate, a1);
        migrate += '.';
        appendAllele(migrate, a2);
        arlequin1 += ' ';
        appendAllele(arlequin1, a1);
        arlequin2 += ' ';
        appendAllele(arlequin2, a2);
    }
    return 0;
}

int writeMigrateAndArlequin(Run& run, const std::vector<int32_t>& schrittweite) {
    ResultFile migrate = run.OpenResult(run.DateiKurzName + ".migrate", "wb");
    if (!migrate.isOpen()) {
        return -1;
    }
    ResultFile arlequin = run.OpenResult(run.DateiKurzName + ".arlequin.arp", "wb");
    if (!arlequin.isOpen()) {
        return -2;
    }
    const int repeatMass = hasBit(run.GeneralMask, GeneralBit::RepeatSteps) ? 1 : 0;
    const Datensatz& data = *run.Daten;
    migrate.print(" %d %d . File %s converted from KVAnalyzer\n", run.AnzPop, run.AnzLoci,
                  run.DateiKurzName.c_str());
    writeArlequinHead(run, arlequin);
    Texts texts;
    for (int pop = 0; pop < data.GetPopAnzahl(); ++pop) {
        const std::string& name = orEmpty(data.GetPopName(pop + 1));
        const int individuals = data.GetIndividuals(pop + 1);
        migrate.print("%d %s\n", individuals, name.c_str());
        beginArlequinSample(arlequin, individuals, name);
        for (int ind = 0; ind < individuals; ++ind) {
            data.MakeMigrateLine(pop, ind, repeatMass, texts.Migrate, texts.Arlequin1,
                                 texts.Arlequin2, schrittweite);
            writeMigrateRow(migrate, pop, ind, texts.Migrate);
            writeArlequinRows(arlequin, name, ind, texts);
        }
        endArlequinSample(arlequin);
    }
    writeArlequinStructure(run, arlequin); // -1 tells only that there are no groups
    return 0;
}

} // namespace kva
