#include "results/results.h"

#include "results/catalogue.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>
#include <utility>

namespace kva {

namespace {

namespace fs = std::filesystem;

// The sheet that tells the names of the populations: its column of labels, without the pool's.
constexpr const char* kSheetOfNames = "Single_data/Hetexp.xls";

// --- Where the sheets lie ------------------------------------------------------------------

// The files of a result folder, by their paths inside it.
class Sheets {
  public:
    Sheets() = default;
    virtual ~Sheets() = default;
    Sheets(const Sheets&) = delete;
    Sheets& operator=(const Sheets&) = delete;

    virtual bool has(const std::string& path) const = 0;

    // The bare names of the files in a folder, in any order.
    virtual std::vector<std::string> namesIn(std::string_view folder) const = 0;

    // Null, with the reason in `fault`, if it cannot be read.
    virtual std::unique_ptr<std::istream> open(const std::string& path,
                                               std::string& fault) const = 0;
};

// A path of two parts, of which the first may be empty.
std::string joined(std::string_view folder, std::string_view name) {
    std::string path(folder);
    path.append(folder.empty() ? "" : "/").append(name);
    return path;
}

class SheetsOnDisk : public Sheets {
  public:
    explicit SheetsOnDisk(const fs::path& folder) : Folder(folder) {}

    bool has(const std::string& path) const override {
        std::error_code error;
        return fs::exists(Folder / path, error);
    }

    std::vector<std::string> namesIn(std::string_view folder) const override {
        std::vector<std::string> names;
        std::error_code error;
        fs::directory_iterator entries(Folder / folder, error);
        while (!error && entries != fs::directory_iterator()) {
            names.push_back(entries->path().filename().string());
            entries.increment(error);
        }
        return names;
    }

    std::unique_ptr<std::istream> open(const std::string& path, std::string& fault) const override {
        std::error_code error;
        if (!fs::is_regular_file(Folder / path, error)) {
            fault = "is no file"; // a folder, or a pipe that would keep us waiting
            return nullptr;
        }
        auto in = std::make_unique<std::ifstream>(Folder / path, std::ios::binary);
        if (!*in) {
            fault = std::string("cannot be opened: ") + std::strerror(errno);
            return nullptr;
        }
        return in;
    }

  private:
    const fs::path& Folder; // NOT OWNED
};

class SheetsInMemory : public Sheets {
  public:
    explicit SheetsInMemory(const ResultTexts& texts) : Texts(texts) {}

    bool has(const std::string& path) const override { return Texts.contains(path); }

    std::vector<std::string> namesIn(std::string_view folder) const override {
        const std::string front = joined(folder, "");
        std::vector<std::string> names;
        for (auto text = Texts.lower_bound(front);
             text != Texts.end() && text->first.starts_with(front); ++text) {
            names.push_back(text->first.substr(front.size()));
        }
        return names;
    }

    std::unique_ptr<std::istream> open(const std::string& path,
                                       std::string& /*fault*/) const override {
        return std::make_unique<std::istringstream>(Texts.find(path)->second);
    }

  private:
    const ResultTexts& Texts; // NOT OWNED
};

// --- The walk --------------------------------------------------------------------------------

// The names; none where the sheet is not there or not sound.
std::vector<std::string> populationNames(const Sheets& sheets) {
    std::string fault;
    const auto in = sheets.has(kSheetOfNames) ? sheets.open(kSheetOfNames, fault) : nullptr;
    if (!in) {
        return {};
    }
    SheetLines lines(*in, false);
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

std::vector<Found> filesOf(const SheetRule& rule, const Sheets& sheets) {
    std::vector<Found> found;
    if (rule.name.find('*') == std::string_view::npos) {
        if (sheets.has(joined(rule.folder, rule.name))) {
            found.push_back({std::string(rule.name), ""});
        }
        return found;
    }
    for (const std::string& name : sheets.namesIn(rule.folder)) {
        if (const auto part = partOf(rule, name)) {
            found.push_back({name, std::string(*part)});
        }
    }
    std::sort(found.begin(), found.end(),
              [](const Found& a, const Found& b) { return a.name < b.name; });
    return found;
}

// What is wrong with a sheet; empty: nothing.
std::string readFile(const Sheets& sheets, const std::string& path, const SheetRule& rule,
                     std::span<const std::string> populations, std::string_view part,
                     const RowSink& sink) {
    std::string fault;
    const auto in = sheets.open(path, fault);
    return in ? readSheet(*in, rule, populations, part, sink) : fault;
}

bool has(const SheetRule& rule, std::string_view statistic) {
    const std::vector<std::string_view> all = statisticsOf(rule);
    return statistic.empty() || std::find(all.begin(), all.end(), statistic) != all.end();
}

// name: of the folder, for a fault of all of it. statistic: of the sheets; empty: all.
std::vector<std::string> readSheets(const Sheets& sheets, const std::string& name,
                                    const RowSink& sink, std::string_view statistic) {
    const std::vector<std::string> populations = populationNames(sheets);
    std::vector<std::string> faults;
    bool any = false;
    for (const SheetRule& rule : catalogue()) {
        if (!has(rule, statistic)) {
            continue;
        }
        for (const Found& file : filesOf(rule, sheets)) {
            any = true;
            std::string path = joined(rule.folder, file.name);
            const std::string fault = readFile(sheets, path, rule, populations, file.part, sink);
            if (!fault.empty()) {
                faults.push_back(std::move(path.append(": ").append(fault)));
            }
        }
    }
    if (!any) {
        faults.push_back(name + ": holds no result sheet");
    }
    return faults;
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
    return readSheets(SheetsOnDisk(folder), folder.string(), sink, {});
}

std::vector<std::string> readResults(const ResultTexts& texts, const RowSink& sink,
                                     std::string_view statistic) {
    return readSheets(SheetsInMemory(texts), "the result", sink, statistic);
}

} // namespace kva
