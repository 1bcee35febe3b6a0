#include "fstat/wc84.h"

#include "base/settings.h"
#include "data/diversity.h"

#include <cstddef>

namespace kva {

namespace {

constexpr double kLeastHt = 1e-06; // below it a pool counts as monomorphic

// Sizes of the populations at a locus, summed up.
struct Sizes {
    double s = 0.0;     // populations
    double sumN = 0.0;  // individuals
    double sumN2 = 0.0; // squares
    double sumHs = 0.0; // heterozygosities
    double sumNH = 0.0; // H, weighted by individuals
};

Sizes addUp(std::span<const GlobalSample> samples) {
    Sizes sum;
    sum.s = static_cast<double>(samples.size());
    for (const GlobalSample& sample : samples) {
        sum.sumN += sample.n;
        sum.sumN2 += sample.n * sample.n;
        sum.sumHs += sample.hetuk;
        sum.sumNH += sample.n * sample.hetero;
    }
    return sum;
}

VarianceComponents globalComponents(const GlobalLocus& g, const Sizes& sum) {
    const double s = sum.s;
    const double sumN = sum.sumN;
    const double nbar = sumN / s;
    const double nc = (sumN - sum.sumN2 / sumN) / (s - 1.0); // not a number for one population
    const double H = sum.sumNH / sumN;
    double a = 0.0;
    double b = 0.0;
    for (std::size_t k = 0; k < g.pbar.size(); ++k) {
        const double pbar = g.pbar[k];
        const double s2 = g.ss[k] / nbar / (s - 1.0);
        const double x = pbar * (1.0 - pbar) - (s - 1.0) * s2 / s;
        a += nbar * (s2 - x / (nbar - 1.0)) / nc;
        b += nbar * x / (nbar - 1.0);
    }
    a += nbar * H / (2.0 * nc * (nbar - 1.0));
    b -= H * (sumN / (sumN - s) + 1.0) / 2.0;
    return {a, b, H};
}

} // namespace

HRule hRule(uint32_t fstMask) {
    if (hasBit(fstMask, FstBit::HObs)) {
        return HRule::Hobs;
    }
    return hasBit(fstMask, FstBit::HExp) ? HRule::Hexp : HRule::Auto;
}

std::optional<double> locusFst(const VarianceComponents& v) {
    if (v.a == 0.0 && v.b == 0.0 && v.c == 0.0) {
        return std::nullopt;
    }
    return v.a / (v.a + v.b + v.c);
}

FValues FSums::values(double undefined) const {
    if (B == 0.0 && C == 0.0) {
        return {undefined, undefined, undefined};
    }
    const double T = A + B + C;
    return {A / T, 1.0 - C / T, 1.0 - C / (B + C)};
}

double sumOfDeviations(std::span<const GlobalSample> samples, const double* p, double pbar) {
    double ss = 0.0;
    for (const GlobalSample& sample : samples) {
        const double deviation = *p - pbar;
        ss += sample.n * (deviation * deviation);
        ++p;
    }
    return ss;
}

void fillColumn(CMatrix& table, int32_t first, int32_t last, int32_t l, double value) {
    for (int32_t row = first; row <= last; ++row) {
        table(row, l) = value;
    }
}

void GlobalSums::add(const GlobalLocus& g, CMatrix& locus, int32_t l, double undefined) {
    const Sizes sizes = addUp(g.samples);
    fillColumn(locus, FRow::Fst, FRow::Fis, l, undefined);
    if (g.samples.empty()) {
        return;
    }
    const double hs = sizes.sumHs / sizes.s;
    const double hmax = largestHt(sizes.s, hs);
    TotHt += g.Ht;
    TotHs += hs;
    TotHmax += hmax;
    const bool varies = g.Ht >= kLeastHt;
    locus(FRow::Gst, l) = varies ? gst(hs / g.Ht) : undefined;
    locus(FRow::GstStrich, l) = varies ? gstStrich(hs / g.Ht, hs / hmax) : undefined;
    if (sizes.sumN <= sizes.s) {
        return; // every population has one individual
    }
    const VarianceComponents v = globalComponents(g, sizes);
    F.add(v);
    if (v.b == 0.0 && v.c == 0.0) {
        return;
    }
    const double T = v.a + v.b + v.c;
    locus(FRow::Fst, l) = v.a / T;
    locus(FRow::Fit, l) = 1.0 - v.c / T;
    locus(FRow::Fis, l) = 1.0 - v.c / (v.b + v.c);
}

GlobalValues GlobalSums::values(double undefined) const {
    GlobalValues values{F.values(undefined), undefined, undefined};
    if (TotHt >= kLeastHt) {
        values.gst = gst(TotHs / TotHt);
        values.gstStrich = gstStrich(TotHs / TotHt, TotHs / TotHmax);
    }
    return values;
}

} // namespace kva
