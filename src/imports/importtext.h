// From the text of a foreign file to the text of a data file.
#ifndef KVA_IMPORTS_IMPORTTEXT_H
#define KVA_IMPORTS_IMPORTTEXT_H

#include "imports/genotypes.h"
#include "imports/lengths.h"
#include "imports/readers.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// A foreign format.
struct ImportFormat {
    const char* name;  // as --format takes it
    const char* title; // as people write it
    bool (*looksLike)(const Lines& lines);
    Genotypes (*read)(const Lines& lines, const ImportOptions& options);
};

// All of them, in the order in which they are tried: the first that the text looks like is taken.
std::span<const ImportFormat> allImportFormats();

// The format of that name, or without a name the one that the text looks like. Throws ImportRefusal
// where there is none.
const ImportFormat& importFormatOf(std::string_view text, const std::string& name);

// The genotypes of the text. Throws ImportRefusal for what no data file can hold.
Genotypes importText(std::string_view text, const ImportFormat& format,
                     const ImportOptions& options);

// The data file: three header rows, two columns per locus, the individuals by population.
// `lengths`: of each locus. Throws ImportRefusal for names or rows that a data file cannot hold.
std::string dataFileOf(const Genotypes& data, const std::vector<LocusLengths>& lengths);

} // namespace kva

#endif
