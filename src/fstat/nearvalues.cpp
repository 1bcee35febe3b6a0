#include "fstat/nearvalues.h"

#include "data/diversity.h"

namespace kva {

namespace {

constexpr double kLeastNbar = 1.05; // mean number of individuals, 1 less of which is a divisor

// The components of Weir and Cockerham (1984) for many samples, with the sums over the alleles
// taken inside: of n (p - pbar)^2 that is half of `squares` less sumN pbar^2, of pbar (1 - pbar)
// it is Ht.
VarianceComponents nearComponents(const NearLocus& g, double Ht) {
    const double nbar = g.sumN / g.s;
    const double nc = (g.sumN - g.sumN2 / g.sumN) / (g.s - 1.0);
    const double H = g.sumNH / g.sumN;
    const double ss = g.squares * 0.5 - g.sumN * (1.0 - Ht);
    const double s2 = ss / (nbar * (g.s - 1.0));
    const double x = Ht - (g.s - 1.0) * s2 / g.s;
    const double a = nbar * (s2 - (x - H * 0.5) / (nbar - 1.0)) / nc;
    const double b = nbar * x / (nbar - 1.0) - H * (nbar / (nbar - 1.0) + 1.0) * 0.5;
    return {a, b, H};
}

} // namespace

std::optional<TestedValues> NearGlobalSums::add(const NearLocus& g, double Ht) {
    if (g.s < 2.0 || g.sumN < kLeastNbar * g.s) {
        All = false;
        return std::nullopt;
    }
    const VarianceComponents v = nearComponents(g, Ht);
    const double hs = g.sumHs / g.s;
    const double hmax = largestHt(g.s, hs);
    F = {F.a + v.a, F.b + v.b, F.c + v.c};
    TotHs += hs;
    TotHt += Ht;
    TotHmax += hmax;
    ++Loci;
    return valuesOf(v, hs, Ht, hmax, 1);
}

std::optional<TestedValues> NearGlobalSums::valuesOf(const VarianceComponents& v, double hs,
                                                     double Ht, double hmax, int32_t loci) {
    const double least = kLeastDivisor * loci;
    const double T = v.a + v.b + v.c;
    const double differ = hmax - hs; // the divisor of Gst', times hmax
    if (std::abs(T) <= least || std::abs(v.b + v.c) <= least || Ht <= least || differ <= least) {
        return std::nullopt;
    }
    return TestedValues{v.a / T, gst(hs / Ht), gstStrich(hs / Ht, hs / hmax)};
}

} // namespace kva
