// The passes of the format conversion, and their parts. The three passes give -4 without a data
// set, and 1 or 2 if their folder cannot be entered or the alleles not be counted. A file that
// cannot be opened ends a pass where told; the process then stays in the folder.
#ifndef KVA_FORMATS_PASSES_H
#define KVA_FORMATS_PASSES_H

#include "output/resultfile.h"

#include <cstdio>
#include <string>

namespace kva {

class Run;

// GenePop.cpp: the two Genepop files, the structure file and the two new data sheets, with the
// alleles of inbred individuals discarded at random; seeds the random stream. 0; 1 if one of the
// files but the structure file cannot be opened.
long writeGenepop(Run& run);

// NextFormates.cpp: the files of msvar, Migrate/LAMARC and Arlequin that GeneralMask asks for. 0;
// -1 if the Migrate, -2 if the Arlequin file cannot be opened.
long writeOtherFormats(Run& run);

// Arlequin.cpp: the frame of the Arlequin project around the individuals of each population. 0; the
// structure gives -1, and writes nothing, if no population is in group 1. `n`: individuals.
long writeArlequinHead(const Run& run, ResultFile& f);
long beginArlequinSample(ResultFile& f, int n, const std::string& name);
long endArlequinSample(ResultFile& f);
long writeArlequinStructure(const Run& run, ResultFile& f);

// IMInfo.cpp: reads inheritance scalars and mutation rates from an open IM information file into
// the loci, so it follows GetDataFile. 0; -1 nothing to read, no row, or a row too long; -3 header.
// What was read before stays. The stream stays the caller's.
long readIMInfo(Run& run, std::FILE* stream);

// IMFormat.cpp: one IM file per pair of populations if GeneralMask asks for it. 0; -2 if one cannot
// be opened.
long writeIMFormat(Run& run);

// IMFormat.cpp: opens the file of populations i and j, from 0, and writes its head; without a
// common locus it tells so on the console and leaves the file empty. Closed if it cannot be opened.
ResultFile openIMPair(Run& run, int i, int j, const std::string& nameI, const std::string& nameJ);

// IMFormat.cpp: writes the block of a locus, from 0, for that pair; `schrittweite` is its step
// width. 0; -1, and nothing written, if one of the two has no data there.
long writeIMLocus(Run& run, ResultFile& f, int i, int j, int locus, const std::string& nameI,
                  const std::string& nameJ, int schrittweite);

} // namespace kva

#endif
