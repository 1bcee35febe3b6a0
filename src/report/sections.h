// The sections of the report, a source each.
#ifndef KVA_REPORT_SECTIONS_H
#define KVA_REPORT_SECTIONS_H

#include "report/reportdata.h"

#include <cstddef>
#include <span>
#include <string>

namespace kva {

struct Cell;

// A section. write: appends its HTML; false, and nothing, where the folder has no numbers for it.
// populations: with fewer no run computes it.
struct Section {
    const char* id;
    const char* title;
    const char* run;  // option of kvatool run that computes it; empty: every run does
    const char* menu; // options of kva that do
    std::size_t populations;
    bool (*write)(const ReportData& data, std::string& html);
};

// All sections, in the order of the page.
std::span<const Section> reportSections();

bool writeRunSection(const ReportData& data, std::string& html);
bool writeDataSection(const ReportData& data, std::string& html);
bool writeDiversitySection(const ReportData& data, std::string& html);
bool writeAlleleSection(const ReportData& data, std::string& html);
bool writePairSection(const ReportData& data, std::string& html);
bool writeGlobalSection(const ReportData& data, std::string& html);
bool writeTreeSection(const ReportData& data, std::string& html);
bool writePopulationCoordinates(const ReportData& data, std::string& html);
bool writeIndividualCoordinates(const ReportData& data, std::string& html);
bool writeRangeSection(const ReportData& data, std::string& html);
bool writeMethodsSection(const ReportData& data, std::string& html);

// --- What sections share -----------------------------------------------------------------------

// A p-value or another long number as a cell of four significant digits with the whole one beside
// it.
Cell shortCell(const std::string& exact);

// "3 populations", "1 population".
std::string counted(std::size_t count, const std::string& one);

// Pictures with more rows are folded, for their height.
constexpr std::size_t kTallPicture = 40;

} // namespace kva

#endif
