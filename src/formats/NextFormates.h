// The files that the pass writeOtherFormats() writes, in a source each: Msvar.cpp, and Migrate.cpp
// with Arlequin.cpp.
#ifndef KVA_FORMATS_NEXTFORMATES_H
#define KVA_FORMATS_NEXTFORMATES_H

#include <cstdint>
#include <vector>

namespace kva {

class Run;

// Both work in the current folder, "Formats&Data", on counted alleles. `schrittweite`: the step
// width of each locus (entry 0: locus 1), in base pairs; lengths are divided as stepDivisor()
// tells.

// Writes one msvar input file (Beaumont 1999) per population, "North.beau.infile". A file that
// cannot be opened is left out.
void writeMsvarFiles(Run& run, const std::vector<int32_t>& schrittweite);

// Writes the Migrate/LAMARC file "data.txt.migrate" and the Arlequin project
// "data.txt.arlequin.arp", which share one walk over the individuals. 0; -1 if the first, -2 if the
// second cannot be opened: the second is not tried, or the first is left empty.
int writeMigrateAndArlequin(Run& run, const std::vector<int32_t>& schrittweite);

} // namespace kva

#endif
