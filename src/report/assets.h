// What the page carries besides its contents: the looks and one small script.
#ifndef KVA_REPORT_ASSETS_H
#define KVA_REPORT_ASSETS_H

#include <string_view>

namespace kva {

std::string_view reportStyle();
std::string_view reportScript(); // downloads of pictures and tables, tables sorted by a click

// What the browser may do: nothing but this style and this script, known by their check sums.
std::string_view reportPolicy();

} // namespace kva

#endif
