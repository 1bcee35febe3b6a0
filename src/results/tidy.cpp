#include "results/tidy.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kva {

namespace {

constexpr std::string_view kHead = "statistic\tpopulation1\tpopulation2\tlocus\treplicate\tvalue\n";
constexpr std::size_t kWaitingBytes = std::size_t{1} << 16U;

bool isPlain(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           c == '-' || c == '+' || c == '.';
}

} // namespace

double numberOf(std::string_view value) {
    double number = 0;
    const char* const end = value.data() + value.size();
    const auto [behind, error] = std::from_chars(value.data(), end, number); // "NaN", "Inf", too
    return error == std::errc() && behind == end ? number
                                                 : std::numeric_limits<double>::quiet_NaN();
}

TidyWriter::TidyWriter(std::ostream& out) : Out(out), Waiting(kHead) {}

void TidyWriter::write(const TidyRow& row) {
    Waiting += row.statistic;
    for (const std::string_view text :
         {row.place.population1, row.place.population2, row.place.locus, row.place.replicate}) {
        Waiting += '\t';
        appendTidyText(Waiting, text);
    }
    Waiting += '\t';
    Waiting += row.value;
    Waiting += '\n';
    if (Waiting.size() >= kWaitingBytes) {
        flush();
    }
}

void TidyWriter::flush() {
    Out.write(Waiting.data(), static_cast<std::streamsize>(Waiting.size()));
    Waiting.clear();
}

void appendTidyText(std::string& line, std::string_view text) {
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text) {
        line.append(c == '"' ? 2 : 1, c);
    }
    line += '"';
}

} // namespace kva
