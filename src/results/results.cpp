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

    // In all of them `fault` becomes what the system refuses, and stays as it is otherwise.
    virtual bool has(const std::string& path, std::string& fault) const = 0;

    // The bare names of the files in a folder, in any order; none where there is no such folder.
    virtual std::vector<std::string> namesIn(std::string_view folder, std::string& fault) const = 0;

    // Null if it cannot be read.
    virtual std::unique_ptr<std::istream> open(const std::string& path,
                                               std::string& fault) const = 0;

    // Where the stream of a file has to end.
    virtual uintmax_t sizeOf(const std::string& path) const = 0;
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

    bool has(const std::string& path, std::string& fault) const override {
        std::error_code error;
        const bool isThere = fs::exists(Folder / path, error);
        if (error) {
            fault = "cannot be looked at: " + error.message();
        }
        return isThere;
    }

    std::vector<std::string> namesIn(std::string_view folder, std::string& fault) const override {
        std::vector<std::string> names;
        std::error_code error;
        fs::directory_iterator entries(Folder / folder, error);
        while (!error && entries != fs::directory_iterator()) {
            names.push_back(entries->path().filename().string());
            entries.increment(error);
        }
        if (error && error != std::errc::no_such_file_or_directory) {
            fault = "cannot be listed: " + error.message();
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

    uintmax_t sizeOf(const std::string& path) const override {
        std::error_code error;
        return fs::file_size(Folder / path, error);
    }

  private:
    const fs::path& Folder; // NOT OWNED
};

class SheetsInMemory : public Sheets {
  public:
    explicit SheetsInMemory(const ResultTexts& texts) : Texts(texts) {}

    bool has(const std::string& path, std::string& /*fault*/) const override {
        return Texts.contains(path);
    }

    std::vector<std::string> namesIn(std::string_view folder,
                                     std::string& /*fault*/) const override {
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

    uintmax_t sizeOf(const std::string& path) const override {
        return Texts.find(path)->second.size();
    }

  private:
    const ResultTexts& Texts; // NOT OWNED
};

// --- The walk --------------------------------------------------------------------------------

// Whether the file ended before it should. The stream is of no use any more then.
bool endsEarly(const Sheets& sheets, const std::string& path, std::istream& in) {
    const bool ended = in.eof();
    in.clear();
    return ended && static_cast<uintmax_t>(in.tellg()) != sheets.sizeOf(path);
}

// The names; none where the sheet is not there or not sound.
std::vector<std::string> populationNames(const Sheets& sheets) {
    std::string fault;
    const auto in = sheets.has(kSheetOfNames, fault) ? sheets.open(kSheetOfNames, fault) : nullptr;
    if (!in) {
        return {};
    }
    SheetLines lines(*in, false);
    const LocusHead head = readLocusHead(lines, 1);
    std::vector<std::string> names;
    for (bool more = head.more; more; more = lines.next()) {
        names.emplace_back(lines.cells()[0]);
    }
    if (!lines.sound() || endsEarly(sheets, kSheetOfNames, *in) || names.empty() ||
        names.front() != "Total") {
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

// `fault` as in Sheets.
std::vector<Found> filesOf(const SheetRule& rule, const Sheets& sheets, std::string& fault) {
    std::vector<Found> found;
    if (rule.name.find('*') == std::string_view::npos) {
        if (sheets.has(joined(rule.folder, rule.name), fault)) {
            found.push_back({std::string(rule.name), ""});
        }
        return found;
    }
    for (const std::string& name : sheets.namesIn(rule.folder, fault)) {
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
    if (!in) {
        return fault;
    }
    fault = readSheet(*in, rule, populations, part, sink);
    return fault.empty() && endsEarly(sheets, path, *in) ? "cannot be read to its end" : fault;
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
        std::string fault;
        const std::vector<Found> files = filesOf(rule, sheets, fault);
        if (!fault.empty()) {
            faults.push_back(joined(rule.folder, rule.name) + ": " + fault);
        }
        for (const Found& file : files) {
            any = true;
            std::string path = joined(rule.folder, file.name);
            fault = readFile(sheets, path, rule, populations, file.part, sink);
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
