#include "fstat/adjustedp.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace kva {

namespace {

// The places of p, from the smallest value on.
std::vector<std::size_t> ascending(std::span<const double> p) {
    std::vector<std::size_t> places(p.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::stable_sort(places, {}, [p](std::size_t place) { return p[place]; });
    return places;
}

} // namespace

double permutationP(const TestCount& count) {
    const auto hits = static_cast<double>(count.Hits);
    const auto permutations = static_cast<double>(count.Permutations);
    return count.Ended ? hits / permutations : (hits + 1) / (permutations + 1);
}

double permutationError(const TestCount& count) {
    if (count.Permutations == 0) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double p = permutationP(count);
    return std::sqrt(p * (1 - p) / static_cast<double>(count.Permutations));
}

std::vector<double> holm(std::span<const double> p) {
    std::vector<double> adjusted(p.size());
    double largest = 0.0;
    auto left = static_cast<double>(p.size());
    for (const std::size_t place : ascending(p)) {
        largest = std::max(largest, std::min(left * p[place], 1.0));
        adjusted[place] = largest;
        left -= 1;
    }
    return adjusted;
}

std::vector<double> benjaminiHochberg(std::span<const double> p) {
    std::vector<double> adjusted(p.size());
    const std::vector<std::size_t> places = ascending(p);
    double smallest = 1.0;
    for (std::size_t rank = places.size(); rank > 0; --rank) {
        const double n = static_cast<double>(p.size()) / static_cast<double>(rank);
        smallest = std::min(smallest, n * p[places[rank - 1]]);
        adjusted[places[rank - 1]] = smallest;
    }
    return adjusted;
}

} // namespace kva
