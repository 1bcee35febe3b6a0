#include "report/coordinates.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace kva {

namespace {

using Vector = std::vector<double>;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

double dot(const Vector& a, const Vector& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

// a += factor * b
void add(Vector& a, double factor, const Vector& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        a[i] += factor * b[i];
    }
}

void scale(Vector& a, double factor) {
    for (double& x : a) {
        x *= factor;
    }
}

void centre(Vector& a) {
    const double mean = std::accumulate(a.begin(), a.end(), 0.0) / static_cast<double>(a.size());
    for (double& x : a) {
        x -= mean;
    }
}

// --- Tridiagonal matrices ------------------------------------------------------------------------

// A symmetric matrix with the numbers `diagonal` and beside them `beside`: beside[i] at (i, i + 1).
struct Tridiagonal {
    Vector diagonal;
    Vector beside; // as many; the last one is 0
};

// One QL step with an implicit shift on rows first to last, with what it does to the vectors.
void stepQl(Tridiagonal& t, std::vector<Vector>& vectors, std::size_t first, std::size_t last) {
    Vector& d = t.diagonal;
    Vector& e = t.beside;
    double g = (d[first + 1] - d[first]) / (2 * e[first]);
    double r = std::hypot(g, 1.0);
    g = d[last] - d[first] + e[first] / (g + std::copysign(r, g));
    double s = 1;
    double c = 1;
    double p = 0;
    for (std::size_t i = last; i-- > first;) {
        const double f = s * e[i];
        const double b = c * e[i];
        r = std::hypot(f, g);
        e[i + 1] = r;
        if (r == 0) {
            d[i + 1] -= p;
            e[last] = 0;
            return;
        }
        s = f / r;
        c = g / r;
        g = d[i + 1] - p;
        r = (d[i] - g) * s + 2 * c * b;
        p = s * r;
        d[i + 1] = g + p;
        g = c * r - b;
        for (std::size_t k = 0; k < vectors[i].size(); ++k) {
            const double above = vectors[i + 1][k];
            vectors[i + 1][k] = s * vectors[i][k] + c * above;
            vectors[i][k] = c * vectors[i][k] - s * above;
        }
    }
    d[first] -= p;
    e[first] = g;
    e[last] = 0;
}

// The eigenvalues into the diagonal, and their vectors, one a row, by QL (Bowdler et al. 1968).
std::vector<Vector> diagonalise(Tridiagonal& t) {
    const std::size_t n = t.diagonal.size();
    std::vector<Vector> vectors(n, Vector(n));
    for (std::size_t i = 0; i < n; ++i) {
        vectors[i][i] = 1;
    }
    constexpr int kMostSteps = 200; // of an eigenvalue; two or three are usual
    for (std::size_t first = 0; first < n; ++first) {
        for (int step = 0; step < kMostSteps; ++step) {
            std::size_t last = first;
            while (last + 1 < n &&
                   std::abs(t.beside[last]) >
                       kEpsilon * (std::abs(t.diagonal[last]) + std::abs(t.diagonal[last + 1]))) {
                ++last;
            }
            if (last == first) {
                break;
            }
            stepQl(t, vectors, first, last);
        }
    }
    return vectors;
}

// Places of the eigenvalues, the largest first.
std::vector<std::size_t> largestFirst(const Vector& values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&values](std::size_t a, std::size_t b) { return values[a] > values[b]; });
    return order;
}

// --- The centred matrix ------------------------------------------------------------------------

// -d^2/2 with the means of rows and columns taken away, not written out.
class CentredSquares {
  public:
    CentredSquares(std::span<const double> distances, std::size_t n)
        : N(n), Squares(distances.begin(), distances.end()) {
        for (double& d : Squares) {
            d *= d;
        }
    }

    std::size_t size() const { return N; }

    // The sum of the diagonal.
    double trace() const {
        return std::accumulate(Squares.begin(), Squares.end(), 0.0) / static_cast<double>(N);
    }

    // The matrix times a vector.
    Vector times(Vector x) const {
        centre(x);
        Vector y(N);
        const double* row = Squares.data();
        for (std::size_t i = 0; i < N; row += i, ++i) {
            double sum = 0;
            const double xi = x[i];
            for (std::size_t j = 0; j < i; ++j) {
                sum += row[j] * x[j];
                y[j] += row[j] * xi;
            }
            y[i] += sum;
        }
        scale(y, -0.5);
        centre(y);
        return y;
    }

    std::vector<Vector> rows() const {
        std::vector<Vector> rows;
        for (std::size_t i = 0; i < N; ++i) {
            Vector unit(N);
            unit[i] = 1;
            rows.push_back(times(std::move(unit)));
        }
        return rows;
    }

  private:
    std::size_t N;
    Vector Squares; // of the distances, in their order
};

// --- All eigenvalues -----------------------------------------------------------------------------

// Brings a symmetric matrix into tridiagonal form by reflections, which it keeps.
class Reflections {
  public:
    explicit Reflections(std::vector<Vector> a) : A(std::move(a)) {
        const std::size_t n = A.size();
        Form.diagonal.resize(n);
        Form.beside.resize(n);
        for (std::size_t k = 0; k + 2 < n; ++k) {
            reflect(k);
        }
        for (std::size_t i = 0; i < n; ++i) {
            Form.diagonal[i] = A[i][i];
            Form.beside[i] = i + 1 < n ? A[i + 1][i] : 0;
        }
    }

    Tridiagonal& form() { return Form; }

    // A vector of the tridiagonal matrix as one of the matrix itself.
    Vector back(Vector x) const {
        for (std::size_t k = Mirrors.size(); k-- > 0;) {
            add(x, -2 * dot(Mirrors[k], x), Mirrors[k]);
        }
        return x;
    }

  private:
    // Makes column k zero below the place beside the diagonal.
    void reflect(std::size_t k) {
        const std::size_t n = A.size();
        Vector v(n);
        for (std::size_t i = k + 1; i < n; ++i) {
            v[i] = A[i][k];
        }
        v[k + 1] += std::copysign(std::sqrt(dot(v, v)), v[k + 1]);
        const double length = std::sqrt(dot(v, v));
        if (length == 0) {
            return;
        }
        scale(v, 1 / length);
        Vector w(n);
        for (std::size_t i = k; i < n; ++i) {
            w[i] = dot(A[i], v);
        }
        add(w, -dot(v, w), v);
        for (std::size_t i = k; i < n; ++i) {
            add(A[i], -2 * v[i], w);
            add(A[i], -2 * w[i], v);
        }
        Mirrors.push_back(std::move(v));
    }

    std::vector<Vector> A;
    Tridiagonal Form;
    std::vector<Vector> Mirrors; // of length 1
};

struct Pair {
    double value = 0;
    Vector vector; // of length 1
};

// The two leading pairs; all eigenvalues into `all`.
std::vector<Pair> wholeSolution(const CentredSquares& matrix, Vector& all) {
    Reflections reduced(matrix.rows());
    const std::vector<Vector> vectors = diagonalise(reduced.form());
    const Vector& values = reduced.form().diagonal;
    std::vector<Pair> leading;
    for (const std::size_t place : largestFirst(values)) {
        all.push_back(values[place]);
        if (leading.size() < 2) {
            leading.push_back({values[place], reduced.back(vectors[place])});
        }
    }
    return leading;
}

// --- Lanczos -------------------------------------------------------------------------------------

// Takes out of x what lies along vectors of length 1. Twice is enough (Parlett 1980).
void orthogonalise(Vector& x, const std::vector<Vector>& vectors) {
    for (int time = 0; time < 2; ++time) {
        for (const Vector& v : vectors) {
            add(x, -dot(v, x), v);
        }
    }
}

// A start that has something of every direction, the same each time.
Vector fixedStart(std::size_t n) {
    Vector x(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double turn = static_cast<double>(i + 1) * 0.6180339887498949; // golden section
        x[i] = turn - std::floor(turn) - 0.5 + (i % 7 == 3 ? 0.25 : 0.0);
    }
    return x;
}

// The largest eigenvalue of the matrix among the vectors that have nothing of `found`.
class Lanczos {
  public:
    Lanczos(const CentredSquares& matrix, const std::vector<Vector>& found)
        : Matrix(matrix), Found(found) {}

    Pair largest() {
        Pair pair{0, fixedStart(Matrix.size())};
        constexpr int kMostRounds = 50;
        for (int round = 0; round < kMostRounds && !runFrom(pair); ++round) {
        }
        return pair;
    }

  private:
    static constexpr std::size_t kMostVectors = 160;
    static constexpr std::size_t kBetweenLooks = 20;
    static constexpr double kTolerance = 1e-10;

    // Makes the pair better, from its vector; whether it is good.
    bool runFrom(Pair& pair) {
        Vector x = pair.vector;
        centre(x);
        orthogonalise(x, Found);
        const double length = std::sqrt(dot(x, x));
        Basis.clear();
        Form = {};
        if (length == 0) {
            pair = {0, Vector(Matrix.size())};
            return true;
        }
        scale(x, 1 / length);
        const std::size_t most = std::min(kMostVectors, Matrix.size());
        while (true) {
            const double rest = grow(x);
            const bool full = Basis.size() == most;
            const double size = std::abs(Form.diagonal[0]) + rest;
            if (full || rest <= kEpsilon * size || Basis.size() % kBetweenLooks == 0) {
                if (look(pair, rest) || full) {
                    return Good;
                }
            }
        }
    }

    // Adds x to the basis and makes of it the next vector. Result: the length that it had.
    double grow(Vector& x) {
        Vector y = Matrix.times(x);
        Form.diagonal.push_back(dot(x, y));
        Basis.push_back(std::move(x));
        orthogonalise(y, Found);
        orthogonalise(y, Basis);
        const double rest = std::sqrt(dot(y, y));
        if (rest > 0) {
            scale(y, 1 / rest);
        }
        Form.beside.push_back(rest);
        x = std::move(y);
        return rest;
    }

    // Takes the largest pair of the basis; whether it is good.
    bool look(Pair& pair, double rest) {
        Tridiagonal t = Form;
        t.beside.back() = 0;
        const std::vector<Vector> vectors = diagonalise(t);
        const std::size_t place = largestFirst(t.diagonal)[0];
        const Vector& weights = vectors[place];
        pair = {t.diagonal[place], Vector(Matrix.size())};
        for (std::size_t k = 0; k < Basis.size(); ++k) {
            add(pair.vector, weights[k], Basis[k]);
        }
        Good = std::abs(rest * weights.back()) <= kTolerance * std::abs(pair.value) ||
               rest <= kEpsilon * std::abs(pair.value);
        return Good;
    }

    const CentredSquares& Matrix;
    const std::vector<Vector>& Found;
    std::vector<Vector> Basis;
    Tridiagonal Form;
    bool Good = false;
};

std::vector<Pair> leadingPairs(const CentredSquares& matrix) {
    std::vector<Pair> pairs;
    std::vector<Vector> found;
    for (int k = 0; k < 2; ++k) {
        pairs.push_back(Lanczos(matrix, found).largest());
        found.push_back(pairs.back().vector);
    }
    return pairs;
}

void addAxis(Coordinates& result, Pair pair, double trace) {
    constexpr double kRounding = 1e-12;
    if (pair.value <= kRounding * trace) {
        return;
    }
    Vector& axis = pair.vector;
    const auto largest = std::max_element(axis.begin(), axis.end(), [](double a, double b) {
        return std::abs(a) < std::abs(b) * (1 - 1e-9); // the first of several as large
    });
    scale(axis, std::copysign(std::sqrt(pair.value), *largest));
    result.axes.push_back(std::move(axis));
}

} // namespace

Coordinates principalCoordinates(std::span<const double> distances, std::size_t n,
                                 std::size_t mostForAll) {
    const CentredSquares matrix(distances, n);
    Coordinates result;
    result.trace = matrix.trace();
    result.allEigenvalues = n <= mostForAll;
    std::vector<Pair> pairs =
        result.allEigenvalues ? wholeSolution(matrix, result.eigenvalues) : leadingPairs(matrix);
    for (Pair& pair : pairs) {
        if (!result.allEigenvalues) {
            result.eigenvalues.push_back(pair.value);
        }
        addAxis(result, std::move(pair), result.trace);
    }
    return result;
}

} // namespace kva
