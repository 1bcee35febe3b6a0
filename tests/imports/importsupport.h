// Imports of small texts.
#ifndef KVA_TESTS_IMPORTS_IMPORTSUPPORT_H
#define KVA_TESTS_IMPORTS_IMPORTSUPPORT_H

#include "imports/importtext.h"

#include <string>
#include <vector>

namespace kva_test {

// The rows of the data file that the text becomes, without its header rows, with blanks for tabs
// and
// "." for an empty cell (as in support/datasets.h); or, where it is refused, "data: " or "option: "
// and the reason.
std::string rowsOf(const std::string& text, const std::string& format,
                   const kva::ImportOptions& options = {});

// The same of the names of the loci, between blanks.
std::string lociOf(const std::string& text, const std::string& format,
                   const kva::ImportOptions& options = {});

// The notes, a line each.
std::string notesOf(const std::string& text, const std::string& format,
                    const kva::ImportOptions& options = {});

} // namespace kva_test

#endif
