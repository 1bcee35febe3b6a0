// Whether permuted statistics reach the observed ones, told from near values: the same but for
// rounding, at a fraction of the cost of the exact ones, which are needed where a near value is too
// close to tell. Sums of squares of gene copies take the place of sums over the alleles in the
// order of their first appearance.
#ifndef KVA_FSTAT_NEARVALUES_H
#define KVA_FSTAT_NEARVALUES_H

#include "data/codeddata.h"
#include "fstat/wc84.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace kva {

// --- Sums of squares -------------------------------------------------------------------

// Four counts side by side.
using FourCounts [[gnu::vector_size(16)]] = int32_t;

// Four counts that stand behind each other.
inline FourCounts fourCounts(const int32_t* counts) {
    FourCounts four;
    std::memcpy(&four, counts, sizeof four);
    return four;
}

// The products of counts below 2^15.
inline FourCounts products(FourCounts one, FourCounts other) {
#ifdef __SSE2__ // multiplies the low halves, and the high ones, which are 0
    return reinterpret_cast<FourCounts>(
        _mm_madd_epi16(reinterpret_cast<__m128i>(one), reinterpret_cast<__m128i>(other)));
#else
    return one * other;
#endif
}

// The sums of four counts and of four others, as the first two of the result.
inline FourCounts totals(FourCounts one, FourCounts other) {
    const FourCounts halves = __builtin_shufflevector(one, other, 0, 4, 1, 5) +
                              __builtin_shufflevector(one, other, 2, 6, 3, 7);
    return halves + __builtin_shufflevector(halves, halves, 2, 3, 2, 3);
}

// The first two of four counts.
inline TwoDoubles firstTwo(FourCounts four) {
#ifdef __SSE2__ // one instruction
    return _mm_cvtepi32_pd(reinterpret_cast<__m128i>(four));
#else
    return TwoDoubles{double(four[0]), double(four[1])};
#endif
}

// All bits of the first n counts, n from 0 to 4.
inline FourCounts firstCounts(std::size_t n) {
    static constexpr std::array<int32_t, 8> bits = {-1, -1, -1, -1, 0, 0, 0, 0};
    return fourCounts(&bits[4 - n]);
}

// The sum of the squares of the counts from `begin` on; there are three more behind `end`.
inline int32_t sumOfSquares(const int32_t* counts, std::size_t begin, std::size_t end) {
    FourCounts sum = {};
    for (; begin + 4 <= end; begin += 4) {
        const FourCounts four = fourCounts(counts + begin);
        sum += products(four, four);
    }
    if (begin < end) {
        const FourCounts last = fourCounts(counts + begin) & firstCounts(end - begin);
        sum += products(last, last);
    }
    return totals(sum, sum)[0];
}

// --- Two samples -----------------------------------------------------------------------

// Sums over the alleles of two samples, with c1 and c gene copies in the first one and in both.
class PairSquares {
  public:
    // Adds four alleles, given by c1 and c.
    void add(FourCounts drawn, FourCounts all) {
        Drawn += products(drawn, drawn);
        Mixed += products(drawn, all);
        All += products(all, all);
    }
    double all() const { return totals(All, All)[0]; } // c^2
    // c1^2 and c1 c
    TwoDoubles drawnAndMixed() const { return firstTwo(totals(Drawn, Mixed)); }

  private:
    FourCounts Drawn = {};
    FourCounts Mixed = {};
    FourCounts All = {};
};

// Near components of a locus of two samples of given sizes: what they make of the sums of squares
// and of H is a sum of products. With n = n1 + n2 gene copies in both, sum pbar^2 is sum c^2 / n^2,
// and s2 is 2 nA nB / S^2 (p1 - p2)^2, where
//
//     sum (p1 - p2)^2 = sum (c1 / n1 - (c - c1) / n2)^2.
class NearFactors {
  public:
    NearFactors() = default;
    explicit NearFactors(const PairSizes& n)
        : One(ofS2AndX(n, 0.0, 1.0)), OfH{n.S / (2.0 * n.nc * (n.S - 2.0)),
                                          (n.S / (n.S - 2.0) + 1.0) * -0.5},
          H1(2.0 * n.nA / n.S), H2(2.0 * n.nB / n.S) {
        const double sum = 1.0 / n.n1 + 1.0 / n.n2;
        const TwoDoubles ofDifferences = ofS2AndX(n, 1.0, -0.5) * (n.nc / n.S);
        OfDrawn = ofDifferences * (sum * sum);
        OfMixed = ofDifferences * (-2.0 * sum / n.n2);
        OfAll = ofDifferences / (n.n2 * n.n2) - One / (4.0 * n.S * n.S);
    }

    // Both samples have an observed heterozygosity.
    VarianceComponents components(const Tally& t1, const Tally& t2, const PairSquares& sum) const {
        const double H = H1 * t1.Hetero / t1.Typed + H2 * t2.Hetero / t2.Typed;
        const TwoDoubles some = sum.drawnAndMixed();
        const TwoDoubles ab =
            One + OfDrawn * some[0] + OfMixed * some[1] + OfAll * sum.all() + OfH * H;
        return {ab[0], ab[1], H};
    }

  private:
    // What s2 and x = pbar (1 - pbar) - s2 / 2 add to a and b.
    static TwoDoubles ofS2AndX(const PairSizes& n, double s2, double x) {
        return TwoDoubles{n.S * (s2 - 2.0 * x / (n.S - 2.0)) / (2.0 * n.nc), n.S * x / (n.S - 2.0)};
    }

    // What is added to a and b: of itself, and for each of a sum.
    TwoDoubles One = {};
    TwoDoubles OfH = {};
    TwoDoubles OfDrawn = {}; // c1^2
    TwoDoubles OfMixed = {}; // c1 c
    TwoDoubles OfAll = {};   // c^2
    double H1 = 0.0;         // for heterozygotes per entry of sample 1
    double H2 = 0.0;         // ... of sample 2
};

// --- Comparing -------------------------------------------------------------------------

// Of Fst, Fit and Fis, at the places of FRow: whether the permuted value reaches the observed one.
using Reached = std::array<bool, 3>;

// Exact ones: a tie counts, a nan on either side does not.
inline Reached reachedBy(const FValues& permuted, const FValues& observed) {
    Reached reached = {};
    for (std::size_t s = 0; s < reached.size(); ++s) {
        reached[s] = observed[s] <= permuted[s];
    }
    return reached;
}

// How far a near value has to be from an observed one, for each and for each unit of it. Rounding
// is far below: with at most kMostNear gene copies a component is off by less than 1e-9.
constexpr double kNearMargin = 1e-7;
// The smallest divisor, for each locus, of a near value.
constexpr double kLeastDivisor = 1e-2;
constexpr int32_t kMostNear = 2000; // gene copies of a sample

// Whether `observed` is so far from a near value that this one tells.
inline bool isFar(double near, double observed) {
    return std::abs(observed - near) > kNearMargin * (1.0 + std::abs(near));
}

// Sums of near components over loci.
class NearSums {
  public:
    // Adds the components of a locus.
    void add(const VarianceComponents& v) {
        A += v.a;
        B += v.b;
        C += v.c;
        ++Loci;
    }

    // Whether the values of these sums reach observed ones; nothing if that cannot be told.
    std::optional<Reached> reached(const FValues& observed) const {
        const double least = kLeastDivisor * Loci;
        const double within = B + C;
        const double T = A + within;
        if (std::abs(T) <= least || std::abs(within) <= least) {
            return std::nullopt;
        }
        const FValues near = {A / T, 1.0 - C / T, 1.0 - C / within};
        for (std::size_t s = 0; s < near.size(); ++s) {
            if (!isFar(near[s], observed[s])) {
                return std::nullopt;
            }
        }
        return reachedBy(near, observed);
    }

  private:
    double A = 0.0;   // sum of a
    double B = 0.0;   // sum of b
    double C = 0.0;   // sum of c
    int32_t Loci = 0; // added
};

// --- All populations -------------------------------------------------------------------

// What the samples of all populations add up to at a locus. A sample of less than one individual
// has no gene copy.
struct NearLocus {
    double s = 0.0;       // samples with an individual
    double sumN = 0.0;    // individuals
    double sumN2 = 0.0;   // squares
    double sumHs = 0.0;   // expected heterozygosities, uncorrected
    double sumNH = 0.0;   // H, weighted by individuals
    double squares = 0.0; // over the alleles: squares of the gene copies, over those of the sample
};

// Fst, Gst and Gst'.
using TestedValues = std::array<double, 3>;

// Near sums over loci for many samples, as GlobalSums.
class NearGlobalSums {
  public:
    // Adds a locus and gives its near values; nothing if a divisor is small. Ht: expected
    // heterozygosity of the pool, uncorrected.
    std::optional<TestedValues> add(const NearLocus& g, double Ht);
    // Those over all loci given; nothing if one could not be added, either.
    std::optional<TestedValues> values() const {
        return All ? valuesOf(F, TotHs, TotHt, TotHmax, Loci) : std::nullopt;
    }

  private:
    // From components and heterozygosities that are summed over so many loci.
    static std::optional<TestedValues> valuesOf(const VarianceComponents& v, double hs, double Ht,
                                                double hmax, int32_t loci);

    VarianceComponents F = {}; // sums of the components
    double TotHs = 0.0;        // ... and of the heterozygosities, as in GlobalSums
    double TotHt = 0.0;
    double TotHmax = 0.0;
    int32_t Loci = 0; // added
    bool All = true;  // no locus is left out
};

} // namespace kva

#endif
