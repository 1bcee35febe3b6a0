#include "report/coordinates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace kva {
namespace {

constexpr double kClose = 1e-10; // rounding; the numbers are about 1

// Expects the numbers of an axis.
void expectNear(const std::vector<double>& found, const std::vector<double>& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i], expected[i], kClose) << i;
    }
}

// The corners (2, 1), (2, -1), (-2, 1), (-2, -1): eigenvalues are the sums of squares, 16 and 4.
const std::vector<double> kRectangle = {2, 4, std::sqrt(20.0), std::sqrt(20.0), 4, 2};

TEST(PrincipalCoordinates, FindTheCornersOfARectangle) {
    const Coordinates found = principalCoordinates(kRectangle, 4);
    ASSERT_EQ(found.axes.size(), 2U);
    expectNear(found.axes[0], {2, 2, -2, -2});
    expectNear(found.axes[1], {1, -1, 1, -1});
    expectNear(found.eigenvalues, {16, 4, 0, 0});
    EXPECT_NEAR(found.trace, 20, kClose);
}

// Points at 0, 3 and 6: centred -3, 0 and 3, one axis, eigenvalue 9 + 0 + 9.
TEST(PrincipalCoordinates, OfPointsOnALineHaveOneAxis) {
    const std::vector<double> distances = {3, 6, 3};
    const Coordinates found = principalCoordinates(distances, 3);
    ASSERT_EQ(found.axes.size(), 1U);
    expectNear(found.axes[0], {3, 0, -3});
    expectNear(found.eigenvalues, {18, 0, 0});
}

// No points of any space have the distances 1, 1, 3. The squares 1, 1, 9 have the row means 2/3,
// 10/3, 10/3 and the mean 22/9, so that the centred matrix has -5/9, 19/9, 19/9 in the diagonal and
// -(9 - 20/3 + 22/9)/2 = -43/18 for the last pair. (0, 1, -1) has the eigenvalue 19/9 + 43/18
// = 4.5, (2, -1, -1) the rest of the trace 11/3.
TEST(PrincipalCoordinates, HaveNegativeEigenvaluesWithoutAnAxis) {
    const std::vector<double> distances = {1, 1, 3};
    const Coordinates found = principalCoordinates(distances, 3);
    ASSERT_EQ(found.axes.size(), 1U);
    expectNear(found.axes[0], {0, 1.5, -1.5});
    expectNear(found.eigenvalues, {4.5, 0, 11.0 / 3 - 4.5});
    EXPECT_NEAR(found.trace, 11.0 / 3, kClose);
}

TEST(PrincipalCoordinates, OfEqualPointsHaveNoAxis) {
    const std::vector<double> distances(6, 0.0);
    EXPECT_TRUE(principalCoordinates(distances, 4).axes.empty());
    EXPECT_TRUE(principalCoordinates(distances, 4, 0).axes.empty());
}

// Numbers of [0, 1) that look drawn, always the same.
std::vector<double> scattered(std::size_t count) {
    std::vector<double> numbers;
    uint64_t state = 12345;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        numbers.push_back(static_cast<double>(state >> 11U) / 9007199254740992.0);
    }
    return numbers;
}

// The method for many points, which finds the leading two alone, against that of all eigenvalues.
TEST(PrincipalCoordinates, OfManyPointsAreThoseOfFew) {
    for (const std::size_t n : {5U, 40U, 170U}) {
        const std::vector<double> distances = scattered(n * (n - 1) / 2);
        const Coordinates whole = principalCoordinates(distances, n);
        const Coordinates leading = principalCoordinates(distances, n, 0);
        ASSERT_TRUE(whole.allEigenvalues);
        ASSERT_FALSE(leading.allEigenvalues);
        ASSERT_EQ(leading.axes.size(), 2U);
        for (std::size_t axis = 0; axis < 2; ++axis) {
            EXPECT_NEAR(leading.eigenvalues[axis], whole.eigenvalues[axis], 1e-8) << n;
            for (std::size_t i = 0; i < n; ++i) {
                EXPECT_NEAR(leading.axes[axis][i], whole.axes[axis][i], 1e-4) << n << ", " << i;
            }
        }
    }
}

// A square has twice the eigenvalue 4; its axes may be turned, but keep the distances.
TEST(PrincipalCoordinates, OfManyPointsFindAnEigenvalueThatIsThereTwice) {
    const std::vector<double> square = {2, 2, std::sqrt(8.0), std::sqrt(8.0), 2, 2};
    const Coordinates found = principalCoordinates(square, 4, 0);
    ASSERT_EQ(found.axes.size(), 2U);
    expectNear(found.eigenvalues, {4, 4});
    const auto apart = [&found](std::size_t i, std::size_t j) {
        return std::hypot(found.axes[0][i] - found.axes[0][j], found.axes[1][i] - found.axes[1][j]);
    };
    EXPECT_NEAR(apart(0, 1), 2, kClose);
    EXPECT_NEAR(apart(1, 2), std::sqrt(8.0), kClose);
    EXPECT_NEAR(apart(2, 3), 2, kClose);
}

} // namespace
} // namespace kva
