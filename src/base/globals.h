// The small globals that the whole program shares.
#ifndef KVA_BASE_GLOBALS_H
#define KVA_BASE_GLOBALS_H

namespace kva {

// The line end of everything the program writes; the sheets spell it out.
extern const char NEWLINE[10];

// The bytes that end an allele cell when a data row is read: tab and LF, no CR.
extern const char TABNEWLINE[10];

// What Datensatz::AccessInheritanceScalar and Datensatz::AccessMutationRate hand
// out for a bad locus number; set back to -2.0 at each such call.
extern double Fehlerwert;

} // namespace kva

#endif
