#include "stats/statpass.h"

#include "control/Ausgabe.h"

#include <unistd.h>

namespace kva {

std::string locusLabel(const Datensatz& daten, int locus) {
    return orEmpty(daten.GetLociName(locus));
}

void writeLocusNames(ResultFile& f, const Run& run, int locus) {
    writeLabel(f, locusLabel(*run.Daten, locus));
    if (run.DatenFormat == 2) {
        const std::string* const second = run.Daten->GetLociName2OrFirst(locus);
        writeLabel(f, second != nullptr ? *second : std::string());
    }
}

const char* locusNameHead(const Run& run) {
    return run.DatenFormat == 2 ? "Locus name1\tLocus name2" : "Locus name";
}

int effectiveCopies(const AllelCount& table) {
    return table.AnzChromosomen / 2;
}

} // namespace kva
