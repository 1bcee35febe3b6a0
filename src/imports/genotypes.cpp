#include "imports/genotypes.h"

#include "data/datarows.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

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

std::size_t PopulationPlaces::of(const std::string& name, Genotypes& data) {
    const auto place = Places.emplace(name, data.populations.size());
    if (place.second) {
        data.populations.push_back(name);
    }
    return place.first->second;
}

const std::string* repeatedName(const std::vector<std::string>& names) {
    std::unordered_set<std::string_view> known;
    const auto twice = std::find_if(names.begin(), names.end(), [&known](const std::string& name) {
        return !known.insert(name).second;
    });
    return twice == names.end() ? nullptr : &*twice;
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
