#include "rows.h"

#include "results/catalogue.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace kva_test {

std::string asLine(const TidyRow& row) {
    std::string line(row.statistic);
    for (const std::string_view text : {row.place.population1, row.place.population2,
                                        row.place.locus, row.place.replicate, row.value}) {
        line.append("|").append(text);
    }
    return line;
}

ReadSheet readAs(std::string_view path, std::string text,
                 const std::vector<std::string>& populations) {
    std::replace(text.begin(), text.end(), '|', '\t');
    const std::size_t slash = path.find('/');
    const bool inside = slash != std::string_view::npos;
    const std::string_view folder = inside ? path.substr(0, slash) : std::string_view();
    const std::string_view name = inside ? path.substr(slash + 1) : path;
    for (const SheetRule& rule : catalogue()) {
        const auto part = partOf(rule, name);
        if (rule.folder == folder && part) {
            ReadSheet read;
            std::istringstream in(text);
            read.fault = readSheet(in, rule, populations, *part, [&read](const TidyRow& row) {
                read.rows.push_back(asLine(row));
            });
            return read;
        }
    }
    throw std::invalid_argument("no sheet of the catalogue: " + std::string(path));
}

std::vector<std::string> rowsOf(std::string_view path, const std::string& text,
                                const std::vector<std::string>& populations) {
    ReadSheet read = readAs(path, text, populations);
    EXPECT_EQ(read.fault, "");
    return read.rows;
}

std::string faultOf(std::string_view path, const std::string& text,
                    const std::vector<std::string>& populations) {
    return readAs(path, text, populations).fault;
}

} // namespace kva_test
