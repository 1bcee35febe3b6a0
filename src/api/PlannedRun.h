// A loaded data set run as a plan says: what kvatool run and the library have in common.
#ifndef KVA_API_PLANNEDRUN_H
#define KVA_API_PLANNEDRUN_H

#include "api/RunPlan.h"
#include "api/TestRows.h"
#include "control/AnalyseDataObj.h"
#include "run/spread.h"

#include <vector>

namespace kva {

// Runs all passes of the plan on loaded data and closes the log; IMFile is not looked at. Failures
// stand in run.Failures. begin, share: are told of each pass and of the share of it that is done;
// null: nobody. What they throw is thrown on, and then `run` can only be destroyed.
// Result: the tests.
std::vector<TestRow> runPlan(AnalyseDataObj& run, const RunPlan& plan, const PassBegin& begin,
                             const Spread::Progress& share);

} // namespace kva

#endif
