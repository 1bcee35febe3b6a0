// Cells of a data file as numbers. The two passes over the file, CheckDataFile and
// GetDataFile, are operations of AnalyseDataObj; their file layout stands in dataread.cpp.
#ifndef KVA_DATA_DATAREAD_H
#define KVA_DATA_DATAREAD_H

#include <cstdint>

namespace kva {

class Datensatz;

// Adds one individual's alleles to population `pop` (from 1) of all loci, with one or two cells
// per locus. `zeile`: the text from the first allele cell on; the row ends at its first CR or LF,
// and cells behind its end are missing. `info`: the row's info value. 0.
int GetOneCData(Datensatz* daten, long anzLoci, const char* zeile, int info, int pop);
int GetTwoCData(Datensatz* daten, long anzLoci, const char* zeile, int info, int pop);

// The number of the cell that begins at `cell`, as strtol reads it, nearest int32; -1 if the
// cell is empty or no number stands in front: a 0 counts only if the first byte is "0". Goes to
// the next cell, or to the end of the row.
int32_t takeNumber(const char*& cell, const char* rowEnd);

} // namespace kva

#endif
