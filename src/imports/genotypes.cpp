#include "imports/genotypes.h"

#include "data/datarows.h"

#include <algorithm>

namespace kva {

namespace {

constexpr std::size_t kMostGenotypes = 200000000;

} // namespace

void refuseData(std::size_t line, const std::string& text) {
    throw ImportRefusal(ImportRefusal::Cause::Data,
                        line == 0 ? text : "line " + std::to_string(line) + ": " + text);
}

void refuseOption(const std::string& text) {
    throw ImportRefusal(ImportRefusal::Cause::Option, text);
}

std::size_t placeOfPopulation(Genotypes& data, const std::string& name) {
    // As a rule the one of the individual before.
    if (!data.individuals.empty()) {
        const std::size_t last = data.individuals.back().population;
        if (data.populations[last] == name) {
            return last;
        }
    }
    const auto place = std::find(data.populations.begin(), data.populations.end(), name);
    const auto index = static_cast<std::size_t>(place - data.populations.begin());
    if (place == data.populations.end()) {
        data.populations.push_back(name);
    }
    return index;
}

void checkSize(std::size_t individuals, std::size_t loci) {
    constexpr int64_t kColumns = 2;
    if (rowTooLong(static_cast<int64_t>(std::min<std::size_t>(loci, 1000000)), kColumns)) {
        refuseData(0, std::to_string(loci) + " loci are more than a data file can hold; divide the "
                                             "loci among several files");
    }
    if (loci > 0 && individuals > kMostGenotypes / loci) {
        refuseData(0, "more than " + std::to_string(kMostGenotypes) +
                          " genotypes; divide the loci among several files");
    }
}

} // namespace kva
