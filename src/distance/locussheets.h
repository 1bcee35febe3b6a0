// LocusSheets: the sheets of the distances of single loci, one for each measure. A block for
// each replicate, blocks right behind each other:
//
//      	North	North	South
//      	South	West	West
//      LocA	0.250000	0.500000	n.d.
//      LocB	0.000000	1.000000	0.333333
//
// In two-column data the two names of a locus stand in two columns, and the heads begin with a
// further tab.
#ifndef KVA_DISTANCE_LOCUSSHEETS_H
#define KVA_DISTANCE_LOCUSSHEETS_H

#include "distance/measures.h"
#include "distance/rowsummer.h"
#include "output/resultfile.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kva {

class Datensatz;

class LocusSheets {
  public:
    // No sheets: all calls do nothing.
    LocusSheets() = default;

    // daten: NOT OWNED, it outlives the object. dataFormat: columns per locus in the data file.
    // keepRows: rows are written again and again, as with a bootstrap, so that their text is worth
    // keeping.
    LocusSheets(const Datensatz& daten, int dataFormat, CellRules rules, bool keepRows);

    // Adds the sheet of the next measure; it may be closed: then nothing is written to it.
    void add(ResultFile sheet, const Measure& measure);

    // Writes the two head rows of a block into every sheet: the names of the first and of the
    // second population of each pair.
    void writeHead();

    // Writes the row of a locus (from 0) into every sheet; sums: one for each sheet, in the order
    // in which they were added. A pair that the locus does not count for is "n.d.".
    void writeRow(int32_t locus, std::span<RowSummer> sums);

    // Closes all sheets.
    void close();

  private:
    // The sheet of one measure.
    struct Sheet {
        ResultFile File;               // closed if it could not be opened
        Measure Rule;                  // of its cells
        std::vector<std::string> Rows; // kept cells by locus, from 0; empty text: not kept
    };

    // The cells of a locus (from 0), each with its tab in front. Wanted: empty at a locus where
    // nobody has an allele, not even "n.d.": the bytes of the sheets depend on it.
    std::string cells(const Sheet& sheet, int32_t locus, RowSummer& sums) const;
    // The same, computed once and kept if rows are kept and there is room. The reference holds
    // until the next call.
    const std::string& keptCells(Sheet& sheet, int32_t locus, RowSummer& sums);
    // Whether values go into a sheet: wanted, it depends on the first sheet of the same bit being
    // open, so that without the sheet of "CAS" also that of "DAN" holds none. "n.d." goes in all
    // the same.
    bool valuesWanted(const Sheet& sheet) const;
    // The name of a locus (from 0), in two-column data both names with a tab between.
    std::string label(int32_t locus) const;

    const Datensatz* Daten = nullptr; // NOT OWNED; null without sheets
    int Format = 0;                   // columns per locus in the data file
    CellRules Rules;                  // from the settings
    bool KeepRows = false;            // the text of rows is kept
    std::size_t KeptBytes = 0;        // in the kept rows of all sheets
    std::string Spare;                // cells computed last, handed out where they are not kept
    std::vector<Sheet> Sheets;        // in the order in which they were added
};

} // namespace kva

#endif
