// kvatool report FOLDER: a result folder as one page of HTML.
#ifndef KVA_TOOL_REPORTCOMMAND_H
#define KVA_TOOL_REPORTCOMMAND_H

namespace CLI {
class App;
}

namespace kva {

// Adds the subcommand. When it has run, `status`, which must outlive the app, holds the exit
// status: 0 if the page is written; 1, and nothing is written, if the folder or a file in it is not
// as the programs write it, or the page cannot be written.
void addReportCommand(CLI::App& app, int& status);

} // namespace kva

#endif
