// What the reader understood of a data file, in numbers: for the end of a check.
#ifndef KVA_CHECK_SUMMARY_H
#define KVA_CHECK_SUMMARY_H

#include "data/loadeddata.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kva {

struct PopulationSummary {
    std::string name;
    int64_t individuals = 0; // half ones count: a last row without partner
    int64_t inbred = 0;      // of these, those flagged "h"
    int32_t group = 0;       // of the first individual; 0 or less: none
    int64_t missing = 0;     // alleles over all loci
};

struct LocusSummary {
    std::string name;
    int32_t repeat = 0;      // base pairs; below 1: unknown
    int32_t rest = 0;        // base pairs; negative: unknown
    int64_t alleles = 0;     // different ones
    int64_t copies = 0;      // alleles that are there
    int64_t missing = 0;     // alleles that are not
    int32_t smallest = 0;    // allele; 0 without any
    int32_t largest = 0;     // allele; 0 without any
    int32_t populations = 0; // with at least one allele
    // Of the alleles, the remainder after division by the repeat length that most copies have, and
    // how many copies have it; 0 and 0 without a repeat length.
    int32_t remainder = 0;
    int64_t onGrid = 0;
};

struct DataSummary {
    int columns = 0; // per locus
    int headerRows = 0;
    int64_t individuals = 0;
    int64_t missing = 0; // alleles
    int64_t alleles = 0; // alleles, with the missing ones
    std::vector<PopulationSummary> populations;
    std::vector<LocusSummary> loci;
};

// `data` is read.
DataSummary summaryOf(const LoadedData& data);

} // namespace kva

#endif
