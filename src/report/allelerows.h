// Alleles of a result folder.
#ifndef KVA_REPORT_ALLELEROWS_H
#define KVA_REPORT_ALLELEROWS_H

#include "report/reportdata.h"

namespace kva {

// Moves the rows "allele_count" and "allele_frequency" of `data` to its alleles. Its names of
// populations and loci are known.
void takeAlleles(ReportData& data);

} // namespace kva

#endif
