#include "stats/statsupport.h"

#include <cstdio>
#include <stdexcept>

using namespace kva;

namespace kva_test {

AllelCount tableOf(const std::vector<AllelEintrag>& rows, int haploid) {
    AllelCount table;
    for (const AllelEintrag& row : rows) {
        for (int32_t copy = 0; copy < row.Anzahl; ++copy) {
            table.AddAllel(row.Nummer, haploid);
        }
    }
    table.SortAllele();
    return table;
}

std::vector<std::vector<std::string>> cellsOf(const std::string& sheet) {
    std::vector<std::vector<std::string>> lines(1, std::vector<std::string>(1));
    for (const char c : sheet) {
        if (c == '\n') {
            lines.emplace_back(1);
        } else if (c == '\t') {
            lines.back().emplace_back();
        } else {
            lines.back().back() += c;
        }
    }
    return lines;
}

std::string cellOf(const std::string& sheet, const std::string& label, std::size_t column) {
    for (const std::vector<std::string>& line : cellsOf(sheet)) {
        if (line.front() == label) {
            return line.at(column);
        }
    }
    throw std::out_of_range("no line " + label);
}

std::string fixed6(double value) {
    char text[400];
    const int length = std::snprintf(text, sizeof text, "%f", value);
    return {text, static_cast<std::size_t>(length)};
}

} // namespace kva_test
