// The forms of the sheets, one parser each; catalogue.cpp tells which sheet has which.
#ifndef KVA_RESULTS_LAYOUTS_H
#define KVA_RESULTS_LAYOUTS_H

#include "results/sheetreading.h"

namespace kva {

// --- Samples and loci (samplesheets.cpp) ---------------------------------------------------

extern const Layout kAlleleList;  // pairs of an allele and its number or frequency
extern const Layout kClosedTable; // a row a sample or group, a column a locus, tab behind each cell
extern const Layout kOpenTable;   // the same with a tab before each cell
extern const Layout kReplicateTable; // of the population in the sheet's name; a row a replicate
extern const Layout kRichness;       // a closed table, its references, a table of variances
extern const Layout kGst;            // rows of statistics, then those over all loci
extern const Layout kSummary;        // a row a locus and population, a column a statistic
extern const Layout kGroupSummary;   // of the group in the sheet's name; a row a locus

// --- Pairs of populations and of individuals (pairsheets.cpp) --------------------------------

extern const Layout kPopulationMatrix;   // a square matrix, labels of ten bytes
extern const Layout kPopulationMatrices; // those of replicates
extern const Layout kIndividualMatrices; // the same of individuals, or one as NEXUS
extern const Layout kPairColumns;        // blocks of replicates, a row a locus, a column a pair
extern const Layout kPairRows;           // a row a pair, a column a locus
extern const Layout kSquareSheet;        // the number of populations, a square of cells
extern const Layout kPValues;            // a square of Fst, a square of p-values
extern const Layout kBeta;               // a square with the populations themselves in the diagonal

// --- Texts with numbers (textsheets.cpp) -------------------------------------------------------

extern const Layout kGlobalF;       // F-statistics over all loci and of each locus, with p-values
extern const Layout kHeterogeneity; // means and limits over loci drawn at random
extern const Layout kErrorReport;   // remarks on the alleles of each locus

} // namespace kva

#endif
