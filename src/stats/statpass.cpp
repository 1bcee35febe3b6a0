#include "stats/statpass.h"

#include "control/Ausgabe.h"

#include <unistd.h>

std::string locusLabel(const Datensatz& daten, int locus) {
    return orEmpty(daten.GetLociName(locus));
}

void writeLocusNames(ResultFile& f, const AnalyseDataObj& lauf, int locus) {
    writeLabel(f, locusLabel(*lauf.Daten, locus));
    if (lauf.DatenFormat == 2) {
        const std::string* const second = lauf.Daten->GetLociName2OrFirst(locus);
        writeLabel(f, second != nullptr ? *second : std::string());
    }
}

const char* locusNameHead(const AnalyseDataObj& lauf) {
    return lauf.DatenFormat == 2 ? "Locus name1\tLocus name2" : "Locus name";
}

int effectiveCopies(const AllelCount& table) {
    return table.AnzChromosomen / 2;
}

bool tablesReady(AnalyseDataObj& lauf) {
    if (lauf.PopAllele.empty()) {
        (void)lauf.CountAllels(); // tells of a folder that cannot be entered
    }
    return !lauf.PopAllele.empty();
}

bool enterResultFolder(const AnalyseDataObj& lauf) {
    if (chdir(lauf.ResultPfad.c_str()) == 0) {
        return true;
    }
    AUSGABE(14, nullptr);
    return false;
}
