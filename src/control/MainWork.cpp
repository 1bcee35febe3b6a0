// The entry of the program: picks the front end, and its result is the exit status.
#include "control/CMenu.h"
#include "control/cczkva.h"

#include <exception>
#include <iostream>

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
    try {
        return argc < 2 ? runMenu() : runCommandLine(argc, argv);
    } catch (const std::exception& failure) { // memory is at its end
        std::cout << std::endl << "Program stopped: " << failure.what() << std::endl;
        return kError;
    }
}
