#include "report/report.h"

#include "report/assets.h"
#include "report/html.h"
#include "report/sections.h"

namespace kva {

namespace {

// The name that the page bears: that of the data file, or else of the folder.
std::string nameOf(const ReportData& data) {
    if (!data.record || data.record->file.empty()) {
        return data.folder;
    }
    return std::filesystem::path(data.record->file).filename().string();
}

void appendHead(const ReportData& data, std::string& html) {
    const std::string name = escaped(nameOf(data));
    html += "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta http-equiv=\"Content-Security-Policy\" content=\"";
    html += reportPolicy();
    html += "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
            "<meta name=\"referrer\" content=\"no-referrer\">\n<title>Report of " +
            name + "</title>\n<style>";
    html += reportStyle();
    html += "</style>\n</head>\n<body>\n<header>\n<h1>Population genetics of " + name +
            "</h1>\n</header>\n";
}

void appendContents(std::string& html) {
    html += "<nav aria-label=\"Contents\"><ol>\n";
    for (const Section& section : reportSections()) {
        html += std::string("<li><a href=\"#") + section.id + "\">" + section.title + "</a></li>\n";
    }
    html += "</ol></nav>\n<main>\n";
}

void appendSection(const Section& section, const ReportData& data, std::string& html) {
    html += std::string("<section id=\"") + section.id + "\">\n<h2>" + section.title + "</h2>\n";
    if (!section.write(data, html)) {
        appendNote(html, data.populations.size() < section.populations
                             ? "This takes " + std::to_string(section.populations) +
                                   " or more populations."
                             : std::string("Not run. <code>kvatool run DATA ") + section.run +
                                   "</code> or <code>kva -i DATA " + section.menu +
                                   "</code> computes it.");
    }
    html += "</section>\n";
}

} // namespace

std::string reportPage(const ReportData& data) {
    std::string html;
    appendHead(data, html);
    appendContents(html);
    for (const Section& section : reportSections()) {
        appendSection(section, data, html);
    }
    html += "</main>\n<footer><p>Made by <code>kvatool report</code>. Numbers stand as the sheets "
            "print them; those marked † are worked out from them for this page.</p></footer>\n"
            "<script>";
    html += reportScript();
    html += "</script>\n</body>\n</html>\n";
    return html;
}

Report makeReport(const ReportRequest& request) {
    Report report;
    ReportData data;
    report.faults = readReportData(request, data);
    if (report.faults.empty()) {
        report.page = reportPage(data);
    }
    return report;
}

} // namespace kva
