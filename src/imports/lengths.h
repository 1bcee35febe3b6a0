// Repeat and rest lengths of loci, which no foreign format holds.
#ifndef KVA_IMPORTS_LENGTHS_H
#define KVA_IMPORTS_LENGTHS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

struct LocusLengths {
    int32_t repeat = -1; // base pairs; -1: unknown
    int32_t rest = -1;   // base pairs; -1: unknown
};

// One repeat length for all loci: a whole number above 0, or "unknown". Throws ImportRefusal.
LocusLengths lengthsOfWord(const std::string& word);

// The lengths of the loci by a table: a line for each locus with its name, its repeat length and,
// if it is known, its rest length, between tabs, semicolons, commas or blanks; "unknown" or "?" for
// what is not known. A first line whose second cell is a word is a head. Throws ImportRefusal for a
// locus that is missing, stands twice or is none of `loci`.
std::vector<LocusLengths> lengthsOfTable(std::string_view text,
                                         const std::vector<std::string>& loci);

} // namespace kva

#endif
