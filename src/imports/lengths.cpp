#include "imports/lengths.h"

#include "base/nearestword.h"
#include "imports/genotypes.h"
#include "imports/lines.h"

#include <algorithm>
#include <map>

namespace kva {

namespace {

bool isUnknown(const std::string& cell) {
    return cell.empty() || cell == "?" || cell == "unknown";
}

std::vector<std::string> cellsOfLine(std::string_view line) {
    const char separator = separatorOf(line);
    if (separator != '\0') {
        return cellsOf(line, separator);
    }
    std::vector<std::string> cells;
    for (const std::string_view word : wordsOf(line)) {
        cells.emplace_back(word);
    }
    return cells;
}

int32_t lengthOf(const std::string& cell, int32_t least, std::size_t line, const char* what) {
    if (isUnknown(cell)) {
        return -1;
    }
    const std::optional<int32_t> length = wholeNumber(cell);
    if (!length || *length < least) {
        refuseData(line, quotedText(cell) + " is no " + what + ", a whole number of " +
                             std::to_string(least) + " or more, or \"unknown\"");
    }
    return *length;
}

LocusLengths lengthsOfLine(const std::vector<std::string>& cells, std::size_t line) {
    if (cells.size() < 2 || cells.size() > 3) {
        refuseData(line, "not the cells of a locus: name, repeat length, rest length");
    }
    LocusLengths lengths;
    lengths.repeat = lengthOf(cells[1], 1, line, "repeat length");
    lengths.rest = cells.size() < 3 ? -1 : lengthOf(cells[2], 0, line, "rest length");
    return lengths;
}

// "LocA	repeat	rest"
bool isHead(const std::vector<std::string>& cells) {
    return cells.size() > 1 && !isUnknown(cells[1]) && !wholeNumber(cells[1]) &&
           cells[1].find_first_of("0123456789") == std::string::npos;
}

} // namespace

LocusLengths lengthsOfWord(const std::string& word) {
    LocusLengths lengths;
    if (word != "unknown") {
        const std::optional<int32_t> repeat = wholeNumber(word);
        if (!repeat || *repeat < 1) {
            refuseOption("--repeat " + quotedText(word) +
                         " is no whole number above 0 and not \"unknown\"");
        }
        lengths.repeat = *repeat;
    }
    return lengths;
}

std::vector<LocusLengths> lengthsOfTable(std::string_view text,
                                         const std::vector<std::string>& loci) {
    std::map<std::string, LocusLengths> table;
    const std::vector<Line> lines = linesOf(text);
    for (const Line& line : lines) {
        const std::vector<std::string> cells = cellsOfLine(line.text);
        if (line.number == lines.front().number && isHead(cells)) {
            continue;
        }
        const std::string& name = cells.front();
        if (std::find(loci.begin(), loci.end(), name) == loci.end()) {
            refuseData(line.number, quotedText(name) +
                                        " is no locus of the file, the nearest one is " +
                                        quotedText(nearestWord(name, loci)));
        }
        if (!table.emplace(name, lengthsOfLine(cells, line.number)).second) {
            refuseData(line.number, "locus " + quotedText(name) + " stands there twice");
        }
    }
    std::vector<LocusLengths> lengths;
    for (const std::string& name : loci) {
        const auto row = table.find(name);
        if (row == table.end()) {
            refuseData(0, "no line for locus " + quotedText(name));
        }
        lengths.push_back(row->second);
    }
    return lengths;
}

} // namespace kva
