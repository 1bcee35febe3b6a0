// The lines that one walk over an individual makes for the five files of the Genepop export.
#ifndef KVA_FORMATS_GENEPOP_H
#define KVA_FORMATS_GENEPOP_H

#include <string>

namespace kva {

// Where Datensatz::MakeGenePopLine puts the lines beside the Genepop line. NOT OWNED. A line is
// replaced, its room kept. The lines come in groups: both GenepopRD, both ZweiSpalten, and the
// last four; with a null in a group the whole group is left out.
struct GenePopZeilen {
    std::string* GenepopRD = nullptr;    // Genepop line of the kept alleles
    std::string* GenepopRD2 = nullptr;   // ... of the discarded ones
    std::string* ZweiSpalten = nullptr;  // row of the two-column sheet, kept alleles
    std::string* ZweiSpalten2 = nullptr; // ... discarded alleles
    std::string* EineSpalte = nullptr;   // the two rows of the one-column sheet
    std::string* EineSpalte2 = nullptr;
    std::string* Struktur = nullptr; // the two rows of the structure file
    std::string* Struktur2 = nullptr;
};

} // namespace kva

#endif
