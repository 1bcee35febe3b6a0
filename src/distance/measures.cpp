#include "distance/measures.h"

#include "base/settings.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

constexpr double kPi = 3.141592654; // wanted: this literal, not the full precision

int32_t samplesOf(const LocusSamples& locus) {
    return static_cast<int32_t>(locus.Typed.size());
}

// --- Terms of single alleles -------------------------------------------------------

// Adds term(x, y) to `sum` for each allele of sample j, one by one. An allele that sample I has
// not got has x = 0, and its term of 0.0 leaves the sum as it is.
template <class Term> double addTerms(double sum, const LocusRow& row, std::size_t j, Term term) {
    const auto end = static_cast<std::size_t>(row.Locus.First[j + 1]);
    for (auto e = static_cast<std::size_t>(row.Locus.First[j]); e < end; ++e) {
        const AlleleShare& share = row.Locus.Shares[e];
        sum += term(row.X[share.Place], share.Share);
    }
    return sum;
}

double smaller(double x, double y) {
    return std::min(x, y);
}
double product(double x, double y) {
    return x * y;
}
double root(double x, double y) {
    return std::sqrt(x * y);
}
// 1 for an allele that both have. A frequency is at least 2^-31, and no branch needs to be guessed.
double both(double x, double /*y*/) {
    return std::min(x * 0x1p60, 1.0);
}

// --- What a locus adds as one number -------------------------------------------------

// Calls set(j) for each pair of the row.
template <class Set> void forRow(const LocusRow& row, Set set) {
    const auto samples = static_cast<std::size_t>(samplesOf(row.Locus));
    for (auto j = static_cast<std::size_t>(row.I) + 1; j < samples; ++j) {
        set(j);
    }
}

// The number of alleles that both samples have.
void sharedAlleles(const LocusRow& row, double* value) {
    forRow(row, [&](std::size_t j) { value[j] = addTerms(0.0, row, j, both); });
}

// B: the cosine of the angle between the samples.
void cosines(const LocusRow& row, double* value) {
    forRow(row, [&](std::size_t j) { value[j] = addTerms(0.0, row, j, root); });
}

// sqrt(2 (1 - B)), 0 where B exceeds 1 by rounding.
void chords(const LocusRow& row, double* value) {
    cosines(row, value);
    forRow(row, [&](std::size_t j) {
        const double chord = std::sqrt(std::max(2.0 * (1.0 - value[j]), 0.0));
        value[j] = row.Locus.Typed[j] > 0.0 ? chord : 0.0;
    });
}

// difference(j) where both samples have a mean.
template <class Difference>
void meanDifferences(const LocusRow& row, double* value, Difference difference) {
    const bool hasMean = row.Locus.HasMean[static_cast<std::size_t>(row.I)] > 0.0;
    forRow(row, [&](std::size_t j) {
        value[j] = hasMean && row.Locus.HasMean[j] > 0.0 ? difference(j) : 0.0;
    });
}

void absoluteDifferences(const LocusRow& row, double* value) {
    const LocusSamples& locus = row.Locus;
    const double mi = locus.Mean[static_cast<std::size_t>(row.I)];
    const double r = locus.Repeat;
    meanDifferences(row, value, [&](std::size_t j) { return std::abs(mi - locus.Mean[j]) / r; });
}

void squaredDifferences(const LocusRow& row, double* value) {
    const LocusSamples& locus = row.Locus;
    const double mi = locus.Mean[static_cast<std::size_t>(row.I)];
    const double r = locus.Repeat;
    meanDifferences(row, value, [&](std::size_t j) {
        const double d = mi - locus.Mean[j];
        return d * d / (r * r);
    });
}

// A variance of -1.0 goes in as it stands: wanted.
void averageSquaredDifferences(const LocusRow& row, double* value) {
    const LocusSamples& locus = row.Locus;
    const double mi = locus.Mean[static_cast<std::size_t>(row.I)];
    const double vi = locus.Variance[static_cast<std::size_t>(row.I)];
    const double r = locus.Repeat;
    meanDifferences(row, value, [&](std::size_t j) {
        const double d = mi - locus.Mean[j];
        return (vi + d * d + locus.Variance[j]) / (r * r);
    });
}

// --- Adding a locus to the sums --------------------------------------------------------

// value to DistSumme, and one locus where it counts.
void addValues(const LocusRow& row, const double* value, const std::vector<double>& counts,
               RowSums& sums) {
    double* const summe = sums.DistSumme[0].data();
    double* const nenner = sums.DistNenner[0].data();
    const double* const count = counts.data();
    forRow(row, [=](std::size_t j) { summe[j] += value[j]; });
    forRow(row, [=](std::size_t j) { nenner[j] += count[j]; });
}

void addTypedValues(const LocusRow& row, const double* value, RowSums& sums) {
    addValues(row, value, row.Locus.Typed, sums);
}

void addMeanValues(const LocusRow& row, const double* value, RowSums& sums) {
    if (row.Locus.HasMean[static_cast<std::size_t>(row.I)] > 0.0) {
        addValues(row, value, row.Locus.HasMean, sums);
    }
}

// Shared alleles, and the alleles of the union: all numbers are whole, so any order is exact.
void addAlleleCounts(const LocusRow& row, const double* value, RowSums& sums) {
    const double alleles = row.Locus.Alleles[static_cast<std::size_t>(row.I)];
    const double* const typed = row.Locus.Typed.data();
    const double* const others = row.Locus.Alleles.data();
    double* const summe = sums.DistSumme[0].data();
    double* const nenner = sums.DistNenner[0].data();
    forRow(row, [=](std::size_t j) { summe[j] += value[j]; });
    forRow(row, [=](std::size_t j) { nenner[j] += typed[j] * (alleles + others[j]) - value[j]; });
}

template <double (*Term)(double, double)>
void addAlleles(const LocusRow& row, const double* /*value*/, RowSums& sums) {
    double* const summe = sums.DistSumme[0].data();
    double* const nenner = sums.DistNenner[0].data();
    forRow(row, [&](std::size_t j) {
        summe[j] = addTerms(summe[j], row, j, Term);
        nenner[j] += row.Locus.Typed[j];
    });
}

// DistSumme: J' of both samples; DistNenner: Jxy and the loci.
void addIdentities(const LocusRow& row, const double* /*value*/, RowSums& sums) {
    const LocusSamples& locus = row.Locus;
    if (locus.InNei[static_cast<std::size_t>(row.I)] == 0.0) {
        return;
    }
    const double identity = locus.Identity[static_cast<std::size_t>(row.I)];
    forRow(row, [&](std::size_t j) {
        if (locus.InNei[j] == 0.0) {
            return;
        }
        sums.DistSumme[0][j] += identity;
        sums.DistSumme[1][j] += locus.Identity[j];
        sums.DistNenner[0][j] = addTerms(sums.DistNenner[0][j], row, j, product);
        sums.DistNenner[1][j] += 1.0;
    });
}

// --- From the sums to the value --------------------------------------------------------

double mean(const PairSums& sums) {
    return sums.Summe / sums.Nenner;
}
double chordDistance(const PairSums& sums) {
    return 2.0 * sums.Summe / (sums.Nenner * kPi);
}
double oneMinusMean(const PairSums& sums) {
    return 1.0 - sums.Summe / sums.Nenner;
}
double normalizedIdentity(const PairSums& sums) {
    return sums.Nenner / std::sqrt(sums.Summe * sums.Summe2);
}

// --- The table ---------------------------------------------------------------------------

constexpr Measure kMeasures[] = {
    // bit, stem, key, line of the menu, line of the log,
    // index, layers, value of a locus, adding it, value of the sums, cells
    {DistBit::Dps, "POSA", '1',
     "Dps, Proportion of shared allels : ", "Dps, Proportion of shared allels", 0, 1, nullptr,
     addAlleles<smaller>, mean, CellKind::Similarity},
    {DistBit::Dfs, "FSS", '2', "Dfs, Fuzzy set similarity        : ", "Dfs, Fuzzy set similarity",
     0, 1, sharedAlleles, addAlleleCounts, mean, CellKind::Similarity},
    {DistBit::Dad, "ADA", '3',
     "Dad, Absolute difference algorithm:", "Dad, Absolute difference algorithm", 0, 1,
     absoluteDifferences, addMeanValues, mean, CellKind::Distance},
    {DistBit::Dkf, "KSC", '4', "Dkf, Kinship coefficient         : ", "Dkf, Kinship coefficient", 0,
     1, nullptr, addAlleles<product>, mean, CellKind::Similarity},
    {DistBit::Dmu, "DMS", '5', "Dmu, Delta mu squared            : ", "Dmu, Delta mu squared", 0, 1,
     squaredDifferences, addMeanValues, mean, CellKind::Distance},
    {DistBit::D1, "ASD", '6',
     "D1 , Average squared difference  : ", "D1, Average squared difference", 0, 1,
     averageSquaredDifferences, addMeanValues, mean, CellKind::Distance},
    {DistBit::DcDa, "CAS", '7', "Dc , Chord distance              : ",
     "Dc , Chord distance (Cavalli-Sforza and Edwards (1967))", 0, 1, chords, addTypedValues,
     chordDistance, CellKind::Distance},
    {DistBit::DcDa, "DAN", '8', "Da , Nei's-distance (1983)       : ", "Da , Nei's-distance (1983)",
     1, 1, cosines, addTypedValues, oneMinusMean, CellKind::Distance},
    {DistBit::D, "DSG", '9', "D  , Nei standard genetic distance:",
     "D, Nei's standard genetic distance (1978) corrected for small sample size.", 0, 2, nullptr,
     addIdentities, normalizedIdentity, CellKind::Nei},
};

// --- Cells -------------------------------------------------------------------------------

double fromSimilarity(double similarity, bool minusLog) {
    return minusLog ? -std::log(similarity) : 1.0 - similarity;
}

double countedLoci(const Measure& measure, const PairSums& sums) {
    return measure.Cells == CellKind::Nei ? sums.Nenner2 : sums.Nenner;
}

// The sum that is 0 where the samples share no allele.
double sharedSum(const Measure& measure, const PairSums& sums) {
    return measure.Cells == CellKind::Nei ? sums.Nenner : sums.Summe;
}

} // namespace

RowSums::RowSums(int32_t samples) {
    for (std::vector<double>* layer :
         {&DistSumme[0], &DistSumme[1], &DistNenner[0], &DistNenner[1]}) {
        layer->resize(static_cast<std::size_t>(samples));
    }
}

void RowSums::clear(int32_t layers) {
    for (std::size_t layer = 0; layer < static_cast<std::size_t>(layers); ++layer) {
        std::fill(DistSumme[layer].begin(), DistSumme[layer].end(), 0.0);
        std::fill(DistNenner[layer].begin(), DistNenner[layer].end(), 0.0);
    }
}

std::span<const Measure> allMeasures() {
    return kMeasures;
}

std::vector<Measure> selectedMeasures(uint32_t popDistMask) {
    std::vector<Measure> selected;
    for (const Measure& measure : kMeasures) {
        if (hasBit(popDistMask, measure.Bit)) {
            selected.push_back(measure);
        }
    }
    return selected;
}

CellPair matrixCells(const Measure& measure, const PairSums& sums, const CellRules& rules) {
    if (!(countedLoci(measure, sums) > 0.0)) {
        return {rules.Fehlerwert, rules.Fehlerwert};
    }
    if (measure.Cells == CellKind::Distance) {
        const double value = measure.Close(sums);
        return {value, value};
    }
    if (rules.MinusLog && sharedSum(measure, sums) == 0.0) {
        // Wanted: under -ln the upper cell of Nei's distance looks for the pair in the empty
        // lower triangle, finds no locus there, and tells so.
        const bool lost = measure.Cells == CellKind::Nei;
        return {lost ? rules.Fehlerwert : rules.Infinite, rules.Infinite};
    }
    const double value = fromSimilarity(measure.Close(sums), rules.MinusLog);
    return {value, value};
}

std::optional<double> sheetCell(const Measure& measure, const PairSums& sums,
                                const CellRules& rules) {
    if (!(countedLoci(measure, sums) > 0.0)) {
        return std::nullopt;
    }
    const double value = measure.Close(sums);
    if (measure.Cells != CellKind::Distance) {
        return fromSimilarity(value, rules.MinusLog);
    }
    // Wanted: a difference of -1 counts as none. With a variance of -1.0 it can come out.
    return value == -1.0 ? std::nullopt : std::optional<double>(value);
}

} // namespace kva
