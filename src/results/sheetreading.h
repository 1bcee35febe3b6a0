// What a layout is given to read a sheet: its lines, its row of the catalogue, the names that the
// other sheets of the folder tell, and the sink for the rows.
#ifndef KVA_RESULTS_SHEETREADING_H
#define KVA_RESULTS_SHEETREADING_H

#include "results/sheetlines.h"
#include "results/tidy.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

class SheetReading;

// Tells what values are none besides those that cellValue() knows; null: no others.
using NoValue = bool (*)(std::string_view value);

// A form that sheets have in common.
struct Layout {
    // Hands the numbers of a sheet to SheetReading::row(), up to the first fault.
    void (*read)(SheetReading& sheet);
    // The statistics that the layout names itself; null: that of the catalogue.
    std::vector<std::string_view> (*statistics)();
    // The sheet may end without a line end.
    bool openEnd = false;
};

// A row of the catalogue: a sheet, or all whose name differs in one place.
struct SheetRule {
    std::string_view folder; // in the result folder; empty: that itself
    std::string_view name;   // "*" stands for any text, once
    const Layout* layout;
    std::string_view statistic = {}; // of layouts that name none
    std::string_view replicate = {}; // of sheets with one of several values, such as "mean"
    NoValue none = nullptr;
};

class SheetReading {
  public:
    // populations: names of the populations in their order; empty: not known. part: the text that
    // stands for "*" in the name of the sheet. All NOT OWNED.
    SheetReading(SheetLines& lines, const SheetRule& rule, std::span<const std::string> populations,
                 std::string_view part, const RowSink& sink);

    SheetLines& lines() { return Lines; }
    const SheetRule& rule() const { return Rule; }
    std::span<const std::string> populations() const { return Populations; }
    std::string_view part() const { return Part; }

    // Hands out the row of a cell; without a statistic that of the catalogue. A cell that is no
    // number is a fault. False after a fault.
    bool row(const TidyPlace& place, std::string_view cell);
    bool row(std::string_view statistic, const TidyPlace& place, std::string_view cell,
             NoValue none = nullptr);

    // Goes to the next line, and makes it a fault if there is none; `what` should follow.
    bool nextOf(std::string_view what);

    // Whether the current line has `expected` cells; else it is a fault.
    bool hasCells(std::size_t cells, std::size_t expected);

  private:
    SheetLines& Lines;
    const SheetRule& Rule;
    std::span<const std::string> Populations;
    std::string_view Part;
    const RowSink& Sink;
};

// --- Heads of locus names --------------------------------------------------------------

// The names of the loci in the head of a sheet with one column per locus. A head is a line, in
// two-column data two, that begins and ends with a tab.
struct LocusHead {
    std::vector<std::string> loci;
    bool more = false; // the line behind the head is there, and current
};

// Reads the head from the line after the current one. labels: columns in front of the loci.
LocusHead readLocusHead(SheetLines& lines, std::size_t labels);

// The same, where the first line of the head is the current one.
LocusHead locusHeadFromHere(SheetLines& lines, std::size_t labels);

// --- Numbers in sentences ---------------------------------------------------------------

// The whole number between two texts, with its sign; nothing if `text` is not before + number +
// after.
std::optional<std::string_view> numberBetween(std::string_view text, std::string_view before,
                                              std::string_view after);

// The number of a line that is a whole number of up to nine digits.
std::optional<std::size_t> countOf(std::string_view text);

} // namespace kva

#endif
