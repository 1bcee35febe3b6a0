// kvatool: subcommands for scripts and papers on the same library as kva.
//
// Exit status: 0 done; 1 the data or a file failed; 2 wrong usage. Results go to standard output,
// what went wrong to standard error as one line that begins with "kvatool".
#include "base/nearestword.h"
#include "base/settings.h"
#include "base/standardstreams.h"
#include "tool/CheckCommand.h"
#include "tool/ImportCommand.h"
#include "tool/ReportCommand.h"
#include "tool/RunCommand.h"
#include "tool/TidyCommand.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr const char* kNoMemory = "kvatool: not enough memory\n";

// The end of an exception that nothing catches: one line, too, and no crash. None is at hand where
// a function of the standard library that must not throw found no memory.
[[noreturn]] void endUncaught() {
    const char* line = kNoMemory;
    try {
        if (const std::exception_ptr uncaught = std::current_exception()) {
            std::rethrow_exception(uncaught);
        }
    } catch (const std::bad_alloc&) { // the line above
    } catch (...) {
        line = "kvatool: ended by an error that nothing caught\n";
    }
    (void)!write(STDERR_FILENO, line, std::strlen(line));
    _exit(kFailed);
}

// Set before all other objects are made, as the libraries' objects may find no memory; and there
// are functions of the standard library through which no exception passes.
struct UncaughtHandler {
    UncaughtHandler() noexcept { std::set_terminate(endUncaught); }
};
const UncaughtHandler uncaughtHandler __attribute__((init_priority(101)));

// The subcommand that was named last on the command line; the app itself without one.
const CLI::App& namedCommand(const CLI::App& app) {
    const std::vector<CLI::App*> named = app.get_subcommands();
    return named.empty() ? app : namedCommand(*named.back());
}

// "kvatool check"
std::string fullName(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return parent == nullptr ? command.get_name() : fullName(*parent) + " " + command.get_name();
}

std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
        for (const std::string& name : option->get_snames()) {
            names.push_back("-" + name);
        }
    }
    return names;
}

std::vector<std::string> commandNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* sub : command.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(sub->get_name());
    }
    return names;
}

// What is wrong with the usage, in one line.
std::string wrongUsage(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& command = namedCommand(app);
    for (const std::string& word : command.remaining()) {
        if (word.size() > 1 && word.front() == '-') {
            const std::string name = word.substr(0, word.find('='));
            return kva::unknownWord("option", name, optionNames(command));
        }
        const std::vector<std::string> commands = commandNames(command);
        return commands.empty() ? "'" + word + "' is one argument too many"
                                : kva::unknownWord("command", word, commands);
    }
    return error.what();
}

int run(CLI::App& app, int argc, char** argv, const int& status) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& wanted) { // --help, --version
        return app.exit(wanted);
    } catch (const CLI::ParseError& error) {
        const std::string name = fullName(namedCommand(app));
        std::cerr << name << ": " << wrongUsage(app, error) << "; see " << name << " --help\n";
        return kWrongUsage;
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    kva::holdStandardStreams();
    (void)std::signal(SIGPIPE, SIG_IGN); // a reader that goes away is a failed write,
    (void)std::signal(SIGXFSZ, SIG_IGN); // and so is a file beyond the size limit
    try {
        int status = 0;
        CLI::App app("Checks, runs and converts genotype data: kva for scripts, the program for "
                     "the population\n"
                     "genetics of microsatellites.",
                     "kvatool");
        app.set_version_flag("--version", std::string("kvatool ") + kva::kVersion);
        app.require_subcommand(1);
        app.footer("Examples:\n"
                   "  kvatool check data.txt\n"
                   "  kvatool run data.txt --fst pairs --seed 1 --tidy results.tsv\n"
                   "  kvatool import cats.gen -o data.txt --repeat 2\n"
                   "  kvatool tidy data.txt_KVAresult00 -o results.txt\n"
                   "  kvatool report data.txt_KVAresult00 -o report.html\n"
                   "\n"
                   "Exit status: 0 done, 1 the data or a file failed, 2 wrong usage.");
        kva::addRunCommand(app, status);
        kva::addCheckCommand(app, status);
        kva::addImportCommand(app, status);
        kva::addTidyCommand(app, status);
        kva::addReportCommand(app, status);
        status = run(app, argc, argv, status);
        if (!std::cout.flush()) {
            std::cerr << "kvatool: cannot write to standard output\n";
            return kFailed;
        }
        return status;
    } catch (const std::bad_alloc&) {
        std::cerr << kNoMemory;
        return kFailed;
    } catch (const std::exception& error) {
        std::cerr << "kvatool: " << error.what() << '\n';
        return kFailed;
    }
}
