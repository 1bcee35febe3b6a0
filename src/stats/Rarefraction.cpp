// Allelic richness: the number of alleles expected in a sub-sample of k of the N
// gene copies of a table, and its variance, exact by the hypergeometric
// distribution. With c(i) copies of allele i:
//
//      q(i)    = C(N-c(i), k) / C(N, k)         a sub-sample misses allele i
//      q(i, j) = C(N-c(i)-c(j), k) / C(N, k)    ... both i and j
//      R       = sum 1 - q(i)
//      Var     = sum (1-q(i)) q(i)  +  2 sum (i<j) q(i, j) - q(i) q(j)
//
// Two numeric routes, by factorials and by products of k consecutive numbers; the
// size of the sample decides. Both do their operations in a fixed order.
#include "data/allelcount.h"
#include "stats/CFactorial.h"

#include <algorithm>
#include <cmath>

namespace kva {

namespace {

constexpr int kSingleByFactorialsTo = 122; // largest N whose q(i) are taken from factorials
constexpr int kPairsByFactorialsTo = 121;  // largest N whose q(i, j) are

// The table that is sampled: N copies in all, k of them drawn.
struct Draw {
    int N;
    int k;
    std::vector<int> c; // copies of each allele, in table order

    // Whether a sub-sample can do without `copies` of the N.
    bool canMiss(int copies) const { return N - copies >= k; }
};

// Products of k consecutive numbers ending at N - s, where s copies are left out. They depend on
// s alone, which many pairs of alleles share, so each is multiplied once and a pair costs the same
// whatever k is. The plain form stands in the tests.
class Windows {
  public:
    explicit Windows(const Draw& draw) : N(draw.N), K(draw.k), Known(cells(draw), kUnknown) {}

    long double without(int s) {
        long double& product = Known[s];
        if (product == kUnknown) {
            product = CFactorial::Range(N - s - K + 1, N - s);
        }
        return product;
    }

    // Whether the window without s copies begins at 0 or above; at 0 its product is 0.
    bool exists(int s) const { return N - s - K + 1 >= 0; }

  private:
    static constexpr long double kUnknown = -1.0L;

    // Room for the copies of any two alleles.
    static std::size_t cells(const Draw& draw) {
        const int largest = *std::max_element(draw.c.begin(), draw.c.end());
        return static_cast<std::size_t>(std::min(int64_t{draw.N}, 2 * int64_t{largest})) + 1;
    }

    int N;
    int K;
    std::vector<long double> Known;
};

// R and the first sum of the variance.
struct Richness {
    double R = 0.0;
    double V = 0.0;

    void addCertain() { R += 1.0; }
    void add(double q) {
        R += 1.0 - q;
        V += (1.0 - q) * q;
    }
};

double fact(int n) {
    return Factorial.calc(n);
}

Richness singleByFactorials(const Draw& draw) {
    const int N = draw.N;
    const int k = draw.k;
    Richness sum;
    for (const int c : draw.c) {
        if (draw.canMiss(c)) {
            sum.add((fact(N - c) / fact(N - c - k)) * fact(N - k) / fact(N));
        } else {
            sum.addCertain();
        }
    }
    return sum;
}

// False if a product is not a number.
bool singleByWindows(const Draw& draw, Windows& windows, Richness& sum) {
    const long double B = windows.without(0);
    for (const int c : draw.c) {
        if (!draw.canMiss(c)) {
            sum.addCertain();
            continue;
        }
        const auto A = static_cast<double>(windows.without(c));
        if (std::isnan(A)) {
            return false;
        }
        sum.add(static_cast<double>(A / B));
    }
    return true;
}

// What the pair sum needs of one allele, by factorials.
struct FactorialTerm {
    int c;
    double missed; // F(N-c), the numerator of q
    double share;  // F(N-c) / F(N)
    double rest;   // F(N-c-k)
};

// The second sum of the variance. The chain of q(i) q(j) begins with the terms of j.
double pairsByFactorials(const Draw& draw) {
    const int N = draw.N;
    const int k = draw.k;
    const double all = fact(N);
    const double undrawn = fact(N - k);
    std::vector<FactorialTerm> terms;
    for (const int c : draw.c) {
        // An allele that no sub-sample misses adds nothing, neither as i nor as j.
        if (draw.canMiss(c)) {
            terms.push_back({c, fact(N - c), fact(N - c) / all, fact(N - c - k)});
        }
    }
    double D = 0.0;
    for (auto i = terms.begin(); i != terms.end(); ++i) {
        for (auto j = i + 1; j != terms.end(); ++j) {
            double both = 0.0;
            if (draw.canMiss(i->c + j->c)) {
                const int rest = N - i->c - j->c;
                both = (fact(rest) / all) * undrawn / fact(rest - k);
            }
            D += both - j->share * i->missed / all * undrawn / i->rest * undrawn / j->rest;
        }
    }
    return D;
}

struct WindowTerm {
    int c;
    double q;
};

double pairsByWindows(const Draw& draw, Windows& windows) {
    const auto B = static_cast<double>(windows.without(0));
    std::vector<WindowTerm> terms;
    for (const int c : draw.c) {
        if (windows.exists(c)) {
            terms.push_back({c, static_cast<double>(windows.without(c)) / B});
        }
    }
    double D = 0.0;
    for (auto i = terms.begin(); i != terms.end(); ++i) {
        for (auto j = i + 1; j != terms.end(); ++j) {
            const int copies = i->c + j->c;
            const long double both = windows.exists(copies) ? windows.without(copies) / B : 0.0L;
            D = static_cast<double>(D + (both - i->q * j->q));
            if (std::isnan(D)) { // after an overflow it stays so, and the processor is slow with it
                return D;
            }
        }
    }
    return D;
}

} // namespace

double AllelCount::CalcRarefraction(int k, double& varianz) const {
    varianz = -1.0;
    if (AnzGesamt == -1 || AnzChromosomen < 3) {
        return -1.0;
    }
    if (AnzGesamt < k || k < 2) {
        return -2.0;
    }
    if (AnzGesamt == k) {
        varianz = 0.0;
        return AnzAllele;
    }
    Draw draw{AnzGesamt, k, {}};
    for (int i = 0; i < AnzAllele; ++i) {
        draw.c.push_back(GetAllelCount(i));
    }
    if (AnzGesamt <= kPairsByFactorialsTo) {
        const Richness sum = singleByFactorials(draw);
        varianz = sum.V + 2.0 * pairsByFactorials(draw);
        return sum.R;
    }
    Windows windows(draw);
    Richness sum;
    if (AnzGesamt <= kSingleByFactorialsTo) {
        sum = singleByFactorials(draw);
    } else if (!singleByWindows(draw, windows, sum)) {
        return -3.0;
    }
    varianz = sum.V + 2.0 * pairsByWindows(draw, windows);
    return sum.R;
}

} // namespace kva
