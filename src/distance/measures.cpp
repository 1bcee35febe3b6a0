#include "distance/measures.h"

#include "base/settings.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

constexpr double kPi = 3.141592654; // wanted: this literal, not the full precision

// --- From the sums to the value --------------------------------------------------------

double mean(const PairSums& sums) {
    return sums.Summe / sums.Nenner;
}
double chordDistance(const PairSums& sums) {
    return 2.0 * sums.Summe / (sums.Nenner * kPi);
}
// Of the alleles of both samples, those that both have stand there twice.
double sharedPart(const PairSums& sums) {
    return sums.Summe / (sums.Nenner - sums.Summe);
}
double oneMinusMean(const PairSums& sums) {
    return 1.0 - sums.Summe / sums.Nenner;
}
double normalizedIdentity(const PairSums& sums) {
    return sums.Nenner / std::sqrt(sums.Summe * sums.Summe2);
}

// --- Cells -------------------------------------------------------------------------------

double fromSimilarity(double similarity, bool minusLog) {
    return minusLog ? -std::log(similarity) : 1.0 - similarity;
}

double countedLoci(CellKind kind, const PairSums& sums) {
    return kind == CellKind::Nei ? sums.Nenner2 : sums.Nenner;
}

// The sum that is 0 where the samples share no allele.
double sharedSum(CellKind kind, const PairSums& sums) {
    return kind == CellKind::Nei ? sums.Nenner : sums.Summe;
}

template <CellKind Kind, double (*Value)(const PairSums&)>
CellPair cellsOf(const PairSums& sums, const CellRules& rules) {
    if (!(countedLoci(Kind, sums) > 0.0)) {
        return {rules.Fehlerwert, rules.Fehlerwert};
    }
    if (Kind == CellKind::Distance) {
        const double value = Value(sums);
        return {value, value};
    }
    if (rules.MinusLog && sharedSum(Kind, sums) == 0.0) {
        // Wanted: under -ln the upper cell of Nei's distance looks for the pair in the empty
        // lower triangle, finds no locus there, and tells so.
        const bool lost = Kind == CellKind::Nei;
        return {lost ? rules.Fehlerwert : rules.Infinite, rules.Infinite};
    }
    const double value = fromSimilarity(Value(sums), rules.MinusLog);
    return {value, value};
}

template <CellKind Kind, double (*Value)(const PairSums&)>
void upperCells(const MeasureSums& from, const RowSums& sums, const CellRules& rules,
                std::size_t first, std::size_t end, double* cells) {
    const double* const summe = sums.of(from.Summe);
    const double* const nenner = sums.of(from.Nenner);
    if constexpr (Kind == CellKind::Nei) {
        const double* const summe2 = sums.of(from.Summe2);
        const double* const nenner2 = sums.of(from.Nenner2);
        for (std::size_t j = first; j < end; ++j) {
            const PairSums pair{summe[j], summe2[j], nenner[j], nenner2[j]};
            cells[j] = cellsOf<Kind, Value>(pair, rules).Upper;
        }
    } else {
        for (std::size_t j = first; j < end; ++j) {
            cells[j] = cellsOf<Kind, Value>({summe[j], 0.0, nenner[j], 0.0}, rules).Upper;
        }
    }
}

template <CellKind Kind, double (*Value)(const PairSums&)>
constexpr Closing kClosing{Kind, Value, cellsOf<Kind, Value>, upperCells<Kind, Value>};

// --- The table ---------------------------------------------------------------------------

using enum Quantity;

constexpr Measure kMeasures[] = {
    // bit, stem, key, line of the menu, line of the log,
    // index, sums, what is made of them
    {DistBit::Dps,
     "POSA",
     '1',
     "Dps, Proportion of shared allels : ",
     "Dps, Proportion of shared allels",
     0,
     {Smaller, None, Typed, None},
     kClosing<CellKind::Similarity, mean>},
    {DistBit::Dfs,
     "FSS",
     '2',
     "Dfs, Fuzzy set similarity        : ",
     "Dfs, Fuzzy set similarity",
     0,
     {Shared, None, Alleles, None},
     kClosing<CellKind::Similarity, sharedPart>},
    {DistBit::Dad,
     "ADA",
     '3',
     "Dad, Absolute difference algorithm:",
     "Dad, Absolute difference algorithm",
     0,
     {Difference, None, WithMean, None},
     kClosing<CellKind::Distance, mean>},
    {DistBit::Dkf,
     "KSC",
     '4',
     "Dkf, Kinship coefficient         : ",
     "Dkf, Kinship coefficient",
     0,
     {Products, None, Typed, None},
     kClosing<CellKind::Similarity, mean>},
    {DistBit::Dmu,
     "DMS",
     '5',
     "Dmu, Delta mu squared            : ",
     "Dmu, Delta mu squared",
     0,
     {Square, None, WithMean, None},
     kClosing<CellKind::Distance, mean>},
    {DistBit::D1,
     "ASD",
     '6',
     "D1 , Average squared difference  : ",
     "D1, Average squared difference",
     0,
     {Spread, None, WithMean, None},
     kClosing<CellKind::Distance, mean>},
    {DistBit::DcDa,
     "CAS",
     '7',
     "Dc , Chord distance              : ",
     "Dc , Chord distance (Cavalli-Sforza and Edwards (1967))",
     0,
     {Chord, None, Typed, None},
     kClosing<CellKind::Distance, chordDistance>},
    {DistBit::DcDa,
     "DAN",
     '8',
     "Da , Nei's-distance (1983)       : ",
     "Da , Nei's-distance (1983)",
     1,
     {Cosine, None, Typed, None},
     kClosing<CellKind::Distance, oneMinusMean>},
    {DistBit::D,
     "DSG",
     '9',
     "D  , Nei standard genetic distance:",
     "D, Nei's standard genetic distance (1978) corrected for small sample size.",
     0,
     {IdentityI, IdentityJ, NeiProducts, InNei},
     kClosing<CellKind::Nei, normalizedIdentity>},
};

} // namespace

QuantitySet quantitiesOf(std::span<const Measure> measures) {
    QuantitySet set;
    for (const Measure& measure : measures) {
        const auto& [summe, summe2, nenner, nenner2] = measure.Sums;
        for (const Quantity quantity : {summe, summe2, nenner, nenner2}) {
            set.add(quantity);
        }
    }
    return set;
}

PairSums pairSums(const Measure& measure, const RowSums& sums, std::size_t j) {
    const auto sum = [&](Quantity quantity) {
        return quantity == None ? 0.0 : sums.of(quantity)[j];
    };
    return {sum(measure.Sums.Summe), sum(measure.Sums.Summe2), sum(measure.Sums.Nenner),
            sum(measure.Sums.Nenner2)};
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
    return measure.FromSums.Cells(sums, rules);
}

bool isSymmetric(const Measure& measure, const CellRules& rules) {
    return measure.FromSums.Kind != CellKind::Nei || !rules.MinusLog;
}

std::optional<double> sheetCell(const Measure& measure, const PairSums& sums,
                                const CellRules& rules) {
    const CellKind kind = measure.FromSums.Kind;
    if (!(countedLoci(kind, sums) > 0.0)) {
        return std::nullopt;
    }
    const double value = measure.FromSums.Value(sums);
    if (kind != CellKind::Distance) {
        return fromSimilarity(value, rules.MinusLog);
    }
    // Wanted: a difference of -1 counts as none. With a variance of -1.0 it can come out.
    return value == -1.0 ? std::nullopt : std::optional<double>(value);
}

} // namespace kva
