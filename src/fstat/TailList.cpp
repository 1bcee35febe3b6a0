#include "fstat/TailList.h"

#include <algorithm>

namespace kva {

void TailList::add(double v) {
    if (v < (Untere.size() < K ? kStartLower : Untere.back())) {
        if (Untere.size() == K) {
            Untere.pop_back();
        }
        Untere.insert(std::upper_bound(Untere.begin(), Untere.end(), v), v);
    }
    if (v > (Obere.size() < K ? kStartUpper : Obere.front())) {
        if (Obere.size() < K) {
            Obere.insert(std::lower_bound(Obere.begin(), Obere.end(), v), v);
        } else {
            const auto place = std::lower_bound(Obere.begin() + 1, Obere.end(), v);
            Obere.front() = v;
            std::rotate(Obere.begin(), Obere.begin() + 1, place);
        }
    }
}

double TailList::lower() const {
    return K - 2 < Untere.size() ? Untere[K - 2] : kStartLower;
}

double TailList::upper() const {
    const std::size_t fillers = K - Obere.size();
    return fillers < 2 ? Obere[1 - fillers] : kStartUpper;
}

} // namespace kva
