// For the tests in Python: writes the long table of a result folder to standard output and what is
// wrong with its sheets to standard error, a line each. Usage: kva_tidy FOLDER
#include "results/results.h"

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: kva_tidy FOLDER" << std::endl;
        return 2;
    }
    kva::TidyWriter table(std::cout);
    const auto faults =
        kva::readResults(argv[1], [&table](const kva::TidyRow& row) { table.write(row); });
    for (const std::string& fault : faults) {
        std::cerr << fault << std::endl;
    }
    return faults.empty() ? 0 : 1;
}
