// Distances of a result folder, taken row by row.
#ifndef KVA_REPORT_DISTANCEROWS_H
#define KVA_REPORT_DISTANCEROWS_H

#include "report/reportdata.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace kva {

// "DAN" of "dan".
std::string measureName(std::string_view word);

// "DAN" of the statistics "distance_dan" and "distance_dan_individuals"; empty for others.
std::string measureOf(std::string_view statistic);

// Whether a statistic is of distances of individuals.
bool isOfIndividuals(std::string_view statistic);

// Takes the rows of distances, those of populations or those of individuals.
class DistanceTaker {
  public:
    // keep: whether the replicates and the texts of the cells are kept, too.
    DistanceTaker(PairDistances& into, std::string wanted, bool keep)
        : Into(into), Wanted(std::move(wanted)), Keep(keep) {}

    // Whether the rows of a measure are to be taken.
    bool wants(const std::string& measure);

    // Takes a row of a measure that is wanted; those of a replicate come one behind the other, in
    // the order of PairDistances.
    void take(const TidyRow& row);

    // Makes means of the sums, behind the last row.
    void finish();

  private:
    void takeLabels(const TidyRow& row); // from the rows of the first replicate

    PairDistances& Into;
    std::string Wanted;
    bool Keep;
    std::string Replicate;
    std::size_t Place = 0; // of the next pair
};

} // namespace kva

#endif
