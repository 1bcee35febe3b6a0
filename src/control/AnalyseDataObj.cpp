#include "control/AnalyseDataObj.h"

#include "control/Ausgabe.h"

#include <iostream>
#include <unistd.h>

AnalyseDataObj::~AnalyseDataObj() {
    LogDatei.close(); // now, while the object that tells of a failure is whole
    if (!StartPfad.empty()) {
        (void)chdir(StartPfad.c_str()); // a folder that is gone cannot be mended here
    }
}

void AnalyseDataObj::TakeSettings(const AnalyseSettings& masks, const ScalarSettings& scalars) {
    static_cast<AnalyseSettings&>(*this) = masks;
    BootLoci = scalars.BootLoci;
    RichnessRef = scalars.RichnessRef;
    HetRandomisierungen = scalars.HetRandomisierungen;
    ReplikaLoci = scalars.ReplikaLoci;
    Replikate = scalars.Replikate;
}

int AnalyseDataObj::LinkResultNew() {
    if (!Daten || StartPfad.empty()) {
        return 1;
    }
    (void)chdir(StartPfad.c_str()); // InitPath tells of a folder that cannot be made
    (void)InitPath();               // its failure stands in OrdnerFehlt
    return 0;
}

int AnalyseDataObj::WriteOutput(long bootstraps, long permutations) {
    if (OrdnerFehlt) { // the passes would write into the folder of an earlier run
        return 0;
    }
    if (!LogDatei.isOpen()) { // closed, or nothing was loaded: then it lies in the current folder
        LogDatei = OpenResult("KVA.log", "ab"); // what cannot be appended to cannot be made anew
    }
    if (LogDatei.isOpen()) {
        (void)WriteDataLog(bootstraps, permutations);
    }
    (void)CountAllels();
    (void)Uebersicht();
    (void)GenErrorReport();
    (void)TABAusgabe();
    (void)GruppenAusgabe();
    (void)MakeGenePop();
    (void)MakeNextFormates();
    (void)MakeIMFormat();
    if (bootstraps == 0) {
        PopDistMask = 0;
    }
    if (hasBit(GeneralMask, GeneralBit::PopDistances) && PopDistMask != 0) {
        (void)CalcDistancesPop(bootstraps);
    }
    if (hasBit(GeneralMask, GeneralBit::IndDistances) && IndDistMask != 0) {
        (void)CalcDistancesInd(bootstraps);
    }
    if (hasBit(GeneralMask, GeneralBit::FStatistics) && FstMask != 0) {
        (void)CalcDistancesSpecial(permutations);
    }
    if (hasBit(GeneralMask, GeneralBit::HetRange)) {
        (void)CalcHetRange();
    }
    return 0;
}

ResultFile AnalyseDataObj::OpenResult(const std::string& name, const char* mode) {
    return {name, mode, AktuellerOrdner + name,
            [this](const std::string& shownName, const std::string& reason) {
                ReportFileFailure(shownName, reason);
            }};
}

void AnalyseDataObj::LogEntry(const char* text) {
    LogDatei.character('\n');
    LogDatei.text(text);
    LogDatei.character('\n');
    LogDatei.flush();
}

void AnalyseDataObj::ReportFileFailure(const std::string& name, const std::string& reason) {
    const std::string line = "Cannot write result file " + name + ": " + reason;
    std::cout << '\n' << line << std::endl;
    LogDatei.text(line + "\n");
    LogDatei.flush();
}
