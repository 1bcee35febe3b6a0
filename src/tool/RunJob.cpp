#include "tool/RunJob.h"

#include "api/PlannedRun.h"
#include "api/TestRows.h"
#include "api/ToldLines.h"
#include "base/console.h"
#include "control/AnalyseDataObj.h"
#include "control/frontend.h"
#include "distance/measures.h"
#include "formats/exports.h"
#include "results/results.h"
#include "tool/Sha256.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <utility>

namespace kva {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFailed = 1;

// --- The record ----------------------------------------------------------------------------

std::string now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[32];
    (void)std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

Json numberOrNull(double value) {
    return std::isnan(value) ? Json() : Json(value);
}

Json testsOf(const std::vector<TestRow>& rows) {
    Json tests = Json::array();
    for (const TestRow& row : rows) {
        Json test = {{"statistic", row.Statistic}};
        if (!row.Population2.empty()) {
            test["population1"] = row.Population1;
            test["population2"] = row.Population2;
        } else {
            test["locus"] = row.Locus.empty() ? Json() : Json(row.Locus);
        }
        test["hits"] = row.Count.Hits;
        test["permutations"] = row.Count.Permutations;
        test["ended_by_hits"] = row.Count.Ended;
        test["p"] = numberOrNull(row.P);
        test["p_error"] = numberOrNull(row.Error);
        if (!row.Population2.empty()) {
            test["p_holm"] = numberOrNull(row.Holm);
            test["p_bh"] = numberOrNull(row.BenjaminiHochberg);
        }
        tests.push_back(std::move(test));
    }
    return tests;
}

Json settingsOf(const RunPlan& plan) {
    const auto on = [](uint32_t mask, uint32_t bit) { return hasBit(mask, bit); };
    const AnalyseSettings& masks = plan.Masks;
    Json distances = {{"population", Json::array()}, {"individual", Json::array()}};
    for (const Measure& measure : allMeasures()) {
        if (on(masks.PopDistMask, measure.Bit)) {
            distances["population"].push_back(measure.Stem);
        }
        if (on(plan.IndividualMeasures, measure.Bit)) {
            distances["individual"].push_back(measure.Stem);
        }
    }
    const bool fst = on(masks.GeneralMask, GeneralBit::FStatistics);
    const bool range = on(masks.GeneralMask, GeneralBit::HetRange);
    const char* const heterozygosity = on(masks.FstMask, FstBit::HObs)   ? "observed"
                                       : on(masks.FstMask, FstBit::HExp) ? "expected"
                                                                         : "inbred";
    Json formats = Json::array();
    for (const Export& row : allExports()) {
        if (on(masks.GeneralMask, row.Bit)) {
            formats.push_back(row.Keyword);
        }
    }
    return {{"fst_pairs", fst && !on(masks.FstMask, FstBit::NoPairs)},
            {"fst_global", fst && on(masks.FstMask, FstBit::Global)},
            {"fst_beta", fst && on(masks.FstMask, FstBit::Beta)},
            {"permutations", fst ? plan.Scalars.Permutationen : 0},
            {"sequential_hits", plan.SequentialHits},
            {"resample", on(masks.FstMask, FstBit::Genotypes) ? "genotypes" : "alleles"},
            {"heterozygosity", heterozygosity},
            {"fst_loci", on(masks.FstMask, FstBit::PerLocus)},
            {"thin", on(masks.FstMask, FstBit::RandomDiscard)},
            {"distances", std::move(distances)},
            {"bootstrap", plan.Scalars.Bootstraps},
            {"minus_log", on(masks.GeneralMask, GeneralBit::MinusLog)},
            {"distance_loci", on(masks.PopDistMask, DistBit::PerLocus)},
            {"nexus", on(masks.PopDistMask, DistBit::Nexus)},
            {"het_range", range ? plan.Scalars.HetRandomisierungen : 0},
            {"het_linked", on(masks.HetRangeMask, HetRangeBit::Linked)},
            {"het_individuals", on(masks.HetRangeMask, HetRangeBit::Individuals)},
            {"het_thin", on(masks.HetRangeMask, HetRangeBit::RandomDiscard)},
            {"het_uncorrected", !on(masks.HetRangeMask, HetRangeBit::CorrectZero)},
            {"formats", std::move(formats)},
            {"im_info", plan.IMFile},
            {"rarefy_gene_copies", plan.Scalars.RichnessRef}};
}

// --- The run -----------------------------------------------------------------------------

// What run.json and the long table take from a run.
struct Ran {
    std::vector<TestRow> Tests;
    std::vector<std::string> Warnings;
    std::vector<Progress::Done> Passes;
    bool Whole = true; // every file was written
};

void tell(const std::string& line) {
    std::cerr << "kvatool run: " << line << '\n';
}

void reportSideFile(const std::string& name) {
    console() << "Cannot open the IM information file " << name << '\n';
}

// Opens and reads the data. The warnings of the reader; nothing, and told, if there is nothing to
// run.
std::optional<std::vector<std::string>> load(AnalyseDataObj& run, const RunJob& job,
                                             InputFile& input) {
    run.WantedPfad = job.Folder;
    std::ostringstream told;
    const ConsoleTo console(&told);
    const LoadResult loaded = LoadFirst(run, job.Data, job.Plan.IMFile, reportSideFile, input);
    const std::vector<std::string> lines = linesOf(told.str());
    if (loaded == LoadResult::NoFile) {
        tell("cannot read '" + job.Data + "': no such file, a pipe, or no right to read it");
        return std::nullopt;
    }
    if (loaded == LoadResult::NoFolder || run.GetGesamtIndividuuenAnzahl() == 0) {
        tell(job.Data + " cannot be used: " + joinedLines(lines));
        return std::nullopt;
    }
    if (!run.Unread.empty()) {
        tell("cannot read '" + job.Data + "': " + run.Unread);
        return std::nullopt;
    }
    return warningsAmong(lines);
}

// Runs all passes on loaded data.
Ran runPasses(const RunJob& job, AnalyseDataObj& run) {
    Ran ran;
    Progress progress(job.Data, job.Told, std::cerr);
    ran.Tests = runPlan(
        run, job.Plan, [&progress](const PassStep& step) { progress.begin(step.Name); },
        [&progress](std::size_t done, std::size_t all) { progress.share(done, all); });
    progress.end();
    ran.Whole = run.Failures.empty();
    for (const std::string& line : run.Failures) {
        tell(job.Data + ": " + line);
        ran.Warnings.push_back(line);
    }
    ran.Passes = progress.passes();
    return ran;
}

// The check sum of the data file; empty, and told, if it cannot be read.
std::string dataSum(const RunJob& job, const Run& run, Ran& ran) {
    std::string sum = sha256OfFile(run.DataPath);
    if (sum.empty()) {
        tell("cannot read '" + job.Data + "' for its check sum");
        ran.Whole = false;
    }
    return sum;
}

Json recordOf(const RunJob& job, const Run& run, const Ran& ran, const std::string& begun,
              const std::string& sum) {
    Json passes = Json::array();
    for (const Progress::Done& pass : ran.Passes) {
        passes.push_back({{"name", pass.Pass}, {"seconds", pass.Seconds}});
    }
    Json random = {{"generator", job.Plan.Seed ? "Philox4x32-10" : "ran1, seeded by the clock"}};
    random["seed"] = job.Plan.Seed ? Json(*job.Plan.Seed) : Json();
    return {{"program", "kvatool"},
            {"version", kVersion},
            {"data",
             {{"file", run.DataPath},
              {"sha256", sum},
              {"populations", run.AnzPop},
              {"individuals", run.GetGesamtIndividuuenAnzahl()},
              {"loci", run.AnzLoci}}},
            {"settings", settingsOf(job.Plan)},
            {"random", std::move(random)},
            {"threads", job.Plan.Threads},
            {"begun", begun},
            {"ended", now()},
            {"passes", std::move(passes)},
            {"tests", testsOf(ran.Tests)},
            {"warnings", ran.Warnings}};
}

// Texts of users may hold any bytes; those that are no UTF-8 are replaced.
bool writeRecord(const std::filesystem::path& file, const Json& record) {
    std::ofstream out(file, std::ios::binary);
    out << record.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    return static_cast<bool>(out.flush());
}

bool writeTable(const RunJob& job, const Ran& ran) {
    std::ofstream out(job.Folder / kTidyName, std::ios::binary);
    TidyWriter table(out);
    const std::vector<std::string> faults =
        readResults(job.Folder, [&table](const TidyRow& row) { table.write(row); });
    for (const TestRow& row : ran.Tests) {
        writeTest(row, table);
    }
    table.flush();
    for (const std::string& fault : faults) {
        tell(job.Data + ": " + fault);
    }
    return faults.empty() && out.flush();
}

} // namespace

int doJob(const RunJob& job) {
    const std::string begun = now();
    InputFile input;
    AnalyseDataObj run;
    const std::optional<std::vector<std::string>> warnings = load(run, job, input);
    if (!warnings) {
        return kFailed;
    }
    Ran ran = runPasses(job, run);
    ran.Warnings.insert(ran.Warnings.begin(), warnings->begin(), warnings->end());
    const std::string sum = dataSum(job, run, ran);
    if (!writeRecord(job.Folder / kRunRecordName, recordOf(job, run, ran, begun, sum))) {
        tell(job.Data + ": cannot write " + kRunRecordName);
        ran.Whole = false;
    }
    if (job.Tidy && !writeTable(job, ran)) {
        tell(job.Data + ": cannot write " + kTidyName);
        ran.Whole = false;
    }
    return ran.Whole ? 0 : kFailed;
}

} // namespace kva
