// LoadedData: what the reader makes of a data file: the genotypes and the shape of the file; and
// the access to single individuals for programs built on the library.
#ifndef KVA_DATA_LOADEDDATA_H
#define KVA_DATA_LOADEDDATA_H

#include "data/lociclass.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace kva {

class DataWindow;

// A loaded data set: Daten and the shape of its file.
class LoadedData {
  public:
    // --- Reading: dataread.cpp -----------------------------------------------------------

    // A file that cannot be read to its end, or that changes between the passes, is told on the
    // console; what was read of it stays.

    // First pass over the file, from its start: finds its shape, makes and sizes Daten and sets the
    // numbers below. 0, also for a file whose first row names no locus; or a refusal: -1 null
    // stream, 1 no memory for the buffer, 2 none for Daten, 3 nothing read, 4 format or line end, 5
    // header rows or no data row, 6 fewer cells than no locus takes. From 3 on the console tells
    // row, finding and expectation, and Daten stays without loci. The stream stays the caller's.
    int CheckDataFile(std::FILE* stream);

    // Second pass, from the file's start (throws std::bad_alloc without memory for it): fills the
    // loci, names and lengths, with a mark on the console for each row. 0; -1 null stream, a
    // refused file, not the file of the first pass, or rows that may be too long (rowTooLong); -3
    // for three header rows but a KopfSpalten other than 3.
    int GetDataFile(std::FILE* stream);

    // --- Access, merge and save: datamerge.cpp --------------------------------------------------
    // For programs built on the library; of the passes only the IM export uses GetPopName.
    // Loci and populations count from 1, individuals from 0 where nothing else is said. -1
    // stands for "nothing is loaded".

    // The two alleles of an individual; -1 for each that is missing or for a bad population or
    // individual, where nothing is stored. 0; -1; -2 for a bad locus.
    int GetTierDaten(int locus, int pop, int ind, int& a1, int& a2) const;
    int SetTierDaten(int locus, int pop, int ind, int a1, int a2);

    // The haploid flag of an individual, read on `locus` (0 for a bad one), and its group,
    // read on the first locus; 0 for a bad population or individual. Wanted: `ind` counts from 1
    // here, as its callers outside this program number individuals. 0; -1.
    int GetTierInfo(int pop, int ind, int& haploid, int& gruppe, int locus) const;

    // Individuals of a population into `anzahl`, 0 for a bad one. 0; -1, and nothing stored.
    int GetAnzIndividuuen(int pop, int& anzahl) const;

    // Individuals of all populations; 0 if nothing is loaded.
    int GetGesamtIndividuuenAnzahl() const;

    // Turns a running number over all individuals into population and number within it; both
    // numbers count from 0. The walk ends at an empty population, too: the rest of the number is
    // then the number within it. 0; -1; -2, and nothing stored, for a number behind the last
    // individual.
    int ConvertIndividAnzahl(int gesamt, int& pop, int& ind) const;

    // Name of a population; null if nothing is loaded, without loci, or for a bad number. Owned by
    // the data set.
    const std::string* GetPopName(int pop) const;

    // The names of a locus (null where one is not set, or for a bad locus; owned by the data set),
    // its repeat and its rest length in base pairs (-1 where not known, -2 for a bad locus). Does
    // nothing if nothing is loaded or one of the two pointers is null.
    void GetLociInfo(int locus, const std::string** name, const std::string** name2, int& muster,
                     int& rest) const;

    // 0 if both hold the same populations with as many individuals; -2 if the numbers of
    // populations differ; p > 0 if the name or the size of population p differs.
    int CompareSamples(const LoadedData& other) const;

    // Becomes a copy of `other`, with genotypes of its own.
    void CopyOf(const LoadedData& other);

    // Adds the loci of a second data set that holds the same individuals in the same order; a locus
    // of a known name is left out. AnzLoci, AnzPop and MaxChromosomen follow. 0; else the result
    // of Datensatz::AddNewDatensatz (-2 if nothing is loaded here) less 1, where that is not
    // positive; MaxChromosomen stays then.
    int AddLociOf(const LoadedData& other);

    // Writes the data into the file `filename`, replacing what is there, with three header rows and
    // two columns per locus, whatever the format they came in. Nothing is written if nothing is
    // loaded. Wanted: always -1, the one result that callers of the library know; a failure is not
    // told, either.
    int SaveDataAs(const std::string& filename) const;

    // --- State ---------------------------------------------------------------------------

    std::unique_ptr<Datensatz> Daten;       // null until CheckDataFile
    int32_t AnzLoci = 0;                    // loci; 0 for a refused file
    int32_t AnzPop = 0;                     // populations; 0 for a refused file
    int32_t KopfSpalten = 0;                // leading columns of the data file, 3 once checked
    int32_t KopfZeilen = 0;                 // header rows of the data file, 2 or 3; 0 until checked
    int32_t MaxChromosomen = 0;             // slots of the largest population
    char DatenFormat = 0;                   // columns per locus, 1 or 2; a number, not a digit; 0
                                            // until checked
    std::string DateiName = "testdata.dat"; // data file as it was typed
    int64_t DataBytes = 0;                  // size of the data file; 0 until checked
    std::string Unread; // why what was read may not be all of the file; empty: nothing failed since
                        // it was checked

  private:
    // The second pass itself.
    int fillLoci(DataWindow& window);
};

} // namespace kva

#endif
