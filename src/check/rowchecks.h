// Findings in the rows of individuals of a data file, and in its populations.
#ifndef KVA_CHECK_ROWCHECKS_H
#define KVA_CHECK_ROWCHECKS_H

#include "check/findings.h"
#include "check/summary.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// Takes the rows one after the other, as the reader does.
class RowChecks {
  public:
    // `summary`: of the whole file, with at least one locus. `headerCells`: cells of row 1. Both
    // references must outlive the object.
    RowChecks(const DataSummary& summary, int64_t headerCells, Findings& findings);

    // The next row, without its line end.
    void add(std::string_view text);

    // Behind the last row: what concerns a whole population, or all of them.
    void finish();

  private:
    // The parts of a row in front of its alleles, and its alleles as the reader takes them.
    struct Row {
        int64_t number = 0; // of the file, from 1
        std::string name;
        std::string type;
        std::string group;
        std::vector<int32_t> alleles;
    };

    void openPopulation(const std::string& name);
    void closePopulation();
    void checkHead(const Row& row, int64_t cells);
    void checkGroup(const Row& row, int64_t cells);
    void checkLength(std::string_view row, int64_t cells);
    void checkCell(std::string_view cell, std::size_t place, Row& row);
    void checkAllele(int32_t allele, std::size_t place, std::string_view cell, int64_t number);
    void checkHalves(const Row& first, const Row& second);
    void checkIndividual(const Row& row);
    bool readsAsNames(std::string_view row) const;
    void checkPopulationNames();

    const DataSummary& Summary; // NOT OWNED
    Findings& Found;            // NOT OWNED
    int64_t HeaderCells;        // cells of row 1
    std::size_t Cells;          // allele cells of a row
    int64_t Number;             // of the last row
    bool Any = false;           // a row came
    std::string Population;     // name of the last row
    int64_t Rows = 0;           // of its population so far
    std::string Group;          // group cell of the first of them
    Row Before; // one column: the first row of the individual whose second one comes
    std::vector<std::pair<std::string, int64_t>> Names; // of populations, with their first row
    std::map<std::string, bool> Known;                  // the same names
};

// Findings that the summary alone tells: of loci, groups and the number of populations.
void checkSummary(const DataSummary& summary, Findings& findings);

} // namespace kva

#endif
