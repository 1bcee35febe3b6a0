// The nine genetic distances, one row of a table each: which quantities are summed over the loci
// for a pair of samples, what is made of the sums at the end, and by which rule a cell finds it.
//
// A sample is a population or an individual; x and y are the frequencies of an allele in the
// two samples of a pair i < j.
//
//      POSA  Dps  proportion of shared alleles  S = sum of min(x, y)       (Bowcock et al. 1994)
//      FSS   Dfs  fuzzy set similarity          shared / all alleles       (Dubois and Prade 1980)
//      ADA   Dad  absolute difference           |mi - mj|
//      KSC   Dkf  kinship coefficient           S = sum of x y             (Cavalli-Sforza and
//                                                                          Bodmer 1971)
//      DMS   Dmu  delta mu squared              (mi - mj)^2                (Goldstein et al. 1995)
//      ASD   D1   average squared difference    vi + (mi - mj)^2 + vj      (Slatkin 1995, Goldstein
//                                                                          et al. 1995)
//      CAS   Dc   chord distance                2 sqrt(2 (1 - B)) / pi     (Cavalli-Sforza and
//                                                                          Edwards 1967)
//      DAN   Da   Nei's distance of 1983        1 - B, B = sum of sqrt(x y)  (Nei et al. 1983)
//      DSG   D    Nei's standard distance       Jxy / sqrt(Jx' Jy')        (Nei 1978)
//
// m is the mean allele number of a sample and v its variance, taken in repeats; B is the sum of
// sqrt(x y). J' is the sum of squared frequencies of a sample, corrected for its size, and Jxy the
// sum of x y. POSA, FSS, KSC and DSG are similarities, turned into 1 - s or -ln(s). All but FSS and
// DSG are means over the loci that count for the pair; those two are ratios of sums over them.
#ifndef KVA_DISTANCE_MEASURES_H
#define KVA_DISTANCE_MEASURES_H

#include "distance/quantities.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

// The quantities whose sums make a measure, None where there is no such sum.
struct MeasureSums {
    Quantity Summe;   // numerator of the mean; DSG: J' of sample i
    Quantity Summe2;  // DSG: J' of sample j
    Quantity Nenner;  // the loci counted; FSS: the alleles of both samples; DSG: Jxy
    Quantity Nenner2; // DSG: the loci counted
};

// The sums of one pair, by MeasureSums; 0.0 where there is no such sum.
struct PairSums {
    double Summe = 0.0;
    double Summe2 = 0.0;
    double Nenner = 0.0;
    double Nenner2 = 0.0;
};

// How a cell is made of the value that comes out of the sums.
enum class CellKind {
    Similarity, // 1 - value, or -ln(value); a pair without a counted locus has no value
    Distance,   // the value as it is
    Nei         // as Similarity, with the loci counted in Nenner2; under -ln the two triangles
                // differ
};

// What the cells take from the settings.
struct CellRules {
    bool MinusLog = false;        // -ln(s) instead of 1 - s
    double Infinite = 10.0;       // cell of a pair whose similarity is 0 under -ln
    double Fehlerwert = -32767.0; // cell of a pair without a counted locus
};

// The two cells of a pair i < j in a matrix.
struct CellPair {
    double Upper; // row i, column j
    double Lower; // row j, column i
};

// What is made of the sums of a measure.
struct Closing {
    CellKind Kind; // how the value becomes a cell

    // The value of a pair from its sums, for one locus or for many: a similarity or a distance. At
    // least one is counted.
    double (*Value)(const PairSums& sums);

    // As matrixCells().
    CellPair (*Cells)(const PairSums& sums, const CellRules& rules);

    // The upper cells of the pairs (i, first) to (i, end - 1), by j.
    void (*UpperCells)(const MeasureSums& from, const RowSums& sums, const CellRules& rules,
                       std::size_t first, std::size_t end, double* cells);
};

// A row of the catalogue of distances, which the command line, the menu and its screens, the log
// and the engines read. A new distance is a row here, with its formula, and a bit of DistBit.
struct Measure {
    uint32_t Bit;         // DistBit in PopDistMask; outputs of one bit are always together
    const char* Stem;     // of its files; also its keyword of -dist, in capitals or small letters
    char Key;             // in the menu of the distance settings
    const char* MenuLine; // what the screen shows between the key and the state
    const char* LogLine;  // in the head of the log
    int Index;            // of the output within its bit, from 0
    MeasureSums Sums;     // what is summed over the loci

    Closing FromSums; // what is made of the sums
};

// All nine in the order of the output; the rows last as long as the process.
std::span<const Measure> allMeasures();

// The quantities that some measures are made of.
QuantitySet quantitiesOf(std::span<const Measure> measures);

// The sums of pair (i, j) from those of row i; j from 0, j > i.
PairSums pairSums(const Measure& measure, const RowSums& sums, std::size_t j);

// Copies of those whose bit is on, in the order of the output.
std::vector<Measure> selectedMeasures(uint32_t popDistMask);

// The cells of a pair from its sums over all loci of a replicate: both Fehlerwert if no locus
// counts for it, both Infinite under -ln where the samples share nothing. Wanted: of Nei's standard
// distance the upper one is Fehlerwert then, too, and the bytes of its matrices depend on it. No
// other division or logarithm is guarded.
CellPair matrixCells(const Measure& measure, const PairSums& sums, const CellRules& rules);

// Whether the two cells of a pair are always the same.
bool isSymmetric(const Measure& measure, const CellRules& rules);

// The cell of a pair in a sheet of single loci, from the sums of that locus alone; nothing for
// "n.d.": the locus does not count for the pair, or, wanted, a distance is exactly -1, as with a
// variance of -1.0 that stands for none. A similarity of 0 is not caught here: its -ln is inf.
std::optional<double> sheetCell(const Measure& measure, const PairSums& sums,
                                const CellRules& rules);

} // namespace kva

#endif
