#include "tool/TidyCommand.h"

#include "base/newfile.h"
#include "results/results.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace kva {

namespace {

struct Options {
    std::string folder;
    std::string output; // empty: standard output
};

void tell(const std::string& what) {
    std::cerr << "kvatool tidy: " << what << '\n';
}

// Writes the table of the folder; whether all its sheets are as they should be.
bool writeTable(const Options& options, std::ostream& out) {
    TidyWriter table(out);
    const std::vector<std::string> faults =
        readResults(options.folder, [&table](const TidyRow& row) { table.write(row); });
    for (const std::string& fault : faults) {
        tell(fault);
    }
    return faults.empty();
}

// The exit status.
int tidy(const Options& options) {
    if (options.output.empty()) {
        return writeTable(options, std::cout) ? 0 : 1; // main tells a failed write
    }
    NewFile file(options.output, true);
    const bool whole = file.failure().empty() && writeTable(options, file.out());
    if (!file.finish().empty()) {
        tell("cannot write '" + options.output + "': " + file.failure());
    }
    return whole && file.failure().empty() ? 0 : 1;
}

} // namespace

void addTidyCommand(CLI::App& app, int& status) {
    CLI::App* const command = app.add_subcommand(
        "tidy", "Gives all numbers of a result folder as one long table, a number a row");
    const auto options = std::make_shared<Options>();
    command->add_option("FOLDER", options->folder, "A result folder of kva")->required();
    command->add_option("-o,--output", options->output, "File to write; else standard output");
    command->footer("Examples:\n"
                    "  kvatool tidy data.txt_KVAresult00 -o results.txt\n"
                    "  kvatool tidy data.txt_KVAresult00 | grep heterozygosity_expected\n"
                    "\n"
                    "Exit status: 0 done, 1 where a sheet is not as kva writes it or the table\n"
                    "cannot be written, 2 wrong usage.");
    command->callback([options, &status] { status = tidy(*options); });
}

} // namespace kva
