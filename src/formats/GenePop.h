// The lines that one walk over an individual makes for the five files of the Genepop export.
#ifndef KVA_FORMATS_GENEPOP_H
#define KVA_FORMATS_GENEPOP_H

#include <string>

namespace kva {

// Where Datensatz::MakeGenePopLine puts the lines beside the Genepop line, without line ends. NOT
// OWNED. A line is replaced, its room kept. The lines come in groups: both GenepopRD, both
// TwoColumns, and the last four; with a null in a group the whole group is left out. Kept and
// discarded: of an inbred individual one allele is kept at each locus, drawn at random, and stands
// twice, as the other does among the discarded; a single one stands in both. The alleles of other
// individuals stand in both, too.
struct GenepopLines {
    std::string* GenepopRD = nullptr;   // Genepop line of the kept alleles: places in the pool's
                                        // table, from 1, 0 for missing
    std::string* GenepopRD2 = nullptr;  // ... of the discarded ones
    std::string* TwoColumns = nullptr;  // row of the two-column sheet, kept alleles as in the data
    std::string* TwoColumns2 = nullptr; // ... discarded alleles
    std::string* OneColumn = nullptr;   // first row of the one-column sheet, kept alleles
    std::string* OneColumn2 = nullptr;  // ... second row
    std::string* Structure = nullptr;  // first row of the structure file, kept alleles; missing: -9
    std::string* Structure2 = nullptr; // ... second row; all missing for an inbred individual
};

} // namespace kva

#endif
