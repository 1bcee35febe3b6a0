#include "distance/quantities.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

// --- Terms of single alleles -------------------------------------------------------

// Adds term(x, y) to `sum` for each allele of sample j, one by one. An allele that sample I has
// not got has x = 0, and its term of 0.0 leaves the sum as it is.
template <class Term> double addTerms(double sum, const LocusRow& row, std::size_t j, Term term) {
    const std::size_t end = row.Locus.First[j + 1];
    for (std::size_t e = row.Locus.First[j]; e < end; ++e) {
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

// --- What a locus adds to a pair as one number ---------------------------------------

using Column = std::vector<double> LocusSamples::*;

// A flag of both samples.
template <Column Flag> double flagOfBoth(const LocusRow& row, std::size_t j) {
    return (row.Locus.*Flag)[row.I] * (row.Locus.*Flag)[j];
}

double sharedAlleles(const LocusRow& row, std::size_t j) {
    return addTerms(0.0, row, j, both);
}

double alleles(const LocusRow& row, std::size_t j) {
    return row.Locus.Typed[j] * (row.Locus.Alleles[row.I] + row.Locus.Alleles[j]);
}

double cosine(const LocusRow& row, std::size_t j) {
    return addTerms(0.0, row, j, root);
}

double chord(const LocusRow& row, std::size_t j) {
    const double length = std::sqrt(std::max(2.0 * (1.0 - cosine(row, j)), 0.0));
    return row.Locus.Typed[j] > 0.0 ? length : 0.0;
}

double absoluteDifference(const LocusSamples& locus, std::size_t i, std::size_t j) {
    return std::abs(locus.Mean[i] - locus.Mean[j]) / locus.Repeat;
}

double squaredDifference(const LocusSamples& locus, std::size_t i, std::size_t j) {
    const double d = locus.Mean[i] - locus.Mean[j];
    const double r = locus.Repeat;
    return d * d / (r * r);
}

double averageSquaredDifference(const LocusSamples& locus, std::size_t i, std::size_t j) {
    const double d = locus.Mean[i] - locus.Mean[j];
    const double r = locus.Repeat;
    return (locus.Variance[i] + d * d + locus.Variance[j]) / (r * r);
}

template <double (*Value)(const LocusSamples&, std::size_t, std::size_t)>
double betweenMeans(const LocusRow& row, std::size_t j) {
    const bool counts = flagOfBoth<&LocusSamples::HasMean>(row, j) > 0.0;
    return counts ? Value(row.Locus, row.I, j) : 0.0;
}

// A J' that is nan stays out where the pair does not count.
double identityI(const LocusRow& row, std::size_t j) {
    const bool counts = flagOfBoth<&LocusSamples::InNei>(row, j) > 0.0;
    return counts ? row.Locus.Identity[row.I] : 0.0;
}
double identityJ(const LocusRow& row, std::size_t j) {
    const bool counts = flagOfBoth<&LocusSamples::InNei>(row, j) > 0.0;
    return counts ? row.Locus.Identity[j] : 0.0;
}

// --- Adding a locus to the sums of a row -----------------------------------------------

template <double (*Value)(const LocusRow&, std::size_t)>
void addValues(const LocusRow& row, double* sums) {
    const std::size_t samples = row.Locus.Typed.size();
    for (std::size_t j = row.First; j < samples; ++j) {
        sums[j] += Value(row, j);
    }
}

template <double (*Term)(double, double)> void addAlleles(const LocusRow& row, double* sums) {
    const std::size_t samples = row.Locus.Typed.size();
    for (std::size_t j = row.First; j < samples; ++j) {
        sums[j] = addTerms(sums[j], row, j, Term);
    }
}

void addNeiProducts(const LocusRow& row, double* sums) {
    const std::size_t samples = row.Locus.Typed.size();
    for (std::size_t j = row.First; j < samples; ++j) {
        if (flagOfBoth<&LocusSamples::InNei>(row, j) > 0.0) {
            sums[j] = addTerms(sums[j], row, j, product);
        }
    }
}

// In the order of Quantity.
constexpr std::array<QuantityRule, kQuantities> kRules = {{
    {addValues<flagOfBoth<&LocusSamples::Typed>>, nullptr},
    {addValues<flagOfBoth<&LocusSamples::HasMean>>, nullptr},
    {addValues<flagOfBoth<&LocusSamples::InNei>>, nullptr},
    {addAlleles<smaller>, smaller},
    {addAlleles<product>, product},
    {addNeiProducts, product},
    {addValues<sharedAlleles>, nullptr},
    {addValues<alleles>, nullptr},
    {addValues<betweenMeans<absoluteDifference>>, nullptr},
    {addValues<betweenMeans<squaredDifference>>, nullptr},
    {addValues<betweenMeans<averageSquaredDifference>>, nullptr},
    {addValues<chord>, nullptr},
    {addValues<cosine>, nullptr},
    {addValues<identityI>, nullptr},
    {addValues<identityJ>, nullptr},
}};

} // namespace

RowSums::RowSums(std::size_t samples) {
    for (std::vector<double>& sums : Sums) {
        sums.resize(samples + kRoom);
    }
}

void RowSums::clear(QuantitySet wanted) {
    for (const Quantity quantity : kAllQuantities) {
        if (wanted.has(quantity)) {
            std::vector<double>& sums = Sums[placeOf(quantity)];
            std::fill(sums.begin(), sums.end(), 0.0);
        }
    }
}

RowMaker::RowMaker(const Samples& samples) {
    std::size_t alleles = 0;
    for (const LocusSamples& locus : samples.Loci) {
        alleles = std::max(alleles, locus.Pool);
    }
    Frequencies.resize(alleles + 1);
}

LocusRow RowMaker::row(const LocusSamples& locus, std::size_t i, std::size_t first) {
    for (const std::size_t place : Places) {
        Frequencies[place] = 0.0;
    }
    Places.clear();
    for (std::size_t e = locus.First[i]; e < locus.First[i + 1]; ++e) {
        Frequencies[locus.Shares[e].Place] = locus.Shares[e].Share;
        Places.push_back(locus.Shares[e].Place);
    }
    return {locus, i, first, Frequencies.data()};
}

const QuantityRule& ruleOf(Quantity quantity) {
    return kRules[placeOf(quantity)];
}

} // namespace kva
