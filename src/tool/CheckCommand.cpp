#include "tool/CheckCommand.h"

#include "check/checkfile.h"
#include "check/reporttext.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace kva {

namespace {

using Json = nlohmann::ordered_json;

struct Options {
    std::vector<std::string> files;
    bool json = false;
};

Json jsonOf(const Finding& finding) {
    const FindingKind& kind = kindOf(finding.code);
    Json places = Json::array();
    for (const Place& place : finding.places) {
        places.push_back({{"row", place.row}, {"column", place.column}, {"found", place.found}});
    }
    return {{"code", kind.name},    {"severity", nameOf(kind.severity)},
            {"title", kind.title},  {"count", finding.count},
            {"places", places},     {"meaning", kind.meaning},
            {"advice", kind.advice}};
}

Json jsonOf(const PopulationSummary& population) {
    return {{"name", population.name},
            {"individuals", population.individuals},
            {"inbred", population.inbred},
            {"group", population.group < 1 ? Json() : Json(population.group)},
            {"missing", population.missing}};
}

Json jsonOf(const LocusSummary& locus) {
    const bool data = locus.copies > 0;
    return {{"name", locus.name},
            {"repeat", locus.repeat < 1 ? Json() : Json(locus.repeat)},
            {"rest", locus.rest < 0 ? Json() : Json(locus.rest)},
            {"alleles", locus.alleles},
            {"smallest", data ? Json(locus.smallest) : Json()},
            {"largest", data ? Json(locus.largest) : Json()},
            {"copies", locus.copies},
            {"missing", locus.missing}};
}

Json jsonOf(const DataSummary& summary) {
    Json populations = Json::array();
    for (const PopulationSummary& population : summary.populations) {
        populations.push_back(jsonOf(population));
    }
    Json loci = Json::array();
    for (const LocusSummary& locus : summary.loci) {
        loci.push_back(jsonOf(locus));
    }
    return {{"columns", summary.columns},
            {"headerRows", summary.headerRows},
            {"individuals", summary.individuals},
            {"alleles", summary.alleles},
            {"missing", summary.missing},
            {"populations", populations},
            {"loci", loci}};
}

// null for what there is not.
Json jsonOf(const CheckReport& report) {
    Json findings = Json::array();
    for (const Finding& finding : report.findings) {
        findings.push_back(jsonOf(finding));
    }
    return {{"file", report.file},
            {"failure", report.failure.empty() ? Json() : Json(report.failure)},
            {"errors", report.errors},
            {"warnings", report.warnings},
            {"notes", report.notes},
            {"findings", findings},
            {"understood", report.read ? jsonOf(report.summary) : Json()}};
}

// The exit status.
int check(const Options& options) {
    int status = 0;
    Json reports = Json::array();
    for (const std::string& file : options.files) {
        const CheckReport report = checkFile(file);
        if (!report.failure.empty() || report.errors > 0) {
            status = 1;
        }
        if (!report.failure.empty()) {
            std::cerr << "kvatool check: cannot read '" << file << "': " << report.failure << '\n';
        }
        if (options.json) {
            reports.push_back(jsonOf(report));
        } else if (report.failure.empty()) {
            std::cout << (&file == &options.files.front() ? "" : "\n");
            writeReport(std::cout, report);
        }
    }
    if (options.json) {
        // Bytes that are no UTF-8 stand as the replacement character.
        std::cout << Json{{"files", reports}}.dump(2, ' ', false, Json::error_handler_t::replace)
                  << '\n';
    }
    return status;
}

} // namespace

void addCheckCommand(CLI::App& app, int& status) {
    CLI::App* const command = app.add_subcommand(
        "check", "Tells what a run would take otherwise than the owner of a data file thinks");
    const auto options = std::make_shared<Options>();
    command->add_option("DATA", options->files, "Data files as kva reads them")->required();
    command->add_flag("--json", options->json, "Report as JSON");
    command->footer(
        "Examples:\n"
        "  kvatool check data.txt\n"
        "  kvatool check --json *.txt > findings.json\n"
        "\n"
        "Exit status: 0 without errors, 1 with errors in a file or where one cannot be\n"
        "read, 2 wrong usage. Warnings and notes leave it at 0.");
    command->callback([options, &status] { status = check(*options); });
}

} // namespace kva
