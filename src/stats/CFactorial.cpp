#include "stats/CFactorial.h"

#include <algorithm>
#include <cmath>

namespace kva {

CFactorial Factorial;

double CFactorial::calc(int n) {
    if (n < 0) {
        return -1.0;
    }
    if (n > kLargest) {
        return -2.0;
    }
    if (static_cast<int>(Tabelle.size()) <= n) {
        calcValue(n);
    }
    return Tabelle[n];
}

void CFactorial::calcValue(int n) {
    if (n <= 1) {
        setupTable(1);
        return;
    }
    const int first = std::max(static_cast<int>(Tabelle.size()), 2);
    setupTable(n);
    for (int i = first; i <= n; ++i) {
        const auto cell = static_cast<std::size_t>(i);
        Tabelle[cell] = i * Tabelle[cell - 1];
    }
}

void CFactorial::setupTable(int n) {
    const bool wasEmpty = Tabelle.empty();
    Tabelle.resize(n + 1, 0.0);
    if (wasEmpty) {
        std::fill_n(Tabelle.begin(), std::min(n + 1, 2), 1.0);
    }
}

long double CFactorial::Range(int a, int b) {
    long double product = a;
    for (int factor = a + 1; factor <= b; ++factor) {
        product *= factor;
        if (std::isinf(product)) { // stays infinite: all factors are positive
            break;
        }
    }
    return product;
}

} // namespace kva
