// The small globals that the whole program shares.
#ifndef KVA_BASE_GLOBALS_H
#define KVA_BASE_GLOBALS_H

namespace kva {

// The line end of everything the program writes, LF. Carried; the sheets spell it out.
extern const char NEWLINE[10];

// The bytes that end an allele cell of a data row: tab and LF, no CR. Carried; the reader spells
// them out.
extern const char TABNEWLINE[10];

// What Datensatz::AccessInheritanceScalar and Datensatz::AccessMutationRate hand
// out, by reference, for a bad locus number; set back to -2.0 at each such call, as a
// caller may write to it.
extern double Fehlerwert;

} // namespace kva

#endif
