#include "control/AnalyseDataObj.h"

#include <unistd.h>

namespace kva {

int AnalyseDataObj::LinkResultNew() {
    if (!Daten || StartPfad.empty()) {
        return 1;
    }
    (void)!chdir(StartPfad.c_str()); // InitPath tells of a folder that cannot be made
    InitPath();                      // its failure stands in FolderMissing
    return 0;
}

int AnalyseDataObj::WriteOutput(long bootstraps, long permutations) {
    if (FolderMissing) { // the passes would write into the folder of an earlier run
        return 0;
    }
    if (!LogDatei.isOpen()) { // closed, or nothing was loaded: then it lies in the current folder
        LogDatei = OpenResult("KVA.log", "ab"); // what cannot be appended to cannot be made anew
    }
    if (LogDatei.isOpen()) {
        WriteDataLog(bootstraps, permutations);
    }
    CountAllels();
    Uebersicht();
    GenErrorReport();
    TABAusgabe();
    GruppenAusgabe();
    MakeGenePop();
    MakeNextFormates();
    MakeIMFormat();
    if (bootstraps == 0) {
        PopDistMask = 0;
    }
    if (hasBit(GeneralMask, GeneralBit::PopDistances) && PopDistMask != 0) {
        CalcDistancesPop(bootstraps);
    }
    if (hasBit(GeneralMask, GeneralBit::IndDistances) && IndDistMask != 0) {
        CalcDistancesInd(bootstraps);
    }
    if (hasBit(GeneralMask, GeneralBit::FStatistics) && FstMask != 0) {
        CalcDistancesSpecial(permutations);
    }
    if (hasBit(GeneralMask, GeneralBit::HetRange)) {
        CalcHetRange();
    }
    return 0;
}

int AnalyseDataObj::ReadDataFile(std::FILE* stream) {
    InitPath();          // its failure stands in FolderMissing
    GetDataFile(stream); // what it refuses stays without individuals
    return 0;
}

} // namespace kva
