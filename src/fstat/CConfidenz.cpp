#include "fstat/CConfidenz.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kva {

namespace {

constexpr double kTail95 = 0.025;
constexpr double kTail99 = 0.005;

} // namespace

int SortDaten(const void* a, const void* b) {
    const double first = *static_cast<const double*>(a);
    const double second = *static_cast<const double*>(b);
    return first < second ? -1 : static_cast<int>(first > second);
}

int CConfidenz::Init(int n) {
    const bool held = AnzBehalten > 0;
    *this = CConfidenz();
    if (n < 1) {
        return held ? 0 : -10;
    }
    AnzErwartet = n;
    AnzBehalten = static_cast<int32_t>(n * kTail95 + 1.0);
    LetzterIndex = AnzBehalten - 1;
    ObereDaten.assign(AnzBehalten, StartOben);
    UntereDaten.assign(AnzBehalten, StartUnten);
    return 10;
}

int CConfidenz::DatenUebergabe(double x) {
    if (AnzErwartet <= 0) {
        return -1;
    }
    if (AnzErhalten >= AnzErwartet) {
        return -2;
    }
    ++AnzErhalten;
    Summe += x;
    ObereDaten[LetzterIndex - FuellPos] = x;
    UntereDaten[FuellPos] = x;
    if (FuellPos < LetzterIndex) {
        ++FuellPos;
    } else {
        sortIn();
    }
    return 0;
}

// Sorts both arrays. Once they are sorted only the new value has to move: the same
// result as a stable sort, without its cost. A value that is not a number takes the
// sort, which bears it.
void CConfidenz::sortIn() {
    if (!Sortiert || std::isnan(Summe)) {
        std::qsort(ObereDaten.data(), ObereDaten.size(), sizeof(double), &SortDaten);
        std::qsort(UntereDaten.data(), UntereDaten.size(), sizeof(double), &SortDaten);
        Sortiert = true;
        return;
    }
    const auto above = std::lower_bound(ObereDaten.begin() + 1, ObereDaten.end(), ObereDaten[0]);
    std::rotate(ObereDaten.begin(), ObereDaten.begin() + 1, above);
    const auto last = UntereDaten.end() - 1;
    const auto below = std::upper_bound(UntereDaten.begin(), last, *last);
    std::rotate(below, last, UntereDaten.end());
}

int CConfidenz::GetIntervall95(double& oben, double& unten) const {
    if (AnzErhalten != AnzErwartet || AnzBehalten < 2) {
        return -1;
    }
    oben = ObereDaten[1];
    unten = UntereDaten[LetzterIndex - 1];
    return 0;
}

int CConfidenz::GetIntervall99(double& oben, double& unten) const {
    if (AnzBehalten > 0) {
        const auto k = static_cast<std::size_t>(AnzErwartet * kTail99);
        oben = ObereDaten[LetzterIndex - k];
        unten = UntereDaten[k];
    }
    return 0;
}

double CConfidenz::GetMittel() const {
    return AnzErhalten == AnzErwartet ? Summe / AnzErhalten : -1.0;
}

} // namespace kva
