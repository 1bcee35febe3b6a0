#include "results/results.h"

#include "results/catalogue.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

namespace kva {

namespace {

namespace fs = std::filesystem;

// The sheet that tells the names of the populations: its column of labels, without the pool's.
constexpr std::string_view kSheetOfNames = "Single_data/Hetexp.xls";

// The names; none where the sheet is not there or not sound.
std::vector<std::string> populationNames(const fs::path& folder) {
    const fs::path path = folder / kSheetOfNames;
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        return {};
    }
    std::ifstream in(path, std::ios::binary);
    SheetLines lines(in, false);
    const LocusHead head = readLocusHead(lines, 1);
    std::vector<std::string> names;
    for (bool more = head.more; more; more = lines.next()) {
        names.emplace_back(lines.cells()[0]);
    }
    if (!lines.sound() || names.empty() || names.front() != "Total") {
        return {};
    }
    names.erase(names.begin());
    return names;
}

// The files of a rule, by name, with what "*" stands for.
struct Found {
    std::string name;
    std::string part;
};

std::vector<Found> filesOf(const SheetRule& rule, const fs::path& folder) {
    std::vector<Found> found;
    std::error_code error;
    if (rule.name.find('*') == std::string_view::npos) {
        if (fs::exists(folder / rule.name, error)) {
            found.push_back({std::string(rule.name), ""});
        }
        return found;
    }
    fs::directory_iterator entries(folder, error);
    while (!error && entries != fs::directory_iterator()) {
        const std::string name = entries->path().filename().string();
        if (const auto part = partOf(rule, name)) {
            found.push_back({name, std::string(*part)});
        }
        entries.increment(error);
    }
    std::sort(found.begin(), found.end(),
              [](const Found& a, const Found& b) { return a.name < b.name; });
    return found;
}

// What is wrong with a sheet; empty: nothing.
std::string readFile(const fs::path& path, const SheetRule& rule,
                     std::span<const std::string> populations, std::string_view part,
                     const RowSink& sink) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        return "is no file"; // a folder, or a pipe that would keep us waiting
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::string("cannot be opened: ") + std::strerror(errno);
    }
    return readSheet(in, rule, populations, part, sink);
}

} // namespace

std::string readSheet(std::istream& in, const SheetRule& rule,
                      std::span<const std::string> populations, std::string_view part,
                      const RowSink& sink) {
    SheetLines lines(in, rule.layout->openEnd);
    SheetReading sheet(lines, rule, populations, part, sink);
    rule.layout->read(sheet);
    return lines.faultText();
}

std::vector<std::string> readResults(const fs::path& folder, const RowSink& sink) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) {
        return {folder.string() + ": is no folder"};
    }
    const std::vector<std::string> populations = populationNames(folder);
    std::vector<std::string> faults;
    bool any = false;
    for (const SheetRule& rule : catalogue()) {
        const fs::path place = folder / rule.folder;
        for (const Found& file : filesOf(rule, place)) {
            any = true;
            const std::string fault =
                readFile(place / file.name, rule, populations, file.part, sink);
            if (!fault.empty()) {
                faults.push_back((fs::path(rule.folder) / file.name).string() + ": " + fault);
            }
        }
    }
    if (!any) {
        faults.push_back(folder.string() + ": holds no result sheet");
    }
    return faults;
}

} // namespace kva
