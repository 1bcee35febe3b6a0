#include "tool/CheckCommand.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace kva {

void addCheckCommand(CLI::App& app, int& status) {
    CLI::App* const command = app.add_subcommand(
        "check", "Tells what a run would take otherwise than the owner of a data file thinks");
    const auto files = std::make_shared<std::vector<std::string>>();
    command->add_option("DATA", *files, "Data files as kva reads them")->required();
    command->footer("Examples:\n"
                    "  kvatool check data.txt\n"
                    "  kvatool check examples/*.txt");
    command->callback([files, &status] {
        for (const std::string& file : *files) {
            std::cerr << "kvatool check: no findings are known yet, " << file << " is not read\n";
        }
        status = 1;
    });
}

} // namespace kva
