// HTML of the report: texts of the data made safe, tables, figures.
#ifndef KVA_REPORT_HTML_H
#define KVA_REPORT_HTML_H

#include <string>
#include <string_view>
#include <vector>

namespace kva {

// A text of the data as HTML or SVG text, also fit for an attribute in double quotes. All that
// comes from a result folder goes through here. Bytes that are no UTF-8 are taken for Latin-1;
// control characters become U+FFFD.
std::string escaped(std::string_view text);

// A cell: what is shown, and the whole number where the cell shows it shortened.
struct Cell {
    std::string text;
    std::string exact = {};
    int shade = -1; // 0 to 9 for a cell in colour
};

struct Column {
    std::string head;     // plain text
    bool derived = false; // worked out by the report, not printed by a sheet
    bool words = false;   // holds words, not numbers
    bool labels = false;  // tells what the row is
};

struct Table {
    std::string id;
    std::string title;       // plain text
    std::string source = {}; // the sheets that the numbers stand in; plain text, may be empty
    bool remark = false;     // each row gets a box to tick
    bool folded = false;     // opened by a click, as long ones always are
    std::vector<Column> columns = {};
    std::vector<std::vector<Cell>> rows = {};
};

// Appends a table, in a box of its own that scrolls; a long one is folded.
void appendTable(std::string& html, const Table& table);

// Appends a picture. svg: from Svg::finish(). caption: HTML. folded: whether it is opened by a
// click.
void appendFigure(std::string& html, std::string_view id, std::string_view title,
                  std::string_view svg, std::string_view caption, bool folded = false);

// Appends a paragraph of HTML, or one that tells what is missing.
void appendParagraph(std::string& html, std::string_view inner);
void appendNote(std::string& html, std::string_view inner);

} // namespace kva

#endif
