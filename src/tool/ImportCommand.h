// kvatool import FILE -o DATA: a data file from the file of another program.
#ifndef KVA_TOOL_IMPORTCOMMAND_H
#define KVA_TOOL_IMPORTCOMMAND_H

namespace CLI {
class App;
}

namespace kva {

// Adds the subcommand. When it has run, `status`, which must outlive the app, holds the exit
// status: 0 if the data file is written, 1 if the file cannot be read, understood or written, 2 if
// an option is missing that tells what the format cannot.
void addImportCommand(CLI::App& app, int& status);

} // namespace kva

#endif
