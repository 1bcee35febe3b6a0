#include "tool/ImportCommand.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <string>

namespace kva {

namespace {

struct Options {
    std::string file;
    std::string output;
};

} // namespace

void addImportCommand(CLI::App& app, int& status) {
    CLI::App* const command =
        app.add_subcommand("import", "Makes a data file from the file of another program");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "The file of the other program")->required();
    command->add_option("-o,--output", options->output, "The data file to write")->required();
    command->footer("Examples:\n"
                    "  kvatool import cats.gen -o data.txt --repeat 2");
    command->callback([options, &status] {
        std::cerr << "kvatool import: no format is known yet, " << options->file
                  << " is not read\n";
        status = 1;
    });
}

} // namespace kva
