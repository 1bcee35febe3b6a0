// What a Result of the public header holds.
#ifndef KVA_API_RESULT_H
#define KVA_API_RESULT_H

#include "output/resultfolder.h"

#include <kva/kva.h>
#include <string>
#include <vector>

namespace kva::api {

struct Result::Content {
    ResultTexts Sheets;
    std::vector<Test> Tests;
    std::vector<std::string> Warnings;
};

} // namespace kva::api

#endif
