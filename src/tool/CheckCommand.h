// kvatool check DATA...: what a run would take otherwise than the owner of a data file thinks.
#ifndef KVA_TOOL_CHECKCOMMAND_H
#define KVA_TOOL_CHECKCOMMAND_H

namespace CLI {
class App;
}

namespace kva {

// Adds the subcommand. When it has run, `status`, which must outlive the app, holds the exit
// status: 0 without an error in the files, 1 with one or where a file cannot be read.
void addCheckCommand(CLI::App& app, int& status);

} // namespace kva

#endif
