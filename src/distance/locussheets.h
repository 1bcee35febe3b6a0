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

    // daten: NOT OWNED, it outlives the object. keepRows: rows are written again and again, as
    // with a bootstrap, so that their text is worth keeping.
    LocusSheets(const Datensatz& daten, int dataFormat, CellRules rules, bool keepRows);

    // Adds the sheet of the next measure; it may be closed.
    void add(ResultFile sheet, const Measure& measure);

    // Writes the two head rows of a block into every sheet.
    void writeHead();

    // Writes the row of a locus (from 0) into every sheet; sums: one for each sheet.
    void writeRow(int32_t locus, std::span<RowSummer> sums);

    // Closes all sheets.
    void close();

  private:
    struct Sheet {
        ResultFile File;
        Measure Rule;
        std::vector<std::string> Rows; // kept cells by locus; empty: not kept
    };

    std::string cells(const Sheet& sheet, int32_t locus, RowSummer& sums) const;
    const std::string& keptCells(Sheet& sheet, int32_t locus, RowSummer& sums);
    bool valuesWanted(const Sheet& sheet) const;
    std::string label(int32_t locus) const;

    const Datensatz* Daten = nullptr;
    int Format = 0; // columns per locus in the data file
    CellRules Rules;
    bool KeepRows = false;
    std::size_t KeptBytes = 0;
    std::string Spare; // the row written last where it is not kept
    std::vector<Sheet> Sheets;
};

} // namespace kva

#endif
