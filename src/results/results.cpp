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

// Whether the file ended before it should. The stream is of no use any more then.
bool endsEarly(std::ifstream& in, const fs::path& path) {
    const bool ended = in.eof();
    in.clear();
    std::error_code error;
    return ended && static_cast<uintmax_t>(in.tellg()) != fs::file_size(path, error);
}

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
    if (!lines.sound() || endsEarly(in, path) || names.empty() || names.front() != "Total") {
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

// `error`: why the folder cannot be listed; one that is not there has no files.
std::vector<Found> filesOf(const SheetRule& rule, const fs::path& folder, std::error_code& error) {
    std::vector<Found> found;
    error.clear();
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
    if (error == std::errc::no_such_file_or_directory) {
        error.clear();
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
    const std::string fault = readSheet(in, rule, populations, part, sink);
    return fault.empty() && endsEarly(in, path) ? "cannot be read to its end" : fault;
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
        const std::vector<Found> files = filesOf(rule, place, error);
        if (error) {
            faults.push_back(place.string() + ": cannot be listed: " + error.message());
        }
        for (const Found& file : files) {
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
