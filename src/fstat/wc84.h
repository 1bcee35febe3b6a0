// The numeric core of the F-statistics: variance components of Weir and Cockerham
// (1984, Evolution 38:1358-1370) for two samples and for many, Gst and Gst' beside
// them. It knows frequencies and sample sizes, no tables, no files.
//
// The order of the floating-point operations decides ties between an observed and a
// permuted value, so it is part of the result: sums run over the alleles in the order
// given, products and quotients from left to right.
#ifndef KVA_FSTAT_WC84_H
#define KVA_FSTAT_WC84_H

#include "data/ftriple.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kva {

// Which heterozygosity stands for H in the estimators; the paper's is the observed one.
enum class HRule {
    Hobs, // the observed one, also for inbred data
    Hexp, // the expected one
    Auto  // the expected one for inbred data only
};

// The rule of FstMask. With both bits on the observed one wins; with neither
// the choice is automatic, and the bit for that is not looked at.
HRule hRule(uint32_t fstMask);

// H of one sample; negative if it cannot be computed. Table: AllelCount or ShuffleTable.
template <class Table> double sampleH(HRule rule, const Table& t) {
    const bool expected = rule == HRule::Hexp || (rule == HRule::Auto && t.isHaploid());
    return expected ? t.CalcHet() : t.CalcHetobs();
}

// The rule for a pair: with Auto one haploid sample turns both to the expected heterozygosity, else
// both are observed; the other rules stay.
template <class Table> HRule pairRule(HRule rule, const Table& t1, const Table& t2) {
    if (rule != HRule::Auto) {
        return rule;
    }
    return t1.isHaploid() || t2.isHaploid() ? HRule::Hexp : HRule::Hobs;
}

// Components of variance of one locus, summed over its alleles (Weir and Cockerham 1984).
struct VarianceComponents {
    double a; // between populations; can be negative
    double b; // between individuals within populations; can be negative
    double c; // within individuals
};

// Fst of a single locus, a / (a + b + c); nothing if all three components are 0.
std::optional<double> locusFst(const VarianceComponents& v);

// Sums of the components over loci.
class FSums {
  public:
    // Adds the components of a locus.
    void add(const VarianceComponents& v) {
        A += v.a;
        B += v.b;
        C += v.c;
    }

    // Fst, Fit, Fis, ratios of the sums: A/T, 1 - C/T, 1 - C/(B + C) with T = A + B + C. All
    // `undefined` if B and C are both 0; no other division is guarded.
    FValues values(double undefined) const;

  private:
    double A = 0.0; // sum of a
    double B = 0.0; // sum of b
    double C = 0.0; // sum of c
};

// --- Two samples -----------------------------------------------------------------------

// The core of the tests' innermost loop, so it is inline.

// Alleles that are computed side by side. A list of counts is filled up with zeros to a
// multiple of it: an allele that neither sample has adds nothing.
constexpr std::size_t kAlleleStep = 2;

// Two numbers that are computed side by side, each as if alone.
using TwoDoubles [[gnu::vector_size(16)]] = double;

// Two counts that stand behind each other.
inline TwoDoubles twoCounts(const int32_t* counts) {
#ifdef __SSE2__ // one instruction, which g++ 12 does not find
    return _mm_cvtepi32_pd(_mm_loadu_si64(counts));
#else
    return TwoDoubles{double(counts[0]), double(counts[1])};
#endif
}

// Two numbers that stand behind each other.
inline TwoDoubles loadTwo(const double* numbers) {
    return TwoDoubles{numbers[0], numbers[1]};
}
inline void storeTwo(double* numbers, TwoDoubles two) {
    numbers[0] = two[0];
    numbers[1] = two[1];
}

// One locus of two samples.
struct PairLocus {
    int32_t copies1;                  // gene copies of sample 1; -1 or 0: none
    int32_t copies2;                  // ... of sample 2
    double H1;                        // heterozygosity of sample 1; negative: cannot be computed
    double H2;                        // ... of sample 2
    std::span<const int32_t> counts1; // NOT OWNED; gene copies in sample 1 of each allele, in the
                                      // order of summing, filled up as kAlleleStep tells
    std::span<const int32_t> counts2; // ... in sample 2, as many
};

// What does not change from allele to allele.
struct PairSizes {
    double n1; // gene copies of sample 1
    double n2; // ... of sample 2
    double nA; // individuals of sample 1: n1 / 2
    double nB; // ... of sample 2
    double S;  // individuals of both: nA + nB
    double nc; // 2 nA nB / S
};

// The sizes of two samples of so many gene copies each, -1 or 0: none. A sample of n gene copies
// has n / 2 individuals, also if it is haploid. Nothing if a sample is empty or both have 2
// individuals or fewer together.
inline std::optional<PairSizes> pairSizes(int32_t copies1, int32_t copies2) {
    const double nA = copies1 * 0.5;
    const double nB = copies2 * 0.5;
    const double S = nA + nB;
    if (nA <= 0.0 || nB <= 0.0 || S <= 2.0) {
        return std::nullopt;
    }
    return PairSizes{double(copies1), double(copies2), nA, nB, S, 2.0 * nA * nB / S};
}

// What two alleles add to a and to b but for the terms of H, each by its gene copies in the two
// samples. The result is set, not added.
inline void alleleTerms(const PairSizes& n, TwoDoubles count1, TwoDoubles count2, TwoDoubles& a,
                        TwoDoubles& b) {
    const TwoDoubles p1 = count1 / n.n1;
    const TwoDoubles p2 = count2 / n.n2;
    const TwoDoubles pbar = (n.nA * p1 + n.nB * p2) / n.S;
    const TwoDoubles s2 =
        2.0 * (n.nA * ((p1 - pbar) * (p1 - pbar)) + n.nB * ((p2 - pbar) * (p2 - pbar))) / n.S;
    const TwoDoubles x = pbar * (1.0 - pbar) - s2 / 2.0;
    a = n.S * (s2 - 2.0 * x / (n.S - 2.0)) / (2.0 * n.nc);
    b = n.S * x / (n.S - 2.0);
}

// The components from the sums a and b of what the alleles add, and from the heterozygosities of
// the samples, which are not negative.
inline VarianceComponents withHeterozygosity(const PairSizes& n, double a, double b, double H1,
                                             double H2) {
    const double H = (n.nA * H1 + n.nB * H2) / n.S;
    a += n.S * H / (2.0 * n.nc * (n.S - 2.0));
    b -= (n.S / (n.S - 2.0) + 1.0) * H / 2.0;
    return {a, b, H};
}

// The components of a pair's locus (Weir and Cockerham 1984, two samples), unclamped; c is the mean
// H weighted by individuals. Nothing without sizes, if an H is negative or there are no alleles.
inline std::optional<VarianceComponents> pairComponents(const PairLocus& locus) {
    const std::optional<PairSizes> n = pairSizes(locus.copies1, locus.copies2);
    if (!n || locus.H1 < 0.0 || locus.H2 < 0.0 || locus.counts1.empty()) {
        return std::nullopt;
    }
    const int32_t* const counts1 = locus.counts1.data();
    const int32_t* const counts2 = locus.counts2.data();
    double a = 0.0;
    double b = 0.0;
    for (std::size_t k = 0; k < locus.counts1.size(); k += kAlleleStep) {
        TwoDoubles termA;
        TwoDoubles termB;
        alleleTerms(*n, twoCounts(counts1 + k), twoCounts(counts2 + k), termA, termB);
        a += termA[0];
        b += termB[0];
        a += termA[1];
        b += termB[1];
    }
    return withHeterozygosity(*n, a, b, locus.H1, locus.H2);
}

// --- Many samples ----------------------------------------------------------------------

constexpr int32_t kFewestAlleles = 2; // in the pool of a locus

// Whether a population of so many gene copies counts at a locus.
inline bool hasIndividual(int32_t copies) {
    return copies * 0.5 >= 1.0;
}

// A population that counts at a locus: it has at least one individual there.
struct GlobalSample {
    double n;      // individuals: gene copies / 2, at least 1
    double hetuk;  // expected heterozygosity, uncorrected
    double hetero; // H by the rule; a negative one is not left out
};

// What the samples add up to for one allele: the sum over them of n (p - pbar)^2. p: its frequency
// in each sample; pbar: in the pool.
double sumOfDeviations(std::span<const GlobalSample> samples, const double* p, double pbar);

// One locus of many samples, with at least two alleles in the pool.
struct GlobalLocus {
    double Ht;                             // expected heterozygosity of the pool, uncorrected
    std::span<const GlobalSample> samples; // NOT OWNED; the s populations that count
    std::span<const double> pbar;          // NOT OWNED; frequency of each allele in the pool
    std::span<const double> ss;            // NOT OWNED; sumOfDeviations() of each allele
};

// Fst, Fit, Fis, Gst, Gst' over all loci.
struct GlobalValues {
    FValues f;        // Fst, Fit, Fis: ratios of sums (Weir and Cockerham 1984)
    double gst;       // Gst (Nei 1973)
    double gstStrich; // Gst' (Hedrick 2005)
};

// Sums over loci for many samples.
class GlobalSums {
  public:
    // Adds a locus and writes its five values to column l, from 0, of `locus` (five rows, FRow);
    // `undefined` where there is none. Rows Gst and Gst' keep what they held if no population
    // counts: wanted, in a test they hold those of the permutation before. With a single
    // population Fst, Fit and Fis, here and over all loci, are no number.
    void add(const GlobalLocus& g, CMatrix& locus, int32_t l, double undefined);

    // The five values over all loci added: Fst, Fit and Fis as FSums, Gst = 1 - Hs/Ht (Nei 1973)
    // and Gst' = Gst / (1 - Hs/Ht(max)) (Hedrick 2005) from sums over loci. `undefined` where there
    // is none: of Gst and Gst' if the sum of Ht is below 0.000001.
    GlobalValues values(double undefined) const;

  private:
    FSums F;              // of the components
    double TotHt = 0.0;   // sum over loci: heterozygosity of the pool
    double TotHs = 0.0;   // ... mean heterozygosity within populations
    double TotHmax = 0.0; // ... largest heterozygosity of the pool for that, Ht(max)
};

// Sets rows first to last of column l, all from 0 and both ends included, to `value`.
void fillColumn(CMatrix& table, int32_t first, int32_t last, int32_t l, double value);

} // namespace kva

#endif
