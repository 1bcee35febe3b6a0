// Cells of a data file as numbers. The two passes over the file, CheckDataFile and
// GetDataFile, are operations of LoadedData; their file layout stands in dataread.cpp.
#ifndef KVA_DATA_DATAREAD_H
#define KVA_DATA_DATAREAD_H

#include <cstdint>

namespace kva {

class Datensatz;

// Add one row's alleles to population `pop` (from 1) of loci 1 to `anzLoci`, with one cell per
// locus (GetOneCData: one slot) or two (GetTwoCData: both slots of an individual). `zeile`: the
// text from the first allele cell on, ended by a zero byte; the row ends at its first CR or LF, and
// cells behind its end are missing. `info`: the row's info value. 0, also where a block is full.
int GetOneCData(Datensatz* daten, long anzLoci, const char* zeile, int info, int pop);
int GetTwoCData(Datensatz* daten, long anzLoci, const char* zeile, int info, int pop);

// The number of the cell that begins at `cell`, as strtol reads it, nearest int32; -1 if the
// cell is empty or no number stands in front: a 0 counts only if the first byte is "0". `cell`
// goes to the next cell, or to `rowEnd`, the place behind the row's last byte.
int32_t takeNumber(const char*& cell, const char* rowEnd);

} // namespace kva

#endif
