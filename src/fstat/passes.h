// The pass of the F-statistics and its parts. Populations i and j count from 0 here. A value that
// cannot be computed is DistFehlerwert.
#ifndef KVA_FSTAT_PASSES_H
#define KVA_FSTAT_PASSES_H

#include "data/allelcount.h"
#include "data/ftriple.h"
#include "data/slotmaps.h"

namespace kva {

class ResultFile;
class Run;

// --- The pass: FstDrivers.cpp -------------------------------------------------------------

// Stores Permutationen, works in "F-Statistic". 0; 2 with no flag on or for a folder that exists
// and cannot be entered, 1 for a new one; -4 without data.
int fStatistics(Run& run, long permutationen);

// All pairs: estimates, tests and sheets. 0; -1 if a result file cannot be opened.
int pairwiseFst(Run& run);

// All populations at once: estimates, test and sheets. 0.
int globalFst(Run& run);

// --- Pairs: FstPair.cpp -------------------------------------------------------------------

// Fst, Fit and Fis of a pair (Weir and Cockerham 1984), stored at (i, j) and (j, i) of f. tab[0]:
// the alleles to sum over; tab[idx1 + 1], tab[idx2 + 1]: the samples; each a table per locus.
// locusFile: takes Fst of each locus if the bit for that is on; null: not. locusTable: takes them
// in the column of the pair, if its bits are on. 0.
int estimatePair(const Run& run, long i, long j, FTriple& f, const SampleTables& tab, long nLoci,
                 long idx1, long idx2, ResultFile* locusFile, CMatrix& locusTable);

// All pairs of `tab` (as PopAllele), with "Fst_per_locus.xls" if its bit is on. 0; 1 if `tab` is
// empty.
int estimatePairs(Run& run, FTriple& f, const SampleTables& tab, CMatrix& locusTable);

// Log-likelihood ratio G of a pair, another test statistic beside Fst: stored in all three
// matrices. 0.0 where there is nothing to compare. 0.
int logLikelihoodRatio(long i, long j, FTriple& f, const SampleTables& tab, long nLoci, long idx1,
                       long idx2);

// --- Tests of pairs -----------------------------------------------------------------------

// FstPermutation.cpp: permutation test of the observed f of all pairs. p: plain p-values above,
// corrected ones (times the number of pairs) below the diagonal. locusTable: holds values of the
// last permutation then. Seeds and draws from the random stream. 0.
int testPairs(const Run& run, FTriple& p, const FTriple& f, const SampleTables& tab,
              CMatrix& locusTable);

// FstRandomDiscard.cpp: the same on data thinned anew in each permutation. f: takes the means of
// the test statistics. untergrenze, obergrenze: take the limits of Fst, if the bit for that is on.
// 0.
int testThinnedPairs(const Run& run, FTriple& p, FTriple& f, const SampleTables& tab,
                     CMatrix& untergrenze, CMatrix& obergrenze, CMatrix& locusTable);

// FstRandomDiscard.cpp: draws one thinned data set: the source of each slot. `sheet` comes with all
// its cells. 0.
int drawThinnedSheet(const Run& run, SlotSheet& sheet);

// --- All populations: GlobalFst.cpp -------------------------------------------------------

// Fst, Fit, Fis, Gst, Gst' over all populations (Weir and Cockerham 1984; Nei 1973; Hedrick 2005).
// locus: five rows, takes the values of each locus (column). 0; 1 with fewer than two populations
// and `locus` untouched.
int estimateGlobal(const Run& run, double& fst, double& fit, double& fis, double& gst,
                   double& gstStrich, CMatrix& locus, const SampleTables& tab, int nLoci, int nPop);

// Permutation test of the observed values that come in; p-values of Fst, Gst, Gst' over all loci
// and, in rows 0 to 2, of each locus. Seeds and draws from the random stream. 0.
int testGlobal(const Run& run, double fst, double gst, double gstStrich, const CMatrix& locus,
               double& pFst, double& pGst, double& pGstStrich, CMatrix& pLocus);

// --- F-beta: FBeta.cpp --------------------------------------------------------------------

// F-beta of all populations and pairs, with its two sheets. 0.
int fBeta(Run& run);

// The references of F-beta, a row a locus, -1.0 where no population has two gene copies: N gene
// copies, W weight of the samples, Q diversity within and between them. 0.
int betaReferences(const Run& run, CMatrix& betaN, CMatrix& betaW, CMatrix& betaQ);

// beta i into (i, i). mittel: one minus the sum of ratios over loci instead of the ratio of sums.
// betaN is not read. 0.
int betaOfPopulation(const Run& run, int i, CMatrix& beta, const CMatrix& betaN,
                     const CMatrix& betaW, const CMatrix& betaQ, bool mittel);

// beta ij into (i, j) and (j, i). A pair without data gives (i, i) and (j, i) DistFehlerwert. 0; -1
// with nothing changed if i is j.
int betaOfPair(const Run& run, int i, int j, CMatrix& beta, const CMatrix& betaN,
               const CMatrix& betaW, const CMatrix& betaQ, bool mittel);

} // namespace kva

#endif
