// What the tests of the exports share: passes run without console output, and what they left.
#ifndef KVA_TESTS_FORMATS_FORMATS_SUPPORT_H
#define KVA_TESTS_FORMATS_FORMATS_SUPPORT_H

#include "support/datasets.h"
#include "support/support.h"

#include <string>

namespace kva_test {

using namespace kva;

// Calls `pass` and swallows what it prints. Result: that of the pass.
template <class Pass> long quietly(Pass&& pass) {
    const StdoutCapture swallowed;
    return pass();
}

// What `pass` prints; its result is dropped.
template <class Pass> std::string printed(Pass&& pass) {
    StdoutCapture console;
    (void)pass();
    return console.text();
}

// A word and a number: P1, P2, ...
inline std::string numbered(std::string word, int number) {
    word += std::to_string(number);
    return word;
}

// The bytes of a file of the folder "Formats&Data".
inline std::string exported(const LoadedRun& run, const std::string& name) {
    return run.resultFile("Formats&Data/" + name);
}

} // namespace kva_test

#endif
