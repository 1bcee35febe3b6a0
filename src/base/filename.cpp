#include "base/filename.h"

#include <algorithm>

namespace kva {

std::string fileNameOf(const std::string& name) {
    if (name.empty() || name == "." || name == "..") {
        return "_" + name;
    }
    std::string file = name;
    std::replace(file.begin(), file.end(), '/', '_');
    return file;
}

} // namespace kva
