#include "api/TestRows.h"

#include "fstat/adjustedp.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace kva {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr std::array kOfPairs = {"fst_pairwise", "fit_pairwise", "fis_pairwise"};
constexpr std::array kOfAll = {"fst_global", "gst_global", "gst_prime_global"};
constexpr std::array kOfLoci = {"fst_global_locus", "gst_global_locus", "gst_prime_global_locus"};

TestRow newRow(const char* statistic, const TestCount& count) {
    TestRow row{statistic, {}, {}, {}, count, kNone, kNone, kNone, kNone};
    if (count.Defined && count.Permutations > 0) {
        row.P = permutationP(count);
        row.Error = permutationError(count);
    }
    return row;
}

// Adjusts the p-values of the rows from `first` on for their number.
void adjust(std::vector<TestRow>& rows, std::size_t first) {
    std::vector<double> p;
    for (std::size_t k = first; k < rows.size(); ++k) {
        if (!std::isnan(rows[k].P)) {
            p.push_back(rows[k].P);
        }
    }
    const std::vector<double> byHolm = holm(p);
    const std::vector<double> byRate = benjaminiHochberg(p);
    std::size_t place = 0;
    for (std::size_t k = first; k < rows.size(); ++k) {
        if (!std::isnan(rows[k].P)) {
            rows[k].Holm = byHolm[place];
            rows[k].BenjaminiHochberg = byRate[place];
            ++place;
        }
    }
}

std::string numberText(double value) {
    char text[32];
    (void)std::snprintf(text, sizeof text, "%.10g", value);
    return std::isnan(value) ? "" : text;
}

} // namespace

std::vector<TestRow> testRows(const TestRecord& record, const TestNames& names) {
    std::vector<TestRow> rows;
    for (std::size_t s = 0; s < kOfPairs.size() && !record.Pairs.empty(); ++s) {
        const std::size_t first = rows.size();
        for (const TestRecord::Pair& pair : record.Pairs) {
            TestRow row = newRow(kOfPairs[s], pair.Of[s]);
            row.Population1 = names.Populations[static_cast<std::size_t>(pair.I)];
            row.Population2 = names.Populations[static_cast<std::size_t>(pair.J)];
            rows.push_back(std::move(row));
        }
        adjust(rows, first);
    }
    for (std::size_t s = 0; s < kOfAll.size() && !record.Loci.empty(); ++s) {
        rows.push_back(newRow(kOfAll[s], record.AllLoci[s]));
        for (std::size_t l = 0; l < record.Loci.size(); ++l) {
            TestRow row = newRow(kOfLoci[s], record.Loci[l][s]);
            row.Locus = names.Loci[l];
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

void writeTest(const TestRow& row, TidyWriter& table) {
    const TidyPlace place = {row.Population1, row.Population2, row.Locus, {}};
    const auto write = [&](const char* what, const std::string& value) {
        table.write({row.Statistic + what, place, value});
    };
    write("_test_hits", std::to_string(row.Count.Hits));
    write("_test_permutations", std::to_string(row.Count.Permutations));
    write("_test_p", numberText(row.P));
    write("_test_p_error", numberText(row.Error));
    if (!row.Population2.empty()) {
        write("_test_p_holm", numberText(row.Holm));
        write("_test_p_bh", numberText(row.BenjaminiHochberg));
    }
}

} // namespace kva
