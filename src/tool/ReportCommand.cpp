#include "tool/ReportCommand.h"

#include "base/newfile.h"
#include "distance/measures.h"
#include "report/report.h"
#include "tool/RunJob.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kva {

namespace {

using Json = nlohmann::ordered_json;

constexpr int64_t kMostBytes = int64_t{1} << 31U; // of a record

struct Options {
    std::string folder;
    std::string bootstrap; // empty: none
    std::string measure;   // empty: the first one
    std::string output;    // empty: standard output
};

void tell(const std::string& what) {
    std::cerr << "kvatool report: " << what << '\n';
}

// --- The record of the run --------------------------------------------------------------------

// A value as words: texts without quotes, the parts of a list with commas between; nothing for
// null.
std::string wordsOf(const Json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (value.is_array()) {
        std::string all;
        for (const Json& part : value) {
            all += (all.empty() ? "" : ", ") + wordsOf(part);
        }
        return all;
    }
    return value.is_null() ? "" : value.dump();
}

// The value of a key as words; nothing where there is none.
std::string wordsAt(const Json& object, const char* key) {
    const auto found = object.is_object() ? object.find(key) : object.end();
    return object.is_object() && found != object.end() ? wordsOf(*found) : "";
}

const Json& partOf(const Json& object, const char* key) {
    static const Json none = Json::object();
    return object.contains(key) ? object[key] : none;
}

void takeSettings(const Json& settings, RunRecord& record) {
    for (const auto& [name, value] : settings.items()) {
        if (!value.is_object()) {
            record.settings.emplace_back(name, wordsOf(value));
            continue;
        }
        for (const auto& [part, inner] : value.items()) { // distances of populations, individuals
            std::string whole = name;
            whole.append(" (").append(part).append(")");
            record.settings.emplace_back(std::move(whole), wordsOf(inner));
        }
    }
}

RunRecord recordOf(const Json& json) {
    RunRecord record;
    const Json& data = partOf(json, "data");
    const Json& random = partOf(json, "random");
    record.version = wordsAt(json, "version");
    record.file = wordsAt(data, "file");
    record.sha256 = wordsAt(data, "sha256");
    record.generator = wordsAt(random, "generator");
    record.seed = wordsAt(random, "seed");
    record.threads = wordsAt(json, "threads");
    record.begun = wordsAt(json, "begun");
    record.ended = wordsAt(json, "ended");
    takeSettings(partOf(json, "settings"), record);
    for (const Json& warning : partOf(json, "warnings")) {
        record.warnings.push_back(wordsOf(warning));
    }
    for (const Json& test : partOf(json, "tests")) {
        record.tests[wordsAt(test, "statistic")].push_back(
            {wordsAt(test, "p"), wordsAt(test, "p_error"), wordsAt(test, "p_holm"),
             wordsAt(test, "p_bh")});
    }
    return record;
}

// The record of a result folder; nothing where there is none. Throws what is wrong with it.
std::optional<RunRecord> readRecord(const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / kRunRecordName;
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        return std::nullopt;
    }
    std::string bytes;
    const std::string failure = readWholeFile(file.string(), bytes, kMostBytes);
    if (!failure.empty()) {
        throw std::runtime_error("cannot read '" + file.string() + "': " + failure);
    }
    const Json json = Json::parse(bytes, nullptr, false);
    if (!json.is_object()) {
        throw std::runtime_error(file.string() + ": is no record of a run");
    }
    return recordOf(json);
}

// --- The page ---------------------------------------------------------------------------------

// Several faults in one line.
std::string inOneLine(const std::vector<std::string>& faults) {
    const std::size_t more = faults.size() - 1;
    return faults[0] + (more == 0 ? "" : " (and " + std::to_string(more) + " more)");
}

std::vector<std::string> measureStems() {
    std::vector<std::string> stems;
    for (const Measure& measure : allMeasures()) {
        stems.emplace_back(measure.Stem);
    }
    return stems;
}

// The exit status.
int report(const Options& options) {
    ReportRequest request{options.folder, options.bootstrap, options.measure, std::nullopt};
    try {
        request.record = readRecord(request.folder);
    } catch (const std::runtime_error& wrong) {
        tell(wrong.what());
        return 1;
    }
    const Report made = makeReport(request);
    if (!made.faults.empty()) {
        tell(inOneLine(made.faults));
        return 1;
    }
    if (options.output.empty()) {
        std::cout << made.page;
        return 0; // main tells a failed write
    }
    const std::string failure = writeWholeFile(options.output, made.page, true);
    if (!failure.empty()) {
        tell("cannot write '" + options.output + "': " + failure);
    }
    return failure.empty() ? 0 : 1;
}

} // namespace

void addReportCommand(CLI::App& app, int& status) {
    CLI::App* const command = app.add_subcommand(
        "report", "Makes one page of a result folder, with pictures, tables and methods");
    const auto options = std::make_shared<Options>();
    command->add_option("FOLDER", options->folder, "A result folder of kva or of kvatool run")
        ->required();
    command->add_option("-o,--output", options->output,
                        "File to write, report.html; else standard output");
    command->add_option("--bootstrap", options->bootstrap,
                        "A second result folder of the same data, with bootstrap replicates of "
                        "the distances of populations: the support of the tree");
    command
        ->add_option("--measure", options->measure,
                     "Distance of tree and principal coordinates (default: the first one there)")
        ->check(CLI::IsMember(measureStems(), CLI::ignore_case));
    command->footer(
        "Examples:\n"
        "  kvatool report results -o report.html\n"
        "  kvatool run data.txt -o boot --distances population:DAN --bootstrap 1000\n"
        "  kvatool report results --bootstrap boot --measure DAN -o report.html\n"
        "\n"
        "The page needs nothing else: no network, no other file. Exit status: 0 done, 1 where\n"
        "a sheet is not as kva writes it or the page cannot be written; nothing is written\n"
        "then. 2 wrong usage.");
    command->callback([options, &status] { status = report(*options); });
}

} // namespace kva
