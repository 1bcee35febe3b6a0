// A result folder as one page of HTML that needs nothing else: no network, no other file.
#ifndef KVA_REPORT_REPORT_H
#define KVA_REPORT_REPORT_H

#include "report/reportdata.h"

#include <string>
#include <vector>

namespace kva {

struct Report {
    std::string page;
    std::vector<std::string> faults; // a line each; with any there is no page
};

// The page of a result folder. The same folder gives the same bytes.
Report makeReport(const ReportRequest& request);

// The page of numbers that were read.
std::string reportPage(const ReportData& data);

} // namespace kva

#endif
