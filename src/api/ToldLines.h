// What the reader told on the console, as lines.
#ifndef KVA_API_TOLDLINES_H
#define KVA_API_TOLDLINES_H

#include <string>
#include <vector>

namespace kva {

// The lines of a text that hold something.
std::vector<std::string> linesOf(const std::string& text);

// Those that a user of readable data should know.
std::vector<std::string> warningsAmong(const std::vector<std::string>& lines);

// In one line.
std::string joinedLines(const std::vector<std::string>& lines);

} // namespace kva

#endif
