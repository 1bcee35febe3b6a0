// The files that the pass MakeNextFormates writes, each in a source of its own.
#ifndef KVA_FORMATS_NEXTFORMATES_H
#define KVA_FORMATS_NEXTFORMATES_H

#include <cstdint>
#include <vector>

namespace kva {

class Run;

// Both work in the current folder, "Formats&Data", on counted alleles. `schrittweite`: the step
// width of each locus.

// Writes one msvar input file per population. A file that cannot be opened is left out.
void writeMsvarFiles(Run& run, const std::vector<int32_t>& schrittweite);

// Writes the Migrate/LAMARC file and the Arlequin project, which share one walk over the
// individuals. 0; -1 if the first, -2 if the second cannot be opened.
long writeMigrateAndArlequin(Run& run, const std::vector<int32_t>& schrittweite);

} // namespace kva

#endif
