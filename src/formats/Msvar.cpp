// The input files of msvar (Beaumont 1999), one per population: the number of loci with data, and
// three lines for each of them. Alleles 100 (5 copies), 104 (2) and 106 (1) in steps of 2:
//
//      1
//      3
//      5 2 1
//      0 2 3
//
// The lines of counts and of distances end with a blank.
#include "formats/NextFormates.h"

#include "base/filename.h"
#include "formats/StepWidth.h"
#include "run/run.h"

#include <algorithm>
#include <span>

namespace kva {

namespace {

// `table`: the population's alleles, at least one. `divisor`: base pairs per step.
void writeLocus(ResultFile& file, const AllelCount& table, int32_t divisor) {
    const std::span<const AllelEintrag> rows(table.Allele.data(),
                                             static_cast<std::size_t>(table.AnzAllele));
    file.integer(table.AnzAllele);
    file.character('\n');
    for (const AllelEintrag& row : rows) {
        file.integer(row.Anzahl);
        file.character(' ');
    }
    file.character('\n');
    for (const AllelEintrag& row : rows) {
        file.integer((row.Nummer - rows.front().Nummer) / divisor);
        file.character(' ');
    }
    file.character('\n');
}

} // namespace

void writeMsvarFiles(Run& run, const std::vector<int32_t>& schrittweite) {
    const bool repeatSteps = hasBit(run.GeneralMask, GeneralBit::RepeatSteps);
    for (int pop = 1; pop <= run.Daten->GetPopAnzahl(); ++pop) {
        const LocusTables& tables = run.PopAllele[pop];
        ResultFile file =
            run.OpenResult(fileNameOf(orEmpty(run.Daten->GetPopName(pop)) + ".beau.infile"), "wb");
        file.integer(std::count_if(tables.begin(), tables.end(),
                                   [](const AllelCount& table) { return table.AnzAllele > 0; }));
        file.character('\n');
        for (std::size_t l = 0; l < tables.size(); ++l) {
            if (tables[l].AnzAllele > 0) {
                const int32_t repeat = run.Daten->Loci[l].LociRepeatMuster;
                writeLocus(file, tables[l], stepDivisor(repeatSteps, repeat, schrittweite[l]));
            }
        }
    }
}

} // namespace kva
