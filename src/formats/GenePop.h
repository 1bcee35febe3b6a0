// The lines that one walk over an individual makes for the five files of the Genepop export.
#ifndef KVA_FORMATS_GENEPOP_H
#define KVA_FORMATS_GENEPOP_H

#include <string>

namespace kva {

// Where Datensatz::MakeGenePopLine puts the lines beside the Genepop line. NOT OWNED. A line is
// replaced, its room kept. The lines come in groups: both GenepopRD, both TwoColumns, and the
// last four; with a null in a group the whole group is left out.
struct GenepopLines {
    std::string* GenepopRD = nullptr;   // Genepop line of the kept alleles
    std::string* GenepopRD2 = nullptr;  // ... of the discarded ones
    std::string* TwoColumns = nullptr;  // row of the two-column sheet, kept alleles
    std::string* TwoColumns2 = nullptr; // ... discarded alleles
    std::string* OneColumn = nullptr;   // the two rows of the one-column sheet
    std::string* OneColumn2 = nullptr;
    std::string* Structure = nullptr; // the two rows of the structure file
    std::string* Structure2 = nullptr;
};

} // namespace kva

#endif
