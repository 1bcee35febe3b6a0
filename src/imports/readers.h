// The readers of foreign formats, a source each. Every one takes the lines of a file that are not
// empty and throws ImportRefusal at what it cannot read.
#ifndef KVA_IMPORTS_READERS_H
#define KVA_IMPORTS_READERS_H

#include "imports/genotypes.h"
#include "imports/lines.h"

#include <string>
#include <vector>

namespace kva {

using Lines = std::vector<Line>;

// True if the lines have the marks of the format; no promise that they can be read.
bool looksLikeGenepop(const Lines& lines);
bool looksLikeStructure(const Lines& lines);
bool looksLikeFstat(const Lines& lines);
bool looksLikeGenetix(const Lines& lines);
bool looksLikeGenalex(const Lines& lines);
bool looksLikeLong(const Lines& lines);

Genotypes readGenepop(const Lines& lines, const ImportOptions& options);
Genotypes readStructure(const Lines& lines, const ImportOptions& options);
Genotypes readFstat(const Lines& lines, const ImportOptions& options);
Genotypes readGenetix(const Lines& lines, const ImportOptions& options);
Genotypes readGenalex(const Lines& lines, const ImportOptions& options);
Genotypes readLong(const Lines& lines, const ImportOptions& options);

// --- What they share (readers.cpp) ---------------------------------------------------------

// The names of populations that the format numbers alone, by --populations: as many names as
// there are populations, or "numbers": pop1, pop2 and so on; refused without.
std::vector<std::string> namesByOption(std::size_t populations, const ImportOptions& options);

// One allele as a cell of a table whose words for missing ones are told by --missing. An empty cell
// is missing. Refused: a word that is neither a number nor told; 0 while it is not told what it is.
int32_t alleleOf(std::string_view cell, std::size_t line, const ImportOptions& options);

// Names a note for individuals with one gene copy, if there are any.
void noteInbred(Genotypes& data);

} // namespace kva

#endif
