// Small data sets for all suites: data files as text, and an object that read one.
//
// The texts are written with single blanks between the cells and "." for an empty
// cell; tabbed() turns them into the file's bytes:
//
//      2 . . 2 . 4 .
//      . . . 50 . 60 .
//      . . . L1 L1b L2 L2b
//      A d 0 100 102 200 200
#ifndef KVA_TESTS_SUPPORT_DATASETS_H
#define KVA_TESTS_SUPPORT_DATASETS_H

#include "control/AnalyseDataObj.h"
#include "support/support.h"

#include <string>
#include <string_view>

namespace kva_test {

using namespace kva;

// Every blank becomes a tab, every cell that is "." an empty cell.
std::string tabbed(std::string_view text);

// Two populations of two diploids, two loci, nothing missing; repeat lengths 2 and 4,
// rest lengths 50 and 60, no groups.
//   L1: A 100/102 100/100, B 102/104 104/104
//   L2: A 200/200 204/208, B 200/204 200/200
extern const char* const kTwoPops;

// The same genotypes in one-column format: two rows per individual.
extern const char* const kTwoPopsOneColumn;

// kTwoPops with population B flagged inbred ("h"), A in group 1 and B in group 2.
extern const char* const kInbredPop;

// kTwoPops with gaps: the second individual of A half missing at L1 (100/-), B without any data
// at L2.
extern const char* const kWithGaps;

// A data file read by the program: a folder of its own, the object, loaded, in its result
// folder. What the reading prints is swallowed. The process works in the folder meanwhile.
class LoadedRun {
  public:
    // `text` as tabbed() takes it.
    explicit LoadedRun(std::string_view text, const std::string& name = "data.txt");

    AnalyseDataObj* operator->() { return &obj; }
    AnalyseDataObj& operator*() { return obj; }

    // Counts the alleles (fills PopAllele) without console output.
    LoadedRun& counted();

    // The bytes of a file of the result folder. Throws if it is not there.
    std::string resultFile(const std::string& pathInside) const;

  private:
    TempFolder folder{TempFolder::Enter::yes};
    AnalyseDataObj obj;
};

} // namespace kva_test

#endif
