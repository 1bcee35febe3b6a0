// The passes of the format conversion, and their parts. The three passes count the alleles if no
// pass did and work in the folder "Formats&Data", writeIMFormat() in "IM_Format" inside; they write
// an entry into the log, and the process is in the result folder afterwards. They give -4 without a
// data set, and 1 or 2 if their folder (new, or there already) cannot be entered, 1 also if the
// alleles cannot be counted. A file that cannot be opened ends a pass where told; the process then
// stays in the folder, and the log has no entry. Files named "data.txt..." begin with the name of
// the data file.
#ifndef KVA_FORMATS_PASSES_H
#define KVA_FORMATS_PASSES_H

#include "output/resultfile.h"

#include <cstdio>
#include <string>

namespace kva {

class Run;

// GenePop.cpp: the two Genepop files "Genepop.gen" and "GenepopRD.gen", the structure file
// "data.txt.struct" and the two new data sheets "data.txt_2C_RD" and "data.txt_1C_RD", all but the
// first with the alleles of inbred individuals discarded at random; seeds the random stream from
// the clock and draws from it. 0; 1 if one of the files but the structure file cannot be opened,
// and those that were opened stay empty.
long writeGenepop(Run& run);

// NextFormates.cpp: the files of msvar, Migrate/LAMARC and Arlequin that GeneralMask asks for.
// Wanted: the bit of Migrate or of Arlequin alone gives both files, which come from one walk. 0; -1
// if the Migrate, -2 if the Arlequin file cannot be opened.
long writeOtherFormats(Run& run);

// Arlequin.cpp: the frame of the Arlequin project, written to `f` in this order: the profile with
// the number of populations; for each population the head of its sample (`n`: individuals; its
// name), behind which its individuals follow, and the foot; the structure of the groups 1, 2 and so
// on up to the first that no population has. The structure gives 0; -1, and writes nothing, if no
// population is in group 1.
void writeArlequinHead(const Run& run, ResultFile& f);
void beginArlequinSample(ResultFile& f, int n, const std::string& name);
void endArlequinSample(ResultFile& f);
long writeArlequinStructure(const Run& run, ResultFile& f);

// IMInfo.cpp: reads inheritance scalars and mutation rates from an open IM information file into
// the loci, so it follows GetDataFile. 0; -1 without a stream or a data set, with nothing to read,
// no row, or rows that can be too long; -3 for a data file with three head rows and not three head
// columns; the last two are told on the console. What was read before stays. The stream stays the
// caller's, at another place.
long readIMInfo(Run& run, std::FILE* stream);

// IMFormat.cpp: one IM file (Hey and Nielsen 2004) per pair of populations if GeneralMask asks for
// it; else nothing, and 0. 0; -2, told on the console, if one cannot be opened, which leaves out
// those behind it.
long writeIMFormat(Run& run);

// IMFormat.cpp: opens the file of populations i and j, from 0, "IM_North_South.txt" in the current
// folder, and writes its head with the number of common loci; without a common locus it tells so on
// the console and leaves the file empty. nameI, nameJ: of the two populations. Closed if it cannot
// be opened.
ResultFile openIMPair(Run& run, int i, int j, const std::string& nameI, const std::string& nameJ);

// IMFormat.cpp: writes the block of a locus, from 0, for that pair: a head with the gene copies of
// both, and a line per gene copy with its length in steps above the smallest allele of the pool.
// `schrittweite`: its step width, in base pairs; with GeneralBit::RepeatSteps a step is the repeat
// length instead, 1 where that is unknown. 0; -1, and nothing written, if one of the two has no
// data there.
long writeIMLocus(Run& run, ResultFile& f, int i, int j, int locus, const std::string& nameI,
                  const std::string& nameJ, int schrittweite);

} // namespace kva

#endif
