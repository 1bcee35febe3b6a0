// kvatool run DATA...: the passes of kva on data files, with seeds, threads and tables for scripts.
#ifndef KVA_TOOL_RUNCOMMAND_H
#define KVA_TOOL_RUNCOMMAND_H

namespace CLI {
class App;
}

namespace kva {

// Adds the subcommand. When it has run, `status`, which must outlive the app, holds the exit
// status: 0; 1 if a data file cannot be used or a file cannot be written; 128 and the number of the
// signal if SIGINT, SIGTERM or SIGHUP ended it.
void addRunCommand(CLI::App& app, int& status);

} // namespace kva

#endif
