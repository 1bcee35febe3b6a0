// What a DataSet of the public header holds.
#ifndef KVA_API_DATASET_H
#define KVA_API_DATASET_H

#include "data/loadeddata.h"

#include <kva/kva.h>
#include <string>
#include <vector>

namespace kva::api {

struct DataSet::Content {
    LoadedData Loaded;
    std::vector<Population> Populations;
    std::vector<Locus> Loci;
    std::vector<Finding> Findings;
    std::vector<std::string> Warnings;
};

} // namespace kva::api

#endif
