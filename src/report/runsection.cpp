#include "report/html.h"
#include "report/sections.h"

namespace kva {

namespace {

Table settingsTable(const RunRecord& record) {
    Table table{.id = "settings", .title = "Settings", .source = "run.json"};
    table.folded = true;
    table.columns = {{.head = "Setting", .labels = true}, {.head = "Value", .words = true}};
    for (const auto& [name, value] : record.settings) {
        table.rows.push_back({{name}, {value}});
    }
    return table;
}

Table recordTable(const ReportData& data, const RunRecord& record) {
    Table table{.id = "run-record", .title = "The run", .source = "run.json"};
    table.columns = {{.head = "What", .labels = true}, {.head = "Value", .words = true}};
    const std::pair<const char*, const std::string&> rows[] = {
        {"Data file", record.file},
        {"SHA-256 of the data file", record.sha256},
        {"Result folder", data.folder},
        {"Version of the program", record.version},
        {"Seed of the random numbers", record.seed},
        {"Random numbers", record.generator},
        {"Threads", record.threads},
        {"Begun", record.begun},
        {"Ended", record.ended},
    };
    for (const auto& [what, value] : rows) {
        if (!value.empty()) {
            table.rows.push_back({{what}, {value}});
        }
    }
    return table;
}

} // namespace

bool writeRunSection(const ReportData& data, std::string& html) {
    if (data.record) {
        appendTable(html, recordTable(data, *data.record));
        for (const std::string& warning : data.record->warnings) {
            appendNote(html, "Warning of the run: " + escaped(warning));
        }
        appendTable(html, settingsTable(*data.record));
    } else {
        appendParagraph(html, "The folder <code>" + escaped(data.folder) +
                                  "</code> is of the program <code>kva</code> and has no record of "
                                  "the run: there is no seed, and the settings are those of its "
                                  "log.");
    }
    if (data.log.empty()) {
        appendNote(html, "There is no log, <code>KVA.log</code>.");
        return true;
    }
    html += "<details";
    html += data.record ? "" : " open";
    html += "><summary>Log of the run <span class=\"source\">KVA.log</span></summary>\n"
            "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"Log of the run\">"
            "<pre id=\"log\">" +
            escaped(data.log) + "</pre></div></details>\n";
    return true;
}

} // namespace kva
