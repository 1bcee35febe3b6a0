// F-beta: how much more alike two gene copies of a population (beta i), or of two
// populations (beta ij), are than two from all of them. Both are measured against one
// reference per locus, built over all populations.
//
// "Beta_POP.xls", all values, undefined ones as the number that stands for them:
//
//      	P01	P02
//      P01	0.136207	0.064102
//
// "Betaij_POP.txt", the pairs in the shape of a distance matrix, 0 on the diagonal.
#include "control/Ausgabe.h"
#include "fstat/FstSheets.h"
#include "fstat/passes.h"
#include "run/run.h"

#include <algorithm>

namespace kva {

namespace {

constexpr double kNone = -1.0; // of a locus without data

// Frequency of an allele; 0 where the table does not have it.
double frequency(const AllelCount& table, int allel) {
    return std::max(table.GetFrequenz(table.GetAllelNummer(allel) - 1), 0.0);
}

// Sums over loci of one beta.
struct BetaSums {
    double zaehler = 0.0;
    double nenner = 0.0;
    double quotient = 0.0;

    void add(double v, double reference) {
        nenner += reference;
        zaehler += v;
        quotient += v / reference;
    }
    double beta(bool mittel) const { return mittel ? 1.0 - quotient : 1.0 - zaehler / nenner; }
};

// Gene diversity within a population: sum (1 - p) p.
double within(const AllelCount& t) {
    double h = 0.0;
    for (int row = 0; row < t.AnzAllele; ++row) {
        const double p = t.GetFrequenz(row);
        h += (1.0 - p) * p;
    }
    return h;
}

// Gene diversity between two populations: sum (1 - pi) pj + (1 - pj) pi.
double between(const AllelCount& pool, const AllelCount& ti, const AllelCount& tj) {
    double d = 0.0;
    for (int row = 0; row < pool.AnzAllele; ++row) {
        const int32_t allel = pool.Allele[row].Nummer;
        const double pi = frequency(ti, allel);
        const double pj = frequency(tj, allel);
        d += (1.0 - pi) * pj + (1.0 - pj) * pi;
    }
    return d;
}

// What population k, with weight wk, adds to Q.
double addToQ(double Q, const AllelCount& pool, const AllelCount& tk, double wk) {
    const double nk = tk.AnzGesamt;
    for (int row = 0; row < pool.AnzAllele; ++row) {
        const double pbar = pool.GetFrequenz(row);
        const double pk = frequency(tk, pool.Allele[row].Nummer);
        Q += nk * ((pk - pbar) * (pk - pbar)) + pk * wk * (1.0 - pk);
    }
    return Q;
}

struct BetaReference {
    double N = kNone;
    double W = kNone;
    double Q = kNone;
};

BetaReference betaReference(const SampleTables& tab, std::size_t l) {
    double N = 0.0;
    for (std::size_t k = 1; k < tab.size(); ++k) {
        N += tab[k][l].AnzGesamt > 1 ? tab[k][l].AnzGesamt : 0;
    }
    if (N < 1.0) {
        return {};
    }
    BetaReference sum{N, 0.0, 0.0};
    for (std::size_t k = 1; k < tab.size(); ++k) {
        const AllelCount& tk = tab[k][l];
        if (tk.AnzGesamt > 1) {
            const double nk = tk.AnzGesamt;
            const double wk = nk - nk * nk / N;
            sum.W += wk;
            sum.Q = addToQ(sum.Q, tab[0][l], tk, wk);
        }
    }
    return sum;
}

} // namespace

void betaReferences(const Run& run, CMatrix& betaN, CMatrix& betaW, CMatrix& betaQ) {
    for (CMatrix* matrix : {&betaN, &betaW, &betaQ}) {
        matrix->Resize(run.AnzLoci, 1);
    }
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        const BetaReference reference = betaReference(run.PopAllele, static_cast<std::size_t>(l));
        betaN(l, 0) = reference.N;
        betaW(l, 0) = reference.W;
        betaQ(l, 0) = reference.Q;
    }
}

void betaOfPopulation(const Run& run, int i, CMatrix& beta, const CMatrix& /*betaN*/,
                      const CMatrix& betaW, const CMatrix& betaQ, bool mittel) {
    BetaSums sums;
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        const AllelCount& t = run.PopAllele[i + 1][l];
        if (betaW(l, 0) < 0.0 || t.AnzGesamt <= 1 || betaQ(l, 0) == 0.0) {
            continue;
        }
        const double n = t.AnzGesamt;
        sums.add(n / (n - 1.0) * within(t) * betaW(l, 0), betaQ(l, 0));
    }
    beta(i, i) = sums.nenner == 0.0 ? run.DistFehlerwert : sums.beta(mittel);
}

int betaOfPair(const Run& run, int i, int j, CMatrix& beta, const CMatrix& /*betaN*/,
               const CMatrix& betaW, const CMatrix& betaQ, bool mittel) {
    if (i == j) {
        return -1;
    }
    BetaSums sums;
    for (int32_t l = 0; l < run.AnzLoci; ++l) {
        const auto place = static_cast<std::size_t>(l);
        const AllelCount& ti = run.PopAllele[i + 1][place];
        const AllelCount& tj = run.PopAllele[j + 1][place];
        if (betaW(l, 0) < 0.0 || ti.AnzGesamt <= 1 || tj.AnzGesamt <= 1 || betaQ(l, 0) == 0.0) {
            continue;
        }
        sums.add(between(run.PopAllele[0][place], ti, tj) * betaW(l, 0), 2.0 * betaQ(l, 0));
    }
    if (sums.nenner == 0.0) {
        // Wanted: the diagonal cell is hit, not (i, j). A pair without data wipes out beta i.
        beta(i, i) = run.DistFehlerwert;
        beta(j, i) = run.DistFehlerwert;
        return 0;
    }
    beta(i, j) = sums.beta(mittel);
    beta(j, i) = beta(i, j);
    return 0;
}

void fBeta(Run& run) {
    AUSGABE(Message::BetaBegin);
    CMatrix beta;
    CMatrix betaN;
    CMatrix betaW;
    CMatrix betaQ;
    beta.Resize(run.AnzPop, run.AnzPop);
    betaReferences(run, betaN, betaW, betaQ);
    for (int i = 0; i < run.AnzPop; ++i) {
        betaOfPopulation(run, i, beta, betaN, betaW, betaQ, false);
        for (int j = i + 1; j < run.AnzPop; ++j) {
            betaOfPair(run, i, j, beta, betaN, betaW, betaQ, false);
        }
    }
    writeBetaSheets(run, beta);
}

} // namespace kva
