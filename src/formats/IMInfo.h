// One row of the IM information file.
#ifndef KVA_FORMATS_IMINFO_H
#define KVA_FORMATS_IMINFO_H

#include <string_view>

namespace kva {

class Datensatz;

// Stores the values of a row in the loci 1 to `anzLoci`: as inheritance scalars if `vererbung` is
// not 0, else as mutation rates. `zeile` begins with the first value cell and ends at its first CR
// or LF. `format`: columns per locus; of two, the first holds the value.
// -1.0, no value, comes of an empty cell, of a text without a number in front (a 0 counts only if
// the first byte is "0"), and of a cell behind the end of the row. A comma is a decimal point. 0.
int GetIMData(Datensatz& daten, long anzLoci, std::string_view zeile, int vererbung, int format);

} // namespace kva

#endif
