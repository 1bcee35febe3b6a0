// The result files of the F-statistics pass but for heterogeneity among loci. All lie in
// the current folder, "F-Statistic".
#ifndef KVA_FSTAT_FSTSHEETS_H
#define KVA_FSTAT_FSTSHEETS_H

#include "data/ftriple.h"
#include "fstat/wc84.h"

#include <array>

namespace kva {

class Run;

// Writes "FST_WC84.txt", "FIT_WC84.txt", "FIS_WC84.txt". False if the first cannot be
// opened; the others are not tested.
bool writeFstMatrices(Run& run, const FTriple& f);

// Writes "FST_WC84_MEAN.xls" and its kin for Fit and Fis; with the bit for limits also
// "FST_WC84_OG.xls" (upper) and "FST_WC84_UG.xls" (lower). False as above.
bool writeFstMeans(Run& run, const FTriple& f, const CMatrix& untergrenze,
                   const CMatrix& obergrenze);

// Writes "FST_WC84-pValue.xls": Fst, then plain p-values above and corrected ones below the
// diagonal. False as above.
bool writeFstPValues(Run& run, const FTriple& f, const FTriple& p);

// What stands in "GlobFst.xls". The p-values are of Fst, Gst, Gst'.
struct GlobalResult {
    std::array<double, 5> values;  // Fst, Fit, Fis, Gst, Gst' over all loci
    CMatrix locus;                 // the same, row by row, of each locus (column)
    std::array<double, 3> pValues; // over all loci
    CMatrix pLocus;                // of each locus (column)
};

// Writes "GlobFst.xls"; the p-values only if there were permutations.
void writeGlobalFst(Run& run, const GlobalResult& result);

// Writes "Beta_POP.xls" and "Betaij_POP.txt".
void writeBetaSheets(Run& run, const CMatrix& beta);

} // namespace kva

#endif
