#include "api/ToldLines.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace kva {

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> all;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty()) {
            all.push_back(line);
        }
    }
    return all;
}

std::vector<std::string> warningsAmong(const std::vector<std::string>& lines) {
    std::vector<std::string> warnings;
    std::ranges::copy_if(lines, std::back_inserter(warnings), [](const std::string& line) {
        return line.starts_with("Warning: ") || line.starts_with("Cannot ");
    });
    return warnings;
}

std::string joinedLines(const std::vector<std::string>& lines) {
    std::string all;
    for (const std::string& line : lines) {
        all += (all.empty() ? "" : "; ") + line;
    }
    return all;
}

} // namespace kva
