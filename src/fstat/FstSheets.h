// The result files of the F-statistics pass but for heterogeneity among loci. All lie in the
// current folder, "F-Statistic". Matrices are square, with a row and a column for each population
// of the run, from 0; DistFehlerwert in them is a value that cannot be computed.
#ifndef KVA_FSTAT_FSTSHEETS_H
#define KVA_FSTAT_FSTSHEETS_H

#include "data/ftriple.h"
#include "fstat/wc84.h"

#include <array>

namespace kva {

class Run;

// Writes "FST_WC84.txt", "FIT_WC84.txt", "FIS_WC84.txt", distance matrices as PHYLIP reads them,
// with DistFehlerwert as the number. False if the first cannot be opened; the others are not
// tested.
bool writeFstMatrices(Run& run, const FTriple& f);

// Writes "FST_WC84_MEAN.xls" and its kin for Fit and Fis, the means f of the test statistic; with
// FstBit::Confidence also the limits of Fst, "FST_WC84_OG.xls" (upper, obergrenze) and
// "FST_WC84_UG.xls" (lower, untergrenze), which are not read otherwise. "n.d." where the mean
// cannot be computed. False as above.
bool writeFstMeans(Run& run, const FTriple& f, const CMatrix& untergrenze,
                   const CMatrix& obergrenze);

// Writes "FST_WC84-pValue.xls": Fst of f, then its p-values of p, plain ones above and corrected
// ones below the diagonal, where one above 0.05 is "n.s."; "n.d." where Fst cannot be computed.
// False if it cannot be opened.
bool writeFstPValues(Run& run, const FTriple& f, const FTriple& p);

// What stands in "GlobFst.xls". The p-values are of Fst, Gst, Gst', in that order. DistFehlerwert
// where there is no value.
struct GlobalResult {
    std::array<double, 5> values;  // Fst, Fit, Fis, Gst, Gst' over all loci
    CMatrix locus;                 // the same, row by row (FRow), of each locus (column, from 0)
    std::array<double, 3> pValues; // over all loci
    CMatrix pLocus;                // row by row, of each locus (column, from 0)
};

// Writes "GlobFst.xls"; the p-values, "n.d." where there is none, only if there were permutations.
// A value that cannot be computed is DistFehlerwert as the number. Nothing is told of a file that
// cannot be opened but by OpenResult.
void writeGlobalFst(Run& run, const GlobalResult& result);

// Writes "Beta_POP.xls", all of `beta`, and "Betaij_POP.txt", the same as a distance matrix with
// zeros in the diagonal. `beta`: beta i in the diagonal, beta ij beside it; DistFehlerwert stands
// as the number in both.
void writeBetaSheets(Run& run, const CMatrix& beta);

} // namespace kva

#endif
