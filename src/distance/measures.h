// The nine genetic distances, one row of a table each: how a locus adds to the sums of a pair
// of samples, what is made of the sums at the end, and by which rule a cell finds it.
//
// A sample is a population or an individual; x and y are the frequencies of an allele in the
// two samples of a pair i < j. Sums run over the loci in the order they are drawn, and within a
// locus over the alleles in the order of the pool, one addition at a time: the order is part of
// the result.
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

#include "distance/samples.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kva {

// The sums of a row of pairs (i, j): entry j of each vector belongs to sample j, from 0, j > i.
// The second layer serves Nei's standard distance alone.
struct RowSums {
    explicit RowSums(int32_t samples); // all sums 0.0
    void clear(int32_t layers);        // sets the first `layers` of both to 0.0

    // [layer][sample]: what the loci add, the numerator of the mean; DSG: J' of sample i, of j.
    std::array<std::vector<double>, 2> DistSumme;
    // [layer][sample]: what it is divided by: the loci counted; FSS: the alleles in at least one
    // sample of the pair; DSG: Jxy, and in layer 1 the loci counted.
    std::array<std::vector<double>, 2> DistNenner;
};

// The sums of one pair, from RowSums.
struct PairSums {
    double Summe = 0.0;   // DistSumme, layer 0
    double Summe2 = 0.0;  // DistSumme, layer 1; 0.0 with one layer
    double Nenner = 0.0;  // DistNenner, layer 0
    double Nenner2 = 0.0; // DistNenner, layer 1; 0.0 with one layer
};

// One row of pairs at one locus, whose sample I is typed.
struct LocusRow {
    const LocusSamples& Locus; // NOT OWNED
    int32_t I;                 // the row's sample, from 0
    const double* X; // NOT OWNED; frequency in it of each allele of the pool, by place from 0; 0.0
                     // for one it has not got and for the place Pool of the fillers
};

// How a cell is made of the value that comes out of the sums.
enum class CellKind {
    Similarity, // 1 - value, or -ln(value); a pair without a counted locus has no value
    Distance,   // the value as it is
    Nei         // as Similarity, with the loci counted in Nenner2; under -ln the two triangles
                // differ
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
    int32_t Layers;       // of DistSumme and DistNenner in use, 1 or 2

    // value[j] for each pair (I, j), j > I: what the locus adds to the pair as one number, the
    // same whenever it is drawn; 0.0 for a pair that the locus does not count for. Null where a
    // locus adds allele by allele.
    void (*Values)(const LocusRow& row, double* value);

    // Adds the locus to the sums of the row. `value`: from Values, null if there is no such.
    void (*Add)(const LocusRow& row, const double* value, RowSums& sums);

    // The value of a pair from its sums, for one locus or for many: a similarity or a distance. At
    // least one is counted.
    double (*Close)(const PairSums& sums);

    CellKind Cells; // how the value becomes a cell
};

// All nine in the order of the output; the rows last as long as the process.
std::span<const Measure> allMeasures();

// Copies of those whose bit is on, in the order of the output.
std::vector<Measure> selectedMeasures(uint32_t popDistMask);

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

// The cells of a pair from its sums over all loci of a replicate: both Fehlerwert if no locus
// counts for it, both Infinite under -ln where the samples share nothing. Wanted: of Nei's standard
// distance the upper one is Fehlerwert then, too, and the bytes of its matrices depend on it. No
// other division or logarithm is guarded.
CellPair matrixCells(const Measure& measure, const PairSums& sums, const CellRules& rules);

// The cell of a pair in a sheet of single loci, from the sums of that locus alone; nothing for
// "n.d.": the locus does not count for the pair, or, wanted, a distance is exactly -1, as with a
// variance of -1.0 that stands for none. A similarity of 0 is not caught here: its -ln is inf.
std::optional<double> sheetCell(const Measure& measure, const PairSums& sums,
                                const CellRules& rules);

} // namespace kva

#endif
