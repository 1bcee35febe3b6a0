#include "data/filename.h"

#include <algorithm>

std::string fileNameOf(const std::string& name) {
    if (name.empty() || name == "." || name == "..") {
        return "_" + name;
    }
    std::string stem = name;
    std::replace(stem.begin(), stem.end(), '/', '_');
    return stem;
}
