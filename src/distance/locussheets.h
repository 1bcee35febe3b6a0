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

#include <cstddef>
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

    // Adds the sheet of the next measure; it may be closed: then nothing is written to it. Wanted:
    // a sheet holds values only if the first one of the same bit is open, so that without the sheet
    // of "CAS" that of "DAN" has none.
    void add(ResultFile sheet, const Measure& measure);

    // Writes the two head rows of a block into every sheet: the names of the first and of the
    // second population of each pair.
    void writeHead();

    // Writes the row of a locus (from 0) into every sheet. A pair that the locus does not count for
    // is "n.d.".
    void writeRow(std::size_t locus, RowSummer& sums);

    // Hands everything written so far to the files.
    void flush();

    // Closes all sheets.
    void close();

  private:
    // The sheet of one measure.
    struct Sheet {
        ResultFile File; // closed if it could not be opened
        bool Values;     // whether it holds values; "n.d." goes in all the same
    };
    using Row = std::vector<std::string>; // the cells of a locus, each with its tab in front, as
                                          // one text for each sheet

    // The row of a locus (from 0). Wanted: empty at a locus where nobody has an allele, not even
    // "n.d.": the bytes of the sheets depend on it.
    Row cells(std::size_t locus, RowSummer& sums) const;
    // Appends the cells of the pairs of row i, of so many samples.
    void addCells(std::size_t i, const RowSums& sums, std::size_t samples, Row& row) const;
    // The row of a locus, computed once and kept if rows are kept and there is room. The reference
    // holds until the next call.
    const Row& keptCells(std::size_t locus, RowSummer& sums);
    // The name of a locus (from 0), in two-column data both names with a tab between.
    std::string label(std::size_t locus) const;

    const Datensatz* Daten = nullptr; // NOT OWNED; null without sheets
    int Format = 0;                   // columns per locus in the data file
    CellRules Rules;                  // from the settings
    bool KeepRows = false;            // the text of rows is kept
    std::size_t KeptBytes = 0;        // in the kept rows
    std::vector<Row> Rows;            // kept, by locus, from 0; no text: not kept
    Row Spare;                        // computed last, handed out where it is not kept
    std::vector<Sheet> Sheets;        // in the order in which they were added
    std::vector<Measure> Measures;    // of the sheets
};

} // namespace kva

#endif
