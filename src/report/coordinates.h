// Principal coordinates of distances (Gower 1966).
#ifndef KVA_REPORT_COORDINATES_H
#define KVA_REPORT_COORDINATES_H

#include <cstddef>
#include <span>
#include <vector>

namespace kva {

struct Coordinates {
    std::vector<std::vector<double>> axes; // by axis, of each point; the leading two at most, only
                                           // those of positive eigenvalues
    std::vector<double> eigenvalues;       // largest first; all of them, or those of the axes
    bool allEigenvalues = false;
    double trace = 0; // sum of all eigenvalues
};

// Points up to this number get all eigenvalues.
constexpr std::size_t kMostForAllEigenvalues = 400;

// The coordinates of n points. distances: finite, in the order 1 and 2, 1 and 3, 2 and 3, ... The
// matrix -d^2/2, centred by rows and columns, is reduced by Householder's method and QL; where
// there are many points its two largest eigenvalues are found by the method of Lanczos (1950) from
// a fixed start. The largest coordinate of an axis is positive.
Coordinates principalCoordinates(std::span<const double> distances, std::size_t n,
                                 std::size_t mostForAll = kMostForAllEigenvalues);

} // namespace kva

#endif
