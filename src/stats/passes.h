// The passes of the counting and of the descriptive statistics, a source for each. All but the
// counting itself count the alleles first if no pass did. -4: no data set; 1: the folder cannot be
// entered, or there are no tables; 0.
#ifndef KVA_STATS_PASSES_H
#define KVA_STATS_PASSES_H

namespace kva {

class Run;

// CountAllels.cpp: builds PopAllele and writes the two count sheets. 0; 1 or 2 if the folder cannot
// be entered, with PopAllele as it was.
int countAlleles(Run& run);

// CountAllels.cpp: builds IndAllele and sets AnzInd. 0.
int countIndividualAlleles(Run& run);

// Uebersicht.cpp: the twenty sheets of "Single_data", then writeGst(). Runs the random-discard
// replicates of all tables.
int writeOverview(Run& run);

// calcGST.cpp: "GST.xls", into the current folder. PopAllele must be there. 0.
int writeGst(Run& run);

// GenErrorReport.cpp: "Errorreport.txt" in the result folder.
long writeErrorReport(Run& run);

// TABAusgabe.cpp: "Summary.xls" in the result folder.
int writeSummary(Run& run);

// GruppenAusgabe.cpp: the sheets of "Group_data", where the process stays. 2: the folder is there
// but cannot be entered.
int writeGroupData(Run& run);

} // namespace kva

#endif
