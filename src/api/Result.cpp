// The results of the public header, read from the sheets when they are asked for.
#include "api/Result.h"

#include "results/results.h"

#include <algorithm>
#include <cctype>
#include <limits>

namespace kva::api {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// Adds the pairs of a symmetric matrix, which come row by row below its diagonal: (0,1), (0,2),
// (1,2), (0,3) ...
class PairCollector {
  public:
    void add(std::string_view first, std::string_view second, double value) {
        if (Names.empty()) {
            Names.emplace_back(first);
        }
        if (Column == 0) {
            Names.emplace_back(second);
        }
        Values.push_back(value);
        Column = Column + 2 == Names.size() ? 0 : Column + 1;
    }

    Matrix matrix(double diagonal) && {
        Matrix matrix;
        const std::size_t n = Names.size();
        matrix.names = std::move(Names);
        matrix.cells.assign(n * n, diagonal);
        auto value = Values.begin();
        for (std::size_t i = 1; i < n; ++i) {
            for (std::size_t j = 0; j < i && value != Values.end(); ++j, ++value) {
                matrix.cells[i * n + j] = matrix.cells[j * n + i] = *value;
            }
        }
        return matrix;
    }

  private:
    std::vector<std::string> Names;
    std::vector<double> Values;
    std::size_t Column = 0; // of the next pair
};

// The same of pairs that come row by row above the diagonal: (0,1), (0,2), ..., (1,2) ...
Matrix matrixOfRows(const std::vector<const Test*>& pairs) {
    Matrix matrix;
    if (pairs.empty()) {
        return matrix;
    }
    std::size_t n = 2;
    while (n * (n - 1) / 2 < pairs.size()) {
        ++n;
    }
    matrix.names.push_back(pairs.front()->population1);
    for (std::size_t j = 1; j < n; ++j) {
        matrix.names.push_back(pairs[j - 1]->population2);
    }
    matrix.cells.assign(n * n, kNone);
    auto pair = pairs.begin();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i + 1; j < n; ++j, ++pair) {
            matrix.cells[i * n + j] = matrix.cells[j * n + i] = (*pair)->p;
        }
    }
    return matrix;
}

} // namespace

const std::map<std::string, std::string, std::less<>>& Result::sheets() const {
    return Held->Sheets;
}

const std::vector<Test>& Result::tests() const {
    return Held->Tests;
}

const std::vector<std::string>& Result::warnings() const {
    return Held->Warnings;
}

std::vector<Row> Result::rows(std::string_view statistic) const {
    std::vector<Row> rows;
    const auto take = [&](const TidyRow& row) {
        if (statistic.empty() || row.statistic == statistic) {
            const TidyPlace& place = row.place;
            rows.push_back({std::string(row.statistic), std::string(place.population1),
                            std::string(place.population2), std::string(place.locus),
                            std::string(place.replicate), numberOf(row.value)});
        }
    };
    readResults(Held->Sheets, take, statistic); // faults stand in the warnings
    return rows;
}

double Result::value(std::string_view statistic, std::string_view population,
                     std::string_view locus) const {
    double value = kNone;
    bool found = false;
    const auto take = [&](const TidyRow& row) {
        const TidyPlace& place = row.place;
        if (!found && row.statistic == statistic && place.population1 == population &&
            place.population2.empty() && place.locus == locus) {
            value = numberOf(row.value);
            found = true;
        }
    };
    readResults(Held->Sheets, take, statistic);
    return value;
}

Matrix Result::matrix(std::string_view statistic, std::string_view replicate,
                      double diagonal) const {
    PairCollector pairs;
    std::string wanted(replicate);
    const auto take = [&](const TidyRow& row) {
        const TidyPlace& place = row.place;
        if (row.statistic != statistic || place.population2.empty() || !place.locus.empty()) {
            return;
        }
        if (wanted.empty()) {
            wanted = place.replicate;
        }
        if (place.replicate == wanted) {
            pairs.add(place.population1, place.population2, numberOf(row.value));
        }
    };
    readResults(Held->Sheets, take, statistic);
    return std::move(pairs).matrix(diagonal);
}

Matrix Result::distances(const std::string& name, bool individuals) const {
    std::string statistic = "distance_" + name + (individuals ? "_individuals" : "");
    std::transform(statistic.begin(), statistic.end(), statistic.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return matrix(statistic);
}

Matrix Result::pValues(std::string_view statistic) const {
    std::vector<const Test*> pairs;
    for (const Test& test : Held->Tests) {
        if (test.statistic == statistic && statistic.ends_with("_pairwise")) {
            pairs.push_back(&test);
        }
    }
    return matrixOfRows(pairs);
}

} // namespace kva::api
