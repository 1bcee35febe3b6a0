// The pass of the F-statistics and its parts. Populations i and j and loci count from 0 here; a
// table of loci has a row a locus and a column a pair (ConvertPoptoPoint), or where told a column a
// locus. A value that cannot be computed is DistFehlerwert. Sheets lie in the current folder.
#ifndef KVA_FSTAT_PASSES_H
#define KVA_FSTAT_PASSES_H

#include "data/allelcount.h"
#include "data/ftriple.h"
#include "data/slotmaps.h"

namespace kva {

class ResultFile;
class Run;

// --- The pass: FstDrivers.cpp -------------------------------------------------------------

// Stores `permutationen` in Permutationen, counts the alleles if no pass did, does in the folder
// "F-Statistic" what FstMask asks for (pairs, all populations, F-beta) and writes an entry in the
// log; the process is in the result folder afterwards. The tests seed the random stream. What a
// part lacks for a file that cannot be opened, the others do all the same. 0, also without tables;
// 2 with no flag on or for a folder that exists and cannot be entered, 1 for a new one; -4 without
// data.
int fStatistics(Run& run, long permutationen);

// All pairs: counts the alleles if no pass did, estimates, heterogeneity among loci if its bit is
// on (with LocusTable alone its sheet stays empty), and tests if there are permutations: those on
// thinned data with the bits for random discarding or jackknifing, else the plain ones. 0; -1, told
// on the console, if "FST_WC84.txt", "FST_WC84_MEAN.xls" or "FST_WC84-pValue.xls" cannot be opened;
// nothing is written from there on.
int pairwiseFst(Run& run);

// All populations at once: estimates, a test if there are permutations, "GlobFst.xls", and
// heterogeneity among loci if its bit is on. PopAllele must be there.
void globalFst(Run& run);

// --- Pairs: FstPair.cpp -------------------------------------------------------------------

// Fst, Fit and Fis of a pair i < j (Weir and Cockerham 1984) over `nLoci` loci, stored at (i, j)
// and (j, i) of f. tab[0]: the alleles to sum over, in table order; tab[idx1 + 1], tab[idx2 + 1]:
// the samples; each a table per locus. locusFile: takes Fst of each locus, "\tn.d." where there is
// none, if the bit for that is on; null: not. locusTable: takes them in the column of the pair, if
// the bit LocusTable or Heterogeneity is on.
void estimatePair(const Run& run, long i, long j, FTriple& f, const SampleTables& tab, long nLoci,
                  long idx1, long idx2, ResultFile* locusFile, CMatrix& locusTable);

// All pairs of `tab` (as PopAllele) into f, whose cells are set to 0.0 first, with
// "Fst_per_locus.xls" if its bit is on; locusTable as in estimatePair(). 0; 1 with nothing changed
// if `tab` is empty.
int estimatePairs(Run& run, FTriple& f, const SampleTables& tab, CMatrix& locusTable);

// Log-likelihood ratio G = 2 sum c ln(c/e) of a pair (Goudet et al. 1996), another test statistic
// beside Fst: c the copies of an allele in a sample, e those expected there. Stored at (i, j) and
// (j, i) of all three matrices. Parameters as in estimatePair(). A locus without alleles in one of
// the samples adds nothing; 0.0 where there is nothing to compare.
void logLikelihoodRatio(long i, long j, FTriple& f, const SampleTables& tab, long nLoci, long idx1,
                        long idx2);

// --- Tests of pairs -----------------------------------------------------------------------

// FstPermutation.cpp: permutation test of the observed f of all pairs. tab: as PopAllele. p: takes
// plain p-values above, corrected ones (times the number of pairs) below the diagonal. locusTable:
// holds Fst of the last permutation then, if the bit LocusTable or Heterogeneity is on. Seeds the
// random stream from the clock, anew every kPairSeedEvery permutations, and draws from it. With
// Run::Spreading each pair and block of permutations has its own stream, a pair ends by its
// SequentialHits, and locusTable stays as it is. Run::Tests takes the hits.
void testPairs(const Run& run, FTriple& p, const FTriple& f, const SampleTables& tab,
               CMatrix& locusTable);

// FstRandomDiscard.cpp: the same on data thinned anew in each permutation, whose statistics are the
// observed ones; out of the permutations with an Fst before the shuffle, infinite without any. f:
// takes their means. untergrenze, obergrenze: take the lower and upper 95 % limits of Fst, of the
// permuted one with ConfidencePermuted, symmetric; not touched unless the bit Confidence is on,
// which also tells the length of the tails on the console.
void testThinnedPairs(const Run& run, FTriple& p, FTriple& f, const SampleTables& tab,
                      CMatrix& untergrenze, CMatrix& obergrenze, CMatrix& locusTable);

// FstRandomDiscard.cpp: draws one thinned data set: the source of each slot. `sheet` comes with all
// its cells, [locus][population][slot]. With RandomDiscard an individual flagged haploid keeps one
// of its two slots, twice, one random number each. With Jackknife individuals are drawn and left
// out, the share JackknifeAnteil, at least 1 and at most 79, of populations of 6 slots or more, and
// as many places at the end are -1, missing. Linked loci are thinned alike. Wanted: places and not
// sources tell whom to leave out; the means depend on it.
void drawThinnedSheet(const Run& run, SlotSheet& sheet);

// --- All populations: GlobalFst.cpp -------------------------------------------------------

// Fst, Fit, Fis, Gst, Gst' over all populations (Weir and Cockerham 1984; Nei 1973; Hedrick 2005).
// locus: five rows (FRow), takes the values of each locus (column). tab: as PopAllele, with nPop
// populations behind the pool and nLoci tables each. 0; 1 with fewer than two populations, all
// values DistFehlerwert and `locus` untouched.
int estimateGlobal(const Run& run, double& fst, double& fit, double& fis, double& gst,
                   double& gstStrich, CMatrix& locus, const SampleTables& tab, int nLoci, int nPop);

// Permutation test of the observed values that come in (locus as in estimateGlobal()); p-values of
// Fst, Gst, Gst' over all loci and, in rows 0 to 2 of pLocus, of each locus (column): the share of
// the permutations with a value whose value reaches the observed one, a tie included, no hit
// counted as one; DistFehlerwert without such a permutation. Seeds the random stream from the
// clock, anew every 1000 permutations, and draws from it. With Run::Spreading each block of
// permutations has its own stream. Run::Tests takes the hits.
void testGlobal(const Run& run, double fst, double gst, double gstStrich, const CMatrix& locus,
                double& pFst, double& pGst, double& pGstStrich, CMatrix& pLocus);

// --- F-beta: FBeta.cpp --------------------------------------------------------------------

// F-beta of all populations and pairs (Weir and Hill 2002), ratios of sums over loci, with its two
// sheets, "Beta_POP.xls" and "Betaij_POP.txt". PopAllele must be there, here and below.
void fBeta(Run& run);

// The references of F-beta, a row a locus and one column, -1.0 where no population has two gene
// copies: N gene copies of the populations that have two or more, W = sum w the weight of these
// samples, w = n - n^2/N, Q = sum n (p - pbar)^2 + w p (1 - p) the diversity between and within
// them. Sets the sizes of the three.
void betaReferences(const Run& run, CMatrix& betaN, CMatrix& betaW, CMatrix& betaQ);

// beta i = 1 - sum W n/(n - 1) sum p (1 - p) / sum Q into (i, i), DistFehlerwert if no locus
// counts: two gene copies at least, and a Q that is not 0. mittel: one minus the sum of ratios over
// loci instead of the ratio of sums. betaN is not read.
void betaOfPopulation(const Run& run, int i, CMatrix& beta, const CMatrix& betaN,
                      const CMatrix& betaW, const CMatrix& betaQ, bool mittel);

// beta ij = 1 - sum W sum (pi (1 - pj) + pj (1 - pi)) / sum 2 Q into (i, j) and (j, i). Wanted: a
// pair without data gives (i, i) and (j, i) DistFehlerwert, and leaves (i, j); the sheets depend on
// it. mittel and betaN as above. 0; -1 with nothing changed if i is j.
int betaOfPair(const Run& run, int i, int j, CMatrix& beta, const CMatrix& betaN,
               const CMatrix& betaW, const CMatrix& betaQ, bool mittel);

} // namespace kva

#endif
