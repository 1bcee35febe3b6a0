#include "report/assets.h"

namespace kva {

namespace {

constexpr std::string_view kStyle = R"css(
:root { color-scheme: light; }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1120px; padding: 0 16px 48px; background: #ffffff; color: #1a1a1a;
  font: 16px/1.5 "Helvetica Neue", Helvetica, Arial, sans-serif; overflow-wrap: break-word; }
h1 { font-size: 1.7rem; line-height: 1.25; margin: 24px 0 4px; }
h2 { font-size: 1.3rem; margin: 40px 0 8px; padding-top: 12px; border-top: 1px solid #d0d0d0; }
h3 { font-size: 1.05rem; margin: 24px 0 4px; }
a { color: #00558a; }
nav ol { margin: 8px 0; padding-left: 24px; columns: 2; column-gap: 32px; }
nav li { break-inside: avoid; }
code, pre { font-family: Menlo, Consolas, "DejaVu Sans Mono", monospace; font-size: 0.88em; }
pre { margin: 0; padding: 8px; }
.facts { list-style: none; display: flex; flex-wrap: wrap; gap: 8px; padding: 0; margin: 12px 0; }
.facts li { border: 1px solid #d0d0d0; border-radius: 6px; padding: 6px 12px; }
.facts strong { font-size: 1.15rem; }
.scroll { overflow: auto; max-width: 100%; max-height: 80vh; border: 1px solid #e2e2e2; }
figure { margin: 16px 0; }
figure .scroll { max-height: none; border: 0; }
figure svg { display: block; }
figcaption { font-size: 0.9rem; margin-top: 4px; }
.table { margin: 16px 0; }
.table .scroll { width: fit-content; }
table { border-collapse: collapse; font-size: 0.88rem; font-variant-numeric: tabular-nums; }
caption { text-align: left; font-weight: bold; padding: 4px 8px; }
.source, .small { color: #555555; font-weight: normal; font-size: 0.85rem; }
.small { margin: 4px 0; }
th, td { padding: 2px 8px; border-bottom: 1px solid #ececec; text-align: right; white-space: nowrap; }
thead th { position: sticky; top: 0; background: #f3f3f3; vertical-align: bottom; }
th[scope=row], th.w, td.w { text-align: left; }
th[scope=row] { font-weight: normal; }
td.w { white-space: normal; min-width: 8em; overflow-wrap: anywhere; }
th button { font: inherit; font-weight: bold; color: inherit; background: none; border: 0; padding: 0;
  cursor: pointer; text-align: inherit; }
th button:hover { text-decoration: underline; }
details { margin: 8px 0; }
summary { cursor: pointer; padding: 4px 0; font-weight: bold; }
.note { border-left: 4px solid #0072b2; background: #eef5fa; padding: 8px 12px; margin: 12px 0; }
.save { font: inherit; font-size: 0.85rem; color: #1a1a1a; background: #f3f3f3; border: 1px solid #b5b5b5;
  border-radius: 4px; padding: 4px 10px; margin: 6px 8px 0 0; cursor: pointer; }
.h0 { background: #fdf1ea; } .h1 { background: #fbe6da; } .h2 { background: #f9dac9; }
.h3 { background: #f6cdb6; } .h4 { background: #f3bf9f; } .h5 { background: #f0b088; }
.h6 { background: #eca071; } .h7 { background: #e88f59; } .h8 { background: #e37e42; }
.h9 { background: #df7134; }
footer { margin-top: 48px; color: #555555; font-size: 0.85rem; }
@media (max-width: 640px) { nav ol { columns: 1; } h1 { font-size: 1.4rem; } h2 { font-size: 1.2rem; } }
@media print { .save, nav { display: none; } body { max-width: none; padding: 0; font-size: 10pt; }
  .scroll { max-height: none; overflow: visible; border: 0; } figure svg { max-width: 100%; height: auto; }
  figure { break-inside: avoid; } }
)css";

constexpr std::string_view kScript = R"js(
"use strict";
(function () {
  function save(name, type, text) {
    var link = document.createElement("a");
    link.href = URL.createObjectURL(new Blob([text], { type: type }));
    link.download = name;
    document.body.appendChild(link);
    link.click();
    link.remove();
    setTimeout(function () { URL.revokeObjectURL(link.href); }, 10000);
  }
  function button(words, place, act) {
    var made = document.createElement("button");
    made.type = "button";
    made.className = "save";
    made.textContent = words;
    made.addEventListener("click", act);
    place.appendChild(made);
  }
  function valueOf(cell) {
    var box = cell.querySelector("input");
    if (box) { return box.checked ? "yes" : "no"; }
    return cell.hasAttribute("data-v") ? cell.getAttribute("data-v") : cell.textContent;
  }
  function quoted(text) {
    return /["\t\n\r]/.test(text) ? '"' + text.replace(/"/g, '""') + '"' : text;
  }
  function tsvOf(table) {
    return Array.from(table.rows, function (row) {
      return Array.from(row.cells, function (cell) { return quoted(valueOf(cell)); }).join("\t");
    }).join("\n") + "\n";
  }
  function compare(a, b) {
    var x = a.key === "" ? NaN : Number(a.key), y = b.key === "" ? NaN : Number(b.key);
    if (!isNaN(x) && !isNaN(y)) { return x - y; }
    if (isNaN(x) !== isNaN(y)) { return isNaN(x) ? 1 : -1; }
    return a.key < b.key ? -1 : a.key > b.key ? 1 : 0;
  }
  function sort(table, column, head) {
    var down = head.getAttribute("aria-sort") === "ascending", body = table.tBodies[0];
    var rows = Array.from(body.rows, function (row) {
      return { row: row, key: valueOf(row.cells[column]) };
    });
    rows.sort(function (a, b) { return down ? compare(b, a) : compare(a, b); });
    Array.from(head.parentNode.cells, function (cell) { cell.removeAttribute("aria-sort"); });
    head.setAttribute("aria-sort", down ? "descending" : "ascending");
    rows.forEach(function (one) { body.appendChild(one.row); });
  }
  document.querySelectorAll("figure").forEach(function (figure) {
    button("Save as SVG", figure, function () {
      var text = new XMLSerializer().serializeToString(figure.querySelector("svg"));
      save(figure.id + ".svg", "image/svg+xml", text + "\n");
    });
  });
  document.querySelectorAll("div.table").forEach(function (place) {
    var table = place.querySelector("table");
    button("Save as TSV", place, function () {
      save(place.getAttribute("data-name") + ".tsv", "text/tab-separated-values", tsvOf(table));
    });
    Array.from(table.tHead.rows[0].cells, function (head, column) {
      var made = document.createElement("button");
      made.type = "button";
      made.title = "Sort by this column";
      made.textContent = head.textContent;
      head.textContent = "";
      head.appendChild(made);
      made.addEventListener("click", function () { sort(table, column, head); });
    });
  });
})();
)js";

// Check sums of the two texts above, SHA-256 in base 64; a test holds them together.
constexpr std::string_view kPolicy =
    "default-src 'none'; "
    "style-src 'sha256-MVpSgo0vDtk4nmGepUKYAAuq/kRE04QVmIm7omKum6c='; "
    "script-src 'sha256-5BMqCjA8/0UXESnWNVADyd/KHQ5Y5GZ2VQ1WGMgrMj0='; "
    "base-uri 'none'; form-action 'none'";

} // namespace

std::string_view reportStyle() {
    return kStyle;
}

std::string_view reportScript() {
    return kScript;
}

std::string_view reportPolicy() {
    return kPolicy;
}

} // namespace kva
