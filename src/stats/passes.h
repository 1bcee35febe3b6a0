// The passes of the counting and of the descriptive statistics, a source for each. They write an
// entry in the log. All but the two countings and writeGst() count the alleles first if no pass
// did, and give 0; -4 without a data set; 1 if their folder cannot be entered or there are no
// tables. Afterwards the process is in the result folder, where nothing else is said.
#ifndef KVA_STATS_PASSES_H
#define KVA_STATS_PASSES_H

namespace kva {

class Run;

// CountAllels.cpp: builds PopAllele, and writes "Allelecount.xls" and "Allelefrequencies.xls" of
// the folder "Allelecount" if GeneralMask asks for them. 0; 1 if the folder is new and cannot be
// entered, 2 if it was there, with PopAllele as it was. Without a data set the folder alone is
// made, and the result is 0, too.
int countAlleles(Run& run);

// CountAllels.cpp: counts the alleles if no pass did so yet. False if there are still no tables,
// because nothing is loaded or the folder of the counts cannot be entered.
bool tablesReady(Run& run);

// CountAllels.cpp: builds IndAllele, a table per individual and locus, and sets AnzInd to half the
// data entries. No files, no change of folder. Both are emptied without a data set.
void countIndividualAlleles(Run& run);

// Uebersicht.cpp: the twenty sheets of "Single_data", a row for the pool and for each population
// and a column for each locus, then writeGst(). Runs the random-discard replicates of the tables
// with inbred individuals, which stay in PopAllele: draws from the random stream.
int writeOverview(Run& run);

// calcGST.cpp: "GST.xls", Gst and Gst' by locus and over loci (Nei 1973; Hedrick 2005; Hamrick and
// Godt 1990), into the current folder, where the process stays. Data set and PopAllele must be
// there.
void writeGst(Run& run);

// GenErrorReport.cpp: "Errorreport.txt" in the result folder: unlikely gaps, in base pairs, between
// the alleles of each locus in the pool, and unlikely lengths.
long writeErrorReport(Run& run);

// TABAusgabe.cpp: "Summary.xls" in the result folder, a row per locus and population. Runs the
// random-discard replicates where no pass did, and so may draw from the random stream.
int writeSummary(Run& run);

// GruppenAusgabe.cpp: the sheets of "Group_data", where the process stays: six with a row per
// group, and "SumGrp01.xls" and so on, one for each group with a row per locus. Groups count from
// 1; the first number that no population has ends them. 2: the folder was there and cannot be
// entered.
int writeGroupData(Run& run);

} // namespace kva

#endif
