// The report of a check in plain words:
//
//     data.txt: 1 error, no warning, no note
//
//     error: split-population, the rows of one population stand in several blocks
//       at: row 8, column 1 (North)
//       means: Each block is a population of its own: ...
//       do: Sort the rows by population.
//
//     Understood: 2 columns per locus, 3 header rows, 2 populations, 6 individuals, 4 loci, ...
#ifndef KVA_CHECK_REPORTTEXT_H
#define KVA_CHECK_REPORTTEXT_H

#include "check/checkfile.h"

#include <ostream>
#include <string>

namespace kva {

// "row 8, column 1 (North)"; "the whole file" without row.
std::string placeText(const Place& place);

// Of a report without a failure.
void writeReport(std::ostream& out, const CheckReport& report);

} // namespace kva

#endif
