#include "report/html.h"

#include <algorithm>
#include <cstddef>

namespace kva {

namespace {

constexpr std::size_t kFoldedRows = 24; // a table with more rows is folded

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

// Bytes of the UTF-8 character at the front of a text that begins with a byte above 0x7F; 0: it is
// none.
std::size_t utf8Bytes(std::string_view text) {
    const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < size) {
        return 0;
    }
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    const bool overlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool outside = (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF4 && byte(1) > 0x8F);
    return overlong || outside ? 0 : size;
}

void appendAscii(std::string& html, char c) {
    switch (c) {
    case '&':
        html += "&amp;";
        break;
    case '<':
        html += "&lt;";
        break;
    case '>':
        html += "&gt;";
        break;
    case '"':
        html += "&quot;";
        break;
    case '\'':
        html += "&#39;";
        break;
    case '\n':
    case '\t':
        html += c;
        break;
    default:
        if (c < ' ' || c == '\x7F') {
            html += kReplacement;
        } else {
            html += c;
        }
    }
}

// A byte of Latin-1 as UTF-8; 0x80 to 0x9F are control characters.
void appendLatin(std::string& html, unsigned char byte) {
    if (byte < 0xA0) {
        html += kReplacement;
    } else {
        html += static_cast<char>(0xC0U | (byte >> 6U));
        html += static_cast<char>(0x80U | (byte & 0x3FU));
    }
}

void appendHead(std::string& html, const Table& table) {
    html += "<thead><tr>";
    if (table.remark) {
        html += "<th scope=\"col\">Checked</th>";
    }
    for (const Column& column : table.columns) {
        html += "<th scope=\"col\"";
        html += column.words || column.labels ? " class=\"w" : " class=\"n";
        html += column.derived ? " derived\">" : "\">";
        html += escaped(column.head);
        html += column.derived ? " †</th>" : "</th>";
    }
    html += "</tr></thead>\n";
}

void appendCell(std::string& html, const Column& column, const Cell& cell) {
    html += column.labels ? "<th scope=\"row\"" : "<td";
    if (cell.shade >= 0) {
        html += " class=\"h" + std::to_string(cell.shade) + "\"";
    } else if (column.words) {
        html += " class=\"w\"";
    }
    if (!cell.exact.empty() && cell.exact != cell.text) {
        html += " data-v=\"" + escaped(cell.exact) + "\"";
    }
    html += ">" + escaped(cell.text) + (column.labels ? "</th>" : "</td>");
}

// The text of a row's labels, for its box.
std::string labelsOf(const Table& table, const std::vector<Cell>& row) {
    std::string text;
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
        if (table.columns[c].labels || table.columns[c].words) {
            text += (text.empty() ? "" : ", ") + row[c].text;
        }
    }
    return text;
}

} // namespace

std::string escaped(std::string_view text) {
    std::string html;
    html.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            appendAscii(html, text[i]);
            ++i;
        } else if (const std::size_t size = utf8Bytes(text.substr(i)); size > 0) {
            html += text.substr(i, size);
            i += size;
        } else {
            appendLatin(html, byte);
            ++i;
        }
    }
    return html;
}

void appendTable(std::string& html, const Table& table) {
    const bool folded = table.folded || table.rows.size() > kFoldedRows;
    const bool derived = std::any_of(table.columns.begin(), table.columns.end(),
                                     [](const Column& column) { return column.derived; });
    const std::string caption =
        escaped(table.title) +
        (table.source.empty() ? ""
                              : " <span class=\"source\">" + escaped(table.source) + "</span>");
    if (folded) {
        html += "<details><summary>" + caption + ", " + std::to_string(table.rows.size()) +
                " rows</summary>\n";
    }
    html += "<div class=\"table\" data-name=\"" + escaped(table.id) + "\"><div class=\"scroll\" " +
            "tabindex=\"0\" role=\"region\" aria-label=\"" + escaped(table.title) + "\">" +
            "<table id=\"" + escaped(table.id) + "\"><caption>" + caption + "</caption>\n";
    appendHead(html, table);
    html += "<tbody>\n";
    for (const std::vector<Cell>& row : table.rows) {
        html += "<tr>";
        if (table.remark) {
            html += "<td><input type=\"checkbox\" aria-label=\"" +
                    escaped("checked: " + labelsOf(table, row)) + "\"></td>";
        }
        for (std::size_t c = 0; c < row.size(); ++c) {
            appendCell(html, table.columns[c], row[c]);
        }
        html += "</tr>\n";
    }
    html += "</tbody></table></div>\n";
    if (derived) {
        html += "<p class=\"small\">† worked out for this report from the other numbers</p>\n";
    }
    html += folded ? "</div></details>\n" : "</div>\n";
}

void appendFigure(std::string& html, std::string_view id, std::string_view title,
                  std::string_view svg, std::string_view caption, bool folded) {
    if (folded) {
        html += "<details><summary>" + escaped(title) + "</summary>\n";
    }
    html += "<figure id=\"" + escaped(id) + "\"><div class=\"scroll\" tabindex=\"0\" " +
            "role=\"region\" aria-label=\"" + escaped(title) + "\">";
    html += svg;
    html += "</div><figcaption><strong>" + escaped(title) + ".</strong> ";
    html += caption;
    html += "</figcaption></figure>\n";
    html += folded ? "</details>\n" : "";
}

void appendParagraph(std::string& html, std::string_view inner) {
    html.append("<p>").append(inner).append("</p>\n");
}

void appendNote(std::string& html, std::string_view inner) {
    html.append("<p class=\"note\">").append(inner).append("</p>\n");
}

} // namespace kva
