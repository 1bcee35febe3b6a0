#include "report/html.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kva {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(Escaped, MakesMarkupText) {
    EXPECT_EQ(escaped("<script>alert(\"a\" & 'b')</script>"),
              "&lt;script&gt;alert(&quot;a&quot; &amp; &#39;b&#39;)&lt;/script&gt;");
}

TEST(Escaped, LeavesUtf8) {
    EXPECT_EQ(escaped("Zürich 東京 🐈"), "Zürich 東京 🐈");
}

TEST(Escaped, TakesOtherBytesForLatin1) {
    EXPECT_EQ(escaped("Z\xFCrich"), "Zürich");
    EXPECT_EQ(escaped("caf\xE9"), "café");               // begins a character that does not follow
    EXPECT_EQ(escaped("\xC0\xAF"), "\u00C0\u00AF");      // a slash in two bytes: no UTF-8
    EXPECT_EQ(escaped("\xED\xA0\x80"), "í\u00A0\uFFFD"); // half a pair of UTF-16
}

TEST(Escaped, ReplacesControlCharacters) {
    EXPECT_EQ(escaped(std::string("a\0b\x1B", 4)), "a\uFFFDb\uFFFD");
    EXPECT_EQ(escaped("a\tb\n"), "a\tb\n");
}

TEST(AppendTable, EscapesNamesAndKeepsWholeNumbers) {
    Table table{.id = "t", .title = "<i>", .source = "a&b"};
    table.columns = {{.head = "<b>", .labels = true}, {.head = "p", .derived = true}};
    table.rows = {{{"<u>"}, {"0.0123", "0.01234567"}}};
    std::string html;
    appendTable(html, table);
    for (const char* markup : {"<i>", "<b>", "<u>", "a&b"}) {
        EXPECT_THAT(html, Not(HasSubstr(markup)));
    }
    EXPECT_THAT(html, HasSubstr("<th scope=\"row\">&lt;u&gt;</th><td "
                                "data-v=\"0.01234567\">0.0123</td>"));
    EXPECT_THAT(html, HasSubstr("p †"));
    EXPECT_THAT(html, Not(HasSubstr("<details>")));
}

TEST(AppendTable, FoldsALongTable) {
    Table table{.id = "t", .title = "T"};
    table.columns = {{.head = "n", .labels = true}};
    table.rows.assign(25, {{"1"}});
    std::string html;
    appendTable(html, table);
    EXPECT_THAT(html, HasSubstr("<details><summary>T, 25 rows</summary>"));
}

} // namespace
} // namespace kva
