#include "report/distancerows.h"

#include <algorithm>
#include <cctype>

namespace kva {

namespace {

constexpr std::string_view kDistance = "distance_";
constexpr std::string_view kOfIndividuals = "_individuals";
constexpr std::string_view kOfLocus = "_locus";

} // namespace

std::string measureName(std::string_view word) {
    std::string result(word);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

std::string measureOf(std::string_view statistic) {
    if (!statistic.starts_with(kDistance) || statistic.ends_with(kOfLocus)) {
        return {};
    }
    statistic.remove_prefix(kDistance.size());
    if (isOfIndividuals(statistic)) {
        statistic.remove_suffix(kOfIndividuals.size());
    }
    return measureName(statistic);
}

bool isOfIndividuals(std::string_view statistic) {
    return statistic.ends_with(kOfIndividuals);
}

bool DistanceTaker::wants(const std::string& measure) {
    if (Into.measure.empty() && (Wanted.empty() || Wanted == measure)) {
        Into.measure = measure;
    }
    if (Into.measure != measure &&
        std::find(Into.others.begin(), Into.others.end(), measure) == Into.others.end()) {
        Into.others.push_back(measure);
    }
    return Into.measure == measure;
}

void DistanceTaker::take(const TidyRow& row) {
    if (Into.replicatesRead == 0 || row.place.replicate != Replicate) {
        Replicate = row.place.replicate;
        ++Into.replicatesRead;
        Place = 0;
        if (Keep) {
            Into.bootstrap.emplace_back();
        }
    }
    const double value = numberOf(row.value);
    if (Into.replicatesRead == 1) {
        takeLabels(row);
        Into.values.push_back(value);
        if (Keep) {
            Into.texts.emplace_back(row.value);
        }
    } else if (Place < Into.values.size()) {
        Into.values[Place] += value;
    }
    if (Keep) {
        Into.bootstrap.back().push_back(value);
    }
    ++Place;
}

void DistanceTaker::finish() {
    if (Into.replicatesRead < 2) {
        Into.bootstrap.clear();
        return;
    }
    Into.texts.clear();
    for (double& value : Into.values) {
        value /= static_cast<double>(Into.replicatesRead);
    }
}

void DistanceTaker::takeLabels(const TidyRow& row) {
    if (Into.labels.empty()) {
        Into.labels.emplace_back(row.place.population1);
    }
    if (Place == trianglePlace(Into.labels.size(), 0)) {
        Into.labels.emplace_back(row.place.population2);
    }
}

} // namespace kva
