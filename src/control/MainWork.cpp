// The entry of the program: picks the front end, and its result is the exit status.
#include "base/console.h"
#include "base/standardstreams.h"
#include "control/CMenu.h"
#include "control/cczkva.h"

#include <csignal>
#include <exception>
#include <iostream>

using namespace kva;

namespace {

constexpr int kError = -1; // the system makes 255 of it

int runMenu() {
    CMenuAllg menu;
    return menu.Run(0);
}

int runCommandLine(int argc, char** argv) {
    CCommandZeileKVA commandLine;
    return commandLine.Analyse(argc, argv);
}

} // namespace

int main(int argc, char** argv) {
    holdStandardStreams();
    setConsole(&std::cout);
    // A reader of the console that goes away takes no result with it: the files are still written.
    (void)std::signal(SIGPIPE, SIG_IGN);
    try {
        return argc < 2 ? runMenu() : runCommandLine(argc, argv);
    } catch (const std::exception& failure) { // memory is at its end
        std::cout << std::endl << "Program stopped: " << failure.what() << std::endl;
        return kError;
    }
}
