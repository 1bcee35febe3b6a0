// A sheet read line by line, and the first thing that is wrong with it.
#ifndef KVA_RESULTS_SHEETLINES_H
#define KVA_RESULTS_SHEETLINES_H

#include <cstddef>
#include <istream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kva {

// Splits a text at its tabs into `cells`: one more than there are tabs.
void splitCells(std::string_view text, std::vector<std::string_view>& cells);

// The lines end with LF. After a fault there are no more lines.
class SheetLines {
  public:
    static constexpr std::size_t kLongestLine = std::size_t{1} << 30U; // far beyond any sheet's

    // in: NOT OWNED. openEnd: the sheet's last line may lack its line end; in other sheets it is a
    // fault, as is a line of more than about `longest` bytes.
    SheetLines(std::istream& in, bool openEnd, std::size_t longest = kLongestLine);

    // Goes to the next line. False at the end of the sheet, and at a fault.
    bool next();

    const std::string& line() const { return Line; } // without its line end
    std::size_t number() const { return Number; }    // from 1; 0: no line yet

    // The cells of the line. They hold until the next line.
    std::span<const std::string_view> cells();

    // The same of a line whose last cell ends with its tab, too. A line without a tab has none.
    std::span<const std::string_view> closedCells();

    // Tells what is wrong with the current line, or behind the last one. The first fault stays.
    void fault(const std::string& what);
    bool sound() const { return Fault.empty(); }
    const std::string& faultText() const { return Fault; } // "line 3: ..."; empty: none

  private:
    bool fill(); // false at the end of the stream
    bool takePiece();

    std::istream& In;
    bool OpenEnd;
    std::size_t Longest; // bytes of a line
    std::vector<char> Buffer;
    std::size_t At = 0;  // place in the buffer
    std::size_t End = 0; // bytes in the buffer
    std::string Line;
    std::size_t Number = 0;
    bool Ended = false; // no line is left
    std::vector<std::string_view> Cells;
    std::string Fault;
};

} // namespace kva

#endif
