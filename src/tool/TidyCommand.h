// kvatool tidy FOLDER: all numbers of a result folder as one long table.
#ifndef KVA_TOOL_TIDYCOMMAND_H
#define KVA_TOOL_TIDYCOMMAND_H

namespace CLI {
class App;
}

namespace kva {

// Adds the subcommand. When it has run, `status`, which must outlive the app, holds the exit
// status: 0 if the table is whole, 1 if a sheet is not as the program writes it, the folder is none
// or the table cannot be written.
void addTidyCommand(CLI::App& app, int& status);

} // namespace kva

#endif
