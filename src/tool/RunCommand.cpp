#include "tool/RunCommand.h"

#include "tool/ChildRun.h"
#include "tool/Gathered.h"
#include "tool/ResultPlace.h"
#include "tool/RunJob.h"
#include "tool/RunWords.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kva {

namespace {

namespace fs = std::filesystem;

constexpr int kFailed = 1;
constexpr int kSignalled = 128;                // and the number of the signal
constexpr const char* kFolderEnd = "_kvatool"; // behind the data file's name

// --- The data files --------------------------------------------------------------------------

void tell(const std::string& line) {
    std::cerr << "kvatool run: " << line << '\n';
}

// Where the results of each data file go. Throws PlaceError.
std::vector<ResultPlace> placesOf(const RunWords& words) {
    std::vector<ResultPlace> places;
    const bool several = words.Data.size() > 1 && !words.Output.empty();
    if (several) {
        fs::create_directory(words.Output);
    }
    for (const std::string& data : words.Data) {
        fs::path folder = data + kFolderEnd;
        if (!words.Output.empty()) {
            folder = several ? fs::path(words.Output) / fs::path(data).filename()
                             : fs::path(words.Output);
        }
        places.emplace_back(folder, words.Force);
        for (std::size_t k = 0; k + 1 < places.size(); ++k) {
            if (places[k].folder() == places.back().folder()) {
                throw PlaceError("two data files would have their results in '" +
                                 places.back().folder().string() + "'");
            }
        }
    }
    return places;
}

// Runs one data file. Exit status.
int runOne(const RunJob& job, const ResultPlace& place, bool quiet) {
    const ChildEnd end = runInChild([&job] { return doJob(job); });
    if (end.Stopped != 0 || end.Signal != 0 || end.Status != 0) {
        place.discard();
    }
    if (end.Stopped != 0) {
        std::cerr << (job.Told == Telling::Bar ? "\n" : "");
        tell("stopped, no results of " + job.Data);
        return kSignalled + end.Stopped;
    }
    if (end.Signal != 0) {
        tell(job.Data + ": the run was ended by signal " + std::to_string(end.Signal) + " (" +
             strsignal(end.Signal) + "), no results");
        return kFailed;
    }
    if (end.Status != 0) {
        return kFailed;
    }
    place.finish();
    if (!quiet) {
        std::cerr << job.Data + ": results in " + place.folder().string() + '\n';
    }
    return 0;
}

// Runs all data files. Exit status.
int runAll(const RunWords& words, const RunPlan& plan) {
    const std::vector<ResultPlace> places = placesOf(words);
    GatheredTable table(words.Tidy, words.Data.size() > 1);
    GatheredRecords records(words.JsonFile, words.Data.size() > 1);
    int status = 0;
    for (std::size_t k = 0; k < words.Data.size(); ++k) {
        const RunJob job{plan, words.Data[k], places[k].unfinished(),
                         words.Quiet ? Telling::Nothing : tellingOfTerminal(), !words.Tidy.empty()};
        const int ended = runOne(job, places[k], words.Quiet);
        if (ended > kFailed) {
            return ended;
        }
        if (ended == 0) {
            table.add(words.Data[k], places[k].folder());
            records.add(places[k].folder());
        }
        status = std::max(status, ended);
    }
    table.finish();
    records.finish();
    return status;
}

} // namespace

void addRunCommand(CLI::App& app, int& status) {
    CLI::App* const command = app.add_subcommand("run", "Runs the passes of kva on data files");
    const auto words = std::make_shared<RunWords>();
    words->addTo(*command);
    command->callback([words, &status] {
        RunPlan plan;
        try {
            plan = words->plan();
        } catch (const WrongWord& wrong) {
            throw CLI::ParseError(wrong.what(), CLI::ExitCodes::ValidationError);
        }
        try {
            status = runAll(*words, plan);
        } catch (const std::runtime_error& wrong) { // of files and folders
            tell(wrong.what());
            status = kFailed;
        }
    });
}

} // namespace kva
